#include <QDeadlineTimer>
#include <QLocalSocket>

#include "platform/hand_off_record.h"
#include "platform/instance_lock.h"
#include "process/program_fixture.h"
#include "support/data_row.h"
#include "support/desktop_files.h"
#include "support/fake_programs.h"
#include "support/named_lines.h"
#include "support/store_trouble.h"

using namespace Qt::StringLiterals;

// The built program as a process, alone and beside a running one, with folders of its own for every case.
class TestStart final : public QObject, private TProgramFixture {
  Q_OBJECT

 private Q_SLOTS:
  void init() { Begin(); }
  void cleanup() {
    server.Close();
    server.ForgetRequests();
  }

  // Both switches take back the keys and what the desktop was told, and end before a screen is needed.
  void Unregisters_data() {
    Columns<QString>("argument");
    for (const char *argument : {"--undef", "--uninstall"}) Row(argument, QString::fromLatin1(argument));
  }
  void Unregisters() {
    QFETCH(QString, argument);
    const QString shell = u"http\\shell"_s;
    const auto write = [](const QString &key, const QString &name, const QString &data) {
      Store()->Write(TRegistryHive::ClassesRoot, key, name, data);
    };
    write(shell, {}, u"Zarvela"_s);
    for (const char *type : {"http", "https", "htmlfile"}) {
      write(QLatin1String(type) + u"\\shell\\Zarvela"_s, u"Before"_s, u"other.desktop"_s);
    }
    DesktopFiles::WriteEntry(u"other"_s, "Exec=other %u\n");
    DesktopFiles::WriteEntry(u"zarvela"_s, "Exec=zarvela %u\nX-Zarvela-Written=true\n");
    DesktopFiles::Write(DesktopFiles::Choices(),
                        "[Default Applications]\nx-scheme-handler/http=zarvela.desktop\n"
                        "x-scheme-handler/https=zarvela.desktop\n");
    TFakePrograms programs;
    programs.Add(u"xdg-settings"_s);
    programs.Add(u"xdg-mime"_s, "exit 1");
    const auto program = StartWithoutScreen({argument});
    WaitForEnd(*program);
    QCOMPARE(Store()->Read(TRegistryHive::ClassesRoot, shell, {}), u"open"_s);
    // What opened the addresses before, and what was changed since is left alone.
    QCOMPARE(programs.Calls(),
             (QStringList{u"xdg-settings|set|default-web-browser|other.desktop"_s,
                          u"xdg-mime|default|other.desktop|x-scheme-handler/http|x-scheme-handler/https"_s}));
    QVERIFY(!QFileInfo::exists(DesktopFiles::Applications() + u"zarvela.desktop"_s));
  }

  // Without a screen, and without a window to be found by a later start.
  void Terminal_data() {
    Columns<QString, QString, QString>("argument", "said", "told");
    Row("help", "--help", "--new", "");
    Row("version", "--version", "Zarvela", "");
    Row("unknown switch", "--what", "", "--what");
  }
  void Terminal() {
    QFETCH(QString, argument);
    QFETCH(QString, said);
    QFETCH(QString, told);
    qputenv("QT_QPA_PLATFORM", "no-such-platform");
    QProcess process;
    process.start(program, {argument});
    QVERIFY(process.waitForFinished(Soon));
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QVERIFY(QString::fromLocal8Bit(process.readAllStandardOutput()).contains(said));
    QVERIFY(QString::fromLocal8Bit(process.readAllStandardError()).contains(told));
    QCOMPARE(process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0, told.isEmpty());
  }

  void OpensFile_data() {
    Columns<QString, QString>("name", "contents");  // %1: the address to come to
    // A name with everything that an address would read as something else.
    Row("page", "my page #1 100%.html", "<script>location = '%1'</script>");
    Row("group", "my group #1 100%.hgp", "[HalvexGroup]\na=%1\n");
  }
  void OpensFile() {
    QFETCH(QString, name);
    QFETCH(QString, contents);
    QFile file(home + QLatin1Char('/') + name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(contents.arg(Url(2)).toUtf8());
    file.close();
    // Relative to the working directory.
    const auto program = Start({name});
    QTRY_VERIFY_WITH_TIMEOUT(Requests(2) > 0, Soon);
    Quit(*program);
  }

  // Only a user who has no settings yet is new to the update server.
  void FirstStart_data() {
    Columns<QByteArray, bool>("contents", "isNew");  // of the store's file; empty for no file
    Row("no settings", QByteArray(), true);
    Row("settings", QByteArray("as they are"), false);
    Row("damaged settings", QByteArray(5000, '?'), false);
    Row("locked settings", QByteArray("locked"), false);
  }
  void FirstStart() {
    QFETCH(QByteArray, contents);
    QFETCH(bool, isNew);
    std::optional<TStoreLock> lock;
    if (contents == "locked") {
      lock.emplace(ProgramFolders::RegistryFile(), TStoreLock::TKind::Unreadable);
    } else if (contents != "as they are") {
      QVERIFY(QDir(QFileInfo(ProgramFolders::RegistryFile()).path()).removeRecursively());
      if (!contents.isEmpty()) {
        QFile file(ProgramFolders::RegistryFile());
        QVERIFY(QDir().mkpath(QFileInfo(file).path()) && file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(contents), contents.size());
      }
    }
    const auto program = Start({Url(1)});
    QTRY_VERIFY_WITH_TIMEOUT(Requests(1) > 0, Soon);
    lock.reset();
    Quit(*program);
    QCOMPARE(TZVOptions(*Store()).Get(Setting::New), isNew);
  }

  void TwoArguments() {
    Prepare([this](TZVOptions &options) {
      options.Set(Setting::StartupPage, Url(9));
      options.Set(Setting::AutoRefresh, 30000);
    });
    const auto program = Start({Url(1), Url(2)});
    QTRY_VERIFY_WITH_TIMEOUT(Requests(9) > 0, Soon);
    Quit(*program);
    QVERIFY(Requests(1) == 0 && Requests(2) == 0);
    const auto store = Store();
    QVERIFY(TZVOptions(*store).Get(Setting::CommandLine).isEmpty());
    QVERIFY(store->Subkeys(TRegistryHive::ClassesRoot, QString()).isEmpty());
    QCOMPARE(TZVOptions(*store).Get(Setting::AutoRefresh), 0);  // what the window writes when it goes
  }

  void KilledWithManyTabs() {
    constexpr int Count = 200;
    TNamedAddresses sites;
    for (int i = Count; i >= 1; --i) {
      sites.append({u"url%1"_s.arg(i), server.Url(u"/page%1"_s.arg(i - 1))});
    }
    Prepare([&](TZVOptions &options) {
      options.Set(Setting::StartupMode, u"Last"_s);
      options.SetLastOpenSites(sites);
    });
    // One more than the list holds, so that it must have been written anew.
    const QString added = server.Url(u"/added"_s);
    auto program = Start({added});
    // In the middle of opening, with another process that writes settings all the while.
    const auto busy = Store();
    TZVOptions options(*busy);
    sites.prepend({u"url%1"_s.arg(Count + 1), added});
    QDeadlineTimer deadline(60000);
    for (int i = 0; (Requests(20) == 0 || options.LastOpenSites()->size() <= Count) && !deadline.hasExpired(); ++i) {
      options.Set(Setting::LimitTitleLength, 30 + i % 20);
      QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
    QVERIFY(Requests(20) > 0);
    program->kill();
    QVERIFY(program->waitForFinished());
    QVERIFY(busy->SetAsideFile().isEmpty());
    // Without the home page, which is there or was not yet.
    QCOMPARE(ToLines(options.LastOpenSites()).filter(server.Url(u"/"_s)), ToLines(sites));

    // Again and again: only what is looked at comes, and the pages that nobody has looked at are not lost.
    for (const int more : {5, 6}) {
      server.ForgetRequests();
      program = Start({Url(more)});
      QTRY_COMPARE_WITH_TIMEOUT(Requests(more), 1, Soon);
      // It has also taken the place that the killed one had.
      HandsOver(more + 10);
      QTRY_COMPARE_WITH_TIMEOUT(options.LastOpenSites()->size(), sites.size() + 2, Soon);
      QVERIFY(server.Requests().size() < 10);
      sites = *options.LastOpenSites();
      program->kill();
      QVERIFY(program->waitForFinished());
    }
    QSet<QString> addresses;
    for (const TNamedAddress &site : sites) addresses.insert(site.address);
    for (int i = 0; i < Count; ++i) QVERIFY(addresses.contains(Url(i)));
  }

  void BrokenStore() {
    const QFileInfo file(ProgramFolders::RegistryFile());
    QVERIFY(QDir(file.absolutePath()).removeRecursively());
    QVERIFY(QDir().mkpath(file.absolutePath()));
    QFile broken(file.absoluteFilePath());
    QVERIFY(broken.open(QIODevice::WriteOnly) && broken.write(QByteArray(64 * 1024, 'x')) > 0);
    broken.close();
    const auto program = Start({Url(8)});
    QTRY_VERIFY_WITH_TIMEOUT(Requests(8) > 0, Soon);
    program->kill();  // the defaults ask before closing
    QVERIFY(program->waitForFinished());
    QCOMPARE(file.absoluteDir().entryList({u"*damaged*"_s}).size(), 1);
    QVERIFY(Store()->SetAsideFile().isEmpty());
  }

  void RefusedSettings_data() {
    Columns<bool>("noFolder");
    Row("read-only", false);
    Row("a file where the folder should be", true);
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
    const auto program = Start({Url(10)});
    QTRY_VERIFY_WITH_TIMEOUT(Requests(10) > 0, Soon);
    Quit(*program);
    if (noFolder) QVERIFY(QFile::remove(folder));
  }

  // ---- beside a running one ----

  void SecondStart_data() {
    Columns<QStringList, bool>("arguments", "opens");
    const QString address = u"%1"_s;  // of page 1, where the server listens
    QTest::newRow("an address") << QStringList{address} << true;
    QTest::newRow("only the first of several") << QStringList{address, u"--new"_s} << true;
    QTest::newRow("a file of its own folder") << QStringList{u"a page.html"_s} << true;
    QTest::newRow("a page group") << QStringList{u"set.hgp"_s} << true;
    QTest::newRow("nothing") << QStringList{} << false;
  }
  void SecondStart() {
    QFETCH(QStringList, arguments);
    QFETCH(bool, opens);
    const QString folder = home + u"/tmp/elsewhere"_s;
    QVERIFY(QDir().mkpath(folder));
    const auto put = [&folder](const QString &name, const QByteArray &contents) {
      QFile file(folder + u'/' + name);
      QVERIFY(file.open(QIODevice::WriteOnly));
      file.write(contents);
    };
    put(u"a page.html"_s, "<script>location = '" + Url(1).toUtf8() + "'</script>");
    put(u"set.hgp"_s, "[HalvexGroup]\nblank1=" + Url(1).toUtf8() + "\n");
    const auto first = StartFirst();
    for (QString &argument : arguments) argument.replace(u"%1"_s, Url(1));
    const auto second = Start(arguments, folder);
    WaitForEnd(*second);
    if (opens) QTRY_COMPARE_WITH_TIMEOUT(Requests(1), 1, Soon);
    // What was handed over went to the running window and nowhere else; it is still there with its own page.
    HandsOver(2);
    QCOMPARE(Requests(0), 1);
    QCOMPARE(Requests(1), opens ? 1 : 0);
    Quit(*first);
  }

  void OwnInstances_data() {
    Columns<bool>("setting");
    Row("--new", false);
    Row("AllowMultiInstance", true);
  }
  void OwnInstances() {
    QFETCH(bool, setting);
    const auto first = StartFirst();
    Prepare([&](TZVOptions &options) {
      options.Set(Setting::AllowMultiInstance, setting);
      options.Set(Setting::StartupPage, Url(1));
    });
    const auto second = Start(setting ? QStringList{Url(2)} : QStringList{u"--new"_s});
    // The page of its start shows that it has a window of its own.
    QTRY_COMPARE_WITH_TIMEOUT(Requests(1), 1, Soon);
    if (setting) QTRY_COMPARE_WITH_TIMEOUT(Requests(2), 1, Soon);
    Quit(*second);
    Quit(*first);
  }

  void TenFirstStarts() {
    // Nobody runs yet: one of them becomes the instance and the others wait for its window.
    std::vector<std::unique_ptr<QProcess>> all;
    for (int i = 1; i <= 10; ++i) all.push_back(Start({Url(i)}));
    for (int i = 1; i <= 10; ++i) QTRY_COMPARE_WITH_TIMEOUT(Requests(i), 1, Soon);
    const auto running = [&all] {
      return std::count_if(all.begin(), all.end(), [](const auto &each) { return each->state() == QProcess::Running; });
    };
    QTRY_COMPARE_WITH_TIMEOUT(running(), 1, Soon);
    for (const auto &each : all) {
      if (each->state() == QProcess::Running) Quit(*each);
    }
  }

  void HandsOverToTheOneThatIsLeft() {
    const auto first = StartFirst();
    Prepare([&](TZVOptions &options) { options.Set(Setting::StartupPage, Url(1)); });
    const auto second = Start({u"--new"_s});
    QTRY_COMPARE_WITH_TIMEOUT(Requests(1), 1, Soon);
    // A start that looks and goes changes nothing.
    QVERIFY(!TInstanceLock().CreateInstanceMutex());
    Quit(*first);
    // The instance that is left has taken the first one's place as soon as it answers to it.
    QTRY_VERIFY_WITH_TIMEOUT(
        [this] {
          QLocalSocket probe;
          probe.connectToServer(TInstanceLock().SocketFile());
          if (!probe.waitForConnected(1000)) return false;
          probe.write(HandOffRecord::Encode(HandOffRecord::Tag, QString()));
          return probe.waitForReadyRead(1000) && probe.read(1) == QByteArray(1, HandOffRecord::Taken);
        }(),
        Soon);
    HandsOver(2);
    Quit(*second);
  }

  void HolderThatNeverAnswers() {
    TInstanceLock holder;
    QVERIFY(holder.CreateInstanceMutex());
    const auto second = Start({Url(1)});
    // It loads what it needs for a window, and asks.
    const auto asks = [&second] {
      QFile maps(u"/proc/%1/maps"_s.arg(second->processId()));
      return maps.open(QIODevice::ReadOnly) && maps.readAll().contains("libzarvela.so");
    };
    QTRY_VERIFY_WITH_TIMEOUT(asks(), Soon);
    QVERIFY(!second->waitForFinished(2000));
    QCOMPARE(Requests(1), 0);
    second->kill();
    QVERIFY(second->waitForFinished());
  }

  // Another process keeps the store locked: what a start could not read it leaves for the next one, beside its own
  // pages, and an end that cannot write it ends all the same.
  void LockedStore_data() {
    Columns<bool>("atTheStart");
    Row("at the start", true);
    Row("at the end", false);
  }
  void LockedStore() {
    QFETCH(bool, atTheStart);
    TNamedAddresses sites{{u"url2"_s, Url(2)}, {u"url1"_s, Url(1)}};
    Prepare([&](TZVOptions &options) {
      options.Set(Setting::StartupMode, u"Last"_s);
      options.SetLastOpenSites(sites);
      options.SetQuickSearchEntries({{u"own"_s, Url(3)}});
      options.SetPopupList({u"http://own.test/*"_s});
    });
    std::optional<TStoreLock> lock;
    if (atTheStart) lock.emplace(ProgramFolders::RegistryFile(), TStoreLock::TKind::Unreadable);
    const auto program = Start({Url(0)});
    QTRY_VERIFY_WITH_TIMEOUT(Requests(0) > 0, Soon);
    if (atTheStart) {
      lock.reset();
      sites = {{u"url100000001"_s, Url(2)}, {u"url100000002"_s, Url(1)}, {u"url2"_s, Url(0)}};
    } else {
      const auto store = Store();
      sites.prepend({u"url3"_s, Url(0)});
      QTRY_COMPARE_WITH_TIMEOUT(ToLines(TZVOptions(*store).LastOpenSites()), ToLines(sites), Soon);
      lock.emplace(ProgramFolders::RegistryFile());
    }
    QElapsedTimer timer;
    timer.start();
    Quit(*program);
    QVERIFY2(timer.elapsed() < 9000, qPrintable(QString::number(timer.elapsed())));
    lock.reset();
    auto store = Store();
    const TZVOptions options(*store);
    // Without the home page, which is there or was not yet.
    QCOMPARE(ToLines(options.LastOpenSites()).filter(server.Url(u"/"_s)), ToLines(sites));
    QCOMPARE(ToLines(options.QuickSearchEntries()), QStringList(u"own="_s + Url(3)));
    QCOMPARE(options.PopupList(), QStringList(u"http://own.test/*"_s));
    if (!atTheStart) return;
    store.reset();
    const auto next = Start({});
    for (const int page : {1, 2}) QTRY_VERIFY_WITH_TIMEOUT(Requests(page) > 0, Soon);
    Quit(*next);
  }

 private:
  // Where no window could be made: what to do with the address must have been decided before one is.
  void HandsOver(int page) {
    const auto start = StartWithoutScreen({Url(page)});
    WaitForEnd(*start);
    QTRY_COMPARE_WITH_TIMEOUT(Requests(page), 1, Soon);
  }
  // The first instance, once it shows its first page.
  std::unique_ptr<QProcess> StartFirst() {
    auto program = Start({Url(0)});
    if (!QTest::qWaitFor([this] { return Requests(0) > 0; }, Soon)) qWarning("the first instance opened nothing");
    return program;
  }
};

QTEST_GUILESS_MAIN(TestStart)
#include "test_start.moc"
