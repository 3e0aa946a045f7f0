#include "subject.h"

#include <cmath>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QTimer>

#include "process_tree.h"

void Pause(int milliseconds) {
  QEventLoop loop;
  QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
  loop.exec();
}

namespace {

constexpr int ReportTimeout = 90'000;  // milliseconds
constexpr int EndTimeout = 10'000;
constexpr int MemoryPause = 500;  // between two looks at the memory
constexpr int MemoryLooks = 20;
constexpr double MemoryStill = 0.005;  // Two looks that differ by less than this share are the same.

void MeasureMemory(qint64 process, TCost &cost) {
  double last = 0;
  for (int look = 0; look < MemoryLooks; ++look) {
    const QList<qint64> tree = ProcessTree::Processes(process);
    cost.mebibytes = double(ProcessTree::ProportionalSetSize(tree)) / 1024;
    cost.processes = int(tree.size());
    if (std::abs(cost.mebibytes - last) < MemoryStill * cost.mebibytes) return;
    last = cost.mebibytes;
    Pause(MemoryPause);
  }
}

void End(QProcess &process) {
  const QList<qint64> tree = ProcessTree::Processes(process.processId());
  process.terminate();
  if (process.state() != QProcess::NotRunning && !process.waitForFinished(EndTimeout)) {
    ProcessTree::Kill(tree);
    process.waitForFinished(EndTimeout);
  }
}

QString Trouble(const QString &what, QProcess &process) {
  QString state = QStringLiteral("still running");
  if (process.state() == QProcess::NotRunning) {
    state = process.exitStatus() == QProcess::CrashExit ? QStringLiteral("crashed or was not there to start")
                                                        : QStringLiteral("ended with code %1").arg(process.exitCode());
  }
  return what + QLatin1String("; ") + state + QLatin1String("\n") +
         QString::fromLocal8Bit(process.readAll()).right(2000);
}

}  // namespace

TSubject::TSubject(const QString &name, const QString &program, const QString &platform)
    : m_name(name), m_program(program), m_platform(platform) {
  MakeFolders();
}

void TSubject::MakeFolders() const {
  for (const char *folder : {"config", "data", "cache", "run", "tmp"}) {
    QDir(m_folder.path()).mkdir(QLatin1String(folder));
    QFile::setPermissions(m_folder.filePath(QLatin1String(folder)),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  }
}

TSubject::~TSubject() {
  Close();
}

QString TSubject::RegistryFile() const {
  return m_folder.filePath(QStringLiteral("config/zarvela/registry.sqlite"));
}

QProcessEnvironment TSubject::Environment() const {
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
  if (!m_platform.isEmpty()) environment.insert(QStringLiteral("QT_QPA_PLATFORM"), m_platform);
  environment.insert(QStringLiteral("HOME"), m_folder.path());
  environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_folder.filePath(QStringLiteral("config")));
  environment.insert(QStringLiteral("XDG_DATA_HOME"), m_folder.filePath(QStringLiteral("data")));
  environment.insert(QStringLiteral("XDG_CACHE_HOME"), m_folder.filePath(QStringLiteral("cache")));
  environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_folder.filePath(QStringLiteral("run")));
  environment.insert(QStringLiteral("TMPDIR"), m_folder.filePath(QStringLiteral("tmp")));
  environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("unix:path=/nonexistent"));
  return environment;
}

void TSubject::Prepare(QProcess &process) const {
  process.setProcessEnvironment(Environment());
  process.setProcessChannelMode(QProcess::MergedChannels);
}

TCost TSubject::Measure(TPageServer &server, const TCondition &done, const TAction &begin) {
  TCost cost;
  QEventLoop loop;
  QTimer timeout;
  timeout.setSingleShot(true);
  QObject::connect(&timeout, &QTimer::timeout, &loop, &QEventLoop::quit);
  QObject::connect(m_running.get(), &QProcess::finished, &loop, &QEventLoop::quit);
  QObject::connect(m_running.get(), &QProcess::errorOccurred, &loop, &QEventLoop::quit);
  QObject::connect(&server, &TPageServer::Reported, &loop, [&] {
    if (done()) loop.quit();
  });

  QElapsedTimer clock;
  clock.start();
  begin();
  timeout.start(ReportTimeout);
  if (!done()) loop.exec();
  cost.milliseconds = double(clock.nsecsElapsed()) / 1e6;
  if (!done()) cost.trouble = Trouble(m_name + QLatin1String(": not all pages reported"), *m_running);
  return cost;
}

TCost TSubject::Start(const QStringList &arguments, TPageServer &server, int pages, TPageServer::TReport report,
                      bool memory) {
  Close();
  m_running = std::make_unique<QProcess>();
  Prepare(*m_running);
  TCost cost = Measure(
      server, [&] { return server.Count(report) >= pages; }, [&] { m_running->start(m_program, arguments); });
  if (!cost.trouble.isEmpty()) {
    cost.trouble.prepend(QStringLiteral("%1 of %2: ").arg(server.Count(report)).arg(pages));
  } else if (memory) {
    MeasureMemory(m_running->processId(), cost);
  }
  Close();
  return cost;
}

TCost TSubject::Open(const QStringList &arguments, TPageServer &server, int page, TPageServer::TReport report) {
  Close();
  m_running = std::make_unique<QProcess>();
  Prepare(*m_running);
  return Measure(
      server, [&] { return server.Has(report, page); }, [&] { m_running->start(m_program, arguments); });
}

TCost TSubject::Tell(const QByteArray &text, TPageServer &server, int page, TPageServer::TReport report) {
  return Measure(
      server, [&] { return server.Has(report, page); }, [&] { m_running->write(text); });
}

TCost TSubject::HandOver(const QStringList &texts, TPageServer &server, int page, TPageServer::TReport report) {
  QProcess sender;
  Prepare(sender);
  qsizetype next = 0;
  const auto send = [&] {
    if (next < texts.size()) sender.start(m_program, {texts[next++]});
  };
  QObject::connect(&sender, &QProcess::finished, &sender, send);
  TCost cost = Measure(
      server, [&] { return server.Has(report, page); }, send);
  if (sender.state() != QProcess::NotRunning) sender.waitForFinished(EndTimeout);
  if (cost.trouble.isEmpty() && (sender.state() != QProcess::NotRunning || sender.exitCode() != 0)) {
    cost.trouble = Trouble(m_name + QLatin1String(": the second start"), sender);
  }
  End(sender);
  return cost;
}

void TSubject::ForgetProfile() {
  Close();
  // What the toolkit and the display's driver keep for all programs stays, as it does for the bare view.
  for (const char *folder : {"data/zarvela", "cache/zarvela"}) {
    QDir(m_folder.filePath(QLatin1String(folder))).removeRecursively();
  }
}

TCost TSubject::Press(const QString &key, TPageServer &server, int page, TPageServer::TReport report) {
  QProcess presser;
  const TCost cost = Measure(
      server, [&] { return server.Has(report, page); },
      [&] {
        presser.start(QStringLiteral("xdotool"), {QStringLiteral("key"), key});
      });
  presser.waitForFinished(EndTimeout);
  return cost;
}

TCost TSubject::Memory() const {
  TCost cost;
  if (m_running) MeasureMemory(m_running->processId(), cost);
  return cost;
}

TCost TSubject::Await(TPageServer &server, int pages, TPageServer::TReport report) {
  return Measure(
      server, [&] { return server.Count(report) >= pages; }, [] {});
}

void TSubject::Close() {
  if (!m_running) return;
  End(*m_running);
  m_running.reset();
}

TCost TSubject::RunToEnd(const QStringList &arguments) {
  TCost cost;
  QProcess process;
  Prepare(process);
  QElapsedTimer clock;
  clock.start();
  process.start(m_program, arguments);
  if (!process.waitForFinished(EndTimeout) || process.exitStatus() != QProcess::NormalExit) {
    cost.trouble = Trouble(m_name + QLatin1String(": did not end by itself"), process);
    End(process);
  }
  cost.milliseconds = double(clock.nsecsElapsed()) / 1e6;
  return cost;
}
