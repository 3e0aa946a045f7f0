#include <algorithm>
#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QStackedWidget>
#include <QToolButton>
#include <QTreeView>
#include <QtTest>

#include "browser/page/permission_decisions.h"
#include "chrome/folder_view/folder_view.h"
#include "chrome/side_bar/favorites_page.h"
#include "chrome/side_bar/forget_dialog.h"
#include "chrome/side_bar/groups_page.h"
#include "chrome/side_bar/history_page.h"
#include "chrome/side_bar/side_bar_frame.h"
#include "config/registry_paths.h"
#include "favorites/favicon_cache.h"
#include "support/data_row.h"
#include "window/main_window_fixture.h"

using namespace Qt::StringLiterals;

// The side bar in the main window: how it opens and closes, how wide it is, and when its pages are made.
class TestSideBar final : public QObject, private TMainWindowFixture {
  Q_OBJECT

 private:
  using TStep = std::function<void(TestSideBar &)>;

  [[nodiscard]] QWidget &Part(const char *name) const { return *window->findChild<QWidget *>(QLatin1String(name)); }
  [[nodiscard]] QWidget &Bar() const { return Part("HalvexBar"); }
  [[nodiscard]] QWidget &Edge() const { return Part("splHalvexBar"); }
  [[nodiscard]] QWidget &Pages() const { return Part("pcPage"); }
  [[nodiscard]] QStackedWidget &Stack() const { return *window->findChild<QStackedWidget *>(u"pcHalvexBar"_s); }
  [[nodiscard]] THistoryPage *History() const { return window->findChild<THistoryPage *>(); }
  [[nodiscard]] bool IsStored() const { return TZVOptions(*store).Get(Setting::ViewHalvexBar); }
  void Trigger(TCommand command) const { window->Actions()[command]->trigger(); }
  void OpenWith(bool barOpen) {
    TZVOptions(*store).Set(Setting::ViewHalvexBar, barOpen);
    Open();
    QTRY_COMPARE(Bar().isVisible(), barOpen);
  }
  void DragEdge(int distance, const std::function<void()> &meanwhile = {}) const {
    const QPoint from = Edge().rect().center();
    QTest::mousePress(&Edge(), Qt::LeftButton, {}, from);
    const QPoint to = Edge().mapToGlobal(from) + QPoint(distance, 0);
    QTest::mouseMove(&Edge(), Edge().mapFromGlobal(to));
    if (meanwhile) meanwhile();
    QTest::mouseRelease(&Edge(), Qt::LeftButton, {}, Edge().mapFromGlobal(to));
  }

 private Q_SLOTS:
  void initTestCase() { Prepare(); }
  void init() { Begin(); }
  void cleanup() { End(); }

  void OpensAndCloses_data() {
    Columns<bool, TStep>("open", "step");
    const auto row = [](const char *name, bool open, TStep step) { Row(name, open, step); };
    row("command", false, [](TestSideBar &t) { t.Trigger(TCommand::ViewHalvexBar); });
    row("key", false, [](TestSideBar &t) { QTest::keyClick(t.window.get(), Qt::Key_B, Qt::ControlModifier); });
    row("click on the edge", false, [](TestSideBar &t) { QTest::mouseClick(&t.Edge(), Qt::LeftButton); });
    row("page", false, [](TestSideBar &t) { t.Trigger(TCommand::SideBarHistory); });
    row("closed by command", true, [](TestSideBar &t) { t.Trigger(TCommand::ViewHalvexBar); });
    row("closed by its button", true, [](TestSideBar &t) { QTest::mouseClick(&t.Part("tbHBClose"), Qt::LeftButton); });
    row("double click", true, [](TestSideBar &t) { QTest::mouseDClick(&t.Edge(), Qt::LeftButton); });
    row("Enter on the edge", true, [](TestSideBar &t) { QTest::keyClick(&t.Edge(), Qt::Key_Return); });
  }
  void OpensAndCloses() {
    QFETCH(bool, open);
    QFETCH(TStep, step);
    OpenWith(open);
    const int whole = window->width();
    step(*this);
    QTRY_COMPARE(Bar().isVisible(), !open);
    QCOMPARE(IsStored(), !open);
    QCOMPARE(window->Actions()[TCommand::ViewHalvexBar]->isChecked(), !open);
    QVERIFY(Edge().isVisible());
    const int bar = open ? 0 : Bar().width();
    QCOMPARE(bar, open ? 0 : 234);
    QCOMPARE(Pages().width(), whole - bar - Edge().width());
    // A single click leaves an open bar alone.
    if (!open) QTest::mouseClick(&Edge(), Qt::LeftButton);
    QCOMPARE(Bar().isVisible(), !open);
  }

  void KeyboardGoesToItAndBack() {
    OpenWith(false);
    Trigger(TCommand::SideBarHistory);
    QTRY_VERIFY(History() != nullptr && History()->isAncestorOf(QApplication::focusWidget()));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    QTRY_VERIFY(!Bar().isAncestorOf(QApplication::focusWidget()));
    QVERIFY(Bar().isVisible());
    Trigger(TCommand::SideBarHistory);
    QTRY_VERIFY(Bar().isAncestorOf(QApplication::focusWidget()));
    Trigger(TCommand::ViewHalvexBar);
    QTRY_VERIFY(Pages().isAncestorOf(QApplication::focusWidget()));
  }

  void PagesAreMadeOnce() {
    OpenWith(false);
    QCOMPARE(Stack().count(), 0);
    Trigger(TCommand::SideBarHistory);
    QTRY_COMPARE(Stack().count(), 1);
    const THistoryPage *page = History();
    QVERIFY(page->isVisible());
    Trigger(TCommand::ViewHalvexBar);
    Trigger(TCommand::SideBarHistory);
    QCOMPARE(Stack().count(), 1);
    QCOMPARE(History(), page);
  }

  void StartWithTheBarOpenWaitsForTheFirstPage() {
    TZVOptions(*store).Set(Setting::ViewHalvexBar, true);
    TTestResponse slow = TTestResponse::Page("<title>late</title>");
    slow.delayMs = 1000;
    server.Route("/late", slow);
    TZVOptions(*store).Set(Setting::CommandLine, server.Url(u"/late"_s));
    Open();
    QVERIFY(Bar().isVisible());
    QTRY_COMPARE_WITH_TIMEOUT(server.RequestCount("/late"), 1, LoadTime);
    QCOMPARE(Stack().count(), 0);
    const QWidget *close = Bar().findChild<QToolButton *>(u"tbHBClose"_s);
    QVERIFY(!Stack().isVisible() && !close->isVisible());
    QTRY_COMPARE_WITH_TIMEOUT(Stack().count(), 1, LoadTime);
    QCOMPARE(window->Tabs().GetActivePage()->Title(), u"late"_s);
    QVERIFY(Stack().currentWidget()->isVisible() && close->isVisible());
  }

  void OpenedByItsEdgeItDoesNotWait() {
    TTestResponse slow = TTestResponse::Page("<title>late</title>");
    slow.delayMs = 1000;
    server.Route("/late", slow);
    TZVOptions(*store).Set(Setting::CommandLine, server.Url(u"/late"_s));
    Open();
    QTest::mouseClick(&Edge(), Qt::LeftButton);
    QVERIFY(Bar().isVisible());
    QVERIFY(Stack().count() == 1 && Stack().isVisible());
  }

  void Width() {
    OpenWith(true);
    DragEdge(66);
    QTRY_COMPARE(Bar().width(), 300);
    QCOMPARE(TZVOptions(*store).Get(Setting::HalvexBarWidth), 300);
    QTest::keyClick(&Edge(), Qt::Key_Left);
    QTRY_COMPARE(Bar().width(), 284);
    DragEdge(-500);
    QTRY_COMPARE(Bar().width(), TSideBarFrame::SmallestBar);
    // What a small window has no room for comes back with the room.
    window->Settings().Set(Setting::HalvexBarWidth, 600);
    window->resize(500, 400);
    QTRY_COMPARE(Pages().width(), TSideBarFrame::SmallestPages);
    window->resize(1000, 400);
    QTRY_COMPARE(Bar().width(), 600);
    QCOMPARE(TZVOptions(*store).Get(Setting::HalvexBarWidth), 600);
  }

  void MirroredForTextFromTheRight() {
    OpenWith(true);
    QVERIFY(Bar().x() < Pages().x());
    window->setLayoutDirection(Qt::RightToLeft);
    QTRY_VERIFY(Bar().x() > Pages().x());
    DragEdge(-66);
    QTRY_COMPARE(Bar().width(), 300);
  }

  // Wherever the keyboard is.
  void EscapeGivesADragUp() {
    OpenWith(true);
    const int width = Bar().width();
    DragEdge(66, [&] {
      QTRY_COMPARE(Bar().width(), width + 66);
      QVERIFY(!Edge().hasFocus());
      QTest::keyClick(window.get(), Qt::Key_Escape);
      QTRY_COMPARE(Bar().width(), width);
    });
    QCOMPARE(Bar().width(), width);
    QCOMPARE(TZVOptions(*store).Get(Setting::HalvexBarWidth), width);
  }

  // A page is remembered by its kind, so one that is not offered moves no other.
  void WithoutTheSearchPage() {
    QVERIFY(store->Write(TRegistryHive::LocalMachine, RegistryKey::BrowserVersion, u"Version"_s, u"4.0"_s));
    TZVOptions(*store).Set(Setting::HalvexBarPage, 3);
    OpenWith(true);
    QTRY_VERIFY(window->findChild<TGroupsPage *>() != nullptr);
  }

  void GoneWhileAPageHasTheScreen() {
    OpenWith(true);
    Q_EMIT window->Tabs().PageFullScreenRequested(window->Tabs().GetActivePage(), true);
    QTRY_VERIFY(!Bar().isVisible() && !Edge().isVisible());
    QCOMPARE(Pages().width(), window->width());
    Q_EMIT window->Tabs().PageFullScreenRequested(window->Tabs().GetActivePage(), false);
    QTRY_VERIFY(Bar().isVisible() && Edge().isVisible());
    QVERIFY(IsStored());
  }

  void ADragThatRestsOpensIt() {
    OpenWith(false);
    QMimeData data;
    data.setUrls({QUrl(u"http://127.0.0.1/"_s)});
    QDragEnterEvent enter({1, 1}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&Edge(), &enter);
    QTRY_VERIFY(Bar().isVisible());
  }

  void HistoryOpens_data() {
    Columns<int, QByteArray, int, bool>("place", "path", "tabs", "front");
    Row("in this tab", 0, QByteArray("/here"), 1, true);
    Row("in a new tab", 1, QByteArray("/new"), 2, true);
    Row("in the background", 2, QByteArray("/behind"), 2, false);
  }
  void HistoryOpens() {
    QFETCH(int, place);
    QFETCH(QByteArray, path);
    QFETCH(int, tabs);
    QFETCH(bool, front);
    OpenWith(true);
    Trigger(TCommand::SideBarHistory);
    QTRY_VERIFY(History() != nullptr);
    const QString address = server.Url(QString::fromLatin1(path));
    if (place == 0) Q_EMIT History()->OpenInCurrentTab(address);
    if (place == 1) Q_EMIT History()->OpenInNewTab(address);
    if (place == 2) Q_EMIT History()->OpenInBackgroundTab(address);
    QTRY_COMPARE_WITH_TIMEOUT(server.RequestCount(path), 1, LoadTime);
    QCOMPARE(window->Tabs().TabCount(), tabs);
    const bool isInFront = window->Tabs().ActiveTabIndex() == tabs - 1;
    QCOMPARE(isInFront, front);
  }

  void WhatIsForgottenAlong() {
    const QString typed = QString::fromLatin1(RegistryKey::TypedUrls);
    const QString permissions = QString::fromLatin1(RegistryKey::SitePermissions);
    const auto hive = TRegistryHive::CurrentUser;
    QVERIFY(store->Write(hive, typed, u"url1"_s, u"http://typed.test/"_s));
    QVERIFY(store->Write(hive, permissions, u"https://a.test Camera"_s, u"allow"_s));
    OpenWith(true);
    Trigger(TCommand::SideBarHistory);
    QTRY_VERIFY(History() != nullptr);
    Q_EMIT History()->ForgetAlong({.cookies = true});
    QVERIFY(store->Read(hive, typed, u"url1"_s));
    QVERIFY(store->Read(hive, permissions, u"https://a.test Camera"_s));
    Q_EMIT History()->ForgetAlong({.permissions = true});
    QVERIFY(store->Read(hive, typed, u"url1"_s));
    QVERIFY(!store->Read(hive, permissions, u"https://a.test Camera"_s));
    Q_EMIT History()->ForgetAlong({.typedAddresses = true});
    QTRY_VERIFY(!store->Read(hive, typed, u"url1"_s));
    // Pictures tell where the user has been: they go with stored copies, and with all pages.
    QImage red(16, 16, QImage::Format_RGB32);
    red.fill(Qt::red);
    for (const bool isCleared : {false, true}) {
      TFaviconCache().Put(u"http://a.test/"_s, red);
      isCleared ? Q_EMIT History()->Forgotten({}) : Q_EMIT History()->ForgetAlong({.cache = true});
      QVERIFY(TFaviconCache().Find(u"http://a.test/"_s).isNull());
    }
  }

  // The page of favorites and the menus tell each other of what is done in them.
  void FavoritesShowTheSameEverywhere() {
    OpenWith(true);
    Trigger(TCommand::SideBarFavorites);
    QTRY_VERIFY(window->findChild<TFavoritesPage *>() != nullptr);
    auto *tree = window->findChild<TFavoritesPage *>()->findChild<TFolderView *>();
    QTRY_VERIFY(tree->hasFocus());
    QTest::keyClick(tree, Qt::Key_N, Qt::ControlModifier);
    QTRY_VERIFY(tree->findChild<QLineEdit *>() != nullptr);
    QTest::keyClicks(tree->findChild<QLineEdit *>(), u"Brass"_s);
    QTest::keyClick(tree->findChild<QLineEdit *>(), Qt::Key_Return);
    const auto isInMenu = [this](const QString &name) {
      QMenu *menu = window->Actions().Menu(TMenu::Favorites);
      Q_EMIT menu->aboutToShow();
      return std::ranges::any_of(menu->actions(), [&](const QAction *item) { return item->text() == name; });
    };
    QTRY_VERIFY(isInMenu(u"Brass"_s));
    QTest::mouseClick(&Part("spdOrganizeFavorites"), Qt::LeftButton);
    auto *organizer = window->findChild<QDialog *>(u"TfrmOrganizeFavorites"_s);
    QVERIFY(organizer != nullptr);
    organizer->close();
  }
};

ENGINE_MAIN(TestSideBar)
#include "test_side_bar.moc"
