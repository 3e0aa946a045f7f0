#include <QCheckBox>
#include <QDialog>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>

#include "browser/tabs/tab_list_menu.h"
#include "browser/tabs/tab_menu.h"
#include "support/data_row.h"
#include "support/modal_dialogs.h"
#include "window/answering_policy.h"
#include "window/tabs_fixture.h"

// Tabs with the real engine behind them, against a local server.
class TestTabs final : public QObject, private TTabsFixture {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    Prepare();
    server.RoutePage("/a", "Page A", "<a id='link' href='/b'>b</a><a id='anchor' href='#down'>down</a>");
    server.RoutePage("/b", "Page B");
    server.RoutePage("/c", "Page <C> & co");
    server.RoutePage("/frames", "Frames", "<iframe id='f' src='/c' style='height:300px'></iframe>Text");
    server.RoutePage("/inner", "Inner", "<a href='/b' style='display:block;height:200px'>b</a>");
    server.RoutePage("/opener", "Opener", "<a id='link' href='/b' target='_blank'>new window</a>");
  }

  void init() { Begin(); }
  void cleanup() { End(); }

  void InsertPosition_data() {
    Columns<int, bool, TTabPlace, QStringList>("active", "atEnd", "place", "names");
    Row("after the last", 2, false, TTabPlace::BySetting, QStringList{"A", "B", "C", "D"});
    Row("after the active one", 1, false, TTabPlace::BySetting, QStringList{"A", "B", "D", "C"});
    Row("at the end by the setting", 0, true, TTabPlace::BySetting, QStringList{"A", "B", "C", "D"});
    Row("at the end in any case", 0, false, TTabPlace::AtEnd, QStringList{"A", "B", "C", "D"});
  }

  void InsertPosition() {
    QFETCH(int, active);
    QFETCH(bool, atEnd);
    QFETCH(TTabPlace, place);
    OpenNamed("ABC");
    tabs->MakeMeActiveTab(active);
    settings->Set(Setting::OpenNewAtEnd, atEnd);
    TBrowserTab *tab = tabs->NewTab(place);
    tab->SetStickyName(u"D"_s);
    QTEST(Names(), "names");
    QCOMPARE(pages->IndexOf(tabs->NewBackgroundTab(place)), pages->IndexOf(tab) + 1);
    tabs->MakeMeActiveTab(99);
    tabs->MakeMeActiveTab(-1);
    QCOMPARE(tabs->GetActivePage(), tab);
  }

  void ClosingHandsOver() {
    OpenNamed("ABCD");
    const auto close = [this](int position) {
      tabs->MakeMeActiveTab(position);
      tabs->CloseActive();
      return tabs->GetActivePage()->StickyName();
    };
    QCOMPARE(close(1), u"C"_s);  // the next one
    QCOMPARE(close(0), u"D"_s);  // the first hands over backwards, round the end
    tabs->MakeMeActiveTab(1);
    tabs->Tab(0)->Close();  // one in the background changes nothing
    QCOMPARE(Names(), QStringList{u"D"_s});
  }

  void ClosingTheOnlyTab() {
    TBrowserTab *tab = OpenPage(u"/a"_s);
    tab->SetStickyName(u"Mine"_s);
    tab->SetHideFromCloseAll(true);
    tab->SetLocked(true);
    tabs->CloseActive();
    QCOMPARE(tabs->TabCount(), 1);
    QCOMPARE(tabs->GetActivePage(), tab);
    QCOMPARE(pages->PageCaption(tab), language.Global("Blank"));
    QVERIFY(!tab->Locked() && tab->StickyName().isEmpty() && !tab->HideFromCloseAll() && tab->Url().isEmpty());
    QCOMPARE(pages->PageImage(tab), -1);
    QTRY_COMPARE(tab->GetLocationUrl(), u"about:blank"_s);
    QTRY_COMPARE(pages->PageCaption(tab), language.Global("Blank"));
    QCOMPARE(server.RequestCount("/b"), 0);
  }

  void TitleAndStates() {
    TBrowserTab *front = OpenPage(u"/c"_s);
    QCOMPARE(pages->PageCaption(front), u"Page <C> && co"_s);
    QCOMPARE(front->State(), TTabState::None);
    TBrowserTab *back = tabs->NewBackgroundTab();
    QSignalSpy loaded(tabs.get(), &TTabStrip::TabLoaded);
    // A tab says all of itself; what is passed on is about the one in front.
    const QSignalSpy address(back, &TBrowserTab::AddressChanged);
    const QSignalSpy shownAddress(tabs.get(), &TTabStrip::AddressChanged);
    const QSignalSpy indicators(tabs.get(), &TTabStrip::IndicatorsChanged);
    QList<TTabState> seen;
    QList<TLoad> course{back->Load()};
    const auto look = [&] {
      seen.append(back->State());
      if (back->Load() != course.last()) course.append(back->Load());
    };
    connect(back, &TBrowserTab::Changed, this, look);
    connect(back, &TBrowserTab::IndicatorsChanged, this, look);
    back->Announce(server.Url(u"/b"_s));
    back->NavigateStored();
    QTRY_VERIFY(!loaded.isEmpty());
    QCOMPARE(back->State(), TTabState::FinishedInBackground);
    QCOMPARE(pages->PageImage(back), 1);
    QVERIFY(seen.contains(TTabState::Started));
    QVERIFY(!address.isEmpty() && shownAddress.isEmpty() && indicators.isEmpty());
    tabs->Activate(back);
    QCOMPARE(back->State(), TTabState::None);
    back->Navigate(u"no address"_s);
    QVERIFY(!shownAddress.isEmpty());
    back->MakeBlank();
    QTRY_COMPARE(back->GetLocationUrl(), u"about:blank"_s);
    QCOMPARE(course, (QList<TLoad>{TLoad::Blank, TLoad::Announced, TLoad::Waiting, TLoad::Loading, TLoad::Shown,
                                   TLoad::Failed, TLoad::Blank}));
  }

  void LockedTabSendsLinksAway() {
    TBrowserTab *locked = OpenPage(u"/a"_s);
    locked->SetLocked(true);
    QCOMPARE(pages->PageImage(locked), 3);

    Run(locked, u"document.getElementById('anchor').click()"_s);
    QTRY_VERIFY(locked->GetLocationUrl().endsWith(u"#down"_s));
    QCOMPARE(tabs->TabCount(), 1);

    Run(locked, u"document.getElementById('link').click()"_s);
    QTRY_COMPARE(tabs->TabCount(), 2);
    QTRY_COMPARE(tabs->Tab(1)->GetLocationUrl(), server.Url(u"/b"_s));
    QVERIFY(tabs->Tab(1)->OpenedAsNewWindow());
    QCOMPARE(tabs->GetActivePage(), locked);
    QVERIFY(locked->GetLocationUrl().startsWith(server.Url(u"/a"_s)));

    // A reload is not leaving.
    const int before = server.RequestCount("/a");
    locked->Refresh();
    QTRY_COMPARE(server.RequestCount("/a"), before + 1);
    QCOMPARE(tabs->TabCount(), 2);
    QCOMPARE(pages->PageImage(locked), 3);
  }

  // What the page does with its frames stays in them; a link that the user clicks in one leads out of the tab.
  void LockedTabKeepsItsFrames() {
    TBrowserTab *locked = tabs->GetActivePage();
    locked->SetLockPending(true);
    QVERIFY(!locked->Locked());
    Load(locked, u"/frames"_s);
    QVERIFY(locked->Locked());
    Run(locked, QStringLiteral("let f = document.getElementById('f'); f.src = '/inner';"
                               "f.onload = () => document.title = 'frame changed'"));
    QTRY_COMPARE(locked->Title(), u"frame changed"_s);
    QCOMPARE(tabs->TabCount(), 1);

    ClickPage(*locked->Browser(), QPoint(60, 100));
    QTRY_COMPARE(tabs->TabCount(), 2);
    QTRY_COMPARE(tabs->Tab(1)->GetLocationUrl(), server.Url(u"/b"_s));
    QCOMPARE(locked->GetLocationUrl(), server.Url(u"/frames"_s));
    QCOMPARE(server.RequestCount("/b"), 1);
  }

  void StickyName() {
    TBrowserTab *tab = OpenPage(u"/b"_s);
    tab->SetStickyName(u"My tab"_s);
    QCOMPARE(pages->PageCaption(tab), u"My tab"_s);
    Load(tab, u"/a"_s);
    QCOMPARE(pages->PageCaption(tab), u"My tab"_s);
    QCOMPARE(tab->Title(), u"Page A"_s);
    tab->SetStickyName(QString());
    QCOMPARE(pages->PageCaption(tab), u"Page A"_s);
  }

  void WindowOfAPage() {
    TBrowserTab *opener = tabs->GetActivePage();
    TAnsweringPolicy policy;
    policy.AnswerFor(Engine());
    Load(opener, u"/opener"_s);
    const QString click = u"document.getElementById('link').click()"_s;
    Run(opener, click);
    QTRY_COMPARE(pages->VisiblePageCount(), 2);
    QCOMPARE(tabs->GetActivePage(), opener);
    const TBrowserTab *opened = tabs->Tab(1);
    QTRY_COMPARE(opened->Title(), u"Page B"_s);
    QCOMPARE(policy.tested, QStringList{server.Url(u"/b"_s)});
    QCOMPARE(opened->PopupUrl(), policy.tested.first());
    // A rejected one is never asked of the server, never seen, and in no list.
    policy.isPopup = [](const QString &) { return true; };
    Run(opener, click);
    QTRY_COMPARE(tabs->TabCount(), 3);
    QTRY_VERIFY(tabs->Tab(1)->Blocked());
    QCOMPARE(pages->VisiblePageCount(), 2);
    QMenu menu;
    const TTabListMenu list(&menu, *tabs);
    Q_EMIT menu.aboutToShow();
    QCOMPARE(menu.actions().size(), 2);
    QCOMPARE(tabs->TabCount(), 2);
    QCOMPARE(server.RequestCount("/b"), 1);
  }

  void EmptyWindowStaysHidden() {
    TBrowserTab *opener = OpenPage(u"/opener"_s);
    Run(opener, u"window.w = window.open('about:blank')"_s);
    QTRY_COMPARE(tabs->TabCount(), 2);
    QCOMPARE(pages->VisiblePageCount(), 1);
    QVERIFY(tabs->Tab(1)->Hidden());
    Run(opener, u"window.w.location = '/b'"_s);
    QTRY_COMPARE(pages->VisiblePageCount(), 2);
    QTRY_COMPARE(tabs->Tab(1)->Title(), u"Page B"_s);
  }

  void CloseAll_data() {
    Columns<int, QStringList>("spared", "left");
    QTest::newRow("nothing spared") << -1 << QStringList{""};
    QTest::newRow("first") << 0 << QStringList{"A"};
    QTest::newRow("middle") << 1 << QStringList{"B"};
    QTest::newRow("last") << 2 << QStringList{"C"};
  }

  void CloseAll() {
    QFETCH(int, spared);
    OpenNamed("ABC");
    tabs->Tab(0)->SetLocked(true);
    if (spared >= 0) tabs->Tab(spared)->SetHideFromCloseAll(true);
    closeAll->CloseAll(true);
    QTEST(Names(), "left");
    QCOMPARE(tabs->Tab(0)->Locked(), spared == 0);
    if (spared < 0) QCOMPARE(pages->PageCaption(tabs->Tab(0)), language.Global("Blank"));
  }

  void CloseAllAsks() {
    OpenNamed("AB");
    OnModalDialog<QDialog>([](QDialog &dialog) {
      dialog.findChild<QCheckBox *>(u"chkConfirm"_s)->setChecked(true);
      dialog.findChild<QPushButton *>(u"cmdCancel"_s)->click();
    });
    closeAll->CloseAll(false);
    QCOMPARE(tabs->TabCount(), 2);
    QVERIFY(!TZVOptions(*store).Get(Setting::ConfirmCloseAll));
    closeAll->KeepCurrent();  // asks no more
    QCOMPARE(Names(), QStringList{u"B"_s});
    QVERIFY(!tabs->GetActivePage()->HideFromCloseAll());
  }

  void CloseAllFromList() {
    OpenNamed("ABC");
    tabs->Tab(2)->SetHideFromCloseAll(true);
    OnModalDialog<QDialog>([](QDialog &dialog) { dialog.reject(); });
    closeAll->ShowList();
    QCOMPARE(tabs->TabCount(), 3);
    OnModalDialog<QDialog>([](QDialog &dialog) {
      dialog.findChild<QListWidget *>(u"CheckListBox1"_s)->item(1)->setCheckState(Qt::Unchecked);
      dialog.findChild<QPushButton *>(u"cmdClose"_s)->click();
    });
    closeAll->ShowList();
    QCOMPARE(Names(), QStringList{u"B"_s});  // being spared plays no part here
  }

  void ClosingLock() {
    TZVOptions(*store).Set(Setting::ConfirmCloseAll, false);
    OpenNamed("AB");
    tabs->SetClosingLocked(true);
    tabs->CloseActive();
    closeAll->CloseAll(false);
    Q_EMIT pages->CloseRequested(tabs->Tab(0));
    QCOMPARE(tabs->TabCount(), 2);
    tabs->SetClosingLocked(false);
    tabs->CloseActive();
    QCOMPARE(tabs->TabCount(), 1);
  }

  void TabListMenu() {
    tabs->Tab(0)->SetStickyName(u"Fish & chips"_s);
    tabs->NewTab();
    QMenu menu;
    const TTabListMenu list(&menu, *tabs);
    Q_EMIT menu.aboutToShow();
    Q_EMIT menu.aboutToShow();
    QCOMPARE(menu.actions().size(), 2);
    QCOMPARE(menu.actions().at(0)->text(), u"Fish && chips"_s);
    QCOMPARE(menu.actions().at(1)->text(), language.Global("Blank"));
    menu.actions().at(0)->trigger();
    QCOMPARE(tabs->GetActivePage(), tabs->Tab(0));
  }

  void TabMenuShowsTheTab() {
    TBrowserTab *first = tabs->Tab(0);
    Load(first, u"/a"_s);
    tabs->NewTab();
    for (const bool on : {false, true}) {
      first->SetLocked(on);
      first->SetHideFromCloseAll(on);
      first->SetStickyName(on ? u"A"_s : QString());
      tabMenu->Open(first, QPoint(0, 0));
      QCOMPARE((*actions)[TCommand::TabLocked]->isChecked(), on);
      QCOMPARE((*actions)[TCommand::TabSpared]->isChecked(), on);
      QCOMPARE((*actions)[TCommand::TabName]->text(), language.Global(on ? "StickyNameClear" : "StickyNameSet"));
      tabMenu->Menu()->close();
    }
    QVERIFY((*actions)[TCommand::TabHome]->isEnabled());
    tabMenu->Open(first, QPoint(0, 0));
    (*actions)[TCommand::TabClose]->trigger();
    QVERIFY(tabs->TabCount() == 1 && tabs->Tab(0) != first);
  }

 private:
  // Tabs of these names; the first is the one that is there.
  void OpenNamed(const char *names) {
    for (const char *name = names; *name != 0; ++name) {
      (name == names ? tabs->Tab(0) : tabs->NewTab())->SetStickyName(QChar::fromLatin1(*name));
    }
  }
};

ENGINE_MAIN(TestTabs)
#include "test_tabs.moc"
