#include "table.h"

#include <algorithm>
#include <cstdio>

double Median(std::vector<double> values) {
  if (values.empty()) return 0;
  std::sort(values.begin(), values.end());
  const size_t middle = values.size() / 2;
  return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

void PrintHead(const char *base, const char *measured) {
  std::printf("%-*s %12s %12s %8s  %s\n", FirstColumn, "", base, measured, "ratio", "wanted");
}

void PrintRatio(const QString &what, double base, double measured, const char *unit, double limit) {
  std::printf("%-*s ", FirstColumn, qPrintable(what));
  for (const double value : {base, measured}) {
    if (value > 0)
      std::printf("%8.1f %-3s ", value, unit);
    else
      std::printf("%8s     ", "-");
  }
  if (base > 0 && measured > 0) {
    const double ratio = measured / base;
    std::printf("%8.2f", ratio);
    if (limit > 0) std::printf("  <= %.2f%s", limit, ratio > limit ? "  MISSED" : "");
  }
  std::printf("\n");
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
