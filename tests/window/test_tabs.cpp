#include <QCheckBox>
#include <QClipboard>
#include <QInputDialog>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>

#include "browser/tabs/tab_list_menu.h"
#include "browser/tabs/tab_menu.h"
#include "support/data_row.h"
#include "support/modal_dialogs.h"
#include "window/answering_policy.h"
#include "window/page_click.h"
#include "window/tabs_fixture.h"

// Tabs with the real engine behind them, against a local server.
class TestTabs final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    m_f.Prepare();
    m_f.server.RoutePage("/a", "Page A", "<a id='link' href='/b'>b</a><a id='anchor' href='#down'>down</a>");
    m_f.server.RoutePage("/b", "Page B");
    m_f.server.RoutePage("/c", "Page <C> & co");
    m_f.server.RoutePage("/frames", "Frames", "<iframe id='f' src='/c' style='height:300px'></iframe>Text");
    m_f.server.RoutePage("/inner", "Inner", "<a href='/b' style='display:block;height:200px'>b</a>");
    m_f.server.RoutePage("/opener", "Opener", "<a id='link' href='/b' target='_blank'>new window</a>");
  }

  void init() { m_f.Begin(); }
  void cleanup() { m_f.End(); }

  void InsertPosition_data() {
    Columns<int, bool, TTabPlace, QStringList>("active", "atEnd", "place", "names");
    const auto row = [](const char *name, int active, bool atEnd, TTabPlace place, const char *names) {
      QTest::newRow(name) << active << atEnd << place << QString::fromLatin1(names).split(u' ');
    };
    row("after the last", 2, false, TTabPlace::BySetting, "A B C D");
    row("after the active one", 1, false, TTabPlace::BySetting, "A B D C");
    row("after the first", 0, false, TTabPlace::BySetting, "A D B C");
    row("at the end by the setting", 0, true, TTabPlace::BySetting, "A B C D");
    row("at the end in any case", 0, false, TTabPlace::AtEnd, "A B C D");
  }

  void InsertPosition() {
    QFETCH(int, active);
    QFETCH(bool, atEnd);
    QFETCH(TTabPlace, place);
    OpenNamed("ABC");
    m_f.tabs->MakeMeActiveTab(active);
    m_f.settings->Set(Setting::OpenNewAtEnd, atEnd);
    TBrowserTab *tab = m_f.tabs->NewTab(place);
    tab->SetStickyName(QStringLiteral("D"));
    QTEST(m_f.Names(), "names");
    QCOMPARE(m_f.tabs->GetActivePage(), tab);
    m_f.tabs->MakeMeActiveTab(99);
    m_f.tabs->MakeMeActiveTab(-1);
    QCOMPARE(m_f.tabs->GetActivePage(), tab);
  }

  void BackgroundTab() {
    TBrowserTab *first = m_f.tabs->GetActivePage();
    for (const bool foreground : {false, true}) {
      m_f.settings->Set(Setting::OpenNewInForeground, foreground);
      TBrowserTab *tab = m_f.tabs->NewBackgroundTab();
      QCOMPARE(m_f.tabs->GetActivePage(), foreground ? tab : first);
      QCOMPARE(m_f.pages->IndexOf(tab), 1);
    }
  }

  void ClosingHandsOver() {
    OpenNamed("ABCD");
    const auto close = [this](int position) {
      m_f.tabs->MakeMeActiveTab(position);
      m_f.tabs->CloseActive();
      return m_f.tabs->GetActivePage()->StickyName();
    };
    QCOMPARE(close(1), QStringLiteral("C"));  // the next one
    QCOMPARE(close(0), QStringLiteral("D"));  // the first hands over backwards, round the end
    m_f.tabs->MakeMeActiveTab(1);
    m_f.tabs->Tab(0)->Close();  // one in the background changes nothing
    QCOMPARE(m_f.Names(), QStringList{QStringLiteral("D")});
  }

  void ClosingTheOnlyTab() {
    TBrowserTab *tab = m_f.tabs->GetActivePage();
    m_f.Load(tab, QStringLiteral("/a"));
    tab->SetStickyName(QStringLiteral("Mine"));
    tab->SetHideFromCloseAll(true);
    tab->SetLocked(true);
    m_f.tabs->CloseActive();
    QCOMPARE(m_f.tabs->TabCount(), 1);
    QCOMPARE(m_f.tabs->GetActivePage(), tab);
    QCOMPARE(m_f.pages->PageCaption(tab), m_f.language.Global("Blank"));
    QVERIFY(!tab->Locked() && tab->StickyName().isEmpty() && !tab->HideFromCloseAll() && tab->Url().isEmpty());
    QCOMPARE(m_f.pages->PageImage(tab), -1);
    QTRY_COMPARE(tab->GetLocationUrl(), QStringLiteral("about:blank"));
    QTRY_COMPARE(m_f.pages->PageCaption(tab), m_f.language.Global("Blank"));
    QCOMPARE(m_f.server.RequestCount("/b"), 0);
  }

  void TitleAndStates() {
    TBrowserTab *front = m_f.tabs->GetActivePage();
    m_f.Load(front, QStringLiteral("/c"));
    QCOMPARE(m_f.pages->PageCaption(front), QStringLiteral("Page <C> && co"));
    QCOMPARE(front->State(), TTabState::None);
    QVERIFY(!front->Busy() && !front->Secure());

    TBrowserTab *back = m_f.tabs->NewBackgroundTab();
    QSignalSpy loaded(m_f.tabs.get(), &TTabStrip::TabLoaded);
    // A tab says all of itself; what is passed on is about the one in front.
    const QSignalSpy address(back, &TBrowserTab::AddressChanged);
    const QSignalSpy shownAddress(m_f.tabs.get(), &TTabStrip::AddressChanged);
    const QSignalSpy indicators(m_f.tabs.get(), &TTabStrip::IndicatorsChanged);
    QList<TTabState> seen;
    QList<TLoad> course{back->Load()};
    const auto look = [&] {
      seen.append(back->State());
      if (back->Load() != course.last()) course.append(back->Load());
    };
    connect(back, &TBrowserTab::Changed, this, look);
    connect(back, &TBrowserTab::IndicatorsChanged, this, look);
    back->Announce(m_f.server.Url(QStringLiteral("/b")));
    back->NavigateStored();
    QTRY_VERIFY(!loaded.isEmpty());
    QCOMPARE(back->State(), TTabState::FinishedInBackground);
    QCOMPARE(m_f.pages->PageImage(back), 1);
    QVERIFY(seen.contains(TTabState::Started));
    QVERIFY(!address.isEmpty() && shownAddress.isEmpty() && indicators.isEmpty());
    m_f.tabs->Activate(back);
    QCOMPARE(back->State(), TTabState::None);
    back->Navigate(QStringLiteral("no address"));
    QVERIFY(!shownAddress.isEmpty());
    back->MakeBlank();
    QTRY_COMPARE(back->GetLocationUrl(), QStringLiteral("about:blank"));
    QCOMPARE(course, (QList<TLoad>{TLoad::Blank, TLoad::Announced, TLoad::Waiting, TLoad::Loading, TLoad::Shown,
                                   TLoad::Failed, TLoad::Blank}));
    back->disconnect(this);
  }

  void LockedTabSendsLinksAway() {
    TBrowserTab *locked = m_f.tabs->GetActivePage();
    m_f.Load(locked, QStringLiteral("/a"));
    locked->SetLocked(true);
    QCOMPARE(m_f.pages->PageImage(locked), 3);

    m_f.Run(locked, QStringLiteral("document.getElementById('anchor').click()"));
    QTRY_VERIFY(locked->GetLocationUrl().endsWith(QStringLiteral("#down")));
    QCOMPARE(m_f.tabs->TabCount(), 1);

    m_f.Run(locked, QStringLiteral("document.getElementById('link').click()"));
    QTRY_COMPARE(m_f.tabs->TabCount(), 2);
    TBrowserTab *beside = m_f.tabs->Tab(1);
    QTRY_COMPARE(beside->GetLocationUrl(), m_f.server.Url(QStringLiteral("/b")));
    QVERIFY(beside->OpenedAsNewWindow());
    QCOMPARE(m_f.tabs->GetActivePage(), locked);
    QVERIFY(locked->GetLocationUrl().startsWith(m_f.server.Url(QStringLiteral("/a"))));

    // A reload is not leaving.
    const int before = m_f.server.RequestCount("/a");
    locked->Refresh();
    QTRY_COMPARE(m_f.server.RequestCount("/a"), before + 1);
    QCOMPARE(m_f.tabs->TabCount(), 2);
    QCOMPARE(m_f.pages->PageImage(locked), 3);
  }

  // What the page does with its frames stays in them; a link that the user clicks in one leads out of the tab.
  void LockedTabKeepsItsFrames() {
    TBrowserTab *locked = m_f.tabs->GetActivePage();
    locked->SetLockPending(true);
    QVERIFY(!locked->Locked());
    m_f.Load(locked, QStringLiteral("/frames"));
    QVERIFY(locked->Locked());
    m_f.Run(locked, QStringLiteral("let f = document.getElementById('f'); f.src = '/inner';"
                                   "f.onload = () => document.title = 'frame changed'"));
    QTRY_COMPARE(locked->Title(), QStringLiteral("frame changed"));
    QCOMPARE(m_f.tabs->TabCount(), 1);

    ClickPage(*locked->Browser(), QPoint(60, 100));
    QTRY_COMPARE(m_f.tabs->TabCount(), 2);
    QTRY_COMPARE(m_f.tabs->Tab(1)->GetLocationUrl(), m_f.server.Url(QStringLiteral("/b")));
    QVERIFY(m_f.tabs->Tab(1)->OpenedAsNewWindow());
    QCOMPARE(m_f.tabs->GetActivePage(), locked);
    QCOMPARE(locked->GetLocationUrl(), m_f.server.Url(QStringLiteral("/frames")));
    QCOMPARE(m_f.server.RequestCount("/b"), 1);
  }

  void StickyName() {
    TBrowserTab *tab = m_f.tabs->GetActivePage();
    m_f.Load(tab, QStringLiteral("/b"));
    OnModalDialog<QInputDialog>([](QInputDialog &box) {
      const QString offered = box.textValue();
      box.setTextValue(QStringLiteral("My tab"));
      box.accept();
      QCOMPARE(offered, QStringLiteral("Page B"));
    });
    tab->AskStickyName();
    QCOMPARE(m_f.pages->PageCaption(tab), QStringLiteral("My tab"));
    m_f.Load(tab, QStringLiteral("/a"));
    QCOMPARE(m_f.pages->PageCaption(tab), QStringLiteral("My tab"));
    QCOMPARE(tab->Title(), QStringLiteral("Page A"));
    tab->SetStickyName(QString());
    QCOMPARE(m_f.pages->PageCaption(tab), QStringLiteral("Page A"));
  }

  void WindowOfAPage() {
    TBrowserTab *opener = m_f.tabs->GetActivePage();
    TAnsweringPolicy policy;
    policy.AnswerFor(m_f.Engine());
    m_f.Load(opener, QStringLiteral("/opener"));
    const QString click = QStringLiteral("document.getElementById('link').click()");
    m_f.Run(opener, click);
    QTRY_COMPARE(m_f.pages->VisiblePageCount(), 2);
    QCOMPARE(m_f.tabs->GetActivePage(), opener);
    const TBrowserTab *opened = m_f.tabs->Tab(1);
    QTRY_COMPARE(opened->Title(), QStringLiteral("Page B"));
    QCOMPARE(policy.tested, QStringList{m_f.server.Url(QStringLiteral("/b"))});
    QCOMPARE(opened->PopupUrl(), policy.tested.first());
    QVERIFY(!opened->Hidden());
    // A rejected one is never asked of the server, never seen, and in no list.
    policy.isPopup = [](const QString &) { return true; };
    m_f.Run(opener, click);
    QTRY_COMPARE(m_f.tabs->TabCount(), 3);
    QTRY_VERIFY(m_f.tabs->Tab(1)->Blocked());
    QCOMPARE(m_f.pages->VisiblePageCount(), 2);
    QMenu menu;
    const TTabListMenu list(&menu, *m_f.tabs);
    Q_EMIT menu.aboutToShow();
    QCOMPARE(menu.actions().size(), 2);
    QCOMPARE(m_f.tabs->TabCount(), 2);
    QCOMPARE(m_f.server.RequestCount("/b"), 1);
  }

  void EmptyWindowStaysHidden() {
    TBrowserTab *opener = m_f.tabs->GetActivePage();
    m_f.Load(opener, QStringLiteral("/opener"));
    m_f.Run(opener, QStringLiteral("window.w = window.open('about:blank')"));
    QTRY_COMPARE(m_f.tabs->TabCount(), 2);
    QCOMPARE(m_f.pages->VisiblePageCount(), 1);
    QVERIFY(m_f.tabs->Tab(1)->Hidden());
    m_f.Run(opener, QStringLiteral("window.w.location = '/b'"));
    QTRY_COMPARE(m_f.pages->VisiblePageCount(), 2);
    QTRY_COMPARE(m_f.tabs->Tab(1)->Title(), QStringLiteral("Page B"));
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
    m_f.tabs->Tab(0)->SetLocked(true);
    if (spared >= 0) m_f.tabs->Tab(spared)->SetHideFromCloseAll(true);
    m_f.closeAll->CloseAll(true);
    QTEST(m_f.Names(), "left");
    const TBrowserTab *left = m_f.tabs->GetActivePage();
    QCOMPARE(m_f.tabs->Tab(0), left);
    if (spared < 0) {
      QVERIFY(!left->Locked());
      QCOMPARE(m_f.pages->PageCaption(left), m_f.language.Global("Blank"));
    }
  }

  void CloseAllKeepCurrent() {
    TZVOptions(*m_f.store).Set(Setting::ConfirmCloseAll, false);
    OpenNamed("ABC");
    m_f.tabs->MakeMeActiveTab(1);
    m_f.closeAll->KeepCurrent();
    QCOMPARE(m_f.Names(), QStringList{QStringLiteral("B")});
    QVERIFY(!m_f.tabs->GetActivePage()->HideFromCloseAll());
  }

  void CloseAllAsks() {
    OpenNamed("AB");
    OnModalDialog<QDialog>([](QDialog &dialog) {
      dialog.findChild<QCheckBox *>(QStringLiteral("chkConfirm"))->setChecked(true);
      dialog.findChild<QPushButton *>(QStringLiteral("cmdCancel"))->click();
    });
    m_f.closeAll->CloseAll(false);
    QCOMPARE(m_f.tabs->TabCount(), 2);
    QVERIFY(!TZVOptions(*m_f.store).Get(Setting::ConfirmCloseAll));
    m_f.closeAll->CloseAll(false);  // asks no more
    QCOMPARE(m_f.tabs->TabCount(), 1);
  }

  void CloseAllFromList() {
    OpenNamed("ABC");
    m_f.tabs->Tab(2)->SetHideFromCloseAll(true);
    OnModalDialog<QDialog>([](QDialog &dialog) { dialog.reject(); });
    m_f.closeAll->ShowList();
    QCOMPARE(m_f.tabs->TabCount(), 3);
    OnModalDialog<QDialog>([](QDialog &dialog) {
      auto *list = dialog.findChild<QListWidget *>(QStringLiteral("CheckListBox1"));
      const bool allTicked = list->count() == 3 && list->item(2)->checkState() == Qt::Checked;
      list->item(1)->setCheckState(Qt::Unchecked);
      dialog.findChild<QPushButton *>(QStringLiteral("cmdClose"))->click();
      QVERIFY(allTicked);
    });
    m_f.closeAll->ShowList();
    QCOMPARE(m_f.Names(), QStringList{QStringLiteral("B")});  // being spared plays no part here
  }

  void ClosingLock() {
    TZVOptions(*m_f.store).Set(Setting::ConfirmCloseAll, false);
    OpenNamed("AB");
    m_f.tabs->SetClosingLocked(true);
    m_f.tabs->CloseActive();
    m_f.closeAll->CloseAll(false);
    Q_EMIT m_f.pages->CloseRequested(m_f.tabs->Tab(0));
    QCOMPARE(m_f.tabs->TabCount(), 2);
    m_f.tabs->SetClosingLocked(false);
    m_f.tabs->CloseActive();
    QCOMPARE(m_f.tabs->TabCount(), 1);
  }

  void TabListMenu() {
    m_f.tabs->Tab(0)->SetStickyName(QStringLiteral("Fish & chips"));
    m_f.tabs->NewTab();
    QMenu menu;
    const TTabListMenu list(&menu, *m_f.tabs);
    Q_EMIT menu.aboutToShow();
    Q_EMIT menu.aboutToShow();
    QCOMPARE(menu.actions().size(), 2);
    QCOMPARE(menu.actions().at(0)->text(), QStringLiteral("Fish && chips"));
    QCOMPARE(menu.actions().at(1)->text(), m_f.language.Global("Blank"));
    menu.actions().at(0)->trigger();
    QCOMPARE(m_f.tabs->GetActivePage(), m_f.tabs->Tab(0));
  }

  void TabMenuShowsTheTab() {
    TBrowserTab *first = m_f.tabs->Tab(0);
    m_f.Load(first, QStringLiteral("/a"));
    m_f.tabs->NewTab();
    const TActions &actions = *m_f.actions;
    for (const bool on : {false, true}) {
      first->SetLocked(on);
      first->SetHideFromCloseAll(on);
      first->SetStickyName(on ? QStringLiteral("A") : QString());
      m_f.tabMenu->Open(first, QPoint(0, 0));
      QCOMPARE(actions[TCommand::TabLocked]->isChecked(), on);
      QCOMPARE(actions[TCommand::TabSpared]->isChecked(), on);
      QCOMPARE(actions[TCommand::TabName]->text(), m_f.language.Global(on ? "StickyNameClear" : "StickyNameSet"));
      m_f.tabMenu->Menu()->close();
    }
    QVERIFY(actions[TCommand::TabHome]->isEnabled());
    m_f.tabMenu->Open(first, QPoint(0, 0));
    actions[TCommand::TabClose]->trigger();
    QVERIFY(m_f.tabs->TabCount() == 1 && m_f.tabs->Tab(0) != first);
  }

 private:
  // Tabs of these names; the first is the one that is there.
  void OpenNamed(const char *names) {
    for (const char *name = names; *name != 0; ++name) {
      (name == names ? m_f.tabs->Tab(0) : m_f.tabs->NewTab())->SetStickyName(QChar::fromLatin1(*name));
    }
  }

  TTabsFixture m_f;
};

int main(int argc, char **argv) {
  return RunWithEngine<TestTabs>(argc, argv);
}

#include "test_tabs.moc"
