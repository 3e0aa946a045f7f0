#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QToolButton>
#include <QWebEngineCookieStore>
#include <QWebEnginePage>
#include <QWebEngineProfile>

#include "browser/page/permission_bar.h"
#include "browser/page/permission_decisions.h"
#include "chrome/zone_panel.h"
#include "config/language.h"
#include "security/security_dialog.h"
#include "security/security_menu.h"
#include "support/data_row.h"
#include "support/shipped_files.h"
#include "window/main_window_fixture.h"
#include "window/page_click.h"

using namespace Qt::StringLiterals;

#define SOON(actual, expected) QTRY_COMPARE_WITH_TIMEOUT(actual, expected, TMainWindowFixture::LoadTime)

// The security zones in the window, and what they bind. 127.0.0.1 is the Internet, and so are names below "localhost",
// which itself is the intranet.
class TestSecurity final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    m_f.Prepare();
    const QByteArray probe = "<title>off</title><script>document.title = 'on'</script>";
    m_f.server.Route("/probe", TTestResponse::Page(probe));
    m_f.server.Route("/other", TTestResponse::Page(probe));
    m_f.server.Route("/inner", TTestResponse::Page("<script>new Image().src = '/ran'</script><img src=/inner.png>"));
    m_f.server.Route("/frame", [this](const TTestRequest &request) {
      return TTestResponse::Page("<iframe src='" + m_f.server.Url(u"/inner"_s, Text(request.query)).toUtf8() + "'>");
    });
    m_f.server.Route("/link", TTestResponse::Page("<body style='margin:0'><a target=_blank href=/probe "
                                                  "style='display:block;height:300px'>window</a>"));
    m_f.server.Route("/never", TTestResponse{.neverAnswer = true});
  }
  void init() { m_f.Begin(); }
  void cleanup() { m_f.End(); }

  void Menu_data() {
    Columns<QString, QString, QStringList>("address", "zone", "items");
    const QStringList policies{u"Stored cookies: Allow"_s, u"Session cookies: Allow"_s, u"Scripts: Allow"_s,
                               u"Plug-ins: Allow"_s};
    const QStringList adds{u"Add this site to “Trusted sites”"_s, u"Add this site to “Local intranet”"_s,
                           u"Add this site to “Restricted sites”"_s};
    Row("blank", u"about:blank"_s, u"Internet"_s, policies);
    Row("internet", u"http://127.0.0.1"_s, u"Internet"_s, adds + policies);
    Row("file", u"file://"_s, u"My computer"_s, QStringList());
    Row("intranet", u"http://localhost"_s, u"Local intranet"_s,
        QStringList{u"Remove this site from “Local intranet”"_s});
    Row("trusted", u"http://trusted.localhost"_s, u"Trusted sites"_s,
        QStringList{u"Remove this site from “Trusted sites”"_s});
    Row("restricted", u"http://x.restricted.localhost"_s, u"Restricted sites"_s,
        QStringList{u"Remove this site from “Restricted sites”"_s});
  }
  void Menu() {
    QFETCH(QString, address);
    QFETCH(QString, zone);
    QFETCH(QStringList, items);
    TZoneStore zones(*m_f.store);
    QVERIFY(zones.AddMapping(u"http://trusted.localhost"_s, 2) && zones.AddMapping(u"*.restricted.localhost"_s, 4));
    m_f.Open();
    if (address.startsWith(u"http"_s)) address += m_f.server.Url(u"/probe"_s).mid(16);
    if (address == u"file://"_s) address += SourceFile(QStringLiteral("README.md"));
    if (address != u"about:blank"_s) Load(address);
    QStringList captions = Captions();
    QCOMPARE(captions.takeFirst(), u"Zone: "_s + zone);
    QVERIFY(!Action(TCommand::SecurityCurrent)->icon().isNull());
    QCOMPARE(captions.takeLast().remove(u'&'), u"Security settings…"_s);
    QCOMPARE(captions, items);
    SOON(Panel(), zone);
    for (const QAction *item : SecurityMenu()->actions()) {
      if (item->isVisible() && item->text().startsWith(u"Add"_s)) QVERIFY(item->toolTip().contains(u"to the zone “"_s));
    }
  }

  void ChangePolicy_data() {
    Columns<TCommand, TUrlAction, unsigned, TMenu, QString>("command", "action", "stored", "menu", "caption");
    const std::tuple<const char *, TCommand, TUrlAction, TMenu> menus[] = {
        {"Plug-ins", TCommand::SecurityActiveXAllow, TUrlAction::ActiveX, TMenu::SecurityActiveX},
        {"Scripts", TCommand::SecurityScriptingAllow, TUrlAction::Scripting, TMenu::SecurityScripting},
        {"Stored cookies", TCommand::SecurityCookiesAllow, TUrlAction::Cookies, TMenu::SecurityCookies},
        {"Session cookies", TCommand::SecuritySessionAllow, TUrlAction::SessionCookies, TMenu::SecuritySession},
    };
    const std::pair<const char *, unsigned> words[] = {{"Allow", 0}, {"Ask", 1}, {"Don’t allow", 3}};
    for (const auto &[name, first, action, menu] : menus) {
      for (int i = 0; i < 3; ++i) {
        const QString caption = QString::fromUtf8(name) + u": "_s + QString::fromUtf8(words[i].first);
        QTest::newRow(qPrintable(caption)) << TCommand(int(first) + i) << action << words[i].second << menu << caption;
      }
    }
  }
  void ChangePolicy() {
    QFETCH(TCommand, command);
    QFETCH(TUrlAction, action);
    QFETCH(unsigned, stored);
    QFETCH(TMenu, menu);
    QFETCH(QString, caption);
    m_f.Open();
    Action(command)->trigger();
    const TZoneStore zones(*m_f.store);
    for (const TUrlAction other : UrlActions) QCOMPARE(zones.Policy(3, other), other == action ? stored : 0U);
    QVERIFY(Captions().contains(caption));
    QVERIFY(Action(command)->isChecked());
    QCOMPARE(m_f.window->Actions().Menu(menu)->menuAction()->text(), caption);
  }

  // Adding takes scheme and host of the page, taking back its whole address; all tabs are told.
  void SitesAreAddedAndTakenBack() {
    m_f.Open();
    const QString host = u"a.localhost"_s;
    Load(m_f.server.Url(u"/other"_s, host));
    const TBrowserTab *other = Active();
    Tabs().NewTab();
    Load(m_f.server.Url(u"/probe?x=y"_s, host));
    Action(TCommand::SecurityAddRestricted)->trigger();
    QCOMPARE(TZoneStore(*m_f.store).Mappings(), (QList<TZoneMapping>{{u"http://a.localhost"_s, 4}}));
    for (const TBrowserTab *tab : {other, static_cast<const TBrowserTab *>(Active())}) {
      QCOMPARE(tab->SecureZone(), TSecurityZone::Restricted);
    }
    SOON(Panel(), u"Restricted sites"_s);
    Action(TCommand::SecurityRemove)->trigger();
    QCOMPARE(Active()->SecureZone(), TSecurityZone::Restricted);
    // Its pages are loaded without scripts from now on.
    Load(m_f.server.Url(u"/probe"_s, host));
    QCOMPARE(Active()->Title(), u"off"_s);
    Load(m_f.server.Url(u"/"_s, host));
    Action(TCommand::SecurityRemove)->trigger();
    QCOMPARE(Active()->SecureZone(), TSecurityZone::Internet);
    QCOMPARE(other->SecureZone(), TSecurityZone::Internet);
    SOON(Panel(), u"Internet"_s);
  }

  // By the zone of the page, for it and all that is in it, from its first byte.
  void Scripts() {
    QVERIFY(TZoneStore(*m_f.store).SetPolicy(3, TUrlAction::Scripting, TZoneStore::Disallow));
    m_f.Open();
    const QString internet = u"127.0.0.1"_s;
    const QString intranet = u"localhost"_s;
    Load(m_f.server.Url(u"/probe"_s, internet));
    QCOMPARE(Active()->Title(), u"off"_s);
    Load(m_f.server.Url(u"/probe"_s, intranet));
    QCOMPARE(Active()->Title(), u"on"_s);
    // Back and forward again.
    Active()->GoBack();
    SOON(Active()->Title(), u"off"_s);
    SOON(Active()->Busy(), false);
    QCOMPARE(Active()->Title(), u"off"_s);
    Active()->GoForward();
    SOON(Active()->Title(), u"on"_s);
    // A frame goes by the page that it is in.
    for (const auto &[page, frame, runs] : {std::tuple(internet, intranet, 0), {intranet, internet, 1}}) {
      m_f.server.ForgetRequests();
      Load(m_f.server.Url(u"/frame?"_s + frame, page));
      SOON(m_f.server.RequestCount("/inner.png"), 1);
      SOON(Active()->Busy(), false);
      QCOMPARE(m_f.server.RequestCount("/ran"), runs);
    }
    // A window that a page opens.
    for (const auto &[page, title] : {std::pair(internet, u"off"_s), {intranet, u"on"_s}}) {
      Load(m_f.server.Url(u"/link"_s, page));
      ClickLink();
      SOON(Active()->GetLocationUrl(), m_f.server.Url(u"/probe"_s, page));
      SOON(Active()->Busy(), false);
      SOON(Active()->Title(), title);
    }
    // What was asked for and did not come leaves the page with what it had.
    Load(m_f.server.Url(u"/probe"_s, intranet));
    Active()->Navigate(m_f.server.Url(u"/never"_s, internet));
    SOON(Active()->Busy(), true);
    Active()->Stop();
    SOON(Active()->Busy(), false);
    QCOMPARE(AnswerOf(*Active()->Browser()->EnginePage(), u"1 + 1"_s).toInt(), 2);
  }

  // What a page is about to become is no use to it before.
  void ScriptsWhileAnotherPageComes() {
    QVERIFY(TZoneStore(*m_f.store).SetPolicy(3, TUrlAction::Scripting, TZoneStore::Disallow));
    const QByteArray never = m_f.server.Url(u"/never"_s, u"localhost"_s).toUtf8();
    m_f.server.Route("/leaving", TTestResponse::Page("<meta http-equiv=refresh content='1;url=" + never +
                                                     "'><iframe src=/again></iframe>"));
    m_f.server.Route("/again", TTestResponse::Page("<meta http-equiv=refresh content=3><script>"
                                                   "new Image().src = '/ran'</script>"));
    m_f.Open();
    int frames = 0;
    connect(Active()->Browser(), &THalvexBrowser::BeforeNavigate, this, [&](const TNavigation *navigation) {
      if (!navigation->mainFrame && m_f.server.RequestCount("/never") > 0) ++frames;
    });
    Active()->Navigate(m_f.server.Url(u"/leaving"_s));
    SOON(frames > 0, true);
    QVERIFY(!QTest::qWaitFor([&] { return m_f.server.RequestCount("/ran") > 0; }, 2000));
  }

  // A worker that a site has kept from before does not answer for it any more.
  void ScriptsOfWorkers() {
    m_f.server.Route("/worker.js",
                     TTestResponse{.body = "onfetch = e => e.respondWith(new Response('<title>Worker</title>', "
                                           "{headers: {'Content-Type': 'text/html'}}))",
                                   .headers = {{"Content-Type", "text/javascript"}}});
    m_f.server.Route("/begin", TTestResponse::Page("<script>navigator.serviceWorker.register('/worker.js');"
                                                   "navigator.serviceWorker.ready.then(() => document.title = 'ready')"
                                                   "</script>"));
    m_f.server.RoutePage("/answered", "Server");
    m_f.Open();
    const QString page = m_f.server.Url(u"/answered"_s, u"worker.localhost"_s);
    Load(m_f.server.Url(u"/begin"_s, u"worker.localhost"_s));
    SOON(Active()->Title(), u"ready"_s);
    Load(page);
    SOON(Active()->Title(), u"Worker"_s);
    QVERIFY(TZoneStore(*m_f.store).SetPolicy(3, TUrlAction::Scripting, TZoneStore::Disallow));
    // Others' writes are looked for now and then.
    QTRY_VERIFY((Load(page), Active()->Title() == u"Server"_s));
  }

  // A window without an address is its maker's, until somebody else goes anywhere with it.
  void ScriptsOfWrittenWindows() {
    QVERIFY(TZoneStore(*m_f.store).SetPolicy(3, TUrlAction::Scripting, TZoneStore::Disallow));
    m_f.server.Route("/writes",
                     TTestResponse::Page("<body style='height:300px' onclick=\"window.open('about:blank').document"
                                         ".write('<script>opener.document.title = 1</scr' + 'ipt>')\">"));
    m_f.Open();
    TBrowserTab *maker = Active();
    Load(m_f.server.Url(u"/writes"_s, u"localhost"_s));
    for (int attempt = 0; attempt < 10 && Tabs().TabCount() == 1; ++attempt) {
      QTest::mouseClick(maker->findChild<QWebEngineView *>()->focusProxy(), Qt::LeftButton, {}, QPoint(100, 100));
      std::ignore = QTest::qWaitFor([&] { return Tabs().TabCount() > 1; }, m_f.LoadTime / 10);
    }
    SOON(maker->Title(), u"1"_s);
    TBrowserTab *made = Tabs().Tab(1);
    SOON(made->SecureZone(), TSecurityZone::LocalIntranet);
    made->Navigate(u"about:blank"_s);
    SOON(made->SecureZone(), TSecurityZone::Internet);
  }

  void ScriptsOfRestoredTabs() {
    QVERIFY(TZoneStore(*m_f.store).SetPolicy(3, TUrlAction::Scripting, TZoneStore::Disallow));
    TZVOptions(*m_f.store).Set(Setting::StartupMode, u"Last"_s);
    m_f.Open();
    Load(m_f.server.Url(u"/probe"_s));
    QCOMPARE(Active()->Title(), u"off"_s);
    m_f.Open();
    SOON(Active()->GetLocationUrl(), m_f.server.Url(u"/probe"_s));
    SOON(Active()->Load(), TLoad::Shown);
    QCOMPARE(Active()->Title(), u"off"_s);
  }

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
    TZoneStore zones(*m_f.store);
    QVERIFY(zones.SetPolicy(3, TUrlAction::Cookies, stored) && zones.SetPolicy(3, TUrlAction::SessionCookies, session));
    // Every row has a site of its own, since the profile outlives it.
    const QString host = QString::fromLatin1(QTest::currentDataTag()).remove(u' ') + u".localhost"_s;
    const QByteArray script =
        "<title>?</title><script>document.cookie = 'script=1'; document.cookie = 'scriptstored=1; max-age=9999';"
        "try { localStorage.setItem('a', '1'); document.title = localStorage.getItem('a') ? 'kept' : 'none' }"
        "catch (e) { document.title = 'none' }</script>";
    m_f.server.Route("/set",
                     TTestResponse{.body = script,
                                   .headers = {{"Set-Cookie", "session=1"}, {"Set-Cookie", "stored=1; Max-Age=9999"}}});
    m_f.server.RoutePage("/sent", "Sent");
    m_f.Open();
    Load(m_f.server.Url(u"/set"_s, host));
    SOON(Active()->Title(), kept);
    QTRY_COMPARE(Sent(host), sent);
    QCOMPARE(Sent(host), sent);
    // The intranet's page has its own, with a frame of that site in it that has none.
    Load(m_f.server.Url(u"/set"_s, u"localhost"_s));
    QTRY_COMPARE(Sent(u"localhost"_s), u"script=1; scriptstored=1; session=1; stored=1"_s);
    // After the program has ended only what was to be stored is there.
    m_f.window.reset();
    m_f.Open();
    // The engine reads them from the disk on a thread of its own.
    QTRY_COMPARE(Sent(host), again);
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
    m_f.server.Route("/set",
                     TTestResponse{.body = "<title>Set</title>",
                                   .headers = {{"Set-Cookie", "session=1"}, {"Set-Cookie", "stored=1; Max-Age=9999"}}});
    m_f.server.RoutePage("/sent", "Sent");
    const QString host = u"before-"_s + QString::fromLatin1(QTest::currentDataTag()) + u".localhost"_s;
    m_f.Open();
    Load(m_f.server.Url(u"/set"_s, host));
    QTRY_COMPARE(Sent(host), u"session=1; stored=1"_s);
    const QSignalSpy removed(Active()->Browser()->EnginePage()->profile()->cookieStore(),
                             &QWebEngineCookieStore::cookieRemoved);
    Action(refused)->trigger();
    SOON(removed.isEmpty(), false);
    QTEST(Sent(host), "sent");
    m_f.window.reset();
    TZoneStore zones(*m_f.store);
    QVERIFY(zones.ResetPolicies(3));
    m_f.Open();
    const QString again = refused == TCommand::SecurityCookiesDisallow ? QString() : u"stored=1"_s;
    QTRY_COMPARE(Sent(host), again);
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
    TZoneStore zones(*m_f.store);
    QVERIFY(zones.SetPolicy(3, TUrlAction::Cookies, stored) && zones.SetPolicy(3, TUrlAction::SessionCookies, session));
    m_f.server.Route("/worker.js",
                     TTestResponse{.body = "onfetch = () => {}", .headers = {{"Content-Type", "text/javascript"}}});
    m_f.server.Route("/keeps", TTestResponse::Page(R"(<title>...</title><script>(async () => {
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
    m_f.Open();
    Load(m_f.server.Url(u"/keeps"_s, QString::fromLatin1(QTest::currentDataTag()).remove(u' ') + u".localhost"_s));
    QTRY_VERIFY_WITH_TIMEOUT(Active()->Title() != u"..."_s, m_f.LoadTime);
    QTEST(Active()->Title(), "kept");
  }

  // A frame's cookies go by the zone of its own site.
  void CookiesOfFrames() {
    TZoneStore zones(*m_f.store);
    QVERIFY(zones.AddMapping(u"http://bad.site.localhost"_s, 4));
    m_f.server.Route("/sets", TTestResponse{.body = "<script>document.cookie = 'script=1'</script>",
                                            .headers = {{"Set-Cookie", "stored=1; Max-Age=9999"}}});
    m_f.server.Route("/framed", [this](const TTestRequest &request) {
      return TTestResponse{.body = "<iframe src='" + m_f.server.Url(u"/sets"_s, Text(request.query)).toUtf8() + "'>",
                           .headers = {{"Set-Cookie", "page=1"}}};
    });
    m_f.server.RoutePage("/sent", "Sent");
    m_f.Open();
    for (const auto &[frame, sent] :
         {std::pair(u"bad.site.localhost"_s, QString()), {u"good.site.localhost"_s, u"script=1; stored=1"_s}}) {
      Load(m_f.server.Url(u"/framed?"_s + frame, u"www.site.localhost"_s));
      QTRY_COMPARE(Sent(frame), sent);
      QCOMPARE(Sent(u"www.site.localhost"_s), u"page=1"_s);
    }
  }

  // Of all ways to a page the last address counts.
  void PlugIns() {
    QVERIFY(TZoneStore(*m_f.store).SetPolicy(3, TUrlAction::ActiveX, TZoneStore::Disallow));
    m_f.server.Route("/plugs",
                     TTestResponse::Page("<title>?</title><script>document.title = "
                                         "navigator.mimeTypes['application/pdf'] ? 'plug-ins' : 'none'</script>"));
    m_f.Open();
    const QString internet = m_f.server.Url(u"/plugs"_s);
    const QString intranet = m_f.server.Url(u"/plugs"_s, u"localhost"_s);
    m_f.server.Route("/to", [](const TTestRequest &request) { return TTestResponse::Redirect(request.query); });
    for (const auto &[address, title] : {std::pair(internet, u"none"_s), {intranet, u"plug-ins"_s}}) {
      Load(address);
      QCOMPARE(Active()->Title(), title);
      for (const QString &start : {u"127.0.0.1"_s, u"localhost"_s}) {
        const QSignalSpy loaded(Active(), &TBrowserTab::Loaded);
        Active()->Navigate(m_f.server.Url(u"/to?"_s + address, start));
        SOON(loaded.count() > 0 && !Active()->Busy(), true);
        QCOMPARE(Active()->GetLocationUrl(), address);
        SOON(Active()->Title(), title);
      }
    }
  }

  // What comes as a file since it takes a plug-in to show it.
  void AskedAboutDocuments() {
    QVERIFY(TZoneStore(*m_f.store).SetPolicy(3, TUrlAction::ActiveX, TZoneStore::Query));
    TZVOptions(*m_f.store).Set(Setting::DownloadAsk, false);
    TZVOptions(*m_f.store).Set(Setting::DownloadFolder, m_f.Path(QString()));
    m_f.server.Route("/paper",
                     TTestResponse{.body = "%PDF-1.4\n%%EOF", .headers = {{"Content-Type", "application/pdf"}}});
    m_f.Open();
    Load(m_f.server.Url(u"/other"_s));
    const QString paper = m_f.server.Url(u"/paper"_s);
    Active()->Navigate(paper);
    Answer(u"May http://127.0.0.1:%1 use plug-ins?"_s, "cmdAllow");
    SOON(Active()->GetLocationUrl(), paper);
    SOON(Active()->Load(), TLoad::Shown);
    QVERIFY(!IsAsked());
  }

  // Nothing runs before the answer, which holds for the site: for this run, or for good.
  void AskedAboutScripts() {
    QVERIFY(TZoneStore(*m_f.store).SetPolicy(3, TUrlAction::Scripting, TZoneStore::Query));
    m_f.server.Route("/missing", TTestResponse::Status(404, "<title>Missing</title>"));
    m_f.server.Route("/endless", TTestResponse::Page("<img src=/never>"));
    m_f.Open();
    const auto probe = [this](const char *host) { return m_f.server.Url(u"/probe"_s, QLatin1String(host)); };
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
      Load(m_f.server.Url(u"/other"_s, QLatin1String(host)));
      QCOMPARE(Active()->Title(), u"off"_s);
      QVERIFY(!IsAsked());
    }
    // Pages that are none, and those that never end.
    for (const QString &path : {u"/missing"_s, u"/endless"_s}) {
      m_f.server.ForgetRequests();
      Active()->Navigate(m_f.server.Url(path, u"now.localhost"_s));
      QTRY_VERIFY_WITH_TIMEOUT(IsAsked(), m_f.LoadTime);
      Load(m_f.server.Url(u"/other"_s, u"never.localhost"_s));
      SOON(IsAsked(), false);
    }
    Load(probe("now.localhost"));
    Answer(u"May http://now.localhost:%1 run scripts?"_s, "cmdAllowNow");
    SOON(Active()->Title(), u"on"_s);
    m_f.window.reset();
    m_f.Open();
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

  void AskedAboutCookies() {
    TZoneStore zones(*m_f.store);
    QVERIFY(zones.SetPolicy(3, TUrlAction::Cookies, TZoneStore::Query));
    QVERIFY(zones.SetPolicy(3, TUrlAction::SessionCookies, TZoneStore::Query));
    m_f.server.Route("/two",
                     TTestResponse{.body = "<title>Two</title>",
                                   .headers = {{"Set-Cookie", "session=1"}, {"Set-Cookie", "stored=1; Max-Age=9999"}}});
    m_f.server.RoutePage("/sent", "Sent");
    m_f.Open();
    const QString host = u"asked.localhost"_s;
    Load(m_f.server.Url(u"/two"_s, host));
    QCOMPARE(Sent(host), QString());
    Load(m_f.server.Url(u"/two"_s, host));
    m_f.server.ForgetRequests();
    Answer(u"May http://asked.localhost:%1 store cookies and data?"_s, "cmdAllow");
    SOON(m_f.server.RequestCount("/two"), 1);
    // The page that comes again asks for the rest.
    Answer(u"May http://asked.localhost:%1 keep cookies until the program ends?"_s, "cmdDeny");
    QTRY_COMPARE(Sent(host), u"stored=1"_s);
    QVERIFY(!IsAsked());
    // What is decided about others takes nothing from it, not even once.
    auto &decisions = TPermissionDecisions::Of(*Active()->Browser()->EnginePage()->profile());
    decisions.Remember(QUrl(u"http://another.localhost"_s), TPermission::Camera, TPermissionDecision::Refused);
    QCOMPARE(Sent(host), u"stored=1"_s);
  }

  // What is changed in the dialog holds at once.
  void Settings() {
    m_f.Open();
    Load(m_f.server.Url(u"/probe"_s));
    auto *panel = m_f.window->findChild<TZonePanel *>();
    SOON(Panel(), u"Internet"_s);
    QTest::mouseDClick(panel, Qt::LeftButton);
    auto *dialog = m_f.window->findChild<TfrmSecurity *>();
    QVERIFY(dialog != nullptr && QTest::qWaitForWindowActive(dialog));
    const auto child = [dialog](const char *name) { return dialog->findChild<QWidget *>(QLatin1String(name)); };
    auto *zone = qobject_cast<QComboBox *>(child("cboZone"));
    auto *site = qobject_cast<QLineEdit *>(child("txtSite"));
    auto *list = qobject_cast<QListWidget *>(child("lstSites"));
    auto *scripting = qobject_cast<QComboBox *>(child("cboScripting"));
    const auto click = [&](const char *name) { qobject_cast<QPushButton *>(child(name))->click(); };
    const auto sites = [list] {
      QStringList texts;
      for (int i = 0; i < list->count(); ++i) texts.append(list->item(i)->text());
      return texts;
    };
    QCOMPARE(zone->currentText(), u"Internet"_s);
    QCOMPARE(scripting->currentText(), u"Allow"_s);
    zone->setCurrentIndex(0);
    QVERIFY(!list->isEnabled());
    zone->setCurrentIndex(4);
    QCOMPARE(scripting->currentText(), u"Don’t allow"_s);
    QTest::keyClicks(site, u"no site/path"_s);
    click("cmdAdd");
    QVERIFY(!qobject_cast<QLabel *>(child("lblBadSite"))->text().isEmpty());
    QVERIFY(sites().isEmpty());
    site->clear();
    QTest::keyClicks(site, u" HTTP://127.0.0.1:80/ "_s);
    QTest::keyClick(site, Qt::Key_Return);
    QCOMPARE(sites(), QStringList(u"http://127.0.0.1"_s));
    QVERIFY(dialog->isVisible());
    QCOMPARE(Active()->SecureZone(), TSecurityZone::Restricted);
    scripting->setCurrentIndex(1);
    Q_EMIT scripting->activated(1);
    QCOMPARE(TZoneStore(*m_f.store).Policy(4, TUrlAction::Scripting), TZoneStore::Query);
    click("cmdDefaults");
    QCOMPARE(TZoneStore(*m_f.store).Policy(4, TUrlAction::Scripting), TZoneStore::Disallow);
    QCOMPARE(scripting->currentText(), u"Don’t allow"_s);
    // What somebody else changes meanwhile shows, and leaves alone what the user has in hand.
    list->selectAll();
    site->setText(u"half"_s);
    TZoneStore elsewhere(*m_f.store);
    QVERIFY(elsewhere.AddMapping(u"http://a.test"_s, 4));
    QVERIFY(elsewhere.SetPolicy(4, TUrlAction::Scripting, TZoneStore::Allow));
    QTRY_COMPARE(sites(), (QStringList{u"http://127.0.0.1"_s, u"http://a.test"_s}));
    QCOMPARE(scripting->currentText(), u"Allow"_s);
    QCOMPARE(list->selectedItems().size(), 1);
    QCOMPARE(site->text(), u"half"_s);
    list->selectAll();
    click("cmdRemove");
    QVERIFY(sites().isEmpty());
    QCOMPARE(Active()->SecureZone(), TSecurityZone::Internet);
    click("cmdClose");
    SOON(m_f.window->findChild<TfrmSecurity *>() == nullptr, true);
  }

  void RefusedRules() {
    { TRegistryStore make(m_f.Path(u"only.sqlite"_s)); }
    TRegistryStore store(m_f.Path(u"only.sqlite"_s), TRegistryStore::TReadOnly());
    TZoneStore zones(store);
    TLanguage language;
    QVERIFY(language.LoadFile(SourceFile(QStringLiteral("Languages/zveng.ini"))));
    const TIEZoneMgr manager(&zones, language);
    TfrmSecurity dialog(zones, manager, language);
    auto &rule = *dialog.findChild<QComboBox *>(u"cboScripting"_s);
    const auto &told = *dialog.findChild<QLabel *>(u"lblBadRule"_s);
    for (const bool isReset : {false, true}) {
      QCOMPARE(told.text(), QString());
      if (isReset) {
        dialog.findChild<QPushButton *>(u"cmdDefaults"_s)->click();
      } else {
        rule.setCurrentIndex(2);
        Q_EMIT rule.activated(2);
      }
      QCOMPARE(rule.currentText(), u"Allow"_s);
      QCOMPARE(told.text(), language.Text("SECURITY", "NotKept"));
      dialog.ShowZone(isReset ? 3 : 2);
    }
  }

  // The mark of a key is no part of a name.
  void NamesWithAmpersands() {
    QFile file(SourceFile(QStringLiteral("Languages/zveng.ini")));
    QFile odd(m_f.Path(u"odd.ini"_s));
    QVERIFY(file.open(QIODevice::ReadOnly) && odd.open(QIODevice::WriteOnly));
    odd.write(file.readAll().replace("Zone2=Trusted sites", "Zone2=R&D"));
    odd.close();
    TLanguage language;
    QVERIFY(language.LoadFile(odd.fileName()));
    m_f.Open();
    Load(m_f.server.Url(u"/probe"_s));
    TZoneStore zones(*m_f.store);
    TIEZoneMgr manager(&zones, language);
    const TSecurityMenu menu(m_f.window.get(), m_f.window->Actions(), Tabs(), zones, manager, language);
    const QAction *add = Action(TCommand::SecurityAddTrusted);
    QVERIFY(add->text().contains(u"“R&&D”"_s));
    QVERIFY(add->toolTip().contains(u"“R&D”"_s));
    QCOMPARE(add->statusTip(), add->toolTip());
  }

 private:
  static QString Text(const QByteArray &bytes) { return QString::fromUtf8(bytes); }
  [[nodiscard]] TTabStrip &Tabs() const { return m_f.window->Tabs(); }
  [[nodiscard]] TBrowserTab *Active() const { return Tabs().GetActivePage(); }
  [[nodiscard]] QAction *Action(TCommand command) const { return m_f.window->Actions()[command]; }
  [[nodiscard]] QMenu *SecurityMenu() const { return m_f.window->Actions().Menu(TMenu::Security); }
  [[nodiscard]] QString Panel() const { return m_f.window->findChild<TZonePanel *>()->Text(); }
  // What the menu shows when it opens.
  [[nodiscard]] QStringList Captions() const {
    Q_EMIT SecurityMenu()->aboutToShow();
    QStringList captions;
    for (const QAction *item : SecurityMenu()->actions()) {
      if (item->isVisible() && !item->isSeparator()) captions.append(item->text());
    }
    return captions;
  }
  [[nodiscard]] bool IsAsked() const {
    const auto *bar = Active()->findChild<TPermissionBar *>();
    return bar != nullptr && bar->isVisible();
  }
  // `question` with a place for the server's port.
  void Answer(const QString &question, const char *button) {
    QTRY_VERIFY_WITH_TIMEOUT(IsAsked(), m_f.LoadTime);
    const auto *bar = Active()->findChild<TPermissionBar *>();
    SOON(bar->findChild<QLabel *>(u"lblQuestion"_s)->text(), question.arg(m_f.server.Port()));
    auto *chosen = bar->findChild<QPushButton *>(QLatin1String(button));
    QTRY_VERIFY(chosen->isEnabled());
    chosen->click();
  }
  void Load(const QString &address) {
    TBrowserTab *tab = Active();
    tab->Navigate(address);
    QTRY_VERIFY_WITH_TIMEOUT(tab->GetLocationUrl() == address && !tab->Busy() && tab->Load() == TLoad::Shown,
                             m_f.LoadTime);
  }
  // A page without scripts cannot say that it has been painted.
  void ClickLink() {
    const int before = Tabs().TabCount();
    for (int attempt = 0; attempt < 10 && Tabs().TabCount() == before; ++attempt) {
      QTest::mouseClick(Active()->findChild<QWebEngineView *>()->focusProxy(), Qt::LeftButton, {}, QPoint(100, 100));
      std::ignore = QTest::qWaitFor([&] { return Tabs().TabCount() > before; }, m_f.LoadTime / 10);
    }
    QVERIFY(Tabs().TabCount() > before);
    SOON(Tabs().Tab(before)->Hidden(), false);
    Tabs().Activate(Tabs().Tab(before));
  }
  // The cookies that the server gets, in the order of their names.
  [[nodiscard]] QString Sent(const QString &host) {
    Load(m_f.server.Url(u"/sent"_s, host));
    QStringList cookies = Text(m_f.server.Requests("/sent").last().Header("cookie")).split(u"; "_s);
    cookies.sort();
    return cookies.join(u"; "_s);
  }

  TMainWindowFixture m_f;
};

ENGINE_MAIN(TestSecurity)
#include "test_security.moc"
