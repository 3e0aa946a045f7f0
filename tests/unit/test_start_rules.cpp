#include <QTemporaryDir>
#include <QTest>

#include "app/last_open_sites.h"
#include "app/program_entry.h"
#include "chrome/window_placement.h"
#include "config/settings.h"
#include "config/shell_association.h"
#include "support/data_row.h"
#include "support/named_lines.h"

class TestStartRules final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    m_store.reset();
    m_folder = std::make_unique<QTemporaryDir>();
    m_store = std::make_unique<TRegistryStore>(m_folder->filePath("registry.sqlite"));
  }

  void CommandLine_data() {
    Columns<QStringList, bool, bool, QString>("arguments", "unregister", "forceNew", "argument");
    const QString address = "http://127.0.0.1/";
    Row("nothing", QStringList{}, false, false, "");
    Row("address", QStringList{address}, false, false, address);
    Row("--undef", QStringList{"--undef"}, true, false, "");
    Row("--uninstall", QStringList{"--uninstall"}, true, false, "");
    Row("--new", QStringList{"--new"}, false, true, "");
    Row("a switch counts in its own case only", QStringList{"--NEW"}, false, false, "--NEW");
    Row("two arguments mean nothing", QStringList{"--new", address}, false, false, "");
  }
  void CommandLine() {
    QFETCH(QStringList, arguments);
    const TCommandLine entry = ReadCommandLine(arguments, *m_store);
    QTEST(entry.action == TCommandLine::TAction::Unregister, "unregister");
    QTEST(entry.forceNewInstance, "forceNew");
    QTEST(entry.argument, "argument");
  }

  void Placement_data() {
    Columns<QRect, QList<QRect>, QRect>("stored", "screens", "placed");
    const QList<QRect> one{QRect(0, 0, 1920, 1080)};
    const QList<QRect> two{QRect(0, 0, 1920, 1080), QRect(1920, 0, 1280, 1024)};
    const QRect second(2000, 50, 800, 600), edge(1700, 900, 800, 600), top(0, 0, 800, 600);
    Row("on the second screen", second, two, second);
    Row("the second screen is gone", second, one, top);
    Row("above every screen", QRect(100, -500, 800, 600), one, top);
    Row("partly off, still to be taken hold of", edge, one, edge);
    Row("a sliver is not enough", QRect(1900, 10, 800, 600), one, top);
    Row("larger than the screen", QRect(0, 0, 4000, 3000), one, QRect(0, 0, 1920, 1080));
    Row("stored at half the scale", QRect(150, 100, 1000, 700), QList{QRect(0, 0, 640, 450)}, QRect(0, 0, 640, 450));
    Row("no size at all", QRect(10, 10, 0, 0), one, QRect(10, 10, 320, 240));
    Row("no screen", top, QList<QRect>{}, top);
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
    const auto command = m_store->Read(TRegistryHive::ClassesRoot, "http\\shell\\Zarvela\\command", {});
    QVERIFY(command && command->endsWith(QStringLiteral(" \"%1\"")) && !command->startsWith(QLatin1Char('"')));

    // A class that another program has taken over is left to it.
    m_store->Write(TRegistryHive::ClassesRoot, "https\\shell", {}, "Other");
    QVERIFY(!association.IsDefaultBrowser());
    association.SetAll(false);
    QCOMPARE(association.Read("http").defaultVerb, "open");
    QCOMPARE(association.Read("https").defaultVerb, "Other");
    QVERIFY(m_store->KeyExists(TRegistryHive::ClassesRoot, "http\\shell\\Zarvela"));
  }

 private:
  std::unique_ptr<QTemporaryDir> m_folder;
  std::unique_ptr<TRegistryStore> m_store;
};

QTEST_MAIN(TestStartRules)
#include "test_start_rules.moc"
