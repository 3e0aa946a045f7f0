#include "history/history_writer.h"

#include <algorithm>
#include <QFileInfo>
#include <utility>

#include "history/history_schema.h"
#include "history/visit_words.h"
#include "store/private_folder.h"

namespace {

// It may wait a little for another process, but must be able to end.
constexpr TStoreFile::TPatience Patience{.first = 250, .usual = 250};
// Changes of one moment are written together.
constexpr std::chrono::milliseconds GatherTime{300};
// Doubled after each try in vain.
constexpr std::chrono::milliseconds FirstRetry{100};
constexpr std::chrono::milliseconds LongestRetry{5000};
constexpr std::chrono::milliseconds EndTime{5000};
// While another process keeps the file locked, or the disk is full, changes wait, but not without end.
constexpr qsizetype MostWaiting = 10000;
// Pages that are removed at once; what other processes want to write waits no longer than for these.
constexpr qint64 StepOfRemoval = 1000;

}  // namespace

THistoryWriter::THistoryWriter(const QString &filePath, std::function<void()> written,
                               std::function<void(THistoryTrouble)> troubled)
    : m_file(filePath, HistorySchema::Schema, Patience),
      m_written(std::move(written)),
      m_troubled(std::move(troubled)),
      m_retry(FirstRetry) {}

THistoryWriter::~THistoryWriter() {
  if (!m_givenUp) Flush(EndTime);
  {
    const std::lock_guard lock(m_mutex);
    m_stop = true;
  }
  m_wake.notify_all();
  if (m_thread.joinable()) m_thread.join();
}

void THistoryWriter::Add(THistoryChange change) {
  const std::lock_guard lock(m_mutex);
  // What is taken out must not be found any more.
  m_urgent = m_urgent || change.IsRemoval();
  m_tryNow = m_tryNow || change.IsRemoval();
  m_givenUp = false;
  m_waiting.append(std::move(change));
  if (!m_thread.joinable()) m_thread = std::thread([this] { Run(); });
  m_wake.notify_all();
}

bool THistoryWriter::Flush(std::chrono::milliseconds time) {
  std::unique_lock lock(m_mutex);
  if (!m_thread.joinable()) return true;
  m_hurry = true;
  m_tryNow = true;
  m_wake.notify_all();
  const bool done = m_idle.wait_for(lock, time, [this] { return m_waiting.isEmpty() && !m_writing; });
  m_hurry = false;
  m_givenUp = !done;
  return done;
}

QString THistoryWriter::SetAsideFile() const {
  const std::lock_guard lock(m_mutex);
  return m_setAside;
}

THistoryRemoval THistoryWriter::Removal() const {
  const std::lock_guard lock(m_mutex);
  THistoryRemoval removal = m_removal;
  removal.isGoing = m_isRemoving || std::ranges::any_of(m_waiting, &THistoryChange::IsRemoval);
  return removal;
}

void THistoryWriter::Run() {
  std::unique_lock lock(m_mutex);
  while (true) {
    m_wake.wait(lock, [this] { return m_stop || !m_waiting.isEmpty(); });
    if (m_waiting.isEmpty()) return;
    m_wake.wait_for(lock, GatherTime, [this] { return m_stop || m_hurry || m_urgent; });
    m_urgent = false;
    m_tryNow = false;
    QList<THistoryChange> changes = Next();
    m_isRemoving = std::ranges::any_of(changes, &THistoryChange::IsRemoval);
    m_writing = true;
    lock.unlock();
    const TState state = Write(changes);
    if (state == TState::Ready) m_written();
    lock.lock();
    m_writing = false;
    m_isRemoving = false;
    if (state == TState::Ready) {
      m_removal = {.done = m_removal.done + m_spanStep, .total = std::max<qint64>(m_spanTotal, 0)};
      m_retry = FirstRetry;
    } else if (state != TState::Busy && state != TState::Refused) {
      changes.removeIf([](const THistoryChange &change) { return !change.IsRemoval(); });
    }
    if ((state == TState::Ready ? m_hasMore : !changes.isEmpty()) && !m_stop) {
      const bool hasFailed = state != TState::Ready && state != TState::Busy;
      const bool isRemoval = std::ranges::any_of(changes, &THistoryChange::IsRemoval);
      m_waiting = changes + m_waiting;
      DropOldest();
      if (hasFailed && isRemoval) TellFailedRemoval(lock);
      if (state != TState::Ready) Pause(lock);
    } else {
      m_removal = {};
      m_spanTotal = -1;
    }
    // Also what stands behind a span waits no longer than that.
    m_urgent = m_urgent || m_hasMore || std::ranges::any_of(m_waiting, &THistoryChange::IsRemoval);
    if (m_waiting.isEmpty()) m_idle.notify_all();
  }
}

// Once, however often it is tried, until all is done again.
void THistoryWriter::TellFailedRemoval(TLock &lock) {
  if (std::exchange(m_removal.isFailing, true)) return;
  lock.unlock();
  m_troubled(THistoryTrouble::RemovalFails);
  lock.lock();
}

void THistoryWriter::Pause(TLock &lock) {
  // Whoever waits for it must not be kept waiting for a disk that takes things again.
  const std::chrono::milliseconds pause = m_hurry ? FirstRetry : m_retry;
  m_retry = std::min(m_retry * 2, LongestRetry);
  m_wake.wait_for(lock, pause, [this] { return m_stop || m_tryNow; });
}

// Visits are dropped, but never what the user wants to be gone.
void THistoryWriter::DropOldest() {
  qsizetype surplus = m_waiting.size() - MostWaiting;
  if (surplus <= 0) return;
  m_waiting.removeIf([&](const THistoryChange &change) { return !change.IsRemoval() && surplus-- > 0; });
}

// What is written in one transaction: a span goes by itself, in steps.
QList<THistoryChange> THistoryWriter::Next() {
  const auto isSpan = [](const THistoryChange &change) { return change.kind == THistoryChange::TKind::RemoveSpan; };
  const auto first = std::ranges::find_if(m_waiting, isSpan);
  const qsizetype count = std::max<qsizetype>(first - m_waiting.begin(), 1);
  QList<THistoryChange> next = m_waiting.mid(0, count);
  m_waiting.remove(0, count);
  return next;
}

TStoreFile::TState THistoryWriter::Write(const QList<THistoryChange> &changes) {
  for (const THistoryChange &change : changes) {
    if (change.kind == THistoryChange::TKind::Damaged) MoveAside(change.file);
  }
  TState state = WriteOnce(changes);
  if (state == TState::Damaged) {
    MoveAside(m_file.Identity());
    state = WriteOnce(changes);
  }
  return state;
}

TStoreFile::TState THistoryWriter::WriteOnce(const QList<THistoryChange> &changes) {
  m_hasMore = false;
  m_spanStep = 0;
  MakePrivateFolder(QFileInfo(m_file.Path()).absolutePath());
  if (const TState state = m_file.Ensure(true); state != TState::Ready) return state;
  TSqliteConnection &database = m_file.Database();
  if (const int code = database.Execute("BEGIN IMMEDIATE"); code != 0) return TStoreFile::StateOf(code);
  bool isGood = true;
  for (const THistoryChange &change : changes) isGood = isGood && WriteOne(change);
  if (isGood && database.Execute("COMMIT") == 0) return TState::Ready;
  const TState state = TStoreFile::StateOf(database.Code());
  database.Execute("ROLLBACK");
  if (database.DamageSeen()) return TState::Damaged;
  return state == TState::Busy || state == TState::Refused ? state : TState::Unavailable;
}

bool THistoryWriter::WriteOne(const THistoryChange &change) {
  using TKind = THistoryChange::TKind;
  TSqliteConnection &database = m_file.Database();
  switch (change.kind) {
    case TKind::Visit: {
      TSqliteStatement statement = database.Use(
          "INSERT INTO visits(address, title, first, last, count, words) VALUES(?1, ?2, ?3, ?3, 1, ?4) "
          "ON CONFLICT(address) DO UPDATE SET count = count + 1, last = max(last, excluded.last), "
          "title = iif(?2 = '', title, ?2), words = iif(?2 = '', words, ?4)");
      const QString words = VisitWords::Of(change.address, change.title);
      return statement.Bind(change.address).Bind(change.title).Bind(change.when).Bind(words).Run();
    }
    case TKind::Title: {
      TSqliteStatement statement = database.Use("UPDATE visits SET title = ?1, words = ?2 WHERE address = ?3");
      return statement.Bind(change.title).Bind(VisitWords::Of(change.address, change.title)).Bind(change.address).Run();
    }
    case TKind::Remove:
      return database.Use("DELETE FROM visits WHERE address = ?").Bind(change.address).Run();
    case TKind::RemoveSpan:
      return WriteSpan(change);
    case TKind::RemoveOld: {
      TSqliteStatement statement =
          database.Use("DELETE FROM visits WHERE id IN (SELECT id FROM visits WHERE last < ? ORDER BY last LIMIT ?)");
      return statement.Bind(change.until).Bind(change.most).Run();
    }
    case TKind::Clear:
      return database.Execute(HistorySchema::RemoveAll) == 0;
    case TKind::Damaged:
    case TKind::Upgrade:
      break;
  }
  return true;
}

bool THistoryWriter::WriteSpan(const THistoryChange &change) {
  TSqliteConnection &database = m_file.Database();
  if (m_spanTotal < 0) {
    TSqliteStatement count =
        database.Use("SELECT count(*) FROM visits WHERE last >= ?1 AND last < ?2 AND (?3 = '' OR site = ?3)");
    if (!count.Bind(change.when).Bind(change.until).Bind(change.address).Step()) return false;
    m_spanTotal = count.Integer(0);
  }
  {
    TSqliteStatement statement = database.Use(
        "DELETE FROM visits WHERE id IN "
        "(SELECT id FROM visits WHERE last >= ?1 AND last < ?2 AND (?3 = '' OR site = ?3) LIMIT ?4)");
    statement.Bind(change.when).Bind(change.until).Bind(change.address).Bind(StepOfRemoval);
    if (!statement.Run()) return false;
  }
  m_spanStep = database.Changes();
  m_hasMore = m_spanStep == StepOfRemoval;
  return true;
}

void THistoryWriter::MoveAside(const TStoreFile::TIdentity &damaged) {
  if (!m_file.SetAside(damaged)) return;
  {
    const std::lock_guard lock(m_mutex);
    // Another process may have done it, who tells its own user.
    if (std::exchange(m_setAside, m_file.SetAsideFile()) == m_file.SetAsideFile()) return;
  }
  m_troubled(THistoryTrouble::SetAside);
}
