#include "history/history_periods.h"

#include <algorithm>
#include <limits>
#include <QDateTime>

namespace {

constexpr int Days = 7;
constexpr int DaysOfWeek = 7;
constexpr int Weeks = 4;

}  // namespace

QDate THistoryPeriod::WeekOf(const QDate &day, Qt::DayOfWeek firstDayOfWeek) {
  return day.addDays(-((day.dayOfWeek() - firstDayOfWeek + DaysOfWeek) % DaysOfWeek));
}

qint64 THistoryPeriod::From() const {
  return first.startOfDay().toMSecsSinceEpoch();
}

qint64 THistoryPeriod::Until() const {
  return end.isValid() ? end.startOfDay().toMSecsSinceEpoch() : std::numeric_limits<qint64>::max();
}

THistoryPeriod THistoryPeriod::Of(qint64 moment, const QDate &today, Qt::DayOfWeek firstDayOfWeek) {
  if (moment >= today.startOfDay().toMSecsSinceEpoch()) return {TKind::Day, today, {}};
  const QDate day = QDateTime::fromMSecsSinceEpoch(moment).date();
  const QDate daysBegin = today.addDays(1 - Days);
  if (day >= daysBegin) return {TKind::Day, day, day.addDays(1)};
  const QDate weeksBegin = WeekOf(today, firstDayOfWeek).addDays(-Weeks * DaysOfWeek);
  if (day >= weeksBegin) {
    const QDate week = WeekOf(day, firstDayOfWeek);
    return {TKind::Week, week, std::min(week.addDays(DaysOfWeek), daysBegin)};
  }
  const QDate month(day.year(), day.month(), 1);
  return {TKind::Month, month, std::min(month.addMonths(1), weeksBegin)};
}
