#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include "app/beside_question.h"
#include "app/kept_tabs.h"
#include "app/program_entry.h"
#include "chrome/window_placement.h"
#include "config/language.h"
#include "config/registry_paths.h"
#include "config/settings.h"
#include "support/data_row.h"
#include "support/modal_dialogs.h"
#include "support/named_lines.h"
#include "support/shipped_files.h"
#include "ui/confirm_dialog.h"

namespace {

const QString OwnKey = QLatin1String(RegistryKey::OpenTabs) + "\\1";

bool NoneRuns(int) {
  return false;
}

QStringList AddressesOf(const QList<TKeptTabs::TKeptTab> &tabs) {
  QStringList addresses;
  for (const TKeptTabs::TKeptTab &tab : tabs) addresses.append(tab.address);
  return addresses;
}

}  // namespace

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
    Row("unknown switch", QStringList{"--what"}, false, false, "--what");
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
    TKeptTabs window(*m_store, 1, NoneRuns);
    QCOMPARE(AddressesOf(window.Take()), (QStringList{"file:///tmp/a=b.html", "https://a/?x=1&y==2", "http://c/"}));
  }

  void LastTabs() {
    TKeptTabs first(*m_store, 1, NoneRuns);
    const auto tab = [](quint64 id, int position, const QString &address, bool told = true) {
      TKeptTabs::TOpenTab open{.id = id, .position = position, .address = address};
      if (told) open.record = TTabRecord{.address = address, .stickyName = QString::number(id), .history = "history"};
      return open;
    };
    // Two tabs of one address, and one that cannot be told from its line by the rule for web addresses.
    const QString same = "http://same/", odd = "file:///a?b=http://c/";
    QVERIFY(first.Write({tab(7, 1, same), tab(8, 3, odd), tab(9, 4, same)}, 8));
    // Moved, renamed in the store but not told, closed.
    QVERIFY(first.Write({tab(9, 1, same, false), tab(8, 2, odd, false)}, 9));
    const QList<TKeptTabs::TKeptTab> kept = TKeptTabs(*m_store, 1, NoneRuns).Take();
    QCOMPARE(AddressesOf(kept), (QStringList{same, odd}));
    QVERIFY(kept[0].inFront && !kept[1].inFront);
    QCOMPARE(kept[0].record.value().stickyName, QString("9"));
    QCOMPARE(kept[1].record.value().history, QByteArray("history"));
    QCOMPARE(m_store->Values(TRegistryHive::CurrentUser, OwnKey).size(), 4);  // two tabs, their order, the front

    // A history beyond measure is left out, and the rest is kept.
    TKeptTabs::TOpenTab huge = tab(9, 1, same);
    huge.record->history = QByteArray(20 << 20, 'x');
    QVERIFY(first.Write({huge, tab(8, 2, odd, false)}, 9));
    const QList<TKeptTabs::TKeptTab> light = TKeptTabs(*m_store, 1, NoneRuns).Take();
    QCOMPARE(light[0].record.value().stickyName, QString("9"));
    QVERIFY(light[0].record->history.isEmpty());

    // What is no record any more leaves the address.
    QVERIFY(m_store->Write(TRegistryHive::CurrentUser, OwnKey, "9", "AAAAAA=="));
    const QList<TKeptTabs::TKeptTab> broken = TKeptTabs(*m_store, 1, NoneRuns).Take();
    QCOMPARE(AddressesOf(broken), (QStringList{same, odd}));
    QVERIFY(!broken[0].record && broken[1].record);
  }

  void TabsOfTwoWindows() {
    bool secondRuns = true;
    const auto runs = [&](int window) { return window == 2 && secondRuns; };
    const auto tab = [](const QString &address, int number = 1) {
      return TKeptTabs::TOpenTab{quint64(number), number, address, TTabRecord{.address = address}};
    };
    TKeptTabs first(*m_store, 1, runs), second(*m_store, 2, runs);
    QVERIFY(first.Write({tab("http://first/")}, 1));
    QVERIFY(second.Write({tab("http://second/")}, 1));
    QVERIFY(first.Write({tab("http://first/"), tab("http://more/", 2)}, 1));
    QCOMPARE(TZVOptions(*m_store).LastOpenSites()->last().name, QString("url1"));
    // The one that runs on keeps its tabs to itself.
    QCOMPARE(AddressesOf(TKeptTabs(*m_store, 1, runs).Take()), (QStringList{"http://first/", "http://more/"}));
    secondRuns = false;
    TKeptTabs next(*m_store, 1, runs);
    QCOMPARE(AddressesOf(next.Take()), (QStringList{"http://first/", "http://more/", "http://second/"}));
    // Until they are written anew they are not lost.
    QCOMPARE(TKeptTabs(*m_store, 3, NoneRuns).Take().size(), 3);
    QVERIFY(next.Write({tab("http://all/")}, 1));
    QCOMPARE(AddressesOf(TKeptTabs(*m_store, 3, NoneRuns).Take()), QStringList{"http://all/"});
    secondRuns = true;
    QVERIFY(second.Write({tab("http://late/")}, 1));
    QVERIFY(next.Clear());
    QCOMPARE(AddressesOf(TKeptTabs(*m_store, 3, NoneRuns).Take()), QStringList{"http://late/"});
  }

  // The other instance does not answer: only its own button opens a window, and nothing is opened by mistake.
  void RunBeside_data() {
    Columns<int, bool>("key", "runs");
    Row("Escape", int(Qt::Key_Escape), false);
    Row("the button", int(Qt::Key_Space), true);
  }
  void RunBeside() {
    QFETCH(int, key);
    TLanguage language;
    QVERIFY(language.LoadFile(SourceFile(QStringLiteral("Languages/zveng.ini"))));
    QStringList buttons;
    OnModalDialog<TfrmConfirm>([&](TfrmConfirm &dialog) {
      for (const auto *button : dialog.findChildren<QPushButton *>()) buttons.append(button->text());
      auto *open = dialog.findChild<QPushButton *>(QStringLiteral("cmdOK"));
      QTest::keyClick(open, Qt::Key(key));
    });
    QTEST(AskRunBeside(language), "runs");
    buttons.sort();
    QCOMPARE(buttons,
             QStringList({language.Text("MAIN", "NotAnsweringOpen"), language.Text("MAIN", "NotAnsweringLeave")}));
  }

 private:
  std::unique_ptr<QTemporaryDir> m_folder;
  std::unique_ptr<TRegistryStore> m_store;
};

QTEST_MAIN(TestStartRules)
#include "test_start_rules.moc"
