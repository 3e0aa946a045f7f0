#pragma once

#include <atomic>
#include <functional>
#include <optional>
#include <QList>
#include <QStringList>

#include "history/history_periods.h"
#include "history/history_store.h"
#include "store/store_file.h"

class TSqliteStatement;

// In which order pages are told.
enum class THistoryOrder { LastVisit, MostVisited };

// A page as Walk comes by: only what is asked for is read.
class THistoryRow final {
 public:
  explicit THistoryRow(const TSqliteStatement &row) : m_row(row) {}
  [[nodiscard]] QString Address() const;
  [[nodiscard]] QString Title() const;
  [[nodiscard]] QString Words() const;  // see VisitWords
  [[nodiscard]] TVisitedPage Page() const;

 private:
  const TSqliteStatement &m_row;
};

// Reads a history's file for lists and trees, piece by piece, for a thread of its own. It makes nothing, mends nothing
// and tells nobody: that is the store's. What could not be read (the file is locked, damaged, or of an earlier version
// still) is told as nothing at all; a file that is not there yet holds no pages.
class THistoryReader final {
 public:
  explicit THistoryReader(const QString &filePath);

  // Those that hold any pages, the latest first.
  [[nodiscard]] std::optional<QList<THistoryPeriod>> Periods(const QDate &today, Qt::DayOfWeek firstDayOfWeek);
  // Of the pages of a span, in alphabetical order. Looks at all of these pages, so that it may take a second for a
  // million; nothing when it was stopped meanwhile.
  [[nodiscard]] std::optional<QStringList> Sites(const THistorySpan &span);
  // At most `limit` pages of a span, beginning behind `after`, one that was told before.
  [[nodiscard]] std::optional<QList<TVisitedPage>> Pages(const THistorySpan &span, THistoryOrder order, int limit,
                                                         const std::optional<TVisitedPage> &after = {});
  enum class TWalk {
    More,
    End,     // also when it was stopped
    Failed,  // what comes next cannot be read
  };
  // Goes through at most `rows` pages, those that were visited first last, beginning below `below`, which is then where
  // to go on; at first it is the largest number.
  [[nodiscard]] TWalk Walk(qint64 &below, int rows, const std::function<void(const THistoryRow &)> &look);

  // From any thread: what is at work ends soon and is not to be used.
  void Stop() { m_isStopped = true; }
  [[nodiscard]] bool IsStopped() const { return m_isStopped; }

 private:
  enum class TAccess { Ready, NothingThere, Unreadable };
  [[nodiscard]] TAccess Ensure();
  [[nodiscard]] bool Gather(TSqliteStatement &rows, int limit, QList<TVisitedPage> &pages) const;

  TStoreFile m_file;
  std::atomic_bool m_isStopped = false;
};
