#include "history/url_history.h"

#include <algorithm>
#include <limits>
#include <QElapsedTimer>
#include <utility>

#include "history/history_store.h"
#include "history/visit_words.h"

namespace {

constexpr int RowsAtOnce = 250;
// The first piece comes at once, the others later and later: for a list each piece costs by itself.
constexpr qint64 FirstPause = 30;  // milliseconds, before the second piece
constexpr qint64 LongestPause = 500;

bool IsBefore(const TUrlHistoryEntry &a, const TUrlHistoryEntry &b, TUrlHistory::TKey key) {
  using TKey = TUrlHistory::TKey;
  switch (key) {
    case TKey::Title:
      return a.title.compare(b.title, Qt::CaseInsensitive) < 0;
    case TKey::Address:
      return a.address.compare(b.address, Qt::CaseInsensitive) < 0;
    case TKey::LastVisited:
      return a.lastVisited < b.lastVisited;
    case TKey::Visits:
      return a.visits < b.visits;
  }
  return false;
}

}  // namespace

TUrlHistory::TUrlHistory(THistoryStore &store, QObject *parent)
    : QObject(parent), m_store(store), m_thread(std::make_unique<THistoryThread>(store.FilePath())) {}

TUrlHistory::~TUrlHistory() {
  Cancel();
  m_thread.reset();
}

bool TUrlHistory::IsKept(const QString &address, const QString &title, const QString &text, int mode) {
  if (text.isEmpty()) return true;
  if (mode == 2 && !address.contains(text)) return false;
  if (mode == 1 && !title.contains(text)) return false;
  if (mode == 0 && !address.contains(text)) return false;
  return title.contains(text);
}

void TUrlHistory::Enumerate(const QString &text, int mode) {
  Begin([text, mode](const THistoryRow &row) { return IsKept(row.Address(), row.Title(), text, mode); },
        std::numeric_limits<qsizetype>::max());
}

void TUrlHistory::EnumerateWords(const QString &text, qsizetype limit) {
  Begin([query = VisitWords::Query(text)](
            const THistoryRow &row) { return !query.isEmpty() && VisitWords::Match(row.Words(), query); },
        limit);
}

void TUrlHistory::Cancel() {
  if (m_run != nullptr) *m_run = true;
  m_run.reset();
}

void TUrlHistory::Begin(const TMatch &match, qsizetype limit) {
  Cancel();
  m_entries.clear();
  m_hasFailed = false;
  m_limit = limit;
  m_run = std::make_shared<std::atomic_bool>(false);
  m_thread->Do([this, match, days = m_days, run = m_run](THistoryReader &reader) {
    QList<TUrlHistoryEntry> found;
    const auto hand = [&](TPiece piece) {
      QMetaObject::invokeMethod(
          this, [this, run, entries = std::exchange(found, {}), piece] { Take(run, entries, piece); },
          Qt::QueuedConnection);
    };
    const auto look = [&](const THistoryRow &row) {
      if (!match(row)) return;
      const TVisitedPage page = row.Page();
      const QDateTime expires = days > 0 ? page.lastVisit.addDays(days) : QDateTime();
      found.append({page.address, page.title, page.lastVisit, page.lastVisit, expires, page.visits});
    };
    qint64 below = std::numeric_limits<qint64>::max();
    qint64 pause = 0;
    QElapsedTimer clock;
    clock.start();
    using TWalk = THistoryReader::TWalk;
    TWalk walk = TWalk::More;
    while (walk == TWalk::More && !*run) {
      walk = reader.Walk(below, RowsAtOnce, look);
      if (walk != TWalk::More || found.isEmpty() || (pause > 0 && !clock.hasExpired(pause))) continue;
      hand(TPiece::MoreFollow);
      clock.start();
      pause = std::clamp(pause * 2, FirstPause, LongestPause);
    }
    hand(walk == TWalk::Failed ? TPiece::LastOfFailed : TPiece::Last);
  });
}

void TUrlHistory::Take(const TRun &run, const QList<TUrlHistoryEntry> &entries, TPiece piece) {
  if (run != m_run) return;
  const qsizetype before = m_entries.size();
  for (const TUrlHistoryEntry &entry : entries) {
    if (m_entries.size() >= m_limit) break;
    bool isAccepted = true;
    if (m_accept) {
      m_accept(entry.address, entry.title, entry.lastVisited, entry.lastUpdated, entry.expires, isAccepted);
      // Whoever was asked may have begun something else.
      if (run != m_run) return;
    }
    if (isAccepted) m_entries.append(entry);
  }
  if (m_entries.size() > before) Q_EMIT Found(m_entries.size() - before);
  const bool isFull = m_entries.size() >= m_limit;
  if (run != m_run || (piece == TPiece::MoreFollow && !isFull)) return;
  Cancel();
  m_hasFailed = piece == TPiece::LastOfFailed && !isFull;
  // The store knows what to do about a file that cannot be read.
  if (m_hasFailed) (void)m_store.OldestLastVisit();
  Q_EMIT Finished();
}

QList<TUrlHistoryEntry> TUrlHistory::Sorted(QList<TUrlHistoryEntry> entries, TKey key, Qt::SortOrder order) {
  std::ranges::stable_sort(entries, [&](const TUrlHistoryEntry &a, const TUrlHistoryEntry &b) {
    return order == Qt::AscendingOrder ? IsBefore(a, b, key) : IsBefore(b, a, key);
  });
  return entries;
}

void TUrlHistory::Remove(const QString &address) {
  m_store.Remove(address);
  m_entries.removeIf([&](const TUrlHistoryEntry &entry) { return entry.address == address; });
}

void TUrlHistory::Clear() {
  Cancel();
  m_entries.clear();
  m_store.Clear();
}
