#include "store/registry_store.h"

#include <sqlite3.h>

#include <QFileInfo>
#include <utility>

#include "store/private_folder.h"
#include "store/store_file.h"

namespace {

using TState = TStoreFile::TState;
using TMode = TStoreFile::TMode;

// Long enough for any list to be written, short enough to be sat out.
constexpr TStoreFile::TPatience Patience{.usual = 3000, .retry = 50};

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

// A key path in its parts, with empty ones left out.
struct TKeyPath {
  QStringList names;
  QString folded;

  explicit TKeyPath(const QString &key)
      : names(key.split(u'\\', Qt::SkipEmptyParts)), folded(names.join(u'\\').toCaseFolded()) {}
};

}  // namespace

struct TRegistryStore::TPrivate {
  TStoreFile file;
  TSqliteConnection &database = file.Database();
  int depth = 0;
  bool ready = false;
  bool writable = false;
  bool memory = false;
  std::function<void()> onTrouble;

  explicit TPrivate(const QString &filePath) : file(QFileInfo(filePath).absoluteFilePath(), Schema, Patience) {}

  void Open();
  void OpenReadOnly();
  [[nodiscard]] TState BeginAnew();
  void UseMemory();
  bool EnsureReady();

  [[nodiscard]] std::optional<qint64> FindKey(TRegistryHive hive, const QString &foldedPath);
  std::optional<qint64> MakeKey(TRegistryHive hive, const TKeyPath &path);
  bool WriteData(qint64 key, const QString &name, const QString &data, std::optional<qint64> number);
  bool RemoveKey(TRegistryHive hive, const TKeyPath &path);

  template <typename TWork>
  bool Transact(TWork work);
};

namespace {

// One level of a transaction; what was not committed is undone.
class TTransaction final {
 public:
  TTransaction(TSqliteConnection &database, int &depth) : m_database(database), m_depth(depth) {
    // SQLite ends the whole transaction by itself on some errors (disk full); what follows must not be written alone.
    if (m_depth > 0 && !m_database.InTransaction()) return;
    m_begun = m_database.Execute(m_depth == 0 ? "BEGIN IMMEDIATE" : "SAVEPOINT level") == SQLITE_OK;
    if (m_begun) ++m_depth;
  }
  ~TTransaction() {
    if (!m_begun) return;
    --m_depth;
    if (m_committed || !m_database.InTransaction()) return;
    m_database.Execute(m_depth == 0 ? "ROLLBACK" : "ROLLBACK TO level; RELEASE level");
  }
  TTransaction(const TTransaction &) = delete;
  TTransaction &operator=(const TTransaction &) = delete;

  [[nodiscard]] bool IsBegun() const { return m_begun; }
  bool Commit() {
    m_committed =
        m_database.InTransaction() && m_database.Execute(m_depth == 1 ? "COMMIT" : "RELEASE level") == SQLITE_OK;
    return m_committed;
  }

 private:
  TSqliteConnection &m_database;
  int &m_depth;
  bool m_begun = false;
  bool m_committed = false;
};

}  // namespace

template <typename TWork>
bool TRegistryStore::TPrivate::Transact(TWork work) {
  if (!EnsureReady() || !writable) return false;
  TTransaction transaction(database, depth);
  return transaction.IsBegun() && work() && transaction.Commit();
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
  }
  OpenReadOnly();
}

void TRegistryStore::TPrivate::OpenReadOnly() {
  writable = false;
  ready = file.Open(TMode::ReadOnly) == TState::Ready;
  // With a log of recent writes beside it the file alone may be inconsistent, so it is not read without the log.
  if (!ready && QFileInfo(file.Path() + "-wal").size() == 0) ready = file.Open(TMode::Immutable) == TState::Ready;
  if (!ready) UseMemory();
}

TState TRegistryStore::TPrivate::BeginAnew() {
  return file.SetAside(file.Identity()) ? file.Open(TMode::ReadWrite) : TState::Unavailable;
}

void TRegistryStore::TPrivate::UseMemory() {
  memory = true;
  ready = file.Open(TMode::Memory) == TState::Ready;
  writable = ready;
}

bool TRegistryStore::TPrivate::EnsureReady() {
  if (depth > 0 || !writable || memory) return ready;
  TState state = file.Ensure(true);
  const bool isDamaged = state == TState::Damaged;
  if (isDamaged) state = BeginAnew();
  ready = state == TState::Ready;
  if (!ready && state != TState::Busy) UseMemory();
  if ((isDamaged || memory) && onTrouble) onTrouble();
  return ready;
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

bool TRegistryStore::TPrivate::WriteData(qint64 key, const QString &name, const QString &data,
                                         std::optional<qint64> number) {
  // On a conflict the row, and with it the value's place and spelling, stays.
  TSqliteStatement statement = database.Use(
      "INSERT INTO entries(key, folded, name, data) VALUES(?, ?, ?, ?) "
      "ON CONFLICT(key, folded) DO UPDATE SET data = excluded.data");
  statement.Bind(key).Bind(name.toCaseFolded()).Bind(name);
  return number ? statement.Bind(*number).Run() : statement.Bind(data).Run();
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

TRegistryStore::TRegistryStore(const QString &filePath) : d(std::make_unique<TPrivate>(filePath)) {
  d->Open();
}

TRegistryStore::TRegistryStore(const QString &filePath, TReadOnly) : d(std::make_unique<TPrivate>(filePath)) {
  d->OpenReadOnly();
}

TRegistryStore::~TRegistryStore() = default;

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
  return d->memory;
}
void TRegistryStore::SetTroubleHandler(std::function<void()> handler) {
  d->onTrouble = std::move(handler);
}

bool TRegistryStore::KeyExists(TRegistryHive hive, const QString &key) const {
  const TKeyPath path(key);
  return path.names.isEmpty() || (d->EnsureReady() && d->FindKey(hive, path.folded).has_value());
}

bool TRegistryStore::CreateKey(TRegistryHive hive, const QString &key) {
  return d->Transact([&] { return d->MakeKey(hive, TKeyPath(key)).has_value(); });
}

bool TRegistryStore::DeleteKey(TRegistryHive hive, const QString &key) {
  return d->Transact([&] { return d->RemoveKey(hive, TKeyPath(key)); });
}

QStringList TRegistryStore::Subkeys(TRegistryHive hive, const QString &key) const {
  QStringList names;
  if (!d->EnsureReady()) return names;
  TSqliteStatement statement = d->database.Use("SELECT name FROM keys WHERE hive = ? AND parent = ? ORDER BY id");
  statement.Bind(qint64(hive)).Bind(TKeyPath(key).folded);
  while (statement.Step()) names.append(statement.Text(0));
  return names;
}

QList<TRegistryValue> TRegistryStore::Values(TRegistryHive hive, const QString &key) const {
  QList<TRegistryValue> values;
  if (!d->EnsureReady()) return values;
  TSqliteStatement statement = d->database.Use(
      "SELECT entries.name, data FROM entries JOIN keys ON keys.id = entries.key "
      "WHERE hive = ? AND path = ? ORDER BY entries.id");
  statement.Bind(qint64(hive)).Bind(TKeyPath(key).folded);
  while (statement.Step()) {
    const bool isInteger = statement.IsInteger(1);
    values.append({statement.Text(0), statement.Text(1), isInteger});
  }
  return values;
}

std::optional<QString> TRegistryStore::Read(TRegistryHive hive, const QString &key, const QString &name) const {
  if (!d->EnsureReady()) return std::nullopt;
  TSqliteStatement statement = d->database.Use(
      "SELECT data FROM entries WHERE folded = ? AND key = "
      "(SELECT id FROM keys WHERE hive = ? AND path = ?)");
  if (!statement.Bind(name.toCaseFolded()).Bind(qint64(hive)).Bind(TKeyPath(key).folded).Step()) return std::nullopt;
  return statement.Text(0);
}

bool TRegistryStore::Write(TRegistryHive hive, const QString &key, const QString &name, const QString &data) {
  return d->Transact([&] {
    const auto id = d->MakeKey(hive, TKeyPath(key));
    return id && d->WriteData(*id, name, data, std::nullopt);
  });
}

bool TRegistryStore::WriteInteger(TRegistryHive hive, const QString &key, const QString &name, qint64 data) {
  return d->Transact([&] {
    const auto id = d->MakeKey(hive, TKeyPath(key));
    return id && d->WriteData(*id, name, {}, data);
  });
}

bool TRegistryStore::DeleteValue(TRegistryHive hive, const QString &key, const QString &name) {
  return d->Transact([&] {
    TSqliteStatement statement = d->database.Use(
        "DELETE FROM entries WHERE folded = ? AND key = "
        "(SELECT id FROM keys WHERE hive = ? AND path = ?)");
    return statement.Bind(name.toCaseFolded()).Bind(qint64(hive)).Bind(TKeyPath(key).folded).Run();
  });
}

bool TRegistryStore::ReplaceKey(TRegistryHive hive, const QString &key, const QList<TRegistryValue> &values) {
  return d->Transact([&] {
    const TKeyPath path(key);
    if (!d->RemoveKey(hive, path)) return false;
    if (values.isEmpty()) return true;
    const auto id = d->MakeKey(hive, path);
    if (!id) return false;
    for (const TRegistryValue &value : values) {
      bool isNumber = false;
      const qint64 number = value.isInteger ? value.data.toLongLong(&isNumber) : 0;
      if (!d->WriteData(*id, value.name, value.data, isNumber ? std::optional(number) : std::nullopt)) return false;
    }
    return true;
  });
}

bool TRegistryStore::InTransaction(const std::function<bool()> &work) {
  return d->Transact(work);
}
