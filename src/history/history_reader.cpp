#include "history/history_reader.h"

#include <algorithm>
#include <QFileInfo>
#include <QSet>

#include "history/history_schema.h"

namespace {

using TState = TStoreFile::TState;

// Nobody waits for it but its own thread.
constexpr TStoreFile::TPatience Patience{.first = 250, .usual = 250};
// Periods of more than a century are damage.
constexpr qsizetype MostPeriods = 1200;
constexpr int RowsAtOnce = 5000;

}  // namespace

QString THistoryRow::Address() const {
  return m_row.Text(0);
}

QString THistoryRow::Title() const {
  return m_row.Text(1);
}

QString THistoryRow::Words() const {
  return m_row.Text(HistorySchema::NextColumn);
}

TVisitedPage THistoryRow::Page() const {
  return HistorySchema::PageOf(m_row);
}

THistoryReader::THistoryReader(const QString &filePath) : m_file(filePath, HistorySchema::Schema, Patience) {}

THistoryReader::TAccess THistoryReader::Ensure() {
  if (!QFileInfo::exists(m_file.Path())) return TAccess::NothingThere;
  const TState state = m_file.Ensure(false);
  if (state == TState::Damaged) m_file.Close();
  return state == TState::Ready ? TAccess::Ready : TAccess::Unreadable;
}

std::optional<QList<THistoryPeriod>> THistoryReader::Periods(const QDate &today, Qt::DayOfWeek firstDayOfWeek) {
  QList<THistoryPeriod> periods;
  if (const TAccess access = Ensure(); access != TAccess::Ready) {
    return access == TAccess::NothingThere ? std::optional(periods) : std::nullopt;
  }
  qint64 until = std::numeric_limits<qint64>::max();
  while (periods.size() < MostPeriods && !IsStopped()) {
    TSqliteStatement row = m_file.Database().Use("SELECT max(last) FROM visits WHERE last < ?");
    if (!row.Bind(until).Step()) return std::nullopt;
    if (!row.IsInteger(0)) break;
    periods.append(THistoryPeriod::Of(row.Integer(0), today, firstDayOfWeek));
    const qint64 from = periods.last().From();
    if (from >= until) break;
    until = from;
  }
  return periods;
}

std::optional<QStringList> THistoryReader::Sites(const THistorySpan &span) {
  if (const TAccess access = Ensure(); access != TAccess::Ready) {
    return access == TAccess::NothingThere ? std::optional(QStringList()) : std::nullopt;
  }
  QSet<QString> sites;
  qint64 last = span.until - 1;
  qint64 lastId = -1;
  while (true) {
    // In small pieces, none of which holds a snapshot of the file for long.
    TSqliteStatement rows = m_file.Database().Use(
        "SELECT site, last, id FROM visits WHERE last >= ?1 AND last <= ?2 AND (last < ?2 OR id > ?3) "
        "ORDER BY last DESC, id LIMIT ?4");
    rows.Bind(span.from).Bind(last).Bind(lastId).Bind(RowsAtOnce);
    int count = 0;
    while (rows.Step()) {
      ++count;
      sites.insert(rows.Text(0));
      last = rows.Integer(1);
      lastId = rows.Integer(2);
    }
    if (TStoreFile::StateOf(rows.Code()) != TState::Ready || IsStopped()) return std::nullopt;
    if (count < RowsAtOnce) break;
  }
  QStringList sorted(sites.begin(), sites.end());
  sorted.sort();
  return sorted;
}

bool THistoryReader::Gather(TSqliteStatement &rows, int limit, QList<TVisitedPage> &pages) const {
  while (pages.size() < limit && rows.Step()) pages.append(HistorySchema::PageOf(rows));
  return TStoreFile::StateOf(rows.Code()) == TState::Ready;
}

std::optional<QList<TVisitedPage>> THistoryReader::Pages(const THistorySpan &span, THistoryOrder order, int limit,
                                                         const std::optional<TVisitedPage> &after) {
  QList<TVisitedPage> pages;
  if (const TAccess access = Ensure(); access != TAccess::Ready) {
    return access == TAccess::NothingThere ? std::optional(pages) : std::nullopt;
  }
  TSqliteConnection &database = m_file.Database();
  const qint64 last = after ? after->lastVisit.toMSecsSinceEpoch() : span.until - 1;
  const qint64 id = after ? after->id : -1;
  if (order == THistoryOrder::LastVisit) {
    TSqliteStatement rows =
        database.Use("SELECT " ZV_PAGE_COLUMNS
                     " FROM visits WHERE last >= ?1 AND last <= ?2 "
                     "AND (last < ?2 OR id > ?3) AND (?4 = '' OR site = ?4) ORDER BY last DESC, id LIMIT ?5");
    rows.Bind(span.from).Bind(last).Bind(id).Bind(span.site).Bind(limit);
    return Gather(rows, limit, pages) ? std::optional(pages) : std::nullopt;
  }
  // First the rest of those with as many visits, then those with less: so each piece is found by the index.
  if (after) {
    TSqliteStatement rows = database.Use("SELECT " ZV_PAGE_COLUMNS
                                         " FROM visits WHERE count = ?1 AND last <= ?2 "
                                         "AND (last < ?2 OR id > ?3) ORDER BY last DESC, id LIMIT ?4");
    rows.Bind(after->visits).Bind(last).Bind(id).Bind(limit);
    if (!Gather(rows, limit, pages)) return std::nullopt;
  }
  TSqliteStatement rows = database.Use("SELECT " ZV_PAGE_COLUMNS
                                       " FROM visits WHERE count < ?1 ORDER BY count DESC, last DESC, id "
                                       "LIMIT ?2");
  rows.Bind(after ? after->visits : std::numeric_limits<qint64>::max()).Bind(limit - pages.size());
  return Gather(rows, limit, pages) ? std::optional(pages) : std::nullopt;
}

THistoryReader::TWalk THistoryReader::Walk(qint64 &below, int rows,
                                           const std::function<void(const THistoryRow &)> &look) {
  if (const TAccess access = Ensure(); access != TAccess::Ready) {
    return access == TAccess::NothingThere ? TWalk::End : TWalk::Failed;
  }
  TSqliteStatement found =
      m_file.Database().Use("SELECT " ZV_PAGE_COLUMNS ", words FROM visits WHERE id < ?1 ORDER BY id DESC LIMIT ?2");
  found.Bind(below).Bind(rows);
  int count = 0;
  while (found.Step()) {
    ++count;
    below = found.Integer(HistorySchema::IdColumn);
    look(THistoryRow(found));
  }
  if (TStoreFile::StateOf(found.Code()) != TState::Ready) return TWalk::Failed;
  return count == rows && !IsStopped() ? TWalk::More : TWalk::End;
}
