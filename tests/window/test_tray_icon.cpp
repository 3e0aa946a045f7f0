#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QDialog>
#include <QMenu>
#include <QProcess>
#include <QScopeGuard>
#include <QThread>

#include "platform/status_notifier.h"
#include "services/notification_area.h"
#include "services/tray_icon.h"
#include "window/tabs_fixture.h"

// A desktop's panel, as far as it takes icons and shows them.
class TPanel final : public QDBusVirtualObject {
 public:
  std::atomic<bool> shows = false;
  std::atomic<int> asked = 0;

  QString introspect(const QString &) const override { return {}; }
  bool handleMessage(const QDBusMessage &call, const QDBusConnection &bus) override {
    ++asked;
    return bus.send(call.createReply(QVariant::fromValue(QDBusVariant(shows.load()))));
  }
};

// The icon in the notification area, and the window that waits behind it. The area is the test's own: offscreen there
// is none.
class TestTrayIcon final : public QObject, private TTabsFixture {
  Q_OBJECT

 private:
  struct TDesktop {
    bool hasArea = true;
    QString hint;
    QStringList told;
    TNotificationArea *icon = nullptr;
  };
  class TArea final : public TNotificationArea {
   public:
    explicit TArea(TDesktop &desktop) : m_desktop(desktop) { desktop.icon = this; }
    ~TArea() override { m_desktop.icon = nullptr; }

    [[nodiscard]] bool IsThere() const override { return m_desktop.hasArea; }
    void SetHint(const QString &hint) override { m_desktop.hint = hint; }
    void Tell(const QString &title, const QString &text) override { m_desktop.told.append(title + u'|' + text); }

   private:
    TDesktop &m_desktop;
  };
  enum TWay { ByWindow, ByMenu, ByIcon, ByClicks };

  void MakeTray(bool on) {
    settings->Set(Setting::MinToTray, on);
    m_tray = std::make_unique<TTrayIcon>(window.get(), *actions, *tabs, language, *settings,
                                         [this] { return std::make_unique<TArea>(m_desktop); });
  }
  void Go(TWay way) {
    if (way == ByWindow) window->setWindowState(window->windowState() ^ Qt::WindowMinimized);
    if (way == ByMenu) actions->Menu(TMenu::Tray)->defaultAction()->trigger();
    if (way == ByIcon) Q_EMIT m_desktop.icon->Activated();
    if (way != ByClicks) return;
    // A double click where the desktop tells of each click alone.
    const int interval = QApplication::doubleClickInterval();
    for (const int span : {0, 600'000}) {
      QApplication::setDoubleClickInterval(span);
      Q_EMIT m_desktop.icon->Clicked();
    }
    QApplication::setDoubleClickInterval(interval);
  }
  [[nodiscard]] QString Caption() {
    QMenu *menu = actions->Menu(TMenu::Tray);
    Q_EMIT menu->aboutToShow();
    return menu->actions().first()->text();
  }

 private Q_SLOTS:
  void initTestCase() {
    QApplication::setApplicationDisplayName(u"Zarvela"_s);
    // Before anything asks for the session's.
    m_bus.start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--print-address"_s});
    if (m_bus.waitForStarted() && m_bus.waitForReadyRead()) {
      qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus.readLine().trimmed());
    }
    Prepare();
    server.RoutePage("/a", "Page A");
    server.RoutePage("/b", "Page B");
  }
  void cleanupTestCase() {
    m_bus.kill();
    m_bus.waitForFinished();
  }
  void init() {
    Begin();
    m_desktop = {};
  }
  void cleanup() {
    m_tray.reset();
    End();
  }

  void ComesAndGoesWithTheSetting() {
    MakeTray(false);
    QVERIFY(m_desktop.icon == nullptr);
    settings->Set(Setting::MinToTray, true);
    QVERIFY(m_desktop.icon != nullptr);
    QCOMPARE(m_desktop.hint, u"Zarvela"_s);
    m_tray->Restore();
    Go(ByIcon);
    QVERIFY(!window->isVisible());
    // Nothing stays out of reach.
    settings->Set(Setting::MinToTray, false);
    QVERIFY(window->isVisible() && m_desktop.icon == nullptr);
    Go(ByWindow);
    QTRY_VERIFY(window->isMinimized());
    QCoreApplication::processEvents();
    QVERIFY(window->isVisible());
  }

  void Ways_data() {
    Columns<TWay, TWay, int>("away", "back", "state");
    Row("by the window, back by the menu", ByWindow, ByMenu, int(Qt::WindowNoState));
    Row("by the menu, back by the icon", ByMenu, ByIcon, int(Qt::WindowNoState));
    Row("by the icon, twice", ByIcon, ByIcon, int(Qt::WindowNoState));
    Row("by single clicks, twice", ByClicks, ByClicks, int(Qt::WindowNoState));
    Row("maximised, by the window", ByWindow, ByIcon, int(Qt::WindowMaximized));
    Row("maximised, by the icon", ByIcon, ByIcon, int(Qt::WindowMaximized));
    Row("full screen", ByWindow, ByIcon, int(Qt::WindowFullScreen));
    Row("full screen of a maximised window", ByIcon, ByMenu, int(Qt::WindowFullScreen | Qt::WindowMaximized));
  }
  void Ways() {
    QFETCH(TWay, away);
    QFETCH(TWay, back);
    QFETCH(int, state);
    OpenPage(u"/a"_s);
    MakeTray(true);
    window->setWindowState(Qt::WindowStates(state));
    QCOMPARE(Caption(), u"&Minimize"_s);

    Go(away);
    QTRY_VERIFY(!window->isVisible() && !QApplication::quitOnLastWindowClosed());
    QVERIFY(m_tray->IsMinimized());
    QCOMPARE(m_desktop.hint, u"Zarvela - Page A"_s);
    QCOMPARE(Caption(), u"&Restore"_s);
    // Its pages go on, and the hint stays what it was.
    OpenPage(u"/b"_s);
    QCOMPARE(tabs->GetActivePage()->Title(), u"Page B"_s);
    QCOMPARE(m_desktop.hint, u"Zarvela - Page A"_s);

    Go(back);
    QVERIFY(window->isVisible() && !m_tray->IsMinimized() && QApplication::quitOnLastWindowClosed());
    QCOMPARE(int(window->windowState() & ~Qt::WindowActive), state);
    QCOMPARE(m_desktop.hint, u"Zarvela"_s);
    QCOMPARE(Caption(), u"&Minimize"_s);
  }

  // Minimised as usual, and restored by the same ways.
  void WithoutArea() {
    m_desktop.hasArea = false;
    QStringList notes;
    MakeTray(false);
    connect(m_tray.get(), &TTrayIcon::Note, this, [&](const QString &note) { notes.append(note); });
    settings->Set(Setting::MinToTray, true);
    QCOMPARE(notes, QStringList(language.Text("MAIN", "TrayMissing")));
    for (const TWay way : {ByWindow, ByMenu}) {
      Go(way);
      QTRY_VERIFY(window->isMinimized());
      QCoreApplication::processEvents();
      QVERIFY(window->isVisible() && m_tray->IsMinimized() && QApplication::quitOnLastWindowClosed());
      m_tray->Say(u"a"_s, u"b"_s);
      QVERIFY(m_desktop.told.isEmpty());
      Go(ByMenu);
      QVERIFY(window->isVisible() && !window->isMinimized() && !m_tray->IsMinimized());
    }
  }

  void AreaGoes() {
    MakeTray(true);
    Go(ByIcon);
    QVERIFY(!window->isVisible());
    m_tray->findChild<QTimer *>(u"tmrTray"_s)->setInterval(0);
    m_desktop.hasArea = false;
    QTRY_VERIFY(window->isVisible());
  }

  // A panel that starts after the program.
  void AreaComesLate() {
    if (m_bus.state() != QProcess::Running) QSKIP("dbus-daemon is not installed");
    QMenu menu;
    TSystemNotificationArea area(&menu);
    QVERIFY(!area.IsThere());
    TPanel panel;
    QThread thread;  // the window waits for its answers
    panel.moveToThread(&thread);
    const auto end = qScopeGuard([&thread] {
      QDBusConnection::disconnectFromBus(u"panel"_s);
      thread.quit();
      thread.wait();
    });
    thread.start();
    const QString watcher = u"org.kde.StatusNotifierWatcher"_s;
    QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"panel"_s);
    QVERIFY(bus.registerVirtualObject(u"/StatusNotifierWatcher"_s, &panel));
    QVERIFY(bus.registerService(watcher));
    // It takes icons, but shows none yet.
    QTRY_COMPARE(panel.asked.load(), 1);
    QVERIFY(!StatusNotifier::HasHost());
    QCoreApplication::processEvents();
    panel.shows = true;
    QVERIFY(!area.IsThere());
    bus.send(QDBusMessage::createSignal(u"/StatusNotifierWatcher"_s, watcher, u"StatusNotifierHostRegistered"_s));
    QTRY_VERIFY(area.IsThere());
    const QSignalSpy lost(&area, &TNotificationArea::NotTold);
    area.Tell(u"title"_s, u"text"_s);
    QTRY_COMPARE(lost.size(), 1);
  }

  void Messages() {
    MakeTray(true);
    m_tray->Say(u"Zarvela"_s, u"nobody waits"_s);
    // Where nobody shows one the window says by itself that there is something.
    for (const auto outcome : {&TNotificationArea::MessageClicked, &TNotificationArea::NotTold}) {
      Go(ByIcon);
      m_tray->Say(u"Zarvela"_s, u"a.zip"_s);
      QCOMPARE(m_desktop.told, QStringList(u"Zarvela|a.zip"_s));
      m_desktop.told.clear();
      Q_EMIT(m_desktop.icon->*outcome)();
      QVERIFY(window->isVisible() && !window->isMinimized());
    }
  }

  void OtherWindowsGoAlong() {
    MakeTray(true);
    QDialog beside(window.get());
    QDialog hidden(window.get());
    beside.show();
    Go(ByIcon);
    QVERIFY(!window->isVisible() && !beside.isVisible());
    Go(ByIcon);
    QTRY_VERIFY(beside.isVisible());
    // Somebody else has shown the window.
    Go(ByIcon);
    window->show();
    QTRY_VERIFY(beside.isVisible());
    QVERIFY(!hidden.isVisible());
  }

  void QuestionsAreNeverOutOfReach() {
    MakeTray(true);
    QDialog question(window.get());
    question.open();
    Go(ByIcon);
    QTRY_VERIFY(window->isMinimized());
    QCoreApplication::processEvents();
    QVERIFY(window->isVisible() && question.isVisible());
    Go(ByIcon);
    question.close();
    // One that comes while the window is away brings it back.
    Go(ByIcon);
    QVERIFY(!window->isVisible());
    question.open();
    QTRY_VERIFY(window->isVisible());
    QVERIFY(question.isVisible() && !m_tray->IsMinimized());
  }

  void ShownBySomebodyElse() {
    MakeTray(true);
    Go(ByIcon);
    window->show();
    QVERIFY(!m_tray->IsMinimized() && QApplication::quitOnLastWindowClosed());
    Go(ByIcon);
    QVERIFY(!window->isVisible());
  }

  void Exit() {
    MakeTray(true);
    Go(ByIcon);
    bool isAsked = false;
    class TWatch final : public QObject {
     public:
      explicit TWatch(bool &asked) : m_asked(asked) {}
      bool eventFilter(QObject *, QEvent *event) override {
        if (event->type() != QEvent::Close) return false;
        m_asked = true;
        event->ignore();
        return true;
      }

     private:
      bool &m_asked;
    } watch(isAsked);
    window->installEventFilter(&watch);
    (*actions)[TCommand::TrayExit]->trigger();
    QVERIFY(isAsked && m_tray->IsMinimized());
  }

 private:
  TDesktop m_desktop;
  QProcess m_bus;
  std::unique_ptr<TTrayIcon> m_tray;
};

ENGINE_MAIN(TestTrayIcon)
#include "test_tray_icon.moc"
