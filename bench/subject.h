#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include "page_server.h"

// What one start of a program cost.
struct TCost {
  double milliseconds = 0;  // From before the process was started to the last report that was waited for.
  double mebibytes = 0;     // Of the whole process tree, once it holds still.
  int processes = 0;
  QString trouble;          // Why there are no numbers; empty when there are.
};

// One of the programs that are compared, with folders of its own that it keeps from start to start.
class TSubject final {
 public:
  TSubject(const QString &name, const QString &program);

  [[nodiscard]] QString RegistryFile() const;

  // Starts the program, waits until `pages` pages of the server have reported, and ends it.
  TCost Start(const QStringList &arguments, TPageServer &server, int pages, TPageServer::TReport report, bool memory);
  // Starts the program and waits for it to end by itself.
  TCost RunToEnd(const QStringList &arguments);

 private:
  [[nodiscard]] QProcessEnvironment Environment() const;

  QString m_name;
  QString m_program;
  QTemporaryDir m_folder;
};
