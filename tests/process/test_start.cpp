#include <QDeadlineTimer>

#include "process/program_fixture.h"
#include "support/named_lines.h"

// The built program as a process, with folders of its own for every case.
class TestStart final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() { m_f.Begin(); }
  void cleanup() { m_f.End(); }

  void Unregisters() {
    const QString shell = QStringLiteral("http\\shell");
    m_f.Store()->Write(TRegistryHive::ClassesRoot, shell, {}, QStringLiteral("Zarvela"));
    // The switch must end the program before it needs one.
    const auto program = m_f.StartWithoutScreen({QStringLiteral("--undef")});
    m_f.WaitForEnd(*program);
    QCOMPARE(m_f.Store()->Read(TRegistryHive::ClassesRoot, shell, {}), QStringLiteral("open"));
  }

  void OpensFile_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("contents");  // %1: the address to come to
    // A name with everything that an address would read as something else.
    QTest::newRow("page") << "my page #1 100%.html"
                          << "<script>location = '%1'</script>";
    QTest::newRow("group") << "my group #1 100%.hgp"
                           << "[HalvexGroup]\na=%1\n";
  }

  void OpensFile() {
    QFETCH(QString, name);
    QFETCH(QString, contents);
    QFile file(m_f.home + QLatin1Char('/') + name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(contents.arg(m_f.Url(2)).toUtf8());
    file.close();
    // Relative to the working directory.
    const auto program = m_f.Start({name});
    QTRY_VERIFY_WITH_TIMEOUT(m_f.Requests(2) > 0, m_f.Soon);
    m_f.Quit(*program);
  }

  void TwoArguments() {
    m_f.Prepare([this](TZVOptions &options) {
      options.Set(Setting::StartupPage, m_f.Url(9));
      options.Set(Setting::AutoRefresh, 30000);
    });
    const auto program = m_f.Start({m_f.Url(1), m_f.Url(2)});
    QTRY_VERIFY_WITH_TIMEOUT(m_f.Requests(9) > 0, m_f.Soon);
    m_f.Quit(*program);
    QVERIFY(m_f.Requests(1) == 0 && m_f.Requests(2) == 0);
    const auto store = m_f.Store();
    QVERIFY(TZVOptions(*store).Get(Setting::CommandLine).isEmpty());
    QVERIFY(store->Subkeys(TRegistryHive::ClassesRoot, QString()).isEmpty());
    QCOMPARE(TZVOptions(*store).Get(Setting::AutoRefresh), 0);  // what the window writes when it goes
  }

  void KilledWithManyTabs() {
    constexpr int Count = 200;
    TNamedAddresses sites;
    for (int i = Count; i >= 1; --i) {
      sites.append({QStringLiteral("url%1").arg(i), m_f.server.Url(QStringLiteral("/page%1").arg(i - 1))});
    }
    m_f.Prepare([&](TZVOptions &options) {
      options.Set(Setting::StartupMode, QStringLiteral("Last"));
      options.SetLastOpenSites(sites);
    });
    // One more than the list holds, so that it must have been written anew.
    const QString added = m_f.server.Url(QStringLiteral("/added"));
    auto program = m_f.Start({added});
    // In the middle of opening, with another process that writes settings all the while.
    const auto busy = m_f.Store();
    TZVOptions options(*busy);
    sites.prepend({QStringLiteral("url%1").arg(Count + 1), added});
    QDeadlineTimer deadline(60000);
    for (int i = 0; (m_f.Requests(20) == 0 || options.LastOpenSites().size() <= Count) && !deadline.hasExpired(); ++i) {
      options.Set(Setting::LimitTitleLength, 30 + i % 20);
      QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
    QVERIFY(m_f.Requests(20) > 0);
    program->kill();
    QVERIFY(program->waitForFinished());
    QVERIFY(busy->SetAsideFile().isEmpty());
    QCOMPARE(ToLines(options.LastOpenSites()), ToLines(sites));

    m_f.server.ForgetRequests();
    program = m_f.Start({});
    // The pages load side by side, in no order.
    const auto missing = [&] {
      QSet<QByteArray> wanted{"/added"};
      for (int i = 0; i < Count; ++i) wanted.insert("/page" + QByteArray::number(i));
      for (const TTestRequest &request : m_f.server.Requests()) wanted.remove(request.path);
      return wanted;
    };
    QTRY_COMPARE_WITH_TIMEOUT(missing(), QSet<QByteArray>{}, 120000);
    program->kill();
    QVERIFY(program->waitForFinished());
  }

  void BrokenStore() {
    const QFileInfo file(ProgramFolders::RegistryFile());
    QVERIFY(QDir(file.absolutePath()).removeRecursively());
    QVERIFY(QDir().mkpath(file.absolutePath()));
    QFile broken(file.absoluteFilePath());
    QVERIFY(broken.open(QIODevice::WriteOnly) && broken.write(QByteArray(64 * 1024, 'x')) > 0);
    broken.close();
    const auto program = m_f.Start({m_f.Url(8)});
    QTRY_VERIFY_WITH_TIMEOUT(m_f.Requests(8) > 0, m_f.Soon);
    program->kill();  // the defaults ask before closing
    QVERIFY(program->waitForFinished());
    QCOMPARE(file.absoluteDir().entryList({QStringLiteral("*damaged*")}).size(), 1);
    QVERIFY(m_f.Store()->SetAsideFile().isEmpty());
  }

  void RefusedSettings_data() {
    QTest::addColumn<bool>("noFolder");
    QTest::newRow("read-only") << false;
    QTest::newRow("a file where the folder should be") << true;
  }

  void RefusedSettings() {
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
    const auto program = m_f.Start({m_f.Url(10)});
    QTRY_VERIFY_WITH_TIMEOUT(m_f.Requests(10) > 0, m_f.Soon);
    m_f.Quit(*program);
    if (noFolder) {
      QVERIFY(QFile::remove(folder));
    } else {
      QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
      QVERIFY(!TZVOptions(*m_f.Store()).Get(Setting::ConfirmShutdown));
    }
  }

 private:
  TProgramFixture m_f;
};

QTEST_GUILESS_MAIN(TestStart)
#include "test_start.moc"
