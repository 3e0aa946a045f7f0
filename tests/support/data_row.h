#pragma once

#include <QTest>

// The columns of a data table: Columns<QString, bool>("text", "fits").
template <typename... T, typename... TNames>
void Columns(TNames... names) {
  (QTest::addColumn<T>(names), ...);
}

// A row of a data table with its cells in order; texts are QStrings.
template <typename... T>
void Row(const char *name, const T &...cells) {
  (QTest::newRow(name) << ... << cells);
}
