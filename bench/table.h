#pragma once

#include <QString>
#include <vector>

// The table that the measuring programs print, each its rows of it.

inline constexpr int FirstColumn = 44;

// 0 when there are no values.
[[nodiscard]] double Median(std::vector<double> values);

void PrintHead(const char *base, const char *measured);
// A row of two values and their ratio, with the most that it may be; without one when `limit` is 0. A value of 0 is not
// there.
void PrintRatio(const QString &what, double base, double measured, const char *unit, double limit);
// A row of one value, in the second column of values, with the most that it may be (0: anything). False when it is
// more.
bool PrintValue(const QString &what, double value, const char *unit, double limit);
