#include <QCheckBox>
#include <QContextMenuEvent>
#include <QElapsedTimer>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QStatusBar>
#include <QToolButton>
#include <QTranslator>
#include <QWebEnginePage>
#include <QWindow>

#include "chrome/busy_indicator.h"
#include "config/registry_paths.h"
#include "groups/group_folder.h"
#include "search/address_bar.h"
#include "search/suggestion_list.h"
#include "support/data_row.h"
#include "support/modal_dialogs.h"
#include "support/named_lines.h"
#include "ui/dialog_gate.h"
#include "ui/frame_pacer.h"
#include "ui/frame_updates.h"
#include "ui/motion.h"
#include "window/main_window_fixture.h"
#include "window/page_click.h"

using namespace Qt::StringLiterals;

namespace {

// Takes its time to be painted.
struct TSlowWidget final : QWidget {
  using QWidget::QWidget;
  void paintEvent(QPaintEvent *) override {
    if (ended.isValid()) pause = ended.elapsed();
    QTest::qSleep(TFramePacer::LongestPause);
    ++paints;
    ended.start();
  }

  int paints = 0;
  qint64 pause = 0;  // before the last time, in milliseconds
  QElapsedTimer ended;
};

}  // namespace

// What the modules of the main window are to each other, with real pages, and what is there after the next start.
class TestMainWindow final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    m_f.Prepare();
    for (int i = 0; i < 10; ++i) m_f.server.RoutePage("/p" + QByteArray::number(i), "Page " + QByteArray::number(i));
    m_f.server.RoutePage("/link", "Link", "<a href='/p1'>1</a>");
    m_f.server.RoutePage("/full", "Full", "<div onclick='this.requestFullscreen()' style='height:300px'>big</div>");
    m_f.server.RoutePage("/form", "Form", "<script>onbeforeunload = e => e.returnValue = 'x'</script>");
    m_f.server.RoutePage("/opener", "Opener", "<script>window.open('/p0?from=page')</script>");
  }
  void init() {
    m_f.Begin();
    TZVOptions(*m_f.store).Set(Setting::PopupHalvexNotify, false);
    m_f.Open();
    QCOMPARE(m_f.window->windowTitle(), m_f.window->Language().Global("Blank") + u" — Zarvela"_s);
  }
  void cleanup() {
    m_f.End();
    QDir(TGroupFolder::Path()).removeRecursively();
  }

  // An end that does not ask does not wait for the answer of a page either.
  void EndsWhileAPageIsAsked() {
    Type(m_f.server.Url(u"/form"_s));
    QTRY_COMPARE_WITH_TIMEOUT(Active()->Title(), u"Form"_s, m_f.LoadTime);
    const auto isTouched = [this] {
      ClickPage(*Active()->Browser(), QPoint(100, 100));
      return AnswerOf(*Active()->Browser()->EnginePage(), u"navigator.userActivation.hasBeenActive"_s).toBool();
    };
    QTRY_VERIFY_WITH_TIMEOUT(isTouched(), m_f.LoadTime);
    QTimer end;
    connect(&end, &QTimer::timeout, this, [&] {
      if (!Active()->Browser()->HasOpenQuestion()) return;
      end.stop();
      m_f.window->CloseWithoutAsking();
    });
    end.start(20);
    m_f.window->close();
    QTRY_VERIFY(!m_f.window->isVisible());
    DialogGate::Open();
  }

  // A page of another site has a widget of its own; the keyboard is on the page then and not on its first link.
  void KeyboardAfterAnotherSite() {
    TBrowserTab *tab = Active();
    tab->Navigate(u"zarvela:start"_s);
    QTRY_VERIFY_WITH_TIMEOUT(tab->GetLocationUrl() == u"zarvela:start"_s && !tab->Busy(), m_f.LoadTime);
    Type(m_f.server.Url(u"/link"_s));
    QTRY_COMPARE_WITH_TIMEOUT(m_f.window->windowTitle(), u"Link — Zarvela"_s, m_f.LoadTime);
    QVERIFY(tab->Browser()->isAncestorOf(QApplication::focusWidget()));
    QString focused;
    tab->Browser()->EnginePage()->runJavaScript(u"document.activeElement.tagName"_s,
                                                [&](const QVariant &name) { focused = name.toString(); });
    QTRY_COMPARE_WITH_TIMEOUT(focused, u"BODY"_s, m_f.LoadTime);
  }

  void ClosingTheFullScreenPage() {
    m_f.window->Tabs().NewTab();
    Load(u"/full"_s);
    ClickPage(*Active()->Browser(), QPoint(60, 150));
    QTRY_VERIFY(m_f.window->isFullScreen());
    QVERIFY(!m_f.window->menuBar()->isVisible());
    Action(TCommand::CloseTab)->trigger();
    QTRY_VERIFY(!m_f.window->isFullScreen());
    QVERIFY(m_f.window->menuBar()->isVisible());
  }

  // The bars that full screen hides come while the mouse is at their edge, or the keyboard in the menus.
  void BarsAtTheEdges() {
    Action(TCommand::FullScreen)->trigger();
    QTRY_VERIFY(m_f.window->isFullScreen());
    const QWidget &menus = *m_f.window->menuBar();
    const QWidget &status = *m_f.window->findChild<QStatusBar *>();
    const auto moveTo = [&](int y) { QTest::mouseMove(m_f.window->windowHandle(), QPoint(200, y)); };
    const int middle = m_f.window->height() / 2;
    QVERIFY(!menus.isVisible() && !status.isVisible());
    moveTo(middle);
    moveTo(0);
    QTRY_VERIFY(menus.isVisible() && !status.isVisible());
    moveTo(menus.height() / 2);
    QCoreApplication::processEvents();
    QVERIFY(menus.isVisible());
    moveTo(middle);
    QTRY_VERIFY(!menus.isVisible());
    moveTo(m_f.window->height() - 1);
    QTRY_VERIFY(status.isVisible() && !menus.isVisible());
    moveTo(middle);
    QTRY_VERIFY(!status.isVisible());

    Action(TCommand::FocusMenuBar)->trigger();
    QTRY_VERIFY(menus.isVisible() && QApplication::activePopupWidget() != nullptr);
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
    QTest::keyClick(m_f.window->menuBar(), Qt::Key_Escape);
    QTRY_VERIFY(!menus.isVisible());
    QVERIFY(!TZVOptions(*m_f.store).Get(Setting::FullscreenMenuBar));

    // The address box that somebody has put away comes for those who ask for it, and not with each new tab.
    Action(TCommand::ViewAddressBar)->setChecked(false);
    Action(TCommand::NewBlank)->trigger();
    QVERIFY(!Bar()->isVisible());
    Action(TCommand::EditAddress)->trigger();
    QVERIFY(Bar()->isVisible());
    QCOMPARE(m_f.window->focusWidget(), Bar());
  }

  void NothingTurnsWhereMotionIsReduced() {
    QWidget window;
    TFrameUpdates updates(&window);
    TBusyIndicator busy(updates, &window);
    busy.resize(busy.sizeHint());
    window.show();
    busy.SetBusy(true);
    for (const bool reduced : {false, true}) {
      Motion::SetReduced(reduced);
      const QImage before = busy.grab().toImage();
      const QSignalSpy shown(&updates, &TFrameUpdates::Show);
      updates.Hurry();
      QTRY_VERIFY(!shown.isEmpty());
      QCOMPARE(busy.grab().toImage() == before, reduced);
    }
    Motion::SetReduced(false);
  }

  void TabKeyFollowsTheStatusBar() {
    QWidget &status = *m_f.window->findChild<QStatusBar *>();
    for (auto *button : status.findChildren<QToolButton *>()) button->show();
    // The status bar takes its time to find room for all of them.
    const auto isInOrder = [&status] {
      QList<int> places;
      for (const QWidget *widget = status.nextInFocusChain(); widget != &status; widget = widget->nextInFocusChain()) {
        if (widget->parent() == &status && (widget->focusPolicy() & Qt::TabFocus) != 0) places.append(widget->x());
      }
      return places.size() >= 4 && std::ranges::is_sorted(places);
    };
    QTRY_VERIFY(isInOrder());
  }

  void RightToLeft() {
    const auto picture = [](const QIcon &icon) { return icon.pixmap(24).toImage(); };
    const QImage back = picture(Action(TCommand::Back)->icon());
    const QImage forward = picture(Action(TCommand::Forward)->icon());
    QCOMPARE(m_f.window->layoutDirection(), Qt::LeftToRight);
    TZVOptions(*m_f.store).Set(Setting::LanguageFile, QStringLiteral("zvara.ini"));
    m_f.Open();
    // The file says so, whether or not the system has the toolkit's translation, which says so too.
    qDeleteAll(qApp->findChildren<QTranslator *>());
    QCoreApplication::processEvents();
    QCOMPARE(m_f.window->layoutDirection(), Qt::RightToLeft);
    QVERIFY(back != forward);
    QCOMPARE(picture(Action(TCommand::Back)->icon()), forward);
    QCOMPARE(picture(Action(TCommand::Forward)->icon()), back);
    const auto *bar = m_f.window->findChild<QWidget *>(QStringLiteral("tbMain"));
    const auto button = [bar](const char *name) { return bar->findChild<QToolButton *>(QLatin1String(name)); };
    QVERIFY(button("tbBack")->x() > button("tbForward")->x());

    // The letter behind a text goes with the blank before it.
    TZVOptions(*m_f.store).Set(Setting::DisableALTShortcuts, true);
    m_f.Open();
    QCOMPARE(m_f.window->Actions().Menu(TMenu::File)->title(), QStringLiteral("ملف"));

    const TBrowserTab *first = Active();
    Action(TCommand::NewBlank)->trigger();
    const auto *strip = m_f.window->findChild<TZVPageControl *>();
    QTRY_VERIFY(strip->TabRect(Active()).right() < strip->TabRect(first).left());

    Active()->Navigate(TEngine::StartPageAddress());
    QTRY_COMPARE_WITH_TIMEOUT(Active()->GetLocationName(), m_f.window->Language().Text("PAGES", "StartTitle"),
                              m_f.LoadTime);
    QString shown;
    Active()->Browser()->EnginePage()->runJavaScript(
        QStringLiteral("document.documentElement.lang + ' ' + getComputedStyle(document.body).direction"),
        [&](const QVariant &value) { shown = value.toString(); });
    QTRY_COMPARE_WITH_TIMEOUT(shown, QStringLiteral("ar-AE rtl"), m_f.LoadTime);
  }

  // Words that are no address can be searched for by the first quick search that works, which is what Enter chooses.
  void WordsAreSearchedFor() {
    TZVOptions(*m_f.store).SetQuickSearchEntries({{u"bad"_s, u"%d"_s}, {u"f"_s, m_f.server.Url(u"/p2?q=%s"_s)}});
    m_f.Open();
    // Only words are.
    for (const QString &typed : {u"http://"_s, u"two words"_s}) {
      Type(typed);
      QTRY_COMPARE(Active()->Load(), TLoad::Failed);
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    }
    QTRY_VERIFY_WITH_TIMEOUT(Active()->GetLocationUrl().endsWith(u"/p2?q=two%20words"_s), m_f.LoadTime);
  }

  void ListFollowsTabs() {
    TZVOptions options(*m_f.store);
    Load(u"/p0"_s);
    QVERIFY(options.LastOpenSites()->isEmpty());
    Action(TCommand::StartLast)->trigger();
    const QString first = u"url1="_s + m_f.server.Url(u"/p0"_s);
    QTRY_COMPARE(ToLines(options.LastOpenSites()), QStringList{first});
    Tabs().NewTab()->Navigate(m_f.server.Url(u"/p1"_s));
    const QString second = u"url2="_s + m_f.server.Url(u"/p1"_s);
    QTRY_COMPARE(ToLines(options.LastOpenSites()), (QStringList{second, first}));
    Action(TCommand::CloseTab)->trigger();
    QTRY_COMPARE(ToLines(options.LastOpenSites()), QStringList{first});
    // However it stands: when the window goes it is written.
    QVERIFY(options.SetLastOpenSites({}));
    m_f.window.reset();
    QCOMPARE(ToLines(options.LastOpenSites()), QStringList{first});
  }

  void ShutdownQuestion() {
    TZVOptions options(*m_f.store);
    options.Set(Setting::ConfirmShutdown, true);
    for (const bool tick : {false, true}) {
      OnModalDialog<QDialog>([tick](QDialog &dialog) {
        dialog.findChild<QCheckBox *>(u"chkConfirm"_s)->setChecked(tick);
        dialog.findChild<QPushButton *>(u"cmdCancel"_s)->click();
      });
      QVERIFY(!m_f.window->close() && m_f.window->isVisible());
      QCOMPARE(options.Get(Setting::ConfirmShutdown), !tick);
    }
    QVERIFY(m_f.window->close());  // asks no more
  }

  // A window that ends maximised keeps the placement that a normal one has stored.
  void PlacementIsStored() {
    m_f.window->move(30, 20);
    m_f.window->resize(620, 410);
    QTRY_COMPARE(m_f.window->size(), QSize(620, 410));
    m_f.Open();
    m_f.window->resize(700, 500);
    m_f.window->showMaximized();
    QTRY_VERIFY(m_f.window->isMaximized());
    m_f.window.reset();
    const TZVOptions options(*m_f.store);
    QVERIFY(options.Get(Setting::Maximized));
    QCOMPARE(QRect(options.Get(Setting::Left), options.Get(Setting::Top), options.Get(Setting::Width),
                   options.Get(Setting::Height)),
             QRect(30, 20, 620, 410));
  }

  // The bars share a context menu. In full screen it has the menu bar in the place of the tool bar.
  void ContextMenuOfTheBars() {
    QMenu *menu = m_f.window->Actions().Menu(TMenu::Customize);
    const auto *bar = m_f.window->findChild<QWidget *>(u"tbMain"_s);
    QWidget *places[] = {m_f.window->menuBar(), bar->findChild<QToolButton *>(u"tbHome"_s),
                         bar->findChild<QToolButton *>(u"tbForward"_s),  // it rests
                         m_f.window->findChild<QWidget *>(u"pnlToolbarMain"_s),
                         m_f.window->findChild<QWidget *>(u"lblAddress"_s)};
    for (QWidget *place : places) {
      QContextMenuEvent wish(QContextMenuEvent::Mouse, {3, 3}, place->mapToGlobal(QPoint(3, 3)));
      QApplication::sendEvent(place, &wish);
      QVERIFY2(QApplication::activePopupWidget() == menu, qPrintable(place->objectName()));
      QVERIFY(Action(TCommand::CustomizeViewToolbar)->isVisible());
      QVERIFY(!Action(TCommand::CustomizeViewMenuBar)->isVisible());
      menu->close();
    }
    Action(TCommand::FullScreen)->setChecked(true);
    m_f.window->Settings().Set(Setting::FullscreenMenuBar, true);
    Q_EMIT menu->aboutToShow();
    QVERIFY(Action(TCommand::CustomizeViewMenuBar)->isVisible() && Action(TCommand::CustomizeViewMenuBar)->isChecked());
    QVERIFY(!Action(TCommand::CustomizeViewToolbar)->isVisible());
  }

  // What is reached by no button of the tool bar.
  void ButtonsElsewhere() {
    const auto *corner = m_f.window->findChild<QWidget *>(u"pnlStripCorner"_s);
    QTest::mouseClick(corner->findChild<QToolButton *>(u"actNewBlank"_s), Qt::LeftButton);
    QCOMPARE(Tabs().TabCount(), 2);
    QCOMPARE(corner->findChild<QToolButton *>(u"tbTabs"_s)->menu(), m_f.window->Actions().Menu(TMenu::TabList));
    QTest::mouseClick(m_f.window->findChild<QToolButton *>(u"tbDownloadsActive"_s), Qt::LeftButton);
    QTRY_VERIFY(std::ranges::any_of(QApplication::topLevelWidgets(), [](const QWidget *widget) {
      return widget->isVisible() && widget->inherits("TDownloadWindow");
    }));
  }

  void SearchPage() {
    TZVOptions(*m_f.store).SetSearchEngines({{u"mine"_s, m_f.server.Url(u"/p3"_s)}});
    m_f.Open();
    m_f.window->findChild<QToolButton *>(u"tbSearch"_s)->click();
    QTRY_COMPARE_WITH_TIMEOUT(Active()->GetLocationUrl(), m_f.server.Url(u"/p3"_s), m_f.LoadTime);
  }

  void PagesToCome() {
    QByteArray lines;
    for (int i = 0; i < 10; ++i)
      lines += "n" + QByteArray::number(i) + '=' + m_f.server.Url(u"/p%1"_s.arg(i)).toUtf8() + '\n';
    WriteGroup(u"Set.hgp"_s, lines);
    auto *toCome = m_f.window->findChild<QToolButton *>(u"tbPagesToCome"_s);
    const auto *updates = m_f.window->findChild<TFrameUpdates *>();
    for (const bool byButton : {true, false}) {
      QMenu *menu = m_f.window->Actions().Menu(TMenu::Groups);
      Q_EMIT menu->aboutToShow();
      menu->actions().last()->trigger();
      // Before the event loop turns nothing can have begun.
      QCOMPARE(toCome->text(), m_f.window->Language().Text("MAIN", "PagesToCome").arg(10));
      QVERIFY(toCome->isVisible());
      QCOMPARE(updates->CurrentInterval(), TFrameUpdates::CrowdInterval);
      byButton ? toCome->click() : Action(TCommand::StopAll)->trigger();
      QTRY_VERIFY_WITH_TIMEOUT(!toCome->isVisible(), m_f.LoadTime);
      QCOMPARE(m_f.server.RequestCount("/p9"), 0);
      QCOMPARE(updates->CurrentInterval(), TFrameUpdates::Interval);
    }
  }

  void GroupToStartWith() {
    WriteGroup(u"Start.hgp"_s, "first=about:blank#1\n");
    OnModalDialog<QFileDialog>([](QFileDialog &dialog) { dialog.reject(); });
    Action(TCommand::StartGroup)->trigger();
    QVERIFY(Action(TCommand::StartBlank)->isChecked());
    OnModalDialog<QFileDialog>([](QFileDialog &dialog) {
      // The extension need not be typed.
      dialog.findChild<QLineEdit *>()->setText(u"Start"_s);
      QTest::keyClick(dialog.findChild<QLineEdit *>(), Qt::Key_Return);
    });
    Action(TCommand::StartGroup)->trigger();
    m_f.Open();
    QCOMPARE(Tabs().Tab(0)->StickyName(), u"first"_s);
  }

  void PopupsAreStopped() {
    // Whatever it was read from, the list is written at the end: in its order, and numbered.
    const QString stopped = m_f.server.Url(u"/p0"_s);
    const QString key = QString::fromLatin1(RegistryKey::PopupHalvex);
    m_f.window.reset();
    QVERIFY(m_f.store->ReplaceKey(TRegistryHive::CurrentUser, key, {{"url7", stopped}, {"old", "http://1.test/"}}));
    m_f.Open();
    auto *counter = m_f.window->findChild<QToolButton *>(u"tbPopupsStopped"_s);
    QVERIFY(!counter->isVisible());
    Active()->Navigate(m_f.server.Url(u"/opener"_s));
    QTRY_VERIFY_WITH_TIMEOUT(counter->isVisible(), m_f.LoadTime);
    QCOMPARE(counter->text(), m_f.window->Language().Text("POPUPS", "Stopped").arg(1));
    QTRY_COMPARE_WITH_TIMEOUT(Tabs().TabCount(), 1, 3 * TTabStrip::CloseHiddenInterval);
    // The counter is that of the page in front.
    Tabs().NewTab();
    QVERIFY(!counter->isVisible());
    Active()->Close();
    QVERIFY(counter->isVisible());
    Q_EMIT counter->menu()->aboutToShow();
    QCOMPARE(counter->menu()->actions().size(), 1);
    m_f.window.reset();
    QStringList lines;
    for (const TRegistryValue &value : m_f.store->Values(TRegistryHive::CurrentUser, key)) {
      lines.append(value.name + u'=' + value.data);
    }
    QCOMPARE(lines, (QStringList{u"url1=http://1.test/"_s, u"url2="_s + stopped}));
  }

  void WhatIsTypedIsKept() {
    const QString page = m_f.server.Url(u"/p2"_s);
    Type(page);
    QTRY_COMPARE_WITH_TIMEOUT(Bar()->count(), 1, m_f.LoadTime);
    m_f.Open();
    QCOMPARE(Bar()->itemText(0), page);
  }

  // What the window makes of the text that a later start hands over.
  void ReceivedText_data() {
    // The text of a file is its name, which is made in the test's folder.
    Columns<QString, bool, bool>("text", "asGroup", "asTab");
    Row("an address", "about:blank#a", false, true);
    Row("a group", "My set.hgp", true, false);
    Row("capitals are another extension", "set.HGP", false, true);
    Row("a switch is an address", "--new", false, true);
    Row("nothing", "", false, false);
  }
  void ReceivedText() {
    QFETCH(QString, text);
    QFETCH(bool, asGroup);
    QFETCH(bool, asTab);
    // What is opened as a group gives its name to the tab.
    if (text.endsWith(u".hgp"_s, Qt::CaseInsensitive)) {
      text = m_f.Path(text);
      QFile made(text);
      QVERIFY(made.open(QIODevice::WriteOnly));
      made.write("[HalvexGroup]\nfrom the group=about:blank#a\n");
    }
    m_f.window->wmCopyDataDataReceived(text);
    QCOMPARE(Tabs().TabCount(), asTab || asGroup ? 2 : 1);
    QCOMPARE(Tabs().Tab(Tabs().TabCount() - 1)->StickyName(), QString(asGroup ? "from the group" : ""));
    if (asTab) QCOMPARE(Active()->Url(), text);
  }

  void ReceivedTextComesToTheFront_data() {
    Columns<Qt::WindowState>("state");
    QTest::newRow("normal") << Qt::WindowNoState;
    QTest::newRow("maximised") << Qt::WindowMaximized;
    QTest::newRow("full screen") << Qt::WindowFullScreen;
  }
  void ReceivedTextComesToTheFront() {
    QFETCH(Qt::WindowState, state);
    if (state == Qt::WindowFullScreen) {
      Action(TCommand::FullScreen)->trigger();
    } else {
      m_f.window->setWindowState(state);
    }
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    m_f.window->wmCopyDataDataReceived(QString());
    QVERIFY(QTest::qWaitForWindowActive(m_f.window.get()));
    QCOMPARE(m_f.window->windowState() & ~Qt::WindowActive, state);
    m_f.window->setWindowState(m_f.window->windowState() | Qt::WindowMinimized);
    m_f.window->wmCopyDataDataReceived(QString());
    QVERIFY(QTest::qWaitForWindowActive(m_f.window.get()));
    QCOMPARE(m_f.window->windowState() & ~Qt::WindowActive, state);
    QCOMPARE(Tabs().TabCount(), 1);
  }

  void ReceivedTextIsDroppedWhileADialogAsks() {
    QDialog dialog(m_f.window.get());
    dialog.open();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    m_f.window->wmCopyDataDataReceived(u"about:blank"_s);
    QCOMPARE(Tabs().TabCount(), 1);
    QTRY_VERIFY(dialog.isActiveWindow());
    dialog.reject();
    m_f.window->wmCopyDataDataReceived(u"about:blank"_s);
    QCOMPARE(Tabs().TabCount(), 2);
  }

  void ReceivedTextBeforeTheStartIsDone() {
    m_f.Show();
    QVERIFY(m_f.IsStarting());
    m_f.window->wmCopyDataDataReceived(u"about:blank#later"_s);
    QCOMPARE(Tabs().TabCount(), 1);
    QTRY_COMPARE(Tabs().TabCount(), 2);
    // The tab that was there belongs to the pages of the start.
    QVERIFY(Tabs().Tab(0)->Url() != u"about:blank#later"_s);
    QCOMPARE(Active()->Url(), u"about:blank#later"_s);
  }

  // The address bar suggests pages with the icons that they had when they were visited.
  void SuggestsWithIcons() {
    m_f.server.Route("/icon.svg",
                     TTestResponse{.body = "<svg xmlns='http://www.w3.org/2000/svg' width='16' height='16'>"
                                           "<rect width='16' height='16' fill='#ff0000'/></svg>",
                                   .headers = {{"Content-Type", "image/svg+xml"}}});
    m_f.server.Route("/red", TTestResponse::Page("<link rel=icon href=/icon.svg><title>Crimson</title>"));
    Load(u"/red"_s);
    QTRY_VERIFY_WITH_TIMEOUT(!Active()->Browser()->Icon().isNull(), m_f.LoadTime);
    const auto *suggested = Bar()->findChild<TSuggestionList *>();
    const auto offers = [&] {
      Action(TCommand::EditAddress)->trigger();
      QTest::keyClicks(Bar()->lineEdit(), u"crimson"_s);
      return QTest::qWaitFor([&] { return suggested->isVisible(); }, 500);
    };
    QTRY_VERIFY_WITH_TIMEOUT(offers(), m_f.LoadTime);
    const auto icon = suggested->model()->index(0, 0).data(Qt::DecorationRole).value<QIcon>();
    QCOMPARE(icon.pixmap(16, 16).toImage().pixelColor(8, 8), QColor(Qt::red));
  }

  // After a slow composition the thread has time for other things, unless the user has just done something.
  void PausesBetweenCompositions() {
    TSlowWidget slow(m_f.window.get());
    slow.show();
    QTRY_VERIFY(slow.paints > 0);
    for (int i = 0; i < 2; ++i) {
      const int before = slow.paints;
      slow.update();
      QTRY_VERIFY(slow.paints > before);
      QVERIFY2(slow.pause >= TFramePacer::LongestPause - 1, qPrintable(QString::number(slow.pause)));
    }
    const auto isAtOnce = [&] {
      const int before = slow.paints;
      slow.update();
      QTest::keyClick(m_f.window->windowHandle(), Qt::Key_Shift);
      return QTest::qWaitFor([&] { return slow.paints > before; }) && slow.pause < TFramePacer::LongestPause - 1;
    };
    QTRY_VERIFY(isAtOnce());
  }

 private:
  [[nodiscard]] TTabStrip &Tabs() const { return m_f.window->Tabs(); }
  [[nodiscard]] TBrowserTab *Active() const { return Tabs().GetActivePage(); }
  [[nodiscard]] QAction *Action(TCommand command) const { return m_f.window->Actions()[command]; }
  [[nodiscard]] TAddressBar *Bar() const { return m_f.window->findChild<TAddressBar *>(); }

  void Load(const QString &path) {
    TBrowserTab *tab = Active();
    tab->Navigate(m_f.server.Url(path));
    QTRY_VERIFY_WITH_TIMEOUT(tab->GetLocationUrl() == m_f.server.Url(path) && !tab->Busy(), m_f.LoadTime);
  }
  // Opens what is typed in the address bar.
  void Type(const QString &address) const {
    Action(TCommand::EditAddress)->trigger();
    QTest::keyClicks(Bar()->lineEdit(), address);
    QTest::keyClick(Bar()->lineEdit(), Qt::Key_Return);
  }
  static void WriteGroup(const QString &name, const QByteArray &lines) {
    QFile file(TGroupFolder::Path() + u'/' + name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[HalvexGroup]\n" + lines);
  }

  TMainWindowFixture m_f;
};

int main(int argc, char **argv) {
  QGuiApplication::setApplicationDisplayName(u"Zarvela"_s);
  return RunWithEngine<TestMainWindow>(argc, argv);
}
#include "test_main_window.moc"
