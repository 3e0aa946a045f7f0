#include <QToolButton>
#include <QWebEngineCookieStore>
#include <QWebEnginePage>
#include <QWebEngineProfile>

#include "search/side_search.h"
#include "window/security_fixture.h"

enum class TPlace { Page, AroundFrame, Frame, PopUp, Back, Asleep, Restored, SidePanel };

// What the rules of a zone refuse and allow, wherever a page is shown: told by its title and by what the server sees.
class TestZonePlaces final : public QObject, private TSecurityFixture {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    Prepare();
    const QByteArray probe = "<title>off</title><script>document.title = 'on'</script>";
    // Each visit has cookies of its own, and parts that nothing has kept.
    server.Route("/all", [this, probe](const TTestRequest &) {
      const QByteArray visit = QByteArray::number(m_visit);
      return TTestResponse{.body = probe + "<script>new Image().src = '/ran?" + visit +
                                   "'</script><embed type=application/pdf src=/plugged?" + visit + "><img src=/end?" +
                                   visit + ">",
                           .headers = {{"Cache-Control", "no-store"},
                                       {"Set-Cookie", "session" + visit + "=1"},
                                       {"Set-Cookie", "stored" + visit + "=1; Max-Age=9999"}}};
    });
    server.Route("/frame", [probe](const TTestRequest &request) {
      return TTestResponse::Page(probe + "<iframe src='" + request.query + "'>");
    });
  }
  void init() { Begin(); }
  void cleanup() { End(); }

  // Scripts and plug-ins go by the zone of the page, cookies by that of the site that sets them. Each is refused in its
  // turn, and allowed in the others'.
  void Places_data() {
    Columns<TPlace, bool, bool>("place", "pageIsRuled", "siteIsRuled");
    Row("page", TPlace::Page, true, true);
    Row("page around a frame", TPlace::AroundFrame, true, false);
    Row("frame", TPlace::Frame, false, true);
    Row("pop-up", TPlace::PopUp, true, true);
    Row("back", TPlace::Back, true, true);
    Row("asleep", TPlace::Asleep, true, true);
    Row("restored", TPlace::Restored, true, true);
    Row("side panel", TPlace::SidePanel, true, true);
  }
  void Places() {
    QFETCH(TPlace, place);
    QFETCH(bool, pageIsRuled);
    QFETCH(bool, siteIsRuled);
    m_site = QString::fromLatin1(QTest::currentDataTag()).remove(u' ') + u".localhost"_s;
    QVERIFY(TZoneStore(*store).AddMapping(u"http://free."_s + m_site, 2));
    TZVOptions(*store).Set(Setting::StartupMode, u"Last"_s);
    TZVOptions(*store).Set(Setting::SearchBar, Ruled());
    Open();
    Load(Free(u"/other"_s));
    Load(Tabs().NewTab(), Ruled());
    for (const QString &refused : {u"scripts"_s, u"stored"_s, u"stored session"_s, u"session"_s, u"plug-ins"_s}) {
      const auto may = [&](const QString &what, bool isRuled) { return !isRuled || !refused.contains(what); };
      QString ran;
      for (const QString &what : {u"scripts"_s, u"plug-ins"_s}) {
        if (may(what, pageIsRuled)) ran += what + u' ';
      }
      server.ForgetRequests();
      ++m_visit;
      THalvexBrowser *browser = Show(place, refused);
      QVERIFY(browser != nullptr);
      QVERIFY(Soon([&] { return server.RequestCount("/end") > 0 && !browser->EnginePage()->isLoading(); }));
      // The engine sets about plug-ins when the rest is there.
      std::ignore = Soon([&] { return Ran(*browser) == ran; });
      QCOMPARE(Ran(*browser), ran);
      QWebEngineCookieStore *cookies = browser->EnginePage()->profile()->cookieStore();
      const auto isAsAllowed = [&](const QString &kind) { return IsSent(kind, siteIsRuled) == may(kind, siteIsRuled); };
      QVERIFY2(Soon([&] { return isAsAllowed(u"session"_s); }), qPrintable(refused));
      // What of them is there after the end of a session.
      const auto isLeft = [&] { return cookies->deleteSessionCookies(), isAsAllowed(u"stored"_s); };
      QVERIFY2(Soon(isLeft), qPrintable(refused));
      QCOMPARE(Ran(*browser), ran);
    }
  }

  // What is left to the user is asked over the page that wants it, beside the tabs, too.
  void AskedInTheSidePanel() {
    m_site = u"asked.localhost"_s;
    QVERIFY(TZoneStore(*store).SetPolicy(3, TUrlAction::Scripting, TZoneStore::Query));
    TZVOptions(*store).Set(Setting::SearchBar, Ruled());
    Open();
    Action(TCommand::SideBarSearch)->trigger();
    const QWidget *panel = window->findChild<TSideSearch *>();
    SOON(IsAsked(*panel), true);
    SOON(server.RequestCount("/end"), 1);
    QCOMPARE(server.RequestCount("/ran"), 0);
    Answer(u"May http://ruled.asked.localhost:%1 run scripts?"_s, "cmdAllowNow", *panel);
    SOON(server.RequestCount("/ran"), 1);
    QVERIFY(!IsAsked(*Active()));
  }

 private:
  [[nodiscard]] QString Ruled() const { return server.Url(u"/all"_s, u"ruled."_s + m_site); }
  [[nodiscard]] QString Free(const QString &path) const { return server.Url(path, u"free."_s + m_site); }
  void Apply(const QString &refused) const {
    const std::pair<QString, TCommand> allow[] = {{u"scripts"_s, TCommand::SecurityScriptingAllow},
                                                  {u"plug-ins"_s, TCommand::SecurityActiveXAllow},
                                                  {u"session"_s, TCommand::SecuritySessionAllow},
                                                  {u"stored"_s, TCommand::SecurityCookiesAllow}};
    for (const auto &[what, command] : allow) {
      Action(TCommand(int(command) + (refused.contains(what) ? 2 : 0)))->trigger();
    }
  }
  // Where a page was there before, that was by the rules before.
  THalvexBrowser *Show(TPlace place, const QString &refused) {
    TBrowserTab *tab = Tabs().Tab(1);
    const auto load = [&](const QString &address) {
      Apply(refused);
      Load(tab, address);
      return tab->Browser();
    };
    switch (place) {
      case TPlace::Page:
        return load(Ruled());
      case TPlace::AroundFrame:
        return load(server.Url(u"/frame?"_s + Free(u"/all"_s), u"ruled."_s + m_site));
      case TPlace::Frame:
        return load(Free(u"/frame?"_s + Ruled()));
      case TPlace::PopUp:
        while (Tabs().TabCount() > 2) Tabs().Tab(2)->Close();
        // One that has not opened any yet.
        tab = Tabs().NewTab(TTabPlace::AtEnd);
        (void)load(Free(u"/other"_s));
        (void)AnswerOf(*tab->Browser()->EnginePage(), u"void window.open('%1')"_s.arg(Ruled()));
        if (!Soon([&] { return Tabs().TabCount() > 3; })) return nullptr;
        return Tabs().Tab(3)->Browser();
      case TPlace::Back:
        Load(tab, Free(u"/other"_s));
        Apply(refused);
        tab->GoBack();
        return tab->Browser();
      case TPlace::Asleep:
        Tabs().Activate(Tabs().Tab(0));
        std::ignore = Soon([&] { return tab->FallAsleep(), tab->Asleep(); });
        Apply(refused);
        Tabs().Activate(tab);
        return tab->Browser();
      case TPlace::Restored:
        Apply(refused);
        Open();
        return Tabs().Tab(1)->Browser();
      case TPlace::SidePanel:
        break;
    }
    Apply(refused);
    auto *panel = window->findChild<TSideSearch *>();
    if (panel != nullptr) {
      panel->findChild<QToolButton *>(u"tbSearchBar"_s)->click();
    } else {
      Action(TCommand::SideBarSearch)->trigger();
      panel = window->findChild<TSideSearch *>();
    }
    return panel->Browser();
  }
  // What the visit has begun.
  [[nodiscard]] QString Ran(const THalvexBrowser &browser) const {
    QString ran;
    if (server.RequestCount("/ran") > 0) ran += u"scripts "_s;
    if ((browser.LocationName() == u"on"_s) == ran.isEmpty()) ran += u"by the title "_s;
    if (server.RequestCount("/plugged") > 0) ran += u"plug-ins "_s;
    return ran;
  }
  // Whether the visit's cookie of that kind comes back.
  [[nodiscard]] bool IsSent(const QString &kind, bool siteIsRuled) {
    const QString host = (siteIsRuled ? u"ruled."_s : u"free."_s) + m_site;
    return Sent(Tabs().Tab(0), host).contains(kind + QString::number(m_visit) + u"=1"_s);
  }

  QString m_site;
  int m_visit = 0;
};

ENGINE_MAIN(TestZonePlaces)
#include "test_zone_places.moc"
