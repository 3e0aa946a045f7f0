#include <QSignalSpy>
#include <QWebEnginePage>

#include "window/security_fixture.h"

// Whether pages have scripts and plug-ins goes by their zone, whichever way they come.
class TestZonePages final : public QObject, private TSecurityFixture {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { Prepare(); }
  void init() { Begin(); }
  void cleanup() { End(); }

  // What was asked for and did not come leaves the page with what it had.
  void ScriptsWhereNothingCame() {
    QVERIFY(TZoneStore(*store).SetPolicy(3, TUrlAction::Scripting, TZoneStore::Disallow));
    Open();
    Load(server.Url(u"/probe"_s, u"localhost"_s));
    Active()->Navigate(server.Url(u"/never"_s));
    SOON(Active()->Busy(), true);
    Active()->Stop();
    SOON(Active()->Busy(), false);
    QCOMPARE(AnswerOf(*Active()->Browser()->EnginePage(), u"1 + 1"_s).toInt(), 2);
  }

  // What a page is about to become is no use to it before.
  void ScriptsWhileAnotherPageComes() {
    QVERIFY(TZoneStore(*store).SetPolicy(3, TUrlAction::Scripting, TZoneStore::Disallow));
    const QByteArray never = server.Url(u"/never"_s, u"localhost"_s).toUtf8();
    server.Route("/leaving", TTestResponse::Page("<meta http-equiv=refresh content='1;url=" + never +
                                                 "'><iframe src=/again></iframe>"));
    server.Route("/again", TTestResponse::Page("<meta http-equiv=refresh content=3><script>"
                                               "new Image().src = '/ran'</script>"));
    Open();
    int frames = 0;
    connect(Active()->Browser(), &THalvexBrowser::BeforeNavigate, this, [&](const TNavigation *navigation) {
      if (!navigation->mainFrame && server.RequestCount("/never") > 0) ++frames;
    });
    Active()->Navigate(server.Url(u"/leaving"_s));
    SOON(frames > 0, true);
    QVERIFY(!QTest::qWaitFor([&] { return server.RequestCount("/ran") > 0; }, 2000));
  }

  // A worker that a site has kept from before does not answer for it any more.
  void ScriptsOfWorkers() {
    server.Route("/worker.js",
                 TTestResponse{.body = "onfetch = e => e.respondWith(new Response('<title>Worker</title>', "
                                       "{headers: {'Content-Type': 'text/html'}}))",
                               .headers = {{"Content-Type", "text/javascript"}}});
    server.Route("/begin", TTestResponse::Page("<script>navigator.serviceWorker.register('/worker.js');"
                                               "navigator.serviceWorker.ready.then(() => document.title = 'ready')"
                                               "</script>"));
    server.RoutePage("/answered", "Server");
    Open();
    const QString page = server.Url(u"/answered"_s, u"worker.localhost"_s);
    Load(server.Url(u"/begin"_s, u"worker.localhost"_s));
    SOON(Active()->Title(), u"ready"_s);
    Load(page);
    SOON(Active()->Title(), u"Worker"_s);
    QVERIFY(TZoneStore(*store).SetPolicy(3, TUrlAction::Scripting, TZoneStore::Disallow));
    // Others' writes are looked for now and then.
    QTRY_VERIFY((Load(page), Active()->Title() == u"Server"_s));
  }

  // A window without an address is its maker's, until somebody else goes anywhere with it.
  void ScriptsOfWrittenWindows() {
    QVERIFY(TZoneStore(*store).SetPolicy(3, TUrlAction::Scripting, TZoneStore::Disallow));
    server.Route("/writes",
                 TTestResponse::Page("<body style='height:300px' onclick=\"window.open('about:blank').document"
                                     ".write('<script>opener.document.title = 1</scr' + 'ipt>')\">"));
    Open();
    TBrowserTab *maker = Active();
    Load(server.Url(u"/writes"_s, u"localhost"_s));
    for (int attempt = 0; attempt < 10 && Tabs().TabCount() == 1; ++attempt) {
      QTest::mouseClick(maker->findChild<QWebEngineView *>()->focusProxy(), Qt::LeftButton, {}, QPoint(100, 100));
      std::ignore = QTest::qWaitFor([&] { return Tabs().TabCount() > 1; }, LoadTime / 10);
    }
    SOON(maker->Title(), u"1"_s);
    TBrowserTab *made = Tabs().Tab(1);
    SOON(made->SecureZone(), TSecurityZone::LocalIntranet);
    made->Navigate(u"about:blank"_s);
    SOON(made->SecureZone(), TSecurityZone::Internet);
  }

  // Of all ways to a page the last address counts.
  void PlugIns() {
    QVERIFY(TZoneStore(*store).SetPolicy(3, TUrlAction::ActiveX, TZoneStore::Disallow));
    server.Route("/plugs",
                 TTestResponse::Page("<title>?</title><script>document.title = "
                                     "navigator.mimeTypes['application/pdf'] ? 'plug-ins' : 'none'</script>"));
    Open();
    const QString internet = server.Url(u"/plugs"_s);
    const QString intranet = server.Url(u"/plugs"_s, u"localhost"_s);
    server.Route("/to", [](const TTestRequest &request) { return TTestResponse::Redirect(request.query); });
    for (const auto &[address, title] : {std::pair(internet, u"none"_s), {intranet, u"plug-ins"_s}}) {
      Load(address);
      QCOMPARE(Active()->Title(), title);
      for (const QString &start : {u"127.0.0.1"_s, u"localhost"_s}) {
        const QSignalSpy loaded(Active(), &TBrowserTab::Loaded);
        Active()->Navigate(server.Url(u"/to?"_s + address, start));
        SOON(loaded.count() > 0 && !Active()->Busy(), true);
        QCOMPARE(Active()->GetLocationUrl(), address);
        SOON(Active()->Title(), title);
      }
    }
  }

  // What comes as a file since it takes a plug-in to show it.
  void AskedAboutDocuments() {
    QVERIFY(TZoneStore(*store).SetPolicy(3, TUrlAction::ActiveX, TZoneStore::Query));
    TZVOptions(*store).Set(Setting::DownloadAsk, false);
    TZVOptions(*store).Set(Setting::DownloadFolder, Path(QString()));
    server.Route("/paper", TTestResponse{.body = "%PDF-1.4\n%%EOF", .headers = {{"Content-Type", "application/pdf"}}});
    Open();
    Load(server.Url(u"/other"_s));
    const QString paper = server.Url(u"/paper"_s);
    Active()->Navigate(paper);
    Answer(u"May http://127.0.0.1:%1 use plug-ins?"_s, "cmdAllow");
    SOON(Active()->GetLocationUrl(), paper);
    SOON(Active()->Load(), TLoad::Shown);
    QVERIFY(!IsAsked());
  }

  // Nothing runs before the answer, which holds for the site: for this run, or for good.
  void AskedAboutScripts() {
    QVERIFY(TZoneStore(*store).SetPolicy(3, TUrlAction::Scripting, TZoneStore::Query));
    server.Route("/missing", TTestResponse::Status(404, "<title>Missing</title>"));
    server.Route("/endless", TTestResponse::Page("<img src=/never>"));
    Open();
    const auto probe = [this](const char *host) { return server.Url(u"/probe"_s, QLatin1String(host)); };
    Load(probe("allowed.localhost"));
    QCOMPARE(Active()->Title(), u"off"_s);
    Answer(u"May http://allowed.localhost:%1 run scripts?"_s, "cmdAllow");
    SOON(Active()->Title(), u"on"_s);
    SOON(Active()->Busy(), false);
    QVERIFY(!IsAsked());
    for (const auto &[host, button] : {std::pair("denied.localhost", "cmdDeny"), {"never.localhost", "cmdNever"}}) {
      Load(probe(host));
      QCOMPARE(Active()->Title(), u"off"_s);
      Answer(u"May http://"_s + QLatin1String(host) + u":%1 run scripts?"_s, button);
      Load(server.Url(u"/other"_s, QLatin1String(host)));
      QCOMPARE(Active()->Title(), u"off"_s);
      QVERIFY(!IsAsked());
    }
    // Pages that are none, and those that never end.
    for (const QString &path : {u"/missing"_s, u"/endless"_s}) {
      server.ForgetRequests();
      Active()->Navigate(server.Url(path, u"now.localhost"_s));
      QTRY_VERIFY_WITH_TIMEOUT(IsAsked(), LoadTime);
      Load(server.Url(u"/other"_s, u"never.localhost"_s));
      SOON(IsAsked(), false);
    }
    Load(probe("now.localhost"));
    Answer(u"May http://now.localhost:%1 run scripts?"_s, "cmdAllowNow");
    SOON(Active()->Title(), u"on"_s);
    window.reset();
    Open();
    for (const auto &[host, title, isAsked] : {std::tuple("allowed.localhost", u"on"_s, false),
                                               {"now.localhost", u"off"_s, true},
                                               {"denied.localhost", u"off"_s, true},
                                               {"never.localhost", u"off"_s, false}}) {
      Load(probe(host));
      SOON(Active()->Title(), title);
      QCOMPARE(IsAsked(), isAsked);
    }
    // Nobody is asked about the blank page.
    Active()->Navigate(u"about:blank"_s);
    SOON(Active()->GetLocationUrl(), u"about:blank"_s);
    SOON(IsAsked(), false);
  }
};

ENGINE_MAIN(TestZonePages)
#include "test_zone_pages.moc"
