#include <QTemporaryDir>
#include <QTest>

#include "app/last_open_sites.h"
#include "app/program_entry.h"
#include "chrome/window_placement.h"
#include "config/settings.h"
#include "config/shell_association.h"
#include "support/named_lines.h"

class TestStartRules final : public QObject {
  Q_OBJECT

 private Q_SLOTS:

  void init() {
    m_folder = std::make_unique<QTemporaryDir>();
    m_store = std::make_unique<TRegistryStore>(m_folder->filePath(QStringLiteral("registry.sqlite")));
  }

  void cleanup() {
    m_store.reset();
    m_folder.reset();
  }

  void CommandLine_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<bool>("unregister");
    QTest::addColumn<bool>("forceNew");
    QTest::addColumn<QString>("argument");

    const QString address = QStringLiteral("http://127.0.0.1/");
    QTest::newRow("nothing") << QStringList{} << false << false << QString();
    QTest::newRow("address") << QStringList{address} << false << false << address;
    QTest::newRow("--undef") << QStringList{"--undef"} << true << false << QString();
    QTest::newRow("--uninstall") << QStringList{"--uninstall"} << true << false << QString();
    QTest::newRow("--new") << QStringList{"--new"} << false << true << QString();
    QTest::newRow("a switch counts in its own case only") << QStringList{"--NEW"} << false << false << "--NEW";
    QTest::newRow("two arguments mean nothing") << QStringList{"--new", address} << false << false << QString();
  }

  void CommandLine() {
    QFETCH(QStringList, arguments);
    const TProgramEntry entry = ReadCommandLine(arguments, *m_store);
    QTEST(entry.action == TProgramEntry::TAction::Unregister, "unregister");
    QTEST(entry.forceNewInstance, "forceNew");
    QTEST(entry.argument, "argument");
  }

  void MultiInstanceSetting() {
    TZVOptions(*m_store).Set(Setting::AllowMultiInstance, true);
    QVERIFY(ReadCommandLine({}, *m_store).forceNewInstance);
    QVERIFY(ReadCommandLine({QStringLiteral("a"), QStringLiteral("b")}, *m_store).forceNewInstance);
  }

  void Placement_data() {
    QTest::addColumn<QRect>("stored");
    QTest::addColumn<QList<QRect>>("screens");
    QTest::addColumn<QRect>("placed");

    const QList<QRect> one{QRect(0, 0, 1920, 1080)};
    const QList<QRect> two{QRect(0, 0, 1920, 1080), QRect(1920, 0, 1280, 1024)};
    QTest::newRow("on the screen") << QRect(10, 10, 800, 600) << one << QRect(10, 10, 800, 600);
    QTest::newRow("on the second screen") << QRect(2000, 50, 800, 600) << two << QRect(2000, 50, 800, 600);
    QTest::newRow("the second screen is gone") << QRect(2000, 50, 800, 600) << one << QRect(0, 0, 800, 600);
    QTest::newRow("above every screen") << QRect(100, -500, 800, 600) << one << QRect(0, 0, 800, 600);
    QTest::newRow("partly off, still to be taken hold of")
        << QRect(1700, 900, 800, 600) << one << QRect(1700, 900, 800, 600);
    QTest::newRow("a sliver is not enough") << QRect(1900, 10, 800, 600) << one << QRect(0, 0, 800, 600);
    QTest::newRow("larger than the screen") << QRect(0, 0, 4000, 3000) << one << QRect(0, 0, 1920, 1080);
    QTest::newRow("stored at half the scale")
        << QRect(150, 100, 1000, 700) << QList<QRect>{QRect(0, 0, 640, 450)} << QRect(0, 0, 640, 450);
    QTest::newRow("no size at all") << QRect(10, 10, 0, 0) << one << QRect(10, 10, 320, 240);
    QTest::newRow("no screen") << QRect(10, 10, 800, 600) << QList<QRect>{} << QRect(10, 10, 800, 600);
  }

  void Placement() {
    QFETCH(QRect, stored);
    QFETCH(QList<QRect>, screens);
    QTEST(TWindowPlacement::OnScreens(stored, screens), "placed");
  }

  void PlacementIsWritten() {
    TSettings settings(*m_store);
    TWindowPlacement::Write(QRect(-20, -5, 700, 500), settings);
    QCOMPARE(TWindowPlacement::Stored(settings), QRect(0, 0, 700, 500));
  }

  void LastSites() {
    TZVOptions(*m_store).SetLastOpenSites(
        FromLines({"url3=http://c/", "url2=", "url1=https://a/?x=1&y==2", "url0=file:///tmp/a=b.html"}));
    const QStringList opened{"file:///tmp/a=b.html", "https://a/?x=1&y==2", "http://c/"};
    QCOMPARE(TLastOpenSites::Read(*m_store), opened);
  }

  void Association() {
    TShellAssociation association(*m_store);
    QVERIFY(!association.IsDefaultBrowser());
    association.SetAll(true);
    QVERIFY(association.IsDefaultBrowser());
    const auto command = m_store->Read(TRegistryHive::ClassesRoot, QStringLiteral("http\\shell\\Zarvela\\command"), {});
    QVERIFY(command && command->endsWith(QStringLiteral(" \"%1\"")) && !command->startsWith(QLatin1Char('"')));

    // A class that another program has taken over is left to it.
    m_store->Write(TRegistryHive::ClassesRoot, QStringLiteral("https\\shell"), {}, QStringLiteral("Other"));
    QVERIFY(!association.IsDefaultBrowser());
    association.SetAll(false);
    QCOMPARE(association.Read(QStringLiteral("http")).defaultVerb, QStringLiteral("open"));
    QCOMPARE(association.Read(QStringLiteral("https")).defaultVerb, QStringLiteral("Other"));
    QVERIFY(m_store->KeyExists(TRegistryHive::ClassesRoot, QStringLiteral("http\\shell\\Zarvela")));
  }

 private:
  std::unique_ptr<QTemporaryDir> m_folder;
  std::unique_ptr<TRegistryStore> m_store;
};

QTEST_MAIN(TestStartRules)
#include "test_start_rules.moc"
