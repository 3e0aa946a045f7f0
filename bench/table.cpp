#include "table.h"

#include <algorithm>
#include <cstdio>

double Median(std::vector<double> values) {
  if (values.empty()) return 0;
  std::sort(values.begin(), values.end());
  const size_t middle = values.size() / 2;
  return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

namespace {

constexpr int CellWidth = 42;  // characters

void PrintNumber(double value, int decimals) {
  if (value > 0)
    std::printf("%9.*f ", decimals, value);
  else
    std::printf("%9s ", "-");
}

}  // namespace

void TComparison::Add(const QString &what, double base, double measured, const TWanted &wanted) {
  auto row = std::find_if(m_rows.begin(), m_rows.end(), [&](const TRow &each) { return each.what == what; });
  if (row == m_rows.end()) row = m_rows.insert(m_rows.end(), {what, QList<TCell>(m_screens.size())});
  row->cells[m_screen] = {base, measured, wanted};
}

void TComparison::Print(const char *base, const char *measured) const {
  std::printf("%-*s ", FirstColumn, "");
  for (const QString &screen : m_screens) std::printf("%-*s", CellWidth, qPrintable(screen));
  std::printf("\n%-*s ", FirstColumn, "");
  for (qsizetype i = 0; i < m_screens.size(); ++i) {
    std::printf("%9s %9s %6s %-*s", base, measured, "ratio", CellWidth - 27, "  wanted");
  }
  std::printf("\n");
  for (const TRow &row : m_rows) {
    std::printf("%-*s ", FirstColumn, qPrintable(row.what));
    for (const TCell &cell : row.cells) {
      const double ratio = cell.base > 0 && cell.measured > 0 ? cell.measured / cell.base : 0;
      PrintNumber(cell.base, 1);
      PrintNumber(cell.measured, 1);
      if (ratio > 0)
        std::printf("%6.2f ", ratio);
      else
        std::printf("%6s ", "");
      const bool isOver = (cell.wanted.ratio > 0 && ratio > cell.wanted.ratio) ||
                          (cell.wanted.value > 0 && cell.measured > cell.wanted.value);
      QString wanted;
      if (cell.wanted.ratio > 0) wanted = QStringLiteral(" <= %1").arg(cell.wanted.ratio, 0, 'f', 2);
      if (cell.wanted.value > 0) wanted = QStringLiteral(" <= %1").arg(cell.wanted.value, 0, 'f', 0);
      if (isOver) wanted += QLatin1String(" MISSED");
      std::printf("%-*s", CellWidth - 27, qPrintable(wanted));
    }
    std::printf("\n");
  }
  std::fflush(stdout);
}

bool PrintValue(const QString &what, double value, const char *unit, double limit) {
  const bool isGood = limit <= 0 || value <= limit;
  std::printf("%-*s %12s %8.2f %-3s ", FirstColumn, qPrintable(what), "", value, unit);
  if (limit > 0) std::printf("%8s  <= %.0f %s%s", "", limit, unit, isGood ? "" : "  MISSED");
  std::printf("\n");
  std::fflush(stdout);
  return isGood;
}
