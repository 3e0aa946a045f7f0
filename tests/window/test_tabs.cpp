#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QInputDialog>
#include <QListWidget>
#include <QMainWindow>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QWebEnginePage>

#include "browser/tabs/auto_refresh.h"
#include "browser/tabs/browser_tab.h"
#include "browser/tabs/close_all.h"
#include "browser/tabs/tab_menus.h"
#include "browser/tabs/tab_strip.h"
#include "config/language.h"
#include "config/options.h"
#include "support/modal_dialogs.h"
#include "support/test_server.h"

// Tabs with the real engine behind them, against a local server.
class TestTabs final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase();
  void init();
  void cleanup();

  void InsertPosition_data();
  void InsertPosition();
  void BackgroundTab_data();
  void BackgroundTab();
  void ClosingHandsOver();
  void ClosingTheOnlyTab();
  void TitleAndStates();
  void LockedTabSendsLinksAway();
  void LockedTabKeepsItsFrames();
  void LockPending();
  void StickyName();
  void WindowOfAPage();
  void RejectedWindow();
  void RejectedWindowGoesByItself();
  void EmptyWindowStaysHidden();
  void CloseAll_data();
  void CloseAll();
  void CloseAllKeepCurrent();
  void CloseAllAsks();
  void CloseAllFromList();
  void ClosingLock();
  void AutoRefresh();
  void TabListMenu();
  void TabMenuItems();
  void ManyTabs();

 private:
  [[nodiscard]] QStringList Names() const;
  TBrowserTab *Open(const QString &name);
  void Load(TBrowserTab *tab, const QString &path);
  void Run(TBrowserTab *tab, const QString &script);

  TTestServer m_server;
  TLanguage m_language;
  std::unique_ptr<QTemporaryDir> m_folder;
  std::unique_ptr<TRegistryStore> m_store;
  std::unique_ptr<TEngine> m_engine;
  std::unique_ptr<TTabEnvironment> m_environment;
  std::unique_ptr<QMainWindow> m_window;
  TZVPageControl *m_pages = nullptr;
  std::unique_ptr<TTabStrip> m_tabs;
  std::unique_ptr<TCloseAllTabs> m_closeAll;
};

void TestTabs::initTestCase() {
  QVERIFY(m_language.LoadFile(QStringLiteral(ZV_SOURCE_DIR "/Languages/zveng.ini")));
  QVERIFY(m_server.Listen());
  m_server.RoutePage("/a", "Page A", "<a id='link' href='/b'>b</a><a id='anchor' href='#down'>down</a>");
  m_server.RoutePage("/b", "Page B");
  m_server.RoutePage("/c", "Page <C> & co");
  m_server.RoutePage("/frames", "Frames", "<iframe id='f' src='/b'></iframe><a id='link' href='/c'>c</a>");
  m_server.RoutePage("/opener", "Opener", "<a id='link' href='/b' target='_blank'>new window</a>");
}

void TestTabs::init() {
  m_folder = std::make_unique<QTemporaryDir>();
  m_store = std::make_unique<TRegistryStore>(m_folder->filePath(QStringLiteral("registry.sqlite")));
  m_engine = std::make_unique<TEngine>(m_language, *m_store);
  m_environment.reset(new TTabEnvironment{*m_engine, m_language, *m_store, {}, {}});
  m_window = std::make_unique<QMainWindow>();
  m_pages = new TZVPageControl(m_window.get());
  m_window->setCentralWidget(m_pages);
  m_window->resize(800, 600);
  m_window->show();
  m_tabs = std::make_unique<TTabStrip>(m_window.get(), m_pages, *m_environment);
  m_closeAll = std::make_unique<TCloseAllTabs>(m_window.get(), *m_tabs);
  m_tabs->NewTab();
}

void TestTabs::cleanup() {
  m_closeAll.reset();
  m_tabs.reset();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  m_window.reset();
  m_environment.reset();
  m_engine.reset();
  m_store.reset();
  m_folder.reset();
}

QStringList TestTabs::Names() const {
  QStringList names;
  for (const TBrowserTab *tab : m_tabs->Tabs()) names.append(tab->StickyName());
  return names;
}

TBrowserTab *TestTabs::Open(const QString &name) {
  TBrowserTab *tab = m_tabs->NewTab();
  tab->SetStickyName(name);
  return tab;
}

void TestTabs::Load(TBrowserTab *tab, const QString &path) {
  QSignalSpy loaded(m_tabs.get(), &TTabStrip::TabLoaded);
  tab->Navigate(m_server.Url(path));
  QTRY_VERIFY_WITH_TIMEOUT(!loaded.isEmpty() && loaded.last().first().value<TBrowserTab *>() == tab, 15000);
}

void TestTabs::Run(TBrowserTab *tab, const QString &script) {
  bool done = false;
  tab->Browser()->EnginePage()->runJavaScript(script, [&done](const QVariant &) { done = true; });
  QTRY_VERIFY_WITH_TIMEOUT(done, 10000);
}

void TestTabs::InsertPosition_data() {
  QTest::addColumn<int>("active");
  QTest::addColumn<bool>("atEnd");
  QTest::addColumn<QStringList>("names");
  QTest::newRow("after the last") << 2 << false << QStringList{"A", "B", "C", "D"};
  QTest::newRow("after the active one") << 1 << false << QStringList{"A", "B", "D", "C"};
  QTest::newRow("after the first") << 0 << false << QStringList{"A", "D", "B", "C"};
  QTest::newRow("at the end") << 0 << true << QStringList{"A", "B", "C", "D"};
}

void TestTabs::InsertPosition() {
  QFETCH(int, active);
  QFETCH(bool, atEnd);
  m_tabs->Tab(0)->SetStickyName(QStringLiteral("A"));
  Open(QStringLiteral("B"));
  Open(QStringLiteral("C"));
  m_tabs->MakeMeActiveTab(active);
  m_environment->settings.openNewAtEnd = atEnd;
  const TBrowserTab *tab = Open(QStringLiteral("D"));
  QTEST(Names(), "names");
  QCOMPARE(m_tabs->GetActivePage(), tab);
  m_tabs->MakeMeActiveTab(99);
  m_tabs->MakeMeActiveTab(-1);
  QCOMPARE(m_tabs->GetActivePage(), tab);
}

void TestTabs::BackgroundTab_data() {
  QTest::addColumn<bool>("foreground");
  QTest::newRow("the active tab stays") << false;
  QTest::newRow("brought to the front") << true;
}

void TestTabs::BackgroundTab() {
  QFETCH(bool, foreground);
  m_environment->settings.openNewInForeground = foreground;
  TBrowserTab *first = m_tabs->GetActivePage();
  TBrowserTab *tab = m_tabs->NewBackgroundTab();
  QCOMPARE(m_tabs->GetActivePage(), foreground ? tab : first);
  QCOMPARE(m_pages->IndexOf(tab), 1);
}

void TestTabs::ClosingHandsOver() {
  m_tabs->Tab(0)->SetStickyName(QStringLiteral("A"));
  for (const char *name : {"B", "C", "D"}) Open(QString::fromLatin1(name));
  const auto close = [this](int position) {
    m_tabs->MakeMeActiveTab(position);
    m_tabs->CloseActive();
    return m_tabs->GetActivePage()->StickyName();
  };
  QCOMPARE(close(1), QStringLiteral("C"));  // the next one
  QCOMPARE(close(0), QStringLiteral("D"));  // the first hands over backwards, round the end
  m_tabs->MakeMeActiveTab(1);
  m_tabs->Tab(0)->Close();  // one in the background changes nothing
  QCOMPARE(Names(), QStringList{QStringLiteral("D")});
}

void TestTabs::ClosingTheOnlyTab() {
  TBrowserTab *tab = m_tabs->GetActivePage();
  Load(tab, QStringLiteral("/a"));
  tab->SetStickyName(QStringLiteral("Mine"));
  tab->SetHideFromCloseAll(true);
  tab->SetLocked(true);
  m_tabs->CloseActive();
  QCOMPARE(m_tabs->TabCount(), 1);
  QCOMPARE(m_tabs->GetActivePage(), tab);
  QCOMPARE(m_pages->PageCaption(tab), m_language.Global("Blank"));
  QVERIFY(!tab->Locked() && tab->StickyName().isEmpty() && !tab->HideFromCloseAll() && tab->Url().isEmpty());
  QCOMPARE(m_pages->PageImage(tab), -1);
  QTRY_COMPARE(tab->GetLocationUrl(), QStringLiteral("about:blank"));
  QTRY_COMPARE(m_pages->PageCaption(tab), m_language.Global("Blank"));
  QCOMPARE(m_server.RequestCount("/b"), 0);
}

void TestTabs::TitleAndStates() {
  TBrowserTab *front = m_tabs->GetActivePage();
  Load(front, QStringLiteral("/c"));
  QCOMPARE(m_pages->PageCaption(front), QStringLiteral("Page <C> && co"));
  QCOMPARE(front->State(), TTabState::None);
  QVERIFY(!front->Busy() && !front->Secure());

  TBrowserTab *back = m_tabs->NewBackgroundTab();
  QSignalSpy loaded(m_tabs.get(), &TTabStrip::TabLoaded);
  QList<TTabState> seen;
  connect(m_tabs.get(), &TTabStrip::TabsChanged, back, [&] { seen.append(back->State()); });
  back->Navigate(m_server.Url(QStringLiteral("/b")));
  QTRY_VERIFY(!loaded.isEmpty());
  QCOMPARE(back->State(), TTabState::FinishedInBackground);
  QCOMPARE(m_pages->PageImage(back), 1);
  QVERIFY(seen.contains(TTabState::Started));
  m_tabs->Activate(back);
  QCOMPARE(back->State(), TTabState::None);
}

void TestTabs::LockedTabSendsLinksAway() {
  TBrowserTab *locked = m_tabs->GetActivePage();
  Load(locked, QStringLiteral("/a"));
  locked->SetLocked(true);
  QCOMPARE(m_pages->PageImage(locked), 3);

  Run(locked, QStringLiteral("document.getElementById('anchor').click()"));
  QTRY_VERIFY(locked->GetLocationUrl().endsWith(QStringLiteral("#down")));
  QCOMPARE(m_tabs->TabCount(), 1);

  Run(locked, QStringLiteral("document.getElementById('link').click()"));
  QTRY_COMPARE(m_tabs->TabCount(), 2);
  TBrowserTab *beside = m_tabs->Tab(1);
  QTRY_COMPARE(beside->GetLocationUrl(), m_server.Url(QStringLiteral("/b")));
  QVERIFY(beside->OpenedAsNewWindow());
  QCOMPARE(m_tabs->GetActivePage(), locked);
  QVERIFY(locked->GetLocationUrl().startsWith(m_server.Url(QStringLiteral("/a"))));

  // A reload is not leaving.
  const int before = m_server.RequestCount("/a");
  locked->Refresh();
  QTRY_COMPARE(m_server.RequestCount("/a"), before + 1);
  QCOMPARE(m_tabs->TabCount(), 2);
  QCOMPARE(m_pages->PageImage(locked), 3);
}

void TestTabs::LockedTabKeepsItsFrames() {
  TBrowserTab *locked = m_tabs->GetActivePage();
  locked->SetLockPending(true);
  Load(locked, QStringLiteral("/frames"));
  QVERIFY(locked->Locked());
  const int before = m_server.RequestCount("/c");
  Run(locked, QStringLiteral("document.getElementById('f').src = '/c'"));
  QTRY_COMPARE(m_server.RequestCount("/c"), before + 1);
  QCOMPARE(m_tabs->TabCount(), 1);
}

void TestTabs::LockPending() {
  TBrowserTab *tab = m_tabs->GetActivePage();
  tab->SetLockPending(true);
  QVERIFY(!tab->Locked());
  Load(tab, QStringLiteral("/b"));
  QVERIFY(tab->Locked());
  QCOMPARE(tab->GetLocationUrl(), m_server.Url(QStringLiteral("/b")));
}

void TestTabs::StickyName() {
  TBrowserTab *tab = m_tabs->GetActivePage();
  Load(tab, QStringLiteral("/b"));
  OnModalDialog<QInputDialog>([](QInputDialog &box) {
    const QString offered = box.textValue();
    box.setTextValue(QStringLiteral("My tab"));
    box.accept();
    QCOMPARE(offered, QStringLiteral("Page B"));
  });
  tab->AskStickyName();
  QCOMPARE(m_pages->PageCaption(tab), QStringLiteral("My tab"));
  Load(tab, QStringLiteral("/a"));
  QCOMPARE(m_pages->PageCaption(tab), QStringLiteral("My tab"));
  QCOMPARE(tab->Title(), QStringLiteral("Page A"));
  tab->SetStickyName(QString());
  QCOMPARE(m_pages->PageCaption(tab), QStringLiteral("Page A"));
}

void TestTabs::WindowOfAPage() {
  TBrowserTab *opener = m_tabs->GetActivePage();
  QStringList tested;
  m_environment->hooks.isPopupBlocked = [&tested](const QString &address) {
    tested.append(address);
    return false;
  };
  Load(opener, QStringLiteral("/opener"));
  Run(opener, QStringLiteral("document.getElementById('link').click()"));
  QTRY_COMPARE(m_pages->VisiblePageCount(), 2);
  QCOMPARE(m_tabs->GetActivePage(), opener);
  TBrowserTab *opened = m_tabs->Tab(1);
  QTRY_COMPARE(opened->Title(), QStringLiteral("Page B"));
  QCOMPARE(tested, QStringList{m_server.Url(QStringLiteral("/b"))});
  QCOMPARE(opened->PopupUrl(), m_server.Url(QStringLiteral("/b")));
  QVERIFY(!opened->Hidden());
}

void TestTabs::RejectedWindow() {
  TBrowserTab *opener = m_tabs->GetActivePage();
  m_environment->hooks.isPopupBlocked = [](const QString &) { return true; };
  Load(opener, QStringLiteral("/opener"));
  const int before = m_server.RequestCount("/b");
  Run(opener, QStringLiteral("document.getElementById('link').click()"));
  QTRY_COMPARE(m_tabs->TabCount(), 2);
  QTRY_VERIFY(m_tabs->Tab(1)->Blocked());
  QCOMPARE(m_pages->VisiblePageCount(), 1);
  QMenu menu;
  MakeTabListMenu(&menu, *m_tabs);
  Q_EMIT menu.aboutToShow();
  QCOMPARE(menu.actions().size(), 1);
  QCOMPARE(m_tabs->TabCount(), 1);
  QCOMPARE(m_server.RequestCount("/b"), before);
}

void TestTabs::RejectedWindowGoesByItself() {
  TBrowserTab *opener = m_tabs->GetActivePage();
  m_environment->hooks.isPopupBlocked = [](const QString &) { return true; };
  Load(opener, QStringLiteral("/opener"));
  Run(opener, QStringLiteral("document.getElementById('link').click()"));
  QTRY_VERIFY(m_tabs->TabCount() == 2 && m_tabs->Tab(1)->Blocked());
  QTRY_COMPARE_WITH_TIMEOUT(m_tabs->TabCount(), 1, 3 * TTabStrip::CloseHiddenInterval);
}

void TestTabs::EmptyWindowStaysHidden() {
  TBrowserTab *opener = m_tabs->GetActivePage();
  Load(opener, QStringLiteral("/opener"));
  Run(opener, QStringLiteral("window.w = window.open('about:blank')"));
  QTRY_COMPARE(m_tabs->TabCount(), 2);
  QCOMPARE(m_pages->VisiblePageCount(), 1);
  QVERIFY(m_tabs->Tab(1)->Hidden());
  Run(opener, QStringLiteral("window.w.location = '/b'"));
  QTRY_COMPARE(m_pages->VisiblePageCount(), 2);
  QTRY_COMPARE(m_tabs->Tab(1)->Title(), QStringLiteral("Page B"));
}

void TestTabs::CloseAll_data() {
  QTest::addColumn<int>("spared");
  QTest::addColumn<QStringList>("left");
  QTest::newRow("nothing spared") << -1 << QStringList{""};
  QTest::newRow("first") << 0 << QStringList{"A"};
  QTest::newRow("middle") << 1 << QStringList{"B"};
  QTest::newRow("last") << 2 << QStringList{"C"};
}

void TestTabs::CloseAll() {
  QFETCH(int, spared);
  m_tabs->Tab(0)->SetStickyName(QStringLiteral("A"));
  m_tabs->Tab(0)->SetLocked(true);
  Open(QStringLiteral("B"));
  Open(QStringLiteral("C"));
  if (spared >= 0) m_tabs->Tab(spared)->SetHideFromCloseAll(true);
  m_closeAll->CloseAll(true);
  QTEST(Names(), "left");
  const TBrowserTab *left = m_tabs->GetActivePage();
  QCOMPARE(m_tabs->Tab(0), left);
  if (spared < 0) {
    QVERIFY(!left->Locked());
    QCOMPARE(m_pages->PageCaption(left), m_language.Global("Blank"));
  }
}

void TestTabs::CloseAllKeepCurrent() {
  TZVOptions(*m_store).Set(Setting::ConfirmCloseAll, false);
  m_tabs->Tab(0)->SetStickyName(QStringLiteral("A"));
  Open(QStringLiteral("B"));
  Open(QStringLiteral("C"));
  m_tabs->MakeMeActiveTab(1);
  m_closeAll->KeepCurrent();
  QCOMPARE(Names(), QStringList{QStringLiteral("B")});
  QVERIFY(!m_tabs->GetActivePage()->HideFromCloseAll());
}

void TestTabs::CloseAllAsks() {
  Open(QStringLiteral("B"));
  OnModalDialog<QDialog>([](QDialog &dialog) {
    dialog.findChild<QCheckBox *>(QStringLiteral("chkConfirm"))->setChecked(true);
    dialog.findChild<QPushButton *>(QStringLiteral("cmdCancel"))->click();
  });
  m_closeAll->CloseAll(false);
  QCOMPARE(m_tabs->TabCount(), 2);
  QVERIFY(!TZVOptions(*m_store).Get(Setting::ConfirmCloseAll));
  m_closeAll->CloseAll(false);  // asks no more
  QCOMPARE(m_tabs->TabCount(), 1);
}

void TestTabs::CloseAllFromList() {
  m_tabs->Tab(0)->SetStickyName(QStringLiteral("A"));
  Open(QStringLiteral("B"));
  Open(QStringLiteral("C"))->SetHideFromCloseAll(true);
  OnModalDialog<QDialog>([](QDialog &dialog) {
    auto *list = dialog.findChild<QListWidget *>(QStringLiteral("CheckListBox1"));
    const bool allTicked = list->count() == 3 && list->item(2)->checkState() == Qt::Checked;
    list->item(1)->setCheckState(Qt::Unchecked);
    dialog.findChild<QPushButton *>(QStringLiteral("cmdClose"))->click();
    QVERIFY(allTicked);
  });
  m_closeAll->ShowList();
  QCOMPARE(Names(), QStringList{QStringLiteral("B")});  // being spared plays no part here
}

void TestTabs::ClosingLock() {
  TZVOptions(*m_store).Set(Setting::ConfirmCloseAll, false);
  Open(QStringLiteral("B"));
  m_tabs->SetClosingLocked(true);
  m_tabs->CloseActive();
  m_closeAll->CloseAll(false);
  Q_EMIT m_pages->CloseRequested(m_tabs->Tab(0));
  QCOMPARE(m_tabs->TabCount(), 2);
  m_tabs->SetClosingLocked(false);
  m_tabs->CloseActive();
  QCOMPARE(m_tabs->TabCount(), 1);
}

void TestTabs::AutoRefresh() {
  TAutoRefresh refresh(m_language, *m_store, this);
  QMenu menu;
  refresh.FillMenu(&menu);
  QCOMPARE(menu.actions().size(), 6);
  QVERIFY(menu.actions().first()->isChecked());
  auto *timer = refresh.findChild<QTimer *>(QStringLiteral("tmrRefresh"));
  auto *half = refresh.findChild<QAction *>(QStringLiteral("pmARef30"));
  QVERIFY(half != nullptr);
  half->trigger();
  QCOMPARE(refresh.Interval(), 30000);
  QVERIFY(timer->isActive() && timer->interval() == 30000);
  QCOMPARE(TZVOptions(*m_store).Get(Setting::AutoRefresh), 30000);
  menu.actions().first()->trigger();
  QCOMPARE(refresh.Interval(), 0);
  QCOMPARE(TZVOptions(*m_store).Get(Setting::AutoRefresh), 0);
  QVERIFY(!timer->isActive());
}

void TestTabs::TabListMenu() {
  m_tabs->Tab(0)->SetStickyName(QStringLiteral("Fish & chips"));
  m_tabs->NewTab();
  QMenu menu;
  MakeTabListMenu(&menu, *m_tabs);
  Q_EMIT menu.aboutToShow();
  Q_EMIT menu.aboutToShow();
  QCOMPARE(menu.actions().size(), 2);
  QCOMPARE(menu.actions().at(0)->text(), QStringLiteral("Fish && chips"));
  QCOMPARE(menu.actions().at(1)->text(), m_language.Global("Blank"));
  menu.actions().at(0)->trigger();
  QCOMPARE(m_tabs->GetActivePage(), m_tabs->Tab(0));
}

void TestTabs::TabMenuItems() {
  TTabMenu menu(m_window.get(), *m_tabs, *m_closeAll);
  TBrowserTab *first = m_tabs->Tab(0);
  Load(first, QStringLiteral("/a"));
  m_tabs->NewTab();
  const auto item = [&menu](const char *name) { return menu.Menu()->findChild<QAction *>(QLatin1String(name)); };

  menu.Open(first, QPoint(0, 0));
  QVERIFY(item("pmTabHome")->isEnabled());
  QCOMPARE(item("pmStickyTitle")->text(), m_language.Global("StickyNameSet"));
  item("pmTabLocked")->trigger();
  QVERIFY(first->Locked());
  menu.Menu()->close();

  first->SetStickyName(QStringLiteral("A"));
  menu.Open(first, QPoint(0, 0));
  QVERIFY(item("pmTabLocked")->isChecked());
  QCOMPARE(item("pmStickyTitle")->text(), m_language.Global("StickyNameClear"));
  item("pmStickyTitle")->trigger();
  QVERIFY(first->StickyName().isEmpty());
  item("pmHideFromCloseAll")->trigger();
  QVERIFY(first->HideFromCloseAll());
  item("pmTabClose")->trigger();
  QCOMPARE(m_tabs->TabCount(), 1);
  menu.Menu()->close();
}

void TestTabs::ManyTabs() {
  constexpr int Count = 500;
  m_environment->settings.openNewAtEnd = true;
  for (int i = 1; i < Count; ++i) m_tabs->NewBackgroundTab();
  QCOMPARE(m_tabs->TabCount(), Count);
  m_tabs->ActivateVisible(9);
  QCOMPARE(m_tabs->GetActivePage(), m_tabs->Tab(Count - 1));
  m_tabs->ShowAdjacent(true);
  QCOMPARE(m_tabs->GetActivePage(), m_tabs->Tab(0));
  m_closeAll->CloseAll(true);
  QCOMPARE(m_tabs->TabCount(), 1);
}

int main(int argc, char **argv) {
  TEngine::RegisterSchemes();
  QApplication application(argc, argv);
  TestTabs test;
  return QTest::qExec(&test, argc, argv);
}

#include "test_tabs.moc"
