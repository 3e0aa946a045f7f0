#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

#include "config/options.h"
#include "platform/program_folders.h"
#include "platform/registry_store.h"
#include "support/test_server.h"

// The built program as a process, with folders of its own for every case.
class TestStart final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase();
  void init();
  void cleanup();

  void Switches_data();
  void Switches();
  void OpensAddress();
  void OpensFile_data();
  void OpensFile();
  void TwoArguments();
  void KilledWithManyTabs();
  void SettingsAtTheEnd();
  void BrokenStore();
  void RefusedSettings_data();
  void RefusedSettings();
  void Languages_data();
  void Languages();
  void TwoAtOnce();

 private:
  // A store to prepare or to look at; close it before the program starts.
  [[nodiscard]] std::unique_ptr<TRegistryStore> Store() const;
  void Prepare(const std::function<void(TZVOptions &)> &set) const;
  std::unique_ptr<QProcess> Start(const QStringList &arguments);
  // Asks the program to end and checks that it ends well.
  void End(QProcess &program);
  [[nodiscard]] bool IsRequested(const QByteArray &path) const { return m_server.RequestCount(path) > 0; }

  TTestServer m_server;
  QString m_home;
};

void TestStart::initTestCase() {
  QVERIFY2(QFileInfo::exists(QStringLiteral(ZV_BUILD_DIR "/zarvela")), "the program must be built first");
  m_home = qEnvironmentVariable("HOME");
  QVERIFY(m_home.contains(QStringLiteral("zarvela-test")));
}

void TestStart::init() {
  for (const char *folder : {"config", "data", "cache", "run"}) {
    const QString path = m_home + QLatin1Char('/') + QLatin1String(folder);
    QFile::setPermissions(path, QFile::Permissions(0x7700));
    QVERIFY(QDir(path).removeRecursively());
    QVERIFY(QDir().mkpath(path));
  }
  QFile::setPermissions(m_home + QStringLiteral("/run"), QFile::Permissions(0x7700));
  QVERIFY(m_server.Listen());
  for (int i = 0; i < 200; ++i) {
    m_server.RoutePage("/page" + QByteArray::number(i), "Page " + QByteArray::number(i));
  }
  Prepare([](TZVOptions &options) {
    options.Set(Setting::ConfirmShutdown, false);
    options.Set(Setting::StartupMode, QStringLiteral("Blank"));
  });
}

void TestStart::cleanup() {
  m_server.Close();
  m_server.ForgetRequests();
}

std::unique_ptr<TRegistryStore> TestStart::Store() const {
  return std::make_unique<TRegistryStore>(ProgramFolders::RegistryFile());
}

void TestStart::Prepare(const std::function<void(TZVOptions &)> &set) const {
  const auto store = Store();
  TZVOptions options(*store);
  set(options);
}

std::unique_ptr<QProcess> TestStart::Start(const QStringList &arguments) {
  auto program = std::make_unique<QProcess>();
  program->setProcessChannelMode(QProcess::ForwardedErrorChannel);
  program->setWorkingDirectory(m_home);
  program->start(QStringLiteral(ZV_BUILD_DIR "/zarvela"), arguments);
  program->waitForStarted();
  return program;
}

void TestStart::End(QProcess &program) {
  QCOMPARE(program.state(), QProcess::Running);
  program.terminate();
  QTRY_COMPARE_WITH_TIMEOUT(program.state(), QProcess::NotRunning, 30000);
  QCOMPARE(program.exitStatus(), QProcess::NormalExit);
  QCOMPARE(program.exitCode(), 0);
}

void TestStart::Switches_data() {
  QTest::addColumn<QString>("argument");
  QTest::newRow("--undef") << "--undef";
  QTest::newRow("--uninstall") << "--uninstall";
}

void TestStart::Switches() {
  QFETCH(QString, argument);
  const QString shell = QStringLiteral("http\\shell");
  Store()->Write(TRegistryHive::ClassesRoot, shell, {}, QStringLiteral("Zarvela"));
  // Without any display there can be no window, so the switch must end the program before it needs one.
  QProcess program;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("no-such-platform"));
  program.setProcessEnvironment(environment);
  program.start(QStringLiteral(ZV_BUILD_DIR "/zarvela"), {argument});
  QVERIFY(program.waitForFinished());
  QCOMPARE(program.exitStatus(), QProcess::NormalExit);
  QCOMPARE(program.exitCode(), 0);
  QCOMPARE(Store()->Read(TRegistryHive::ClassesRoot, shell, {}), QStringLiteral("open"));
}

void TestStart::OpensAddress() {
  const auto program = Start({m_server.Url(QStringLiteral("/page1"))});
  QTRY_VERIFY_WITH_TIMEOUT(IsRequested("/page1"), 20000);
  End(*program);
  const auto store = Store();
  QVERIFY(TZVOptions(*store).Get(Setting::CommandLine).isEmpty());
  QVERIFY(store->Subkeys(TRegistryHive::ClassesRoot, QString()).isEmpty());
}

void TestStart::OpensFile_data() {
  QTest::addColumn<QString>("name");
  QTest::addColumn<QString>("contents");  // %1: the address to come to
  // A name with everything that an address would read as something else.
  QTest::newRow("page") << "my page #1 100%.html"
                        << "<script>location = '%1'</script>";
  QTest::newRow("group") << "my group #1 100%.hgp"
                         << "[HalvexGroup]\na=%1\n";
}

void TestStart::OpensFile() {
  QFETCH(QString, name);
  QFETCH(QString, contents);
  QFile file(m_home + QLatin1Char('/') + name);
  QVERIFY(file.open(QIODevice::WriteOnly));
  file.write(contents.arg(m_server.Url(QStringLiteral("/page2"))).toUtf8());
  file.close();
  // Relative to the working directory.
  const auto program = Start({name});
  QTRY_VERIFY_WITH_TIMEOUT(IsRequested("/page2"), 20000);
  End(*program);
}

void TestStart::TwoArguments() {
  Prepare([this](TZVOptions &options) { options.Set(Setting::StartupPage, m_server.Url(QStringLiteral("/page9"))); });
  const auto program = Start({m_server.Url(QStringLiteral("/page1")), m_server.Url(QStringLiteral("/page2"))});
  QTRY_VERIFY_WITH_TIMEOUT(IsRequested("/page9"), 20000);
  End(*program);
  QVERIFY(!IsRequested("/page1") && !IsRequested("/page2"));
  QVERIFY(TZVOptions(*Store()).Get(Setting::CommandLine).isEmpty());
}

void TestStart::KilledWithManyTabs() {
  constexpr int Count = 200;
  QStringList lines;
  for (int i = Count; i >= 1; --i) {
    lines.append(QStringLiteral("url%1=%2").arg(i).arg(m_server.Url(QStringLiteral("/page%1").arg(i - 1))));
  }
  Prepare([&](TZVOptions &options) {
    options.Set(Setting::StartupMode, QStringLiteral("Last"));
    options.SetLastOpenSites(lines);
  });
  // One more than the list holds, so that it must have been written anew.
  const QString added = m_server.Url(QStringLiteral("/added"));
  auto program = Start({added});
  // In the middle of opening, with another process that writes settings all the while.
  const auto busy = Store();
  TZVOptions options(*busy);
  lines.prepend(QStringLiteral("url%1=%2").arg(Count + 1).arg(added));
  QDeadlineTimer deadline(60000);
  for (int i = 0; (!IsRequested("/page20") || options.LastOpenSites().size() <= Count) && !deadline.hasExpired(); ++i) {
    options.Set(Setting::LimitTitleLength, 30 + i % 20);
    QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
  }
  QVERIFY(IsRequested("/page20"));
  program->kill();
  QVERIFY(program->waitForFinished());
  QVERIFY(busy->SetAsideFile().isEmpty());
  QStringList kept = options.LastOpenSites();
  QCOMPARE(kept, lines);

  m_server.ForgetRequests();
  program = Start({});
  // The pages load side by side, in no order.
  const auto missing = [&] {
    QSet<QByteArray> wanted{"/added"};
    for (int i = 0; i < Count; ++i) wanted.insert("/page" + QByteArray::number(i));
    for (const TTestRequest &request : m_server.Requests()) wanted.remove(request.path);
    return wanted;
  };
  QTRY_COMPARE_WITH_TIMEOUT(missing(), QSet<QByteArray>{}, 120000);
  program->kill();
  QVERIFY(program->waitForFinished());
}

void TestStart::SettingsAtTheEnd() {
  Prepare([](TZVOptions &options) {
    options.Set(Setting::AutoRefresh, 30000);
    options.Set(Setting::Left, 40);
    options.Set(Setting::Top, 30);
    options.Set(Setting::Width, 640);
    options.Set(Setting::Height, 480);
    options.Set(Setting::OpenNewInForeground, true);
    options.Set(Setting::AutoCompleteStyle, QStringLiteral("nonsense"));
  });
  Store()->Write(TRegistryHive::CurrentUser, QString::fromLatin1(RegistryKey::CurrentVersion), QStringLiteral("ZVID"),
                 QStringLiteral("x"));
  const auto program = Start({m_server.Url(QStringLiteral("/page7"))});
  QTRY_VERIFY_WITH_TIMEOUT(IsRequested("/page7"), 20000);
  End(*program);
  const auto store = Store();
  const TZVOptions options(*store);
  QCOMPARE(options.Get(Setting::AutoRefresh), 0);
  QCOMPARE(options.Get(Setting::Left), 40);
  QCOMPARE(options.Get(Setting::Top), 30);
  QCOMPARE(options.Get(Setting::Width), 640);
  QCOMPARE(options.Get(Setting::Height), 480);
  QVERIFY(options.Get(Setting::OpenNewInForeground));
  QVERIFY(!options.Get(Setting::Maximized));
  QCOMPARE(options.Get(Setting::AutoCompleteStyle), QStringLiteral("none"));
  QVERIFY(!store->Read(TRegistryHive::CurrentUser, QString::fromLatin1(RegistryKey::CurrentVersion),
                       QStringLiteral("ZVID")));
}

void TestStart::BrokenStore() {
  const QFileInfo file(ProgramFolders::RegistryFile());
  QVERIFY(QDir(file.absolutePath()).removeRecursively());
  QVERIFY(QDir().mkpath(file.absolutePath()));
  QByteArray noise(64 * 1024, Qt::Uninitialized);
  quint32 seed = 12345;
  for (char &byte : noise) byte = static_cast<char>((seed = seed * 1664525 + 1013904223) >> 24);
  QFile broken(file.absoluteFilePath());
  QVERIFY(broken.open(QIODevice::WriteOnly));
  broken.write(noise);
  broken.close();

  const auto program = Start({m_server.Url(QStringLiteral("/page8"))});
  QTRY_VERIFY_WITH_TIMEOUT(IsRequested("/page8"), 20000);
  program->kill();  // the defaults ask before closing
  QVERIFY(program->waitForFinished());

  // The damaged file is still there, whole, under another name.
  bool found = false;
  for (const QFileInfo &entry : file.absoluteDir().entryInfoList(QDir::Files)) {
    QFile candidate(entry.absoluteFilePath());
    found = found || (candidate.open(QIODevice::ReadOnly) && candidate.readAll() == noise);
  }
  QVERIFY(found);
  QVERIFY(Store()->SetAsideFile().isEmpty());
}

void TestStart::RefusedSettings_data() {
  QTest::addColumn<bool>("noFolder");
  QTest::newRow("read-only") << false;
  QTest::newRow("a file where the folder should be") << true;
}

void TestStart::RefusedSettings() {
  QFETCH(bool, noFolder);
  const QString folder = QFileInfo(ProgramFolders::RegistryFile()).absolutePath();
  if (noFolder) {
    QVERIFY(QDir(folder).removeRecursively());
    QFile file(folder);
    QVERIFY(file.open(QIODevice::WriteOnly));
  } else {
    for (const QFileInfo &entry : QDir(folder).entryInfoList(QDir::Files)) {
      QFile::setPermissions(entry.absoluteFilePath(), QFile::ReadOwner);
    }
    QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));
  }
  // The address reaches the window even though it cannot be parked in the store.
  const auto program = Start({m_server.Url(QStringLiteral("/page10"))});
  QTRY_VERIFY_WITH_TIMEOUT(IsRequested("/page10"), 20000);
  End(*program);
  if (noFolder) {
    QVERIFY(QFile::remove(folder));
  } else {
    QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    QVERIFY(!TZVOptions(*Store()).Get(Setting::ConfirmShutdown));
  }
}

void TestStart::Languages_data() {
  QTest::addColumn<QString>("name");
  QTest::addColumn<QByteArray>("contents");
  QTest::addColumn<bool>("isFolder");
  QTest::newRow("missing file") << "gone.ini" << QByteArray() << false;
  QTest::newRow("random bytes") << "noise.ini" << QByteArray("\xff\xfe\0\0[[[\n=\n==\n[MAIN\nFile", 25) << false;
  QTest::newRow("empty file") << "empty.ini" << QByteArray("") << false;
  QTest::newRow("a folder of that name") << "folder.ini" << QByteArray() << true;
  QTest::newRow("a path") << "../../config/zarvela/registry.sqlite" << QByteArray() << false;
}

void TestStart::Languages() {
  QFETCH(QString, name);
  QFETCH(QByteArray, contents);
  QFETCH(bool, isFolder);
  const QDir folder(ProgramFolders::UserData() + QStringLiteral("/Languages"));
  QVERIFY(folder.mkpath(QStringLiteral(".")));
  if (isFolder) {
    QVERIFY(folder.mkdir(name));
  } else if (!contents.isNull()) {
    QFile file(folder.filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(contents);
  }
  Prepare([&](TZVOptions &options) { options.Set(Setting::LanguageFile, name); });
  const auto program = Start({m_server.Url(QStringLiteral("/page11"))});
  QTRY_VERIFY_WITH_TIMEOUT(IsRequested("/page11"), 20000);
  End(*program);
  const bool there = !isFolder && !contents.isNull();
  QCOMPARE(TZVOptions(*Store()).Get(Setting::LanguageFile), there ? name : QStringLiteral("zveng.ini"));
}

void TestStart::TwoAtOnce() {
  Prepare([](TZVOptions &options) { options.Set(Setting::AllowMultiInstance, true); });
  const auto first = Start({m_server.Url(QStringLiteral("/page12"))});
  QTRY_VERIFY_WITH_TIMEOUT(IsRequested("/page12"), 20000);
  const auto second = Start({m_server.Url(QStringLiteral("/page13"))});
  QTRY_VERIFY_WITH_TIMEOUT(IsRequested("/page13"), 20000);
  QCOMPARE(first->state(), QProcess::Running);
  End(*second);
  End(*first);
}

QTEST_GUILESS_MAIN(TestStart)
#include "test_start.moc"
