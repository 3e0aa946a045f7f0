#include <QCheckBox>
#include <QFile>
#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QToolButton>

#include "actions/actions.h"
#include "config/registry_paths.h"
#include "groups/group_folder.h"
#include "search/address_bar.h"
#include "search/typed_addresses.h"
#include "support/modal_dialogs.h"
#include "ui/confirm_dialog.h"
#include "window/main_window_fixture.h"

// Page groups, the pop-up blocker and the search lists as they are reached from the main window: that each of its
// buttons, keys and boxes leads to the module it stands for, and that what was chosen is there after the next start.
class TestWindowModules final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase();
  void init();
  void cleanup();

  void GroupsFromTheMenu();
  void GroupToStartWith();
  void PopupsAreStopped();
  void PopupBlockerIsSwitchedOff();
  void PopupListIsWrittenAtTheEnd();
  void EnginesFromTheMenu_data();
  void EnginesFromTheMenu();
  void WhatIsTypedIsKept();

 private:
  [[nodiscard]] TTabStrip &Tabs() const { return m_f.window->Tabs(); }
  [[nodiscard]] TBrowserTab *Active() const { return Tabs().GetActivePage(); }
  [[nodiscard]] QAction *Action(TCommand command) const { return m_f.window->Actions()[command]; }
  [[nodiscard]] TAddressBar *Bar() const { return m_f.window->findChild<TAddressBar *>(); }
  [[nodiscard]] QToolButton *Button(const char *name) const { return m_f.window->findChild<QToolButton *>(name); }
  // Lets a menu fill itself as it does before it shows.
  static QList<QAction *> ItemsOf(QMenu *menu);
  // Lets a page open a window on /ad by itself, after it has loaded.
  void AskForPopup();
  [[nodiscard]] int HiddenTabs() const;

  TMainWindowFixture m_f;
};

void TestWindowModules::initTestCase() {
  m_f.Prepare();
  for (int i = 0; i < 10; ++i) m_f.server.RoutePage("/p" + QByteArray::number(i), "Page " + QByteArray::number(i));
  m_f.server.RoutePage("/ad", "Ad");
  m_f.server.RoutePage("/opener", "Opener", "<script>window.open('/ad?from=page')</script>");
}

void TestWindowModules::init() {
  m_f.Begin();
  TZVOptions(*m_f.store).Set(Setting::PopupHalvexNotify, false);
  m_f.Open();
}

void TestWindowModules::cleanup() {
  m_f.End();
  QDir(TGroupFolder::Path()).removeRecursively();
}

QList<QAction *> TestWindowModules::ItemsOf(QMenu *menu) {
  Q_EMIT menu->aboutToShow();
  return menu->actions();
}

int TestWindowModules::HiddenTabs() const {
  int hidden = 0;
  for (const TBrowserTab *tab : Tabs().Tabs()) hidden += Tabs().Pages().IsPageVisible(tab) ? 0 : 1;
  return hidden;
}

void TestWindowModules::GroupsFromTheMenu() {
  QFile file(TGroupFolder::Path() + QStringLiteral("/Set.hgp"));
  QVERIFY(file.open(QIODevice::WriteOnly));
  file.write("[HalvexGroup]\n");
  for (int i = 0; i < 10; ++i) {
    const QString address = m_f.server.Url(QStringLiteral("/p%1").arg(i));
    file.write(QStringLiteral("n%1=%2\n").arg(QString::number(i), address).toUtf8());
  }
  file.close();

  QMenu *menu = m_f.window->Actions().Menu(TMenu::Groups);
  Action(TCommand::CloseTabsFirst)->setChecked(false);
  ItemsOf(menu).last()->trigger();
  QCOMPARE(Tabs().TabCount(), 11);
  auto *toCome = Button("tbPagesToCome");
  // Before the event loop turns nothing can have begun.
  QCOMPARE(toCome->text(), m_f.window->Language().Text("MAIN", "PagesToCome").arg(10));
  QVERIFY(toCome->isVisible());
  toCome->click();
  QTRY_VERIFY_WITH_TIMEOUT(!toCome->isVisible(), m_f.LoadTime);
  QCOMPARE(m_f.server.RequestCount("/p9"), 0);
  Tabs().Activate(Tabs().Tab(10));
  QTRY_COMPARE_WITH_TIMEOUT(Active()->GetLocationName(), QStringLiteral("Page 9"), m_f.LoadTime);

  Action(TCommand::CloseTabsFirst)->setChecked(true);
  ItemsOf(menu).last()->trigger();
  QCOMPARE(Tabs().TabCount(), 10);
  QVERIFY(toCome->isVisible());
  Action(TCommand::StopAll)->trigger();
  QTRY_VERIFY_WITH_TIMEOUT(!toCome->isVisible(), m_f.LoadTime);
  m_f.Open();
  QVERIFY(Action(TCommand::CloseTabsFirst)->isChecked());
}

void TestWindowModules::GroupToStartWith() {
  QFile file(TGroupFolder::Path() + QStringLiteral("/Start.hgp"));
  QVERIFY(file.open(QIODevice::WriteOnly));
  file.write("[HalvexGroup]\nfirst=about:blank#1\nsecond=about:blank#2\n");
  file.close();
  OnModalDialog<QFileDialog>([](QFileDialog &dialog) { dialog.reject(); });
  Action(TCommand::StartGroup)->trigger();
  QVERIFY(Action(TCommand::StartBlank)->isChecked());
  OnModalDialog<QFileDialog>([](QFileDialog &dialog) {
    // The extension need not be typed.
    dialog.findChild<QLineEdit *>()->setText(QStringLiteral("Start"));
    QTest::keyClick(dialog.findChild<QLineEdit *>(), Qt::Key_Return);
  });
  Action(TCommand::StartGroup)->trigger();
  QVERIFY(Action(TCommand::StartGroup)->isChecked());

  m_f.Open();
  QVERIFY(Action(TCommand::StartGroup)->isChecked());
  QCOMPARE(Tabs().TabCount(), 2);
  QCOMPARE(Tabs().Tab(0)->StickyName(), QStringLiteral("first"));
  // A page that the next start begins with takes the free tab, so nothing is closed for the group.
  TZVOptions(*m_f.store).Set(Setting::StartupPage, QStringLiteral("about:blank#0"));
  m_f.Open();
  QCOMPARE(Tabs().TabCount(), 3);
  QCOMPARE(Tabs().Tab(0)->Url(), QStringLiteral("about:blank#0"));
}

void TestWindowModules::AskForPopup() {
  TBrowserTab *tab = Tabs().Tab(0);
  Tabs().Activate(tab);
  tab->Navigate(m_f.server.Url(QStringLiteral("/opener")));
  QTRY_VERIFY_WITH_TIMEOUT(Tabs().TabCount() == 2, m_f.LoadTime);
}

void TestWindowModules::PopupsAreStopped() {
  AskForPopup();
  TBrowserTab *popup = Tabs().Tab(1);
  QTRY_COMPARE_WITH_TIMEOUT(popup->GetLocationName(), QStringLiteral("Ad"), m_f.LoadTime);
  Tabs().Activate(popup);
  const QString pattern = m_f.server.Url(QStringLiteral("/ad"));
  OnModalDialog<QInputDialog>([&](QInputDialog &dialog) {
    QCOMPARE(dialog.textValue(), pattern);
    dialog.accept();
  });
  QTest::keyClick(m_f.window.get(), Qt::Key_F8);
  QTRY_COMPARE(Tabs().TabCount(), 1);

  auto *counter = Button("tbPopupsStopped");
  QVERIFY(!counter->isVisible());
  AskForPopup();
  QTRY_VERIFY_WITH_TIMEOUT(counter->isVisible(), m_f.LoadTime);
  QCOMPARE(counter->text(), m_f.window->Language().Text("POPUPS", "Stopped").arg(1));
  QCOMPARE(HiddenTabs(), 1);
  QTRY_COMPARE_WITH_TIMEOUT(Tabs().TabCount(), 1, 3 * TTabStrip::CloseHiddenInterval);
  // The counter is that of the page in front.
  Tabs().NewTab();
  QVERIFY(!counter->isVisible());
  Active()->Close();
  QVERIFY(counter->isVisible());
  const QList<QAction *> stopped = ItemsOf(counter->menu());
  QCOMPARE(stopped.size(), 1);
  stopped.first()->menu()->actions().first()->trigger();
  QCOMPARE(Active()->Url(), pattern + QStringLiteral("?from=page"));
  m_f.Open();
  QCOMPARE(TZVOptions(*m_f.store).PopupList(), QStringList(pattern));
}

void TestWindowModules::PopupBlockerIsSwitchedOff() {
  TZVOptions(*m_f.store).SetPopupList({m_f.server.Url(QStringLiteral("/ad"))});
  m_f.Open();
  Action(TCommand::UsePopupBlocker)->trigger();
  AskForPopup();
  QTRY_COMPARE_WITH_TIMEOUT(Tabs().Tab(1)->GetLocationName(), QStringLiteral("Ad"), m_f.LoadTime);
  QCOMPARE(HiddenTabs(), 0);
  m_f.Open();
  QVERIFY(!Action(TCommand::UsePopupBlocker)->isChecked());
}

// Whatever it was read from: in its order, and numbered.
void TestWindowModules::PopupListIsWrittenAtTheEnd() {
  const QString key = QString::fromLatin1(RegistryKey::PopupHalvex);
  constexpr TRegistryHive Hive = TRegistryHive::CurrentUser;
  m_f.window.reset();
  QVERIFY(m_f.store->ReplaceKey(Hive, key, {{"url7", "http://b.test/"}, {"old", "http://a.test/"}}));
  m_f.Open();
  m_f.window.reset();
  QStringList lines;
  for (const TRegistryValue &value : m_f.store->Values(Hive, key)) lines.append(value.name + u'=' + value.data);
  QCOMPARE(lines, (QStringList{"url1=http://a.test/", "url2=http://b.test/"}));
}

void TestWindowModules::EnginesFromTheMenu_data() {
  QTest::addColumn<bool>("newTab");
  QTest::newRow("in a new tab") << true;
  QTest::newRow("in this tab") << false;
}

void TestWindowModules::EnginesFromTheMenu() {
  QFETCH(bool, newTab);
  TZVOptions options(*m_f.store);
  options.SetSearchEngines({{QStringLiteral("Find"), m_f.server.Url(QStringLiteral("/p1"))}});
  options.Set(Setting::SearchNewWin, newTab);
  m_f.Open();
  QList<QAction *> items = ItemsOf(m_f.window->Actions().Menu(TMenu::SearchEngines));
  QCOMPARE(items.last()->text(), QStringLiteral("Find"));
  items.last()->trigger();
  QCOMPARE(Tabs().TabCount(), newTab ? 2 : 1);
  QTRY_COMPARE_WITH_TIMEOUT(Active()->GetLocationName(), QStringLiteral("Page 1"), m_f.LoadTime);
  // It was chosen, not typed.
  QCOMPARE(Bar()->count(), 0);
  OnModalDialog<QDialog>([](QDialog &dialog) { dialog.reject(); });
  items.first()->trigger();
}

void TestWindowModules::WhatIsTypedIsKept() {
  const QString page = m_f.server.Url(QStringLiteral("/p2"));
  Action(TCommand::EditAddress)->trigger();
  QTest::keyClicks(Bar()->lineEdit(), page);
  Action(TCommand::EditAddress)->trigger();
  m_f.window->findChild<QAction *>(QStringLiteral("tbGo"))->trigger();
  QTRY_COMPARE_WITH_TIMEOUT(Active()->GetLocationName(), QStringLiteral("Page 2"), m_f.LoadTime);
  QCOMPARE(Bar()->count(), 0);  // only Enter files

  QTest::keyClick(Bar()->lineEdit(), Qt::Key_Return);
  QTRY_COMPARE_WITH_TIMEOUT(Bar()->count(), 1, m_f.LoadTime);
  m_f.Open();
  QCOMPARE(Bar()->itemText(0), page);
  OnModalDialog<TfrmConfirm>([](TfrmConfirm &dialog) { dialog.findChild<QPushButton *>("cmdOK")->click(); });
  Action(TCommand::ClearAddresses)->trigger();
  TTypedAddresses typed;
  typed.Load(*m_f.store);
  QVERIFY(typed.List().isEmpty());
}

int main(int argc, char **argv) {
  return RunWithEngine<TestWindowModules>(argc, argv);
}
#include "test_window_modules.moc"
