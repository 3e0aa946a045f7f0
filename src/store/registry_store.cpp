#include "store/registry_store.h"

#include <sqlite3.h>

#include <QAbstractEventDispatcher>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QThread>
#include <QTimer>
#include <utility>

#include "store/private_folder.h"
#include "store/registry_changes.h"
#include "store/store_file.h"

namespace {

using TState = TStoreFile::TState;
using TMode = TStoreFile::TMode;

// Long enough at the start for any list to be written; from then on nobody is to notice.
constexpr int UsualPatience = 50;  // milliseconds
constexpr TStoreFile::TPatience Patience{.first = 3000, .usual = UsualPatience};
constexpr int EndPatience = 5000;
constexpr int RetryWhenLocked = 100;
constexpr int RetryWhenRefused = 1000;
constexpr unsigned long PauseBetweenTries = 10;
constexpr int LookInterval = 200;  // between looks at whether others have written

constexpr qsizetype MostCharacters = 100'000'000;  // of a value; three bytes each stay below what SQLite takes

// Row identities grow, so that their order is the order of first writing. `path` and `folded` are case-folded; the
// parent of a hive's root is a text that no path can be.
constexpr const char *Tables = R"(
  CREATE TABLE keys(id INTEGER PRIMARY KEY, hive INTEGER NOT NULL, path TEXT NOT NULL, parent TEXT NOT NULL,
                    name TEXT NOT NULL, UNIQUE(hive, path));
  CREATE INDEX keys_by_parent ON keys(hive, parent);
  CREATE TABLE entries(id INTEGER PRIMARY KEY, key INTEGER NOT NULL, folded TEXT NOT NULL, name TEXT NOT NULL, data,
                       UNIQUE(key, folded));
  PRAGMA user_version = 1;
)";
constexpr const char *RootParent = "\\";

constexpr const char *Queries[] = {"SELECT id, hive, path, parent, name FROM keys LIMIT 1",
                                   "SELECT id, key, folded, name, data FROM entries LIMIT 1"};
constexpr TStoreFile::TSchema Schema{1, Tables, Queries};

}  // namespace

struct TRegistryStore::TPrivate {
  using TChange = TRegistryChange;

  TStoreFile file;
  TSqliteConnection &database = file.Database();
  bool ready = false;     // the connection can be read
  bool writable = false;  // nothing is known that keeps writes away for good
  bool memory = false;
  bool makeshift = false;  // opened to read only, or empty where there is nothing yet, since the disk refused more
  bool readBusy = false;   // the last read found the file locked
  bool missedReads = false;
  std::function<void()> onTrouble;

  QList<TChange> waiting;  // with those of transactions that are not finished
  int depth = 0;           // of these
  TState writeState = TState::Ready;
  bool givenUp = false;
  std::unique_ptr<QTimer> retry;

  quint64 revision = 0;
  qint64 seenVersion = 0;  // SQLite's count of what other connections than this one have written into the file
  TStoreFile::TIdentity seenFile;
  QElapsedTimer sinceLook;

  explicit TPrivate(const QString &filePath) : file(QFileInfo(filePath).absoluteFilePath(), Schema, Patience) {}

  void Open();
  void OpenReadOnly();
  [[nodiscard]] TState BeginAnew();
  void UseMemory();
  bool EnsureReady();
  bool MayWrite() { return (EnsureReady(), writable); }

  // What the file holds, by `query` if it can be looked into.
  template <typename TQuery>
  auto Look(TQuery query) -> std::optional<decltype(query())>;
  [[nodiscard]] std::optional<bool> StoredKeyExists(TRegistryHive hive, const TKeyPath &path);
  [[nodiscard]] std::optional<QList<TRegistryValue>> StoredValues(TRegistryHive hive, const TKeyPath &path);
  [[nodiscard]] std::optional<QList<TRegistryValue>> Values(TRegistryHive hive, const TKeyPath &path);

  void LookForOthers();
  bool Add(const TChange &change);
  bool WriteOut();
  [[nodiscard]] TState WriteOutOnce();
  [[nodiscard]] bool LeaveMakeshift();
  void TryLater();

  [[nodiscard]] bool Apply(const TChange &change);
  [[nodiscard]] std::optional<qint64> FindKey(TRegistryHive hive, const QString &foldedPath);
  std::optional<qint64> MakeKey(TRegistryHive hive, const TKeyPath &path);
  bool WriteData(qint64 key, const TRegistryValue &value, bool overwrites = true);
  bool RemoveKey(TRegistryHive hive, const TKeyPath &path);
  bool RemoveValues(TRegistryHive hive, const TKeyPath &path);
  bool RemoveValue(TRegistryHive hive, const TKeyPath &path, const QString &name);
  bool PutValues(TRegistryHive hive, const TKeyPath &path, const QList<TRegistryValue> &values);
};

namespace {

// One level of a transaction; what was not kept is taken back.
class TRecording final {
 public:
  TRecording(QList<TRegistryChange> &changes, int &depth) : m_changes(changes), m_depth(depth), m_mark(changes.size()) {
    ++m_depth;
  }
  ~TRecording() {
    --m_depth;
    if (!m_kept) m_changes.remove(m_mark, m_changes.size() - m_mark);
  }
  TRecording(const TRecording &) = delete;
  TRecording &operator=(const TRecording &) = delete;

  void Keep() { m_kept = true; }

 private:
  QList<TRegistryChange> &m_changes;
  int &m_depth;
  const qsizetype m_mark;
  bool m_kept = false;
};

TRegistryValue Integer(const QString &name, qint64 data) {
  return {name, QString::number(data), true};
}

}  // namespace

bool TRegistryStore::TPrivate::Add(const TChange &change) {
  for (const TRegistryValue &value : change.values) {
    if (std::max(value.name.size(), value.data.size()) > MostCharacters) return false;
  }
  if (!MayWrite()) return false;
  waiting.append(change);
  ++revision;
  givenUp = false;
  if (depth == 0) WriteOut();
  return true;
}

// Everything that waits, in one transaction; true when nothing waits any more.
bool TRegistryStore::TPrivate::WriteOut() {
  if (depth > 0) return false;
  if (waiting.isEmpty()) return true;
  const TState before = writeState;
  writeState = WriteOutOnce();
  // The next use sets the damaged file aside.
  if (database.DamageSeen()) writeState = WriteOutOnce();
  if (writeState == TState::Ready) return true;
  RegistryChanges::Condense(waiting);
  TryLater();
  if (writeState == TState::Refused && before != TState::Refused && onTrouble) onTrouble();
  return false;
}

TState TRegistryStore::TPrivate::WriteOutOnce() {
  if (!EnsureReady()) return TState::Busy;
  if (makeshift && !LeaveMakeshift()) return TState::Refused;
  // What waits already is not waited for again.
  database.SetBusyTimeout(writeState == TState::Ready ? UsualPatience : 0);
  int code = database.Execute("BEGIN IMMEDIATE");
  if (code == SQLITE_OK) {
    const bool isApplied = std::ranges::all_of(waiting, [this](const TChange &change) { return Apply(change); });
    code = isApplied ? database.Execute("COMMIT") : database.Code();
    if (isApplied && code == SQLITE_OK) {
      waiting.clear();
      return TState::Ready;
    }
    // SQLite has ended the transaction by itself on some errors (disk full).
    if (database.InTransaction()) database.Execute("ROLLBACK");
  }
  return TStoreFile::StateOf(code) == TState::Busy ? TState::Busy : TState::Refused;
}

bool TRegistryStore::TPrivate::LeaveMakeshift() {
  makeshift = file.Open(TMode::ReadWrite) != TState::Ready;
  memory = false;
  if (makeshift) {
    OpenReadOnly();
    writable = true;
    missedReads = missedReads || (memory && QFileInfo(file.Path()).size() > 0);
  }
  return !makeshift;
}

void TRegistryStore::TPrivate::TryLater() {
  if (QAbstractEventDispatcher::instance() == nullptr) return;
  if (!retry) {
    retry = std::make_unique<QTimer>();
    retry->setSingleShot(true);
    QObject::connect(retry.get(), &QTimer::timeout, [this] { WriteOut(); });
  }
  retry->start(writeState == TState::Busy ? RetryWhenLocked : RetryWhenRefused);
}

bool TRegistryStore::TPrivate::Apply(const TChange &change) {
  const auto &[kind, hive, path, values, edit] = change;
  switch (kind) {
    case TChange::TKind::CreateKey:
      return MakeKey(hive, path).has_value();
    case TChange::TKind::DeleteKey:
      return RemoveKey(hive, path);
    case TChange::TKind::DeleteValue:
      return RemoveValue(hive, path, values.first().name);
    case TChange::TKind::Write:
    case TChange::TKind::WriteIfAbsent: {
      const auto key = MakeKey(hive, path);
      return key && WriteData(*key, values.first(), kind == TChange::TKind::Write);
    }
    case TChange::TKind::ReplaceKey:
      return RemoveKey(hive, path) && (values.isEmpty() || PutValues(hive, path, values));
    case TChange::TKind::EditKey: {
      const auto stored = StoredValues(hive, path);
      if (!stored) return false;
      const QList<TRegistryValue> edited = edit(*stored);
      if (edited == *stored) return MakeKey(hive, path).has_value();
      return RemoveValues(hive, path) && PutValues(hive, path, edited);
    }
  }
  return false;
}

void TRegistryStore::TPrivate::Open() {
  const QString &path = file.Path();
  const QString folder = QFileInfo(path).path();
  const bool mayWrite = MakePrivateFolder(folder) && QFileInfo(folder).isWritable() &&
                        (!QFileInfo::exists(path) || QFileInfo(path).isWritable());
  if (mayWrite) {
    TState state = file.Open(TMode::ReadWrite);
    if (state == TState::Damaged) state = BeginAnew();
    writable = state == TState::Ready || state == TState::Busy;
    ready = state == TState::Ready;
    if (writable) return;
    makeshift = state == TState::Refused;
  }
  OpenReadOnly();
  makeshift = makeshift && (!memory || QFileInfo(path).size() == 0);
  writable = writable || makeshift;
}

void TRegistryStore::TPrivate::OpenReadOnly() {
  writable = false;
  ready = file.Open(TMode::ReadOnly) == TState::Ready;
  // With a log of recent writes beside it the file alone may be inconsistent, so it is not read without the log.
  if (!ready && QFileInfo(file.Path() + "-wal").size() == 0) ready = file.Open(TMode::Immutable) == TState::Ready;
  if (!ready) UseMemory();
}

TState TRegistryStore::TPrivate::BeginAnew() {
  // What it held is out of reach for good, so that nothing in the new one can have been missed.
  missedReads = false;
  return file.SetAside(file.Identity()) ? file.Open(TMode::ReadWrite) : TState::Unavailable;
}

void TRegistryStore::TPrivate::UseMemory() {
  memory = true;
  ready = file.Open(TMode::Memory) == TState::Ready;
  writable = ready;
}

bool TRegistryStore::TPrivate::EnsureReady() {
  if (!writable || memory || makeshift || database.InTransaction()) return ready;
  TState state = file.Ensure(true);
  const bool isDamaged = state == TState::Damaged;
  if (isDamaged) state = BeginAnew();
  ready = state == TState::Ready;
  if (!ready && state != TState::Busy) UseMemory();
  if ((isDamaged || memory) && onTrouble) onTrouble();
  return ready;
}

template <typename TQuery>
auto TRegistryStore::TPrivate::Look(TQuery query) -> std::optional<decltype(query())> {
  if (!EnsureReady()) {
    missedReads = true;
    return std::nullopt;
  }
  // A file that stays locked is waited for once, not by each of the many reads of one moment.
  if (!database.InTransaction()) database.SetBusyTimeout(readBusy ? 0 : UsualPatience);
  auto answer = query();
  const TState state = TStoreFile::StateOf(database.Code());
  readBusy = state == TState::Busy;
  if (state == TState::Ready) return answer;
  missedReads = true;
  return std::nullopt;
}

// Nobody takes anything for an answer here, so no read is missed.
void TRegistryStore::TPrivate::LookForOthers() {
  if (!EnsureReady()) return;
  database.SetBusyTimeout(0);
  TSqliteStatement statement = database.Use("PRAGMA data_version");
  if (!statement.Step()) return;
  const qint64 version = statement.Integer(0);
  if (version == seenVersion && file.Identity() == seenFile) return;
  seenVersion = version;
  seenFile = file.Identity();
  ++revision;
}

std::optional<bool> TRegistryStore::TPrivate::StoredKeyExists(TRegistryHive hive, const TKeyPath &path) {
  return Look([&] { return FindKey(hive, path.folded).has_value(); });
}

std::optional<QList<TRegistryValue>> TRegistryStore::TPrivate::StoredValues(TRegistryHive hive, const TKeyPath &path) {
  return Look([&] {
    QList<TRegistryValue> values;
    TSqliteStatement statement = database.Use(
        "SELECT entries.name, data FROM entries JOIN keys ON keys.id = entries.key "
        "WHERE hive = ? AND path = ? ORDER BY entries.id");
    statement.Bind(qint64(hive)).Bind(path.folded);
    while (statement.Step()) {
      const bool isInteger = statement.IsInteger(1);
      values.append({statement.Text(0), statement.Text(1), isInteger});
    }
    return values;
  });
}

std::optional<QList<TRegistryValue>> TRegistryStore::TPrivate::Values(TRegistryHive hive, const TKeyPath &path) {
  auto stored = StoredValues(hive, path);
  return waiting.isEmpty() ? stored : RegistryChanges::Values(waiting, hive, path, std::move(stored));
}

std::optional<qint64> TRegistryStore::TPrivate::FindKey(TRegistryHive hive, const QString &foldedPath) {
  TSqliteStatement statement = database.Use("SELECT id FROM keys WHERE hive = ? AND path = ?");
  if (!statement.Bind(qint64(hive)).Bind(foldedPath).Step()) return std::nullopt;
  return statement.Integer(0);
}

std::optional<qint64> TRegistryStore::TPrivate::MakeKey(TRegistryHive hive, const TKeyPath &path) {
  if (const auto found = FindKey(hive, path.folded)) return found;
  const auto add = [&](const QString &folded, const QString &parent, const QString &name) {
    TSqliteStatement statement =
        database.Use("INSERT INTO keys(hive, path, parent, name) VALUES(?, ?, ?, ?) ON CONFLICT DO NOTHING");
    return statement.Bind(qint64(hive)).Bind(folded).Bind(parent).Bind(name).Run();
  };
  if (path.names.isEmpty()) {
    if (!add({}, RootParent, {})) return std::nullopt;
  }
  QString parent;
  for (const QString &name : path.names) {
    const QString current = parent.isEmpty() ? name.toCaseFolded() : parent + u'\\' + name.toCaseFolded();
    if (!add(current, parent, name)) return std::nullopt;
    parent = current;
  }
  return FindKey(hive, path.folded);
}

bool TRegistryStore::TPrivate::WriteData(qint64 key, const TRegistryValue &value, bool overwrites) {
  bool isNumber = false;
  const qint64 number = value.isInteger ? value.data.toLongLong(&isNumber) : 0;
  // On a conflict the row, and with it the value's place and spelling, stays.
  TSqliteStatement statement = database.Use(
      "INSERT INTO entries(key, folded, name, data) VALUES(?1, ?2, ?3, ?4) "
      "ON CONFLICT(key, folded) DO UPDATE SET data = excluded.data WHERE ?5");
  statement.Bind(key).Bind(value.name.toCaseFolded()).Bind(value.name);
  isNumber ? statement.Bind(number) : statement.Bind(value.data);
  return statement.Bind(qint64(overwrites)).Run();
}

bool TRegistryStore::TPrivate::PutValues(TRegistryHive hive, const TKeyPath &path,
                                         const QList<TRegistryValue> &values) {
  const auto key = MakeKey(hive, path);
  return key && std::ranges::all_of(values, [&](const TRegistryValue &value) { return WriteData(*key, value); });
}

bool TRegistryStore::TPrivate::RemoveKey(TRegistryHive hive, const TKeyPath &path) {
  // Below a path lies all that begins with it and a backslash; "]" is the character after the backslash.
  const QString below = path.folded.isEmpty() ? QString() : path.folded + u'\\';
  const QString end = path.folded.isEmpty() ? QString::fromUcs4(U"\U0010FFFF", 1) : path.folded + u']';
  for (const char *sql : {"DELETE FROM entries WHERE key IN (SELECT id FROM keys WHERE hive = ?1 AND "
                          "(path = ?2 OR (path >= ?3 AND path < ?4)))",
                          "DELETE FROM keys WHERE hive = ?1 AND (path = ?2 OR (path >= ?3 AND path < ?4))"}) {
    TSqliteStatement statement = database.Use(sql);
    if (!statement.Bind(qint64(hive)).Bind(path.folded).Bind(below).Bind(end).Run()) return false;
  }
  return true;
}

bool TRegistryStore::TPrivate::RemoveValues(TRegistryHive hive, const TKeyPath &path) {
  TSqliteStatement statement =
      database.Use("DELETE FROM entries WHERE key = (SELECT id FROM keys WHERE hive = ? AND path = ?)");
  return statement.Bind(qint64(hive)).Bind(path.folded).Run();
}

bool TRegistryStore::TPrivate::RemoveValue(TRegistryHive hive, const TKeyPath &path, const QString &name) {
  TSqliteStatement statement = database.Use(
      "DELETE FROM entries WHERE folded = ? AND key = "
      "(SELECT id FROM keys WHERE hive = ? AND path = ?)");
  return statement.Bind(name.toCaseFolded()).Bind(qint64(hive)).Bind(path.folded).Run();
}

TRegistryStore::TRegistryStore(const QString &filePath) : d(std::make_unique<TPrivate>(filePath)) {
  d->Open();
}

TRegistryStore::TRegistryStore(const QString &filePath, TReadOnly) : d(std::make_unique<TPrivate>(filePath)) {
  d->OpenReadOnly();
}

TRegistryStore::~TRegistryStore() {
  Flush(d->givenUp ? 0 : EndPatience);
}

QString TRegistryStore::FilePath() const {
  return d->file.Path();
}
QString TRegistryStore::SetAsideFile() const {
  return d->file.SetAsideFile();
}
bool TRegistryStore::IsWritable() const {
  return d->writable;
}
bool TRegistryStore::IsInMemory() const {
  return d->memory && !d->makeshift;
}
void TRegistryStore::SetTroubleHandler(std::function<void()> handler) {
  d->onTrouble = std::move(handler);
}

bool TRegistryStore::HasMissedReads() const {
  return d->missedReads;
}
bool TRegistryStore::IsWaiting() const {
  return !d->waiting.isEmpty();
}
bool TRegistryStore::IsRefused() const {
  return IsWaiting() && d->writeState == TState::Refused;
}

quint64 TRegistryStore::Revision() const {
  if (!d->sinceLook.isValid() || d->sinceLook.hasExpired(LookInterval)) {
    d->sinceLook.start();
    d->LookForOthers();
  }
  return d->revision;
}

bool TRegistryStore::Flush(int milliseconds) {
  const QDeadlineTimer deadline(milliseconds);
  while (!d->WriteOut()) {
    d->givenUp = deadline.hasExpired();
    if (d->givenUp) return false;
    QThread::msleep(PauseBetweenTries);
  }
  return true;
}

std::optional<bool> TRegistryStore::KnownKeyExists(TRegistryHive hive, const QString &key) const {
  const TKeyPath path(key);
  return path.names.isEmpty() ? true
                              : RegistryChanges::KeyExists(d->waiting, hive, path, d->StoredKeyExists(hive, path));
}

bool TRegistryStore::KeyExists(TRegistryHive hive, const QString &key) const {
  return KnownKeyExists(hive, key).value_or(false);
}

QStringList TRegistryStore::Subkeys(TRegistryHive hive, const QString &key) const {
  const TKeyPath path(key);
  const auto stored = d->Look([&] {
    QStringList names;
    TSqliteStatement statement = d->database.Use("SELECT name FROM keys WHERE hive = ? AND parent = ? ORDER BY id");
    statement.Bind(qint64(hive)).Bind(path.folded);
    while (statement.Step()) names.append(statement.Text(0));
    return names;
  });
  return RegistryChanges::Subkeys(d->waiting, hive, path, stored.value_or(QStringList()));
}

std::optional<QList<TRegistryValue>> TRegistryStore::KnownValues(TRegistryHive hive, const QString &key) const {
  return d->Values(hive, TKeyPath(key));
}

QList<TRegistryValue> TRegistryStore::Values(TRegistryHive hive, const QString &key) const {
  return KnownValues(hive, key).value_or(QList<TRegistryValue>());
}

std::optional<QString> TRegistryStore::Read(TRegistryHive hive, const QString &key, const QString &name) const {
  const TKeyPath path(key);
  if (!d->waiting.isEmpty()) {
    // Also where the file cannot be read what waits is known.
    const auto stored = d->StoredValues(hive, path).value_or(QList<TRegistryValue>());
    return RegistryChanges::ValueOf(*RegistryChanges::Values(d->waiting, hive, path, stored), name);
  }
  const auto stored = d->Look([&]() -> std::optional<QString> {
    TSqliteStatement statement = d->database.Use(
        "SELECT data FROM entries WHERE folded = ? AND key = "
        "(SELECT id FROM keys WHERE hive = ? AND path = ?)");
    if (!statement.Bind(name.toCaseFolded()).Bind(qint64(hive)).Bind(path.folded).Step()) return std::nullopt;
    return statement.Text(0);
  });
  return stored.value_or(std::nullopt);
}

bool TRegistryStore::CreateKey(TRegistryHive hive, const QString &key) {
  return d->Add({TRegistryChange::TKind::CreateKey, hive, TKeyPath(key)});
}

bool TRegistryStore::DeleteKey(TRegistryHive hive, const QString &key) {
  return d->Add({TRegistryChange::TKind::DeleteKey, hive, TKeyPath(key)});
}

bool TRegistryStore::Write(TRegistryHive hive, const QString &key, const QString &name, const QString &data) {
  return d->Add({TRegistryChange::TKind::Write, hive, TKeyPath(key), {{name, data}}});
}

bool TRegistryStore::WriteInteger(TRegistryHive hive, const QString &key, const QString &name, qint64 data) {
  return d->Add({TRegistryChange::TKind::Write, hive, TKeyPath(key), {Integer(name, data)}});
}

bool TRegistryStore::WriteIfAbsent(TRegistryHive hive, const QString &key, const QString &name, const QString &data) {
  return d->Add({TRegistryChange::TKind::WriteIfAbsent, hive, TKeyPath(key), {{name, data}}});
}

bool TRegistryStore::DeleteValue(TRegistryHive hive, const QString &key, const QString &name) {
  return d->Add({TRegistryChange::TKind::DeleteValue, hive, TKeyPath(key), {{name, {}}}});
}

bool TRegistryStore::ReplaceKey(TRegistryHive hive, const QString &key, const QList<TRegistryValue> &values) {
  return d->Add({TRegistryChange::TKind::ReplaceKey, hive, TKeyPath(key), values});
}

bool TRegistryStore::EditKey(TRegistryHive hive, const QString &key, const TRegistryEdit &edit) {
  return d->Add({TRegistryChange::TKind::EditKey, hive, TKeyPath(key), {}, edit});
}

bool TRegistryStore::InTransaction(const std::function<bool()> &work) {
  if (!d->MayWrite()) return false;
  {
    TRecording recording(d->waiting, d->depth);
    if (!work()) return false;
    recording.Keep();
  }
  d->WriteOut();
  return true;
}
