#pragma once

#include <functional>
#include <memory>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include "page_server.h"

class QProcess;

// What one start of a program cost.
struct TCost {
  double milliseconds = 0;  // From before the process was started or told to the last report that was waited for.
  double mebibytes = 0;     // Of the whole process tree, once it holds still.
  int processes = 0;
  QString trouble;  // Why there are no numbers; empty when there are.
};

// Lets events be handled for a while.
void Pause(int milliseconds);

// One of the programs that are compared, with folders of its own that it keeps from start to start.
class TSubject final {
 public:
  // `platform` is the toolkit's name of the screen that it runs on; empty for the one of this session.
  TSubject(const QString &name, const QString &program, const QString &platform);
  ~TSubject();
  TSubject(const TSubject &) = delete;
  TSubject &operator=(const TSubject &) = delete;

  [[nodiscard]] QString RegistryFile() const;
  // Where files for it can lie.
  [[nodiscard]] QString Folder() const { return m_folder.path(); }

  // Starts the program, waits until `pages` pages of the server have reported, and ends it.
  TCost Start(const QStringList &arguments, TPageServer &server, int pages, TPageServer::TReport report, bool memory);
  // Starts the program and waits for it to end by itself.
  TCost RunToEnd(const QStringList &arguments);
  // Forgets the engine's profile, as if it had never run; settings stay.
  void ForgetProfile();

  // The same in steps, for what happens to a program that runs. The first three wait until page `page`
  // of the server has reported.
  TCost Open(const QStringList &arguments, TPageServer &server, int page, TPageServer::TReport report);
  // Writes to the standard input of the one that runs.
  TCost Tell(const QByteArray &text, TPageServer &server, int page, TPageServer::TReport report);
  // Starts the program again for each text in turn, each once the one before has ended; these have to end by
  // themselves.
  TCost HandOver(const QStringList &texts, TPageServer &server, int page, TPageServer::TReport report);
  // Presses a key of the screen's keyboard; the one that runs has to have it.
  TCost Press(const QString &key, TPageServer &server, int page, TPageServer::TReport report);
  // The memory of the one that runs.
  [[nodiscard]] TCost Memory() const;
  // Until `pages` pages have reported, those from before included.
  TCost Await(TPageServer &server, int pages, TPageServer::TReport report);
  void Close();

 private:
  using TAction = std::function<void()>;
  using TCondition = std::function<bool()>;

  [[nodiscard]] QProcessEnvironment Environment() const;
  void MakeFolders() const;
  void Prepare(QProcess &process) const;
  // Runs `begin` and waits for `done`, looking at each report; gives up when the program that runs ends.
  [[nodiscard]] TCost Measure(TPageServer &server, const TCondition &done, const TAction &begin);

  QString m_name;
  QString m_program;
  QString m_platform;
  QTemporaryDir m_folder;
  std::unique_ptr<QProcess> m_running;
};
