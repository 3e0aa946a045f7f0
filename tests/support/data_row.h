#pragma once

#include <QTest>

// A row of a data table with its cells in order; texts are QStrings.
template <typename... T>
void Row(const char *name, const T &...cells) {
  (QTest::newRow(name) << ... << cells);
}
