#include "history/history_store.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QSet>
#include <thread>

#include "history/visit_words.h"
#include "store/private_folder.h"
#include "store/store_file.h"

namespace {

using TState = TStoreFile::TState;

// `search` holds, for every word, the visits it stands in, and nothing else: what a word stands beside is checked on
// the words of the few pages that are found. The words of a page come last in its row because most readers do not want
// them.
constexpr const char *Tables = R"(
  CREATE TABLE visits(id INTEGER PRIMARY KEY, address TEXT NOT NULL UNIQUE, title TEXT NOT NULL, first INTEGER NOT NULL,
                      last INTEGER NOT NULL, count INTEGER NOT NULL, words TEXT NOT NULL);
  CREATE INDEX visits_by_use ON visits(count DESC, last DESC);
  CREATE VIRTUAL TABLE search USING fts5(words, content = 'visits', content_rowid = 'id', detail = none,
                                         columnsize = 0,
                                         tokenize = "unicode61 remove_diacritics 0 categories 'L* N* M* Co'");
  CREATE TRIGGER visits_added AFTER INSERT ON visits BEGIN
    INSERT INTO search(rowid, words) VALUES(new.id, new.words);
  END;
  CREATE TRIGGER visits_removed AFTER DELETE ON visits BEGIN
    INSERT INTO search(search, rowid, words) VALUES('delete', old.id, old.words);
  END;
  CREATE TRIGGER visits_changed AFTER UPDATE OF words ON visits WHEN old.words <> new.words BEGIN
    INSERT INTO search(search, rowid, words) VALUES('delete', old.id, old.words);
    INSERT INTO search(rowid, words) VALUES(new.id, new.words);
  END;
  PRAGMA user_version = 1;
)";

constexpr const char *Queries[] = {"SELECT id, address, title, first, last, count, words FROM visits LIMIT 1"};
constexpr TStoreFile::TSchema Schema{1, Tables, Queries};
// The writer may wait a little for another process, but must be able to end; readers are called many times
// while somebody types.
constexpr TStoreFile::TPatience WriterPatience{.first = 250, .usual = 250};
constexpr TStoreFile::TPatience ReaderPatience{.first = 50, .usual = 3};

constexpr qsizetype LongestAddress = 8192;
constexpr qsizetype LongestTitle = 1024;
// Changes of one moment are written together.
constexpr std::chrono::milliseconds GatherTime{300};
constexpr std::chrono::milliseconds RetryTime{100};
constexpr std::chrono::milliseconds EndTime{5000};
// While another process keeps the file locked, or the disk is full, changes wait, but not without end.
constexpr qsizetype MostWaiting = 10000;

// How many pages are looked through at each keystroke.
constexpr int MostUsedLookedAt = 1000;
constexpr int FoundLookedAt = 1000;
constexpr int NewestLookedAt = 5000;

// Pages from all over the history tell how common a word is. The index is asked for words that are rarer than this
// share of them: for a common one it would go through its whole list, and a short look at the pages finds it anyway.
// A sample is a few rows at each of many places, since it is the places that cost.
constexpr int SamplePlaces = 40;
constexpr int SampleRows = 12;
constexpr qsizetype MostHitsOfRareWord = 10;
constexpr qint64 SampleLife = 60000;  // milliseconds

constexpr std::array UnrecordedSchemes{"about", "zarvela", "javascript", "data", "blob", "view-source"};

struct TChange {
  // Damaged: a reader has found this file damaged.
  enum class TKind { Visit, Title, Remove, Clear, Damaged };
  TKind kind = TKind::Visit;
  QString address{};
  QString title{};
  qint64 when = 0;  // milliseconds since 1970
  TStoreFile::TIdentity file{};
};

QString Cleaned(const QString &title) {
  return title.simplified().left(LongestTitle);
}

// A row that begins with address, title, first and last visit, count.
TVisitedPage PageOf(const TSqliteStatement &row) {
  return {row.Text(0), row.Text(1), QDateTime::fromMSecsSinceEpoch(row.Integer(2)),
          QDateTime::fromMSecsSinceEpoch(row.Integer(3)), row.Integer(4)};
}

bool IsMoreUsed(const TVisitedPage &a, const TVisitedPage &b) {
  return a.visits != b.visits ? a.visits > b.visits : a.lastVisit > b.lastVisit;
}

}  // namespace

// Takes changes from the owner's thread and writes them on its own.
class THistoryStore::TWriter final {
 public:
  explicit TWriter(const QString &filePath) : m_file(filePath, Schema, WriterPatience) {}
  ~TWriter() {
    if (!m_givenUp) Flush(EndTime);
    {
      const std::lock_guard lock(m_mutex);
      m_stop = true;
    }
    m_wake.notify_all();
    if (m_thread.joinable()) m_thread.join();
  }
  TWriter(const TWriter &) = delete;
  TWriter &operator=(const TWriter &) = delete;

  void Add(TChange change) {
    const std::lock_guard lock(m_mutex);
    // What is taken out must not be found any more.
    m_urgent = m_urgent || change.kind == TChange::TKind::Remove || change.kind == TChange::TKind::Clear;
    m_givenUp = false;
    m_waiting.append(std::move(change));
    if (!m_thread.joinable()) m_thread = std::thread([this] { Run(); });
    m_wake.notify_all();
  }

  bool Flush(std::chrono::milliseconds time) {
    std::unique_lock lock(m_mutex);
    if (!m_thread.joinable()) return true;
    m_hurry = true;
    m_wake.notify_all();
    const bool done = m_idle.wait_for(lock, time, [this] { return m_waiting.isEmpty() && !m_writing; });
    m_hurry = false;
    m_givenUp = !done;
    return done;
  }

  [[nodiscard]] QString SetAsideFile() {
    const std::lock_guard lock(m_mutex);
    return m_setAside;
  }

 private:
  void Run();
  [[nodiscard]] TState Write(const QList<TChange> &changes);
  [[nodiscard]] TState WriteOnce(const QList<TChange> &changes);
  [[nodiscard]] bool WriteOne(const TChange &change);
  void MoveAside(const TStoreFile::TIdentity &damaged);

  TStoreFile m_file;  // the thread's alone
  std::mutex m_mutex;
  std::condition_variable m_wake;
  std::condition_variable m_idle;
  // All below under the mutex.
  QList<TChange> m_waiting;
  QString m_setAside;
  bool m_writing = false;
  bool m_hurry = false;
  bool m_urgent = false;
  bool m_stop = false;
  bool m_givenUp = false;  // the last flush has waited in vain
  std::thread m_thread;
};

void THistoryStore::TWriter::Run() {
  std::unique_lock lock(m_mutex);
  while (true) {
    m_wake.wait(lock, [this] { return m_stop || !m_waiting.isEmpty(); });
    if (m_waiting.isEmpty()) return;
    m_wake.wait_for(lock, GatherTime, [this] { return m_stop || m_hurry || m_urgent; });
    m_urgent = false;
    QList<TChange> changes = std::exchange(m_waiting, {});
    m_writing = true;
    lock.unlock();
    const TState state = Write(changes);
    lock.lock();
    m_writing = false;
    if ((state == TState::Busy || state == TState::Refused) && !m_stop) {
      m_waiting = changes + m_waiting;
      if (m_waiting.size() > MostWaiting) m_waiting.remove(0, m_waiting.size() - MostWaiting);
      m_wake.wait_for(lock, RetryTime, [this] { return m_stop; });
    }
    if (m_waiting.isEmpty()) m_idle.notify_all();
  }
}

TState THistoryStore::TWriter::Write(const QList<TChange> &changes) {
  for (const TChange &change : changes) {
    if (change.kind == TChange::TKind::Damaged) MoveAside(change.file);
  }
  TState state = WriteOnce(changes);
  if (state == TState::Damaged) {
    MoveAside(m_file.Identity());
    state = WriteOnce(changes);
  }
  return state;
}

TState THistoryStore::TWriter::WriteOnce(const QList<TChange> &changes) {
  MakePrivateFolder(QFileInfo(m_file.Path()).absolutePath());
  if (const TState state = m_file.Ensure(true); state != TState::Ready) return state;
  TSqliteConnection &database = m_file.Database();
  if (const int code = database.Execute("BEGIN IMMEDIATE"); code != 0) return TStoreFile::StateOf(code);
  bool isGood = true;
  for (const TChange &change : changes) isGood = isGood && WriteOne(change);
  if (isGood && database.Execute("COMMIT") == 0) return TState::Ready;
  const TState state = TStoreFile::StateOf(database.Code());
  database.Execute("ROLLBACK");
  if (database.DamageSeen()) return TState::Damaged;
  return state == TState::Busy || state == TState::Refused ? state : TState::Unavailable;
}

bool THistoryStore::TWriter::WriteOne(const TChange &change) {
  TSqliteConnection &database = m_file.Database();
  switch (change.kind) {
    case TChange::TKind::Visit: {
      TSqliteStatement statement = database.Use(
          "INSERT INTO visits(address, title, first, last, count, words) VALUES(?1, ?2, ?3, ?3, 1, ?4) "
          "ON CONFLICT(address) DO UPDATE SET count = count + 1, last = max(last, excluded.last), "
          "title = iif(?2 = '', title, ?2), words = iif(?2 = '', words, ?4)");
      const QString words = VisitWords::Of(change.address, change.title);
      return statement.Bind(change.address).Bind(change.title).Bind(change.when).Bind(words).Run();
    }
    case TChange::TKind::Title: {
      TSqliteStatement statement = database.Use("UPDATE visits SET title = ?1, words = ?2 WHERE address = ?3");
      return statement.Bind(change.title).Bind(VisitWords::Of(change.address, change.title)).Bind(change.address).Run();
    }
    case TChange::TKind::Remove:
      return database.Use("DELETE FROM visits WHERE address = ?").Bind(change.address).Run();
    case TChange::TKind::Clear:
      return database.Use("DELETE FROM visits").Run();
    case TChange::TKind::Damaged:
      break;
  }
  return true;
}

void THistoryStore::TWriter::MoveAside(const TStoreFile::TIdentity &damaged) {
  if (!m_file.SetAside(damaged)) return;
  const std::lock_guard lock(m_mutex);
  m_setAside = m_file.SetAsideFile();
}

class THistoryStore::TReader final {
 public:
  explicit TReader(const QString &filePath) : m_file(filePath, Schema, ReaderPatience) {}

  // Null when there is nothing to read; a file that is damaged is then told to the writer.
  [[nodiscard]] TSqliteConnection *Database(TWriter &writer) {
    const TState state = m_file.Ensure(false);
    if (state == TState::Damaged) {
      m_file.Close();
      writer.Add({.kind = TChange::TKind::Damaged, .file = m_file.Identity()});
    }
    return state == TState::Ready ? &m_file.Database() : nullptr;
  }
  // The index's expression for the rarest word of the query; empty when all are common. Only the last word of a part
  // may be unfinished.
  [[nodiscard]] QString RarestWord(TSqliteConnection &database, const QStringList &query);

 private:
  void TakeSample(TSqliteConnection &database);

  TStoreFile m_file;
  QStringList m_sample;  // the words of pages from all over the history
  QElapsedTimer m_sampleAge;
};

QString THistoryStore::TReader::RarestWord(TSqliteConnection &database, const QStringList &query) {
  if (!m_sampleAge.isValid() || m_sampleAge.hasExpired(SampleLife)) TakeSample(database);
  QString rarest;
  qsizetype fewest = MostHitsOfRareWord + 1;
  qsizetype longest = 0;
  for (const QString &part : query) {
    const QStringList words = part.split(u' ', Qt::SkipEmptyParts);
    for (qsizetype i = 0; i < words.size(); ++i) {
      const bool isLast = i + 1 == words.size();
      const QString text = u' ' + words.at(i);
      const qsizetype hits = std::ranges::count_if(m_sample, [&](const QString &page) { return page.contains(text); });
      if (hits > fewest || (hits == fewest && text.size() <= longest) || hits > MostHitsOfRareWord) continue;
      fewest = hits;
      longest = text.size();
      rarest = u'"' + words.at(i) + (isLast ? QStringLiteral("\"*") : QStringLiteral("\""));
    }
  }
  return rarest;
}

void THistoryStore::TReader::TakeSample(TSqliteConnection &database) {
  m_sample.clear();
  m_sampleAge.start();
  qint64 first = 0;
  qint64 last = -1;
  {
    TSqliteStatement row = database.Use("SELECT min(id), max(id) FROM visits");
    if (row.Step()) {
      first = row.Integer(0);
      last = row.Integer(1);
    }
  }
  for (int i = 0; i < SamplePlaces && first <= last; ++i) {
    TSqliteStatement rows = database.Use("SELECT words FROM visits WHERE id >= ? ORDER BY id LIMIT ?");
    rows.Bind(first + (last - first) * i / SamplePlaces).Bind(SampleRows);
    while (rows.Step()) m_sample.append(rows.Text(0));
  }
}

THistoryStore::THistoryStore(const QString &filePath)
    : m_writer(std::make_unique<TWriter>(filePath)), m_reader(std::make_unique<TReader>(filePath)) {}

THistoryStore::~THistoryStore() = default;

bool THistoryStore::IsRecorded(const QString &address) {
  const qsizetype colon = address.indexOf(u':');
  if (colon <= 0 || address.size() > LongestAddress) return false;
  const QString scheme = address.left(colon).toLower();
  return std::ranges::none_of(UnrecordedSchemes, [&](const char *own) { return scheme == QLatin1String(own); });
}

void THistoryStore::AddVisit(const QString &address, const QString &title, const QDateTime &when) {
  if (!IsRecorded(address)) return;
  m_writer->Add({TChange::TKind::Visit, address, Cleaned(title), when.toMSecsSinceEpoch()});
}

void THistoryStore::SetTitle(const QString &address, const QString &title) {
  if (IsRecorded(address)) m_writer->Add({TChange::TKind::Title, address, Cleaned(title)});
}

void THistoryStore::Remove(const QString &address) {
  m_writer->Add({TChange::TKind::Remove, address});
}

void THistoryStore::Clear() {
  m_writer->Add({TChange::TKind::Clear});
}

bool THistoryStore::Flush(int milliseconds) {
  return m_writer->Flush(std::chrono::milliseconds(milliseconds));
}

QList<TVisitedPage> THistoryStore::Search(const QString &text, int limit) const {
  const QStringList query = VisitWords::Query(text);
  if (query.isEmpty() || limit <= 0) return {};
  TSqliteConnection *database = m_reader->Database(*m_writer);
  if (database == nullptr) return {};

  QList<TVisitedPage> pages;
  QSet<qint64> seen;
  // In the order of the answer: once it is full nothing better can follow.
  const auto gather = [&](TSqliteStatement &rows, qsizetype most) {
    while (pages.size() < most && rows.Step()) {
      if (!VisitWords::Match(rows.Text(6), query) || seen.contains(rows.Integer(5))) continue;
      seen.insert(rows.Integer(5));
      pages.append(PageOf(rows));
    }
  };
  {
    TSqliteStatement rows = database->Use(
        "SELECT address, title, first, last, count, id, words FROM visits ORDER BY count DESC, last DESC LIMIT ?");
    gather(rows.Bind(MostUsedLookedAt), limit);
  }
  if (pages.size() < limit) {
    if (const QString word = m_reader->RarestWord(*database, query); !word.isEmpty()) {
      TSqliteStatement rows = database->Use(
          "SELECT address, title, first, last, count, id, visits.words FROM search JOIN visits ON id = search.rowid "
          "WHERE search MATCH ? ORDER BY search.rowid DESC LIMIT ?");
      gather(rows.Bind(word).Bind(FoundLookedAt), MostUsedLookedAt + FoundLookedAt);
    } else {
      TSqliteStatement rows =
          database->Use("SELECT address, title, first, last, count, id, words FROM visits ORDER BY id DESC LIMIT ?");
      gather(rows.Bind(NewestLookedAt), MostUsedLookedAt + NewestLookedAt);
    }
    std::ranges::stable_sort(pages, IsMoreUsed);
  }
  return pages.mid(0, limit);
}

std::optional<TVisitedPage> THistoryStore::Find(const QString &address) const {
  TSqliteConnection *database = m_reader->Database(*m_writer);
  if (database == nullptr) return std::nullopt;
  TSqliteStatement row = database->Use("SELECT address, title, first, last, count FROM visits WHERE address = ?");
  if (!row.Bind(address).Step()) return std::nullopt;
  return PageOf(row);
}

qint64 THistoryStore::Count() const {
  TSqliteConnection *database = m_reader->Database(*m_writer);
  if (database == nullptr) return 0;
  TSqliteStatement row = database->Use("SELECT count(*) FROM visits");
  return row.Step() ? row.Integer(0) : 0;
}

QString THistoryStore::SetAsideFile() const {
  return m_writer->SetAsideFile();
}
