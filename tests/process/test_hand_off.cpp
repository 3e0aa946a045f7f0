#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocalSocket>
#include <QProcess>
#include <QTest>

#include "config/options.h"
#include "platform/hand_off_record.h"
#include "platform/instance_lock.h"
#include "platform/program_folders.h"
#include "platform/registry_store.h"
#include "support/test_server.h"

// Starts of the built program beside a running one, with folders of their own for every case.
class TestHandOff final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase();
  void init();
  void cleanup();

  void SecondStart_data();
  void SecondStart();
  void NeedsNoScreen();
  void OwnInstances_data();
  void OwnInstances();
  void ManyAtOnce();
  void TenFirstStarts();
  void KilledHolder();
  void HandsOverToTheOneThatIsLeft();
  void BrokenRecordsDoNoHarm();
  void WithoutSessionFolder();
  void HolderThatNeverAnswers();

 private:
  void Prepare(const std::function<void(TZVOptions &)> &set) const;
  std::unique_ptr<QProcess> Start(const QStringList &arguments, const QString &workingFolder = {});
  std::unique_ptr<QProcess> StartFirst();
  void End(QProcess &program);
  [[nodiscard]] QString Url(int page) const { return m_server.Url(QStringLiteral("/page%1").arg(page)); }
  [[nodiscard]] int Requests(int page) const { return m_server.RequestCount("/page" + QByteArray::number(page)); }

  TTestServer m_server;
  QString m_home;
  QString m_program = QStringLiteral(ZV_BUILD_DIR "/zarvela");
};

namespace {

constexpr int Soon = 30000;   // milliseconds; the most that a test waits

}  // namespace

#define TRY_EXIT_CODE(process, code)                                              \
  do {                                                                            \
    QTRY_COMPARE_WITH_TIMEOUT((process).state(), QProcess::NotRunning, Soon);     \
    QCOMPARE((process).exitStatus(), QProcess::NormalExit);                       \
    QCOMPARE((process).exitCode(), code);                                         \
  } while (false)

void TestHandOff::initTestCase() {
  QVERIFY2(QFileInfo::exists(m_program), "the program must be built first");
  m_home = qEnvironmentVariable("HOME");
  QVERIFY(m_home.contains(QStringLiteral("zarvela-test")));
}

void TestHandOff::init() {
  for (const char *folder : {"config", "data", "cache", "run", "tmp"}) {
    const QString path = m_home + QLatin1Char('/') + QLatin1String(folder);
    QVERIFY(QDir(path).removeRecursively());
    QVERIFY(QDir().mkpath(path));
  }
  QVERIFY(m_server.Listen());
  for (int i = 0; i < 20; ++i) m_server.RoutePage("/page" + QByteArray::number(i), "Page " + QByteArray::number(i));
  Prepare([](TZVOptions &options) {
    options.Set(Setting::ConfirmShutdown, false);
    options.Set(Setting::StartupMode, QStringLiteral("Blank"));
  });
}

void TestHandOff::cleanup() {
  m_server.Close();
  m_server.ForgetRequests();
}

void TestHandOff::Prepare(const std::function<void(TZVOptions &)> &set) const {
  TRegistryStore store(ProgramFolders::RegistryFile());
  TZVOptions options(store);
  set(options);
}

std::unique_ptr<QProcess> TestHandOff::Start(const QStringList &arguments, const QString &workingFolder) {
  auto program = std::make_unique<QProcess>();
  program->setProcessChannelMode(QProcess::ForwardedErrorChannel);
  program->setWorkingDirectory(workingFolder.isEmpty() ? m_home : workingFolder);
  program->start(m_program, arguments);
  program->waitForStarted();
  return program;
}

// The first instance, once it shows its first page.
std::unique_ptr<QProcess> TestHandOff::StartFirst() {
  auto program = Start({Url(0)});
  if (!QTest::qWaitFor([this] { return Requests(0) > 0; }, Soon)) qWarning("the first instance opened nothing");
  return program;
}

void TestHandOff::End(QProcess &program) {
  QCOMPARE(program.state(), QProcess::Running);
  program.terminate();
  TRY_EXIT_CODE(program, 0);
}

void TestHandOff::SecondStart_data() {
  QTest::addColumn<QStringList>("arguments");
  QTest::addColumn<bool>("opens");
  const QString address = QStringLiteral("%1");   // of page 1, where the server listens
  QTest::newRow("an address") << QStringList{address} << true;
  QTest::newRow("only the first of several") << QStringList{address, QStringLiteral("--new")} << true;
  QTest::newRow("a file of its own folder") << QStringList{QStringLiteral("a page.html")} << true;
  QTest::newRow("a page group") << QStringList{QStringLiteral("set.hgp")} << true;
  QTest::newRow("a group's name in capitals is no group") << QStringList{QStringLiteral("set.HGP")} << false;
  QTest::newRow("nothing") << QStringList{} << false;
}

void TestHandOff::SecondStart() {
  QFETCH(QStringList, arguments);
  QFETCH(bool, opens);
  const QString folder = m_home + QStringLiteral("/tmp/elsewhere");
  QVERIFY(QDir().mkpath(folder));
  const auto put = [&folder](const QString &name, const QByteArray &contents) {
    QFile file(folder + u'/' + name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(contents);
  };
  put(QStringLiteral("a page.html"), "<script>location = '" + Url(1).toUtf8() + "'</script>");
  for (const char *name : {"set.hgp", "set.HGP"}) {
    put(QString::fromLatin1(name), "[HalvexGroup]\nblank1=" + Url(1).toUtf8() + "\n");
  }
  const auto first = StartFirst();
  for (QString &argument : arguments) argument.replace(QStringLiteral("%1"), Url(1));
  const auto second = Start(arguments, folder);
  TRY_EXIT_CODE(*second, 0);
  if (opens) QTRY_COMPARE_WITH_TIMEOUT(Requests(1), 1, Soon);
  // What was handed over went to the running window and nowhere else; it is still there with its own page.
  const auto third = Start({Url(2)});
  TRY_EXIT_CODE(*third, 0);
  QTRY_COMPARE_WITH_TIMEOUT(Requests(2), 1, Soon);
  QCOMPARE(Requests(0), 1);
  QCOMPARE(Requests(1), opens ? 1 : 0);
  End(*first);
}

void TestHandOff::NeedsNoScreen() {
  const auto first = StartFirst();
  // Where no window could be made, the decision must have been taken before one is.
  QProcess second;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("no-such-platform"));
  second.setProcessEnvironment(environment);
  second.start(m_program, {Url(1)});
  TRY_EXIT_CODE(second, 0);
  QTRY_COMPARE_WITH_TIMEOUT(Requests(1), 1, Soon);
  End(*first);
}

void TestHandOff::OwnInstances_data() {
  QTest::addColumn<bool>("setting");
  QTest::newRow("--new") << false;
  QTest::newRow("AllowMultiInstance") << true;
}

void TestHandOff::OwnInstances() {
  QFETCH(bool, setting);
  const auto first = StartFirst();
  Prepare([&](TZVOptions &options) {
    options.Set(Setting::AllowMultiInstance, setting);
    options.Set(Setting::StartupPage, Url(1));
  });
  const auto second = Start(setting ? QStringList{Url(2)} : QStringList{QStringLiteral("--new")});
  // The page of its start shows that it has a window of its own.
  QTRY_COMPARE_WITH_TIMEOUT(Requests(1), 1, Soon);
  if (setting) QTRY_COMPARE_WITH_TIMEOUT(Requests(2), 1, Soon);
  End(*second);
  End(*first);
}

void TestHandOff::ManyAtOnce() {
  const auto first = StartFirst();
  std::vector<std::unique_ptr<QProcess>> others;
  for (int i = 1; i <= 10; ++i) others.push_back(Start({Url(i)}));
  for (const auto &other : others) TRY_EXIT_CODE(*other, 0);
  for (int i = 1; i <= 10; ++i) QTRY_COMPARE_WITH_TIMEOUT(Requests(i), 1, Soon);
  End(*first);
}

void TestHandOff::TenFirstStarts() {
  // Nobody runs yet: one of them becomes the instance and the others wait for its window.
  std::vector<std::unique_ptr<QProcess>> all;
  for (int i = 1; i <= 10; ++i) all.push_back(Start({Url(i)}));
  for (int i = 1; i <= 10; ++i) QTRY_COMPARE_WITH_TIMEOUT(Requests(i), 1, Soon);
  const auto running = [&all] {
    return std::count_if(all.begin(), all.end(), [](const auto &each) { return each->state() == QProcess::Running; });
  };
  QTRY_COMPARE_WITH_TIMEOUT(running(), 1, Soon);
  for (const auto &each : all) {
    if (each->state() == QProcess::Running) End(*each);
  }
}

void TestHandOff::KilledHolder() {
  const auto first = StartFirst();
  first->kill();
  QVERIFY(first->waitForFinished());
  const auto second = Start({Url(1)});
  QTRY_COMPARE_WITH_TIMEOUT(Requests(1), 1, Soon);
  const auto third = Start({Url(2)});
  TRY_EXIT_CODE(*third, 0);
  QTRY_COMPARE_WITH_TIMEOUT(Requests(2), 1, Soon);
  End(*second);
}

void TestHandOff::HandsOverToTheOneThatIsLeft() {
  const auto first = StartFirst();
  Prepare([&](TZVOptions &options) { options.Set(Setting::StartupPage, Url(1)); });
  const auto second = Start({QStringLiteral("--new")});
  QTRY_COMPARE_WITH_TIMEOUT(Requests(1), 1, Soon);
  End(*first);
  // The instance that is left has taken the first one's place as soon as it answers to it.
  QTRY_VERIFY_WITH_TIMEOUT([this] {
    QLocalSocket probe;
    probe.connectToServer(TInstanceLock().SocketFile());
    if (!probe.waitForConnected(1000)) return false;
    probe.write(HandOffRecord::Encode(HandOffRecord::Tag, QString()));
    return probe.waitForReadyRead(1000) && probe.read(1) == QByteArray(1, HandOffRecord::Taken);
  }(), Soon);
  const auto third = Start({Url(2)});
  TRY_EXIT_CODE(*third, 0);
  QTRY_COMPARE_WITH_TIMEOUT(Requests(2), 1, Soon);
  End(*second);
}

void TestHandOff::BrokenRecordsDoNoHarm() {
  const auto first = StartFirst();
  const QByteArray good = HandOffRecord::Encode(HandOffRecord::Tag, Url(1));
  QByteArray wrongTag = good;
  wrongTag[0] = '\0';
  QByteArray smallCount = good;
  smallCount[4] = '\5';
  QByteArray hugeCount = good;
  hugeCount[7] = '\x7f';
  std::vector<std::unique_ptr<QLocalSocket>> sockets;
  for (const QByteArray &bytes : {wrongTag, smallCount, hugeCount, good.chopped(1), good.first(6)}) {
    for (int i = 0; i < 20; ++i) {
      sockets.push_back(std::make_unique<QLocalSocket>());
      sockets.back()->connectToServer(TInstanceLock().SocketFile());
      sockets.back()->write(bytes);
      sockets.back()->flush();
    }
  }
  const auto second = Start({Url(2)});
  TRY_EXIT_CODE(*second, 0);
  QTRY_COMPARE_WITH_TIMEOUT(Requests(2), 1, Soon);
  QCOMPARE(Requests(1), 0);
  End(*first);
}

void TestHandOff::WithoutSessionFolder() {
  const QByteArray session = qgetenv("XDG_RUNTIME_DIR");
  qunsetenv("XDG_RUNTIME_DIR");
  const auto first = StartFirst();
  const auto second = Start({Url(1)});
  qputenv("XDG_RUNTIME_DIR", session);
  TRY_EXIT_CODE(*second, 0);
  QTRY_COMPARE_WITH_TIMEOUT(Requests(1), 1, Soon);
  End(*first);
}

void TestHandOff::HolderThatNeverAnswers() {
  TInstanceLock holder;
  QVERIFY(holder.TryTake());
  const auto second = Start({Url(1)});
  TRY_EXIT_CODE(*second, 0);
  QCOMPARE(Requests(1), 0);
}

QTEST_GUILESS_MAIN(TestHandOff)
#include "test_hand_off.moc"
