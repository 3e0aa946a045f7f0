#include <QSignalSpy>
#include <QWebEngineCookieStore>
#include <QWebEnginePage>
#include <QWebEngineProfile>

#include "browser/page/permission_decisions.h"
#include "window/security_fixture.h"

// What sites keep goes by their zone: cookies of both kinds, and what else there is on the disk.
class TestZoneCookies final : public QObject, private TSecurityFixture {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { Prepare(); }
  void init() { Begin(); }
  void cleanup() { End(); }

  // By the zone of the site that sets them; what is to be stored only for as long as that is allowed.
  void Cookies_data() {
    Columns<unsigned, unsigned, QString, QString, QString>("stored", "session", "sent", "again", "kept");
    const QString all = u"script=1; scriptstored=1; session=1; stored=1"_s;
    Row("all", TZoneStore::Allow, TZoneStore::Allow, all, u"scriptstored=1; stored=1"_s, u"kept"_s);
    Row("for the session", TZoneStore::Disallow, TZoneStore::Allow, all, QString(), u"none"_s);
    Row("stored", TZoneStore::Allow, TZoneStore::Disallow, u"scriptstored=1; stored=1"_s, u"scriptstored=1; stored=1"_s,
        u"kept"_s);
    Row("none", TZoneStore::Disallow, TZoneStore::Disallow, QString(), QString(), u"none"_s);
    Row("to be asked about", TZoneStore::Query, TZoneStore::Query, QString(), QString(), u"none"_s);
  }
  void Cookies() {
    QFETCH(unsigned, stored);
    QFETCH(unsigned, session);
    QFETCH(QString, sent);
    QFETCH(QString, again);
    QFETCH(QString, kept);
    TZoneStore zones(*store);
    QVERIFY(zones.SetPolicy(3, TUrlAction::Cookies, stored) && zones.SetPolicy(3, TUrlAction::SessionCookies, session));
    // Every row has a site of its own, since the profile outlives it.
    const QString host = QString::fromLatin1(QTest::currentDataTag()).remove(u' ') + u".localhost"_s;
    const QByteArray script =
        "<title>?</title><script>document.cookie = 'script=1'; document.cookie = 'scriptstored=1; max-age=9999';"
        "try { localStorage.setItem('a', '1'); document.title = localStorage.getItem('a') ? 'kept' : 'none' }"
        "catch (e) { document.title = 'none' }</script>";
    server.Route("/set",
                 TTestResponse{.body = script,
                               .headers = {{"Set-Cookie", "session=1"}, {"Set-Cookie", "stored=1; Max-Age=9999"}}});
    Open();
    Load(server.Url(u"/set"_s, host));
    SOON(Active()->Title(), kept);
    QTRY_COMPARE(Sent(host), sent);
    QCOMPARE(Sent(host), sent);
    // The intranet's page has its own, with a frame of that site in it that has none.
    Load(server.Url(u"/set"_s, u"localhost"_s));
    QTRY_COMPARE(Sent(u"localhost"_s), u"script=1; scriptstored=1; session=1; stored=1"_s);
    // After the program has ended only what was to be stored is there.
    QVERIFY(Soon([&] { return SentInNextRun(host) == again; }));
    QCOMPARE(Sent(host), again);
  }

  // What was stored before a rule goes by it, too: it ends with the program then, or at once.
  void CookiesOfBefore_data() {
    Columns<TCommand, QString>("refused", "sent");
    Row("stored", TCommand::SecurityCookiesDisallow, u"session=1; stored=1"_s);
    Row("session", TCommand::SecuritySessionDisallow, u"stored=1"_s);
  }
  void CookiesOfBefore() {
    QFETCH(TCommand, refused);
    server.Route("/set",
                 TTestResponse{.body = "<title>Set</title>",
                               .headers = {{"Set-Cookie", "session=1"}, {"Set-Cookie", "stored=1; Max-Age=9999"}}});
    const QString host = u"before-"_s + QString::fromLatin1(QTest::currentDataTag()) + u".localhost"_s;
    Open();
    Load(server.Url(u"/set"_s, host));
    QTRY_COMPARE(Sent(host), u"session=1; stored=1"_s);
    const QSignalSpy removed(Active()->Browser()->EnginePage()->profile()->cookieStore(),
                             &QWebEngineCookieStore::cookieRemoved);
    Action(refused)->trigger();
    SOON(removed.isEmpty(), false);
    QTEST(Sent(host), "sent");
    window.reset();
    TZoneStore zones(*store);
    QVERIFY(zones.ResetPolicies(3));
    const QString again = refused == TCommand::SecurityCookiesDisallow ? QString() : u"stored=1"_s;
    QVERIFY(Soon([&] { return SentInNextRun(host) == again; }));
    QCOMPARE(Sent(host), again);
  }

  // What else a site keeps on the disk.
  void Storage_data() {
    Columns<unsigned, unsigned, QString>("stored", "session", "kept");
    Row("all", TZoneStore::Allow, TZoneStore::Allow, u"local database worker"_s);
    Row("no cookies", TZoneStore::Disallow, TZoneStore::Disallow, u"none"_s);
  }
  void Storage() {
    QFETCH(unsigned, stored);
    QFETCH(unsigned, session);
    TZoneStore zones(*store);
    QVERIFY(zones.SetPolicy(3, TUrlAction::Cookies, stored) && zones.SetPolicy(3, TUrlAction::SessionCookies, session));
    server.Route("/worker.js",
                 TTestResponse{.body = "onfetch = () => {}", .headers = {{"Content-Type", "text/javascript"}}});
    server.Route("/keeps", TTestResponse::Page(R"(<title>...</title><script>(async () => {
      let kept = [];
      try { localStorage.setItem('a', '1'); kept.push('local'); } catch (e) {}
      try {
        await new Promise((done, failed) => {
          const request = indexedDB.open('a');
          request.onsuccess = done;
          request.onerror = failed;
        });
        kept.push('database');
      } catch (e) {}
      try { await navigator.serviceWorker.register('/worker.js'); kept.push('worker'); } catch (e) {}
      document.title = kept.join(' ') || 'none';
    })()</script>)"));
    Open();
    Load(server.Url(u"/keeps"_s, QString::fromLatin1(QTest::currentDataTag()).remove(u' ') + u".localhost"_s));
    QTRY_VERIFY_WITH_TIMEOUT(Active()->Title() != u"..."_s, LoadTime);
    QTEST(Active()->Title(), "kept");
  }

  void AskedAboutCookies() {
    TZoneStore zones(*store);
    QVERIFY(zones.SetPolicy(3, TUrlAction::Cookies, TZoneStore::Query));
    QVERIFY(zones.SetPolicy(3, TUrlAction::SessionCookies, TZoneStore::Query));
    server.Route("/two",
                 TTestResponse{.body = "<title>Two</title>",
                               .headers = {{"Set-Cookie", "session=1"}, {"Set-Cookie", "stored=1; Max-Age=9999"}}});
    Open();
    const QString host = u"asked.localhost"_s;
    Load(server.Url(u"/two"_s, host));
    QCOMPARE(Sent(host), QString());
    Load(server.Url(u"/two"_s, host));
    server.ForgetRequests();
    Answer(u"May http://asked.localhost:%1 store cookies and data?"_s, "cmdAllow");
    SOON(server.RequestCount("/two"), 1);
    // The page that comes again asks for the rest.
    Answer(u"May http://asked.localhost:%1 keep cookies until the program ends?"_s, "cmdDeny");
    QTRY_COMPARE(Sent(host), u"stored=1"_s);
    QVERIFY(!IsAsked());
    // What is decided about others takes nothing from it, not even once.
    auto &decisions = TPermissionDecisions::Of(*Active()->Browser()->EnginePage()->profile());
    decisions.Remember(QUrl(u"http://another.localhost"_s), TPermission::Camera, TPermissionDecision::Refused);
    QCOMPARE(Sent(host), u"stored=1"_s);
    // What was allowed and is not any more goes, and does not only wait to be allowed again.
    const QSignalSpy removed(Active()->Browser()->EnginePage()->profile()->cookieStore(),
                             &QWebEngineCookieStore::cookieRemoved);
    decisions.Remember(QUrl(server.Url(u"/"_s, host)), TPermission::StoredCookies, TPermissionDecision::Ask);
    SOON(removed.isEmpty(), false);
  }

 private:
  // The engine writes them on a thread of its own, which may end after the next run has read them.
  [[nodiscard]] QString SentInNextRun(const QString &host) {
    Open();
    return Sent(host);
  }
};

ENGINE_MAIN(TestZoneCookies)
#include "test_zone_cookies.moc"
