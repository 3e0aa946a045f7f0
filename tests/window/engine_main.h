#pragma once

#include <QApplication>
#include <QTest>

#include "browser/engine/engine.h"

// Runs the tests of `T` with the engine's schemes known. The object lives within the application, so that it may own
// an engine.
template <typename T>
int RunWithEngine(int argc, char **argv) {
  TEngine::RegisterSchemes();
  QApplication application(argc, argv);
  T test;
  return QTest::qExec(&test, argc, argv);
}

#define ENGINE_MAIN(T)                   \
  int main(int argc, char **argv) {      \
    return RunWithEngine<T>(argc, argv); \
  }
