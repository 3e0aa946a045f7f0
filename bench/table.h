#pragma once

#include <QList>
#include <QString>
#include <vector>

// The table that the measuring programs print, each its rows of it.

inline constexpr int FirstColumn = 44;

// 0 when there are no values.
[[nodiscard]] double Median(std::vector<double> values);

// The most that a row may be: as a ratio, else as a value in the row's unit; 0 for anything.
struct TWanted {
  double ratio = 0;
  double value = 0;
};

// Two values in each row with their ratio, measured on several kinds of screen side by side.
class TComparison final {
 public:
  explicit TComparison(const QStringList &screens) : m_screens(screens) {}

  // What is added from now on was measured on this one of the screens.
  void BeginScreen(qsizetype screen) { m_screen = screen; }
  // A row, or the part of one that other screens have already. A value of 0 is not there.
  void Add(const QString &what, double base, double measured, const TWanted &wanted);
  // `base` and `measured` name the two values.
  void Print(const char *base, const char *measured) const;

 private:
  struct TCell {
    double base = 0;
    double measured = 0;
    TWanted wanted{};
  };
  struct TRow {
    QString what;
    QList<TCell> cells;
  };

  QStringList m_screens;
  qsizetype m_screen = 0;
  QList<TRow> m_rows;
};

// A row of one value, in the second column of values, with the most that it may be (0: anything). False when it is
// more.
bool PrintValue(const QString &what, double value, const char *unit, double limit);
