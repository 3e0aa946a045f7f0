#include <QRect>

#include "config/registry_paths.h"
#include "process/screen_fixture.h"
#include "support/data_row.h"

using namespace Qt::StringLiterals;

// The built program on a real screen.
class TestOnScreen final : public QObject, private TScreenFixture {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    if (const QString missing = Missing(); !missing.isEmpty()) QSKIP(qPrintable(u"No X screen: "_s + missing));
    BeginScreen();
  }
  void cleanupTestCase() { EndScreen(); }
  void init() {
    Begin();
    // Tells when the second frame is begun, that is, when the first one is on the screen.
    server.RoutePage("/home", "Home",
                     "<script>requestAnimationFrame(() => requestAnimationFrame(() => fetch('/seen')))</script>");
    Prepare([](TZVOptions &options) { options.Set(Setting::StartupMode, u"Home"_s); });
    Store()->Write(TRegistryHive::CurrentUser, QString::fromLatin1(RegistryKey::SystemBrowser), u"Start Page"_s,
                   server.Url(u"/home"_s));
  }
  void cleanup() {
    server.Close();
    server.ForgetRequests();
  }

  void ComesBackAsItWas_data() {
    Columns<bool, bool, QString>("maximized", "fullScreen", "state");
    Row("maximised", true, false, "_NET_WM_STATE_MAXIMIZED_VERT");
    Row("full screen", false, true, "_NET_WM_STATE_FULLSCREEN");
    Row("a plain window", false, false, "none");
  }
  void ComesBackAsItWas() {
    QFETCH(bool, maximized);
    QFETCH(bool, fullScreen);
    QFETCH(QString, state);
    Prepare([&](TZVOptions &options) {
      options.Set(Setting::Left, 40);
      options.Set(Setting::Top, 60);
      options.Set(Setting::Width, 700);
      options.Set(Setting::Height, 500);
      options.Set(Setting::Maximized, maximized);
      options.Set(Setting::FullScreen, fullScreen);
    });
    const auto program = Start({});
    QTRY_VERIFY_WITH_TIMEOUT(server.RequestCount("/seen") > 0, Soon);
    QTRY_VERIFY_WITH_TIMEOUT(WindowState().contains(state.toLatin1()), Soon);
    Quit(*program);
    const auto store = Store();
    const TZVOptions options(*store);
    QCOMPARE(options.Get(Setting::Maximized), maximized);
    QCOMPARE(options.Get(Setting::FullScreen), fullScreen);
    const QRect bounds(options.Get(Setting::Left), options.Get(Setting::Top), options.Get(Setting::Width),
                       options.Get(Setting::Height));
    QCOMPARE(bounds, QRect(40, 60, 700, 500));
  }

  void WaitsBehindItsIcon_data() { ComesBackAsItWas_data(); }
  // The window leaves the screen, comes back by a second start as it was, and ends well while it is away.
  void WaitsBehindItsIcon() {
    const auto panel = StartPanel();
    if (!panel) QSKIP("trayer or xdotool is not installed");
    QFETCH(bool, maximized);
    QFETCH(bool, fullScreen);
    QFETCH(QString, state);
    Prepare([&](TZVOptions &options) {
      options.Set(Setting::MinToTray, true);
      options.Set(Setting::Maximized, maximized);
      options.Set(Setting::FullScreen, fullScreen);
    });
    const auto program = Start({});
    QTRY_VERIFY_WITH_TIMEOUT(server.RequestCount("/seen") > 0, Soon);
    Minimize();
    QTRY_VERIFY_WITH_TIMEOUT(WindowState().isEmpty(), Soon);
    WaitForEnd(*Start({Url(1)}));
    QTRY_COMPARE_WITH_TIMEOUT(Requests(1), 1, Soon);
    QTRY_VERIFY_WITH_TIMEOUT(WindowState().contains(state.toLatin1()), Soon);
    Minimize();
    QTRY_VERIFY_WITH_TIMEOUT(WindowState().isEmpty(), Soon);
    Quit(*program);
    const auto store = Store();
    const TZVOptions options(*store);
    QCOMPARE(options.Get(Setting::Maximized), maximized);
    QCOMPARE(options.Get(Setting::FullScreen), fullScreen);
  }

  // A panel that ends leaves no window behind.
  void PanelEnds() {
    auto panel = StartPanel();
    if (!panel) QSKIP("trayer or xdotool is not installed");
    Prepare([](TZVOptions &options) { options.Set(Setting::MinToTray, true); });
    const auto program = Start({});
    QTRY_VERIFY_WITH_TIMEOUT(server.RequestCount("/seen") > 0, Soon);
    Minimize();
    QTRY_VERIFY_WITH_TIMEOUT(WindowState().isEmpty(), Soon);
    panel.reset();
    QTRY_COMPARE_WITH_TIMEOUT(WindowState(), QByteArray("none"), Soon);
    Quit(*program);
  }

  void SecondStartLeavesTheWindowAsItIs() {
    Prepare([](TZVOptions &options) { options.Set(Setting::Maximized, true); });
    const auto program = Start({});
    QTRY_VERIFY_WITH_TIMEOUT(server.RequestCount("/seen") > 0, Soon);
    WaitForEnd(*Start({Url(1)}));
    QTRY_COMPARE_WITH_TIMEOUT(Requests(1), 1, Soon);
    QTRY_VERIFY_WITH_TIMEOUT(WindowState().contains("_NET_WM_STATE_MAXIMIZED_VERT"), Soon);
    Quit(*program);
    QVERIFY(TZVOptions(*Store()).Get(Setting::Maximized));
  }
};

QTEST_GUILESS_MAIN(TestOnScreen)
#include "test_on_screen.moc"
