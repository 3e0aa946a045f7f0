#pragma once

#include <limits>

#include "history/history_reader.h"

// How many pages a history's file holds; -1 where it cannot be read.
inline qsizetype VisitCount(const QString &filePath) {
  const auto pages = THistoryReader(filePath).Pages({}, THistoryOrder::LastVisit, std::numeric_limits<int>::max());
  return pages ? pages->size() : -1;
}
