#pragma once

#include <QDate>

// A part of the past as the history shows it: the last seven days each by itself, then four weeks, then months. No two
// of them overlap: the latest week ends where the days begin, and the latest month where the weeks do.
struct THistoryPeriod {
  enum class TKind { Day, Week, Month };
  TKind kind = TKind::Day;
  QDate first{};
  QDate end{};  // the first day that is not in it; none for the last one, today, in which is what is still to come, too

  bool operator==(const THistoryPeriod &) const = default;
  // In milliseconds since 1970.
  [[nodiscard]] qint64 From() const;
  [[nodiscard]] qint64 Until() const;

  // The first day of the week that this day is in.
  [[nodiscard]] static QDate WeekOf(const QDate &day, Qt::DayOfWeek firstDayOfWeek);
  // The period that this moment (milliseconds since 1970) is in.
  [[nodiscard]] static THistoryPeriod Of(qint64 moment, const QDate &today, Qt::DayOfWeek firstDayOfWeek);
};
