#pragma once

#include <functional>
#include <memory>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

#include "config/options.h"
#include "platform/program_folders.h"
#include "store/registry_store.h"
#include "support/shipped_files.h"
#include "support/test_server.h"

// The built program as a process, with empty folders and a local server that has the pages /page0 to /page199. It opens
// blank and closes without a question.
class TProgramFixture {
 public:
  static constexpr int Soon = 30000;  // milliseconds; the most that a test waits

  void Begin() {
    QVERIFY2(QFileInfo::exists(program), "the program must be built first");
    QVERIFY(home.contains(QStringLiteral("zarvela-test")));
    for (const char *folder : {"config", "data", "cache", "run", "tmp"}) {
      const QString path = home + QLatin1Char('/') + QLatin1String(folder);
      QFile::setPermissions(path, QFile::Permissions(0x7700));
      QVERIFY(QDir(path).removeRecursively());
      QVERIFY(QDir().mkpath(path));
    }
    QFile::setPermissions(home + QStringLiteral("/run"), QFile::Permissions(0x7700));
    QVERIFY(server.Listen());
    for (int i = 0; i < 200; ++i) server.RoutePage("/page" + QByteArray::number(i), "Page " + QByteArray::number(i));
    Prepare([](TZVOptions &options) {
      options.Set(Setting::ConfirmShutdown, false);
      options.Set(Setting::AskDefaultBrowser, false);
      options.Set(Setting::StartupMode, QStringLiteral("Blank"));
    });
  }
  // A store to prepare or to look at; close it before the program starts.
  [[nodiscard]] static std::unique_ptr<TRegistryStore> Store() {
    return std::make_unique<TRegistryStore>(ProgramFolders::RegistryFile());
  }
  static void Prepare(const std::function<void(TZVOptions &)> &set) {
    const auto store = Store();
    TZVOptions options(*store);
    set(options);
  }
  [[nodiscard]] std::unique_ptr<QProcess> Start(const QStringList &arguments, const QString &workingFolder = {}) const {
    auto process = std::make_unique<QProcess>();
    process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process->setWorkingDirectory(workingFolder.isEmpty() ? home : workingFolder);
    process->start(program, arguments);
    process->waitForStarted();
    return process;
  }
  // The same without any display, where there can be no window.
  [[nodiscard]] std::unique_ptr<QProcess> StartWithoutScreen(const QStringList &arguments) const {
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    qputenv("QT_QPA_PLATFORM", "no-such-platform");
    auto process = Start(arguments);
    qputenv("QT_QPA_PLATFORM", platform);
    return process;
  }
  // Waits until the program has ended well by itself.
  static void WaitForEnd(QProcess &process) {
    QTRY_COMPARE_WITH_TIMEOUT(process.state(), QProcess::NotRunning, Soon);
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 0);
  }
  // Asks the program to end and checks that it ends well.
  static void Quit(QProcess &process) {
    QCOMPARE(process.state(), QProcess::Running);
    process.terminate();
    WaitForEnd(process);
  }
  [[nodiscard]] QString Url(int page) const { return server.Url(QStringLiteral("/page%1").arg(page)); }
  [[nodiscard]] int Requests(int page) const { return server.RequestCount("/page" + QByteArray::number(page)); }

  TTestServer server;
  QString home = qEnvironmentVariable("HOME");
  QString program = BuiltFile(QStringLiteral("zarvela"));
};
