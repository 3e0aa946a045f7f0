#include <QApplication>
#include <QClipboard>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QToolButton>
#include <QWebEngineProfile>
#include <QWebEngineScript>

#include "actions/actions.h"
#include "browser/downloads/download_list.h"
#include "browser/engine/search_page.h"
#include "browser/page/page_notice.h"
#include "browser/page/script_dialog.h"
#include "browser/page/sign_in_dialog.h"
#include "browser/tabs/page_commands.h"
#include "config/registry_paths.h"
#include "platform/product_info.h"
#include "search/search_engine_dialog.h"
#include "search/search_lists.h"
#include "search/side_search.h"
#include "window/answering_policy.h"
#include "window/tabs_fixture.h"

namespace {

constexpr TRegistryHive User = TRegistryHive::CurrentUser;

using TKind = TSearchRoute::TKind;

// Where a click in the panel leads.
enum TEnd { InPanel, InFrame, InNewTab, Window, Nowhere };

}  // namespace

Q_DECLARE_METATYPE(TEnd)
Q_DECLARE_METATYPE(TSearchRoute::TKind)

// The side bar's search page, with the real engine and a server.
class TestSideSearch final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    m_f.Prepare();
    m_f.server.RoutePage("/home", "Home page", "home");
    m_f.server.RoutePage("/tab", "Tab page", "<input id=i value=tab>");
    m_f.server.RoutePage("/result", "Result", "result");
    m_f.server.RoutePage("/framed", "Framed", "<a id=a href=/result target=_main>x</a>");
    m_f.server.RoutePage("/listed", "Listed");
    m_f.server.RoutePage("/maker", "Maker");
    m_f.server.Route("/moved", TTestResponse::Redirect("/result"));
  }
  void init() {
    m_policy.isPopup = {};
    m_policy.searchFor = {};
    m_policy.restrictedPath.clear();
    m_policy.permissions = {};
    m_policy.tested.clear();
    // What only opens pages goes on where the row before has left off.
    const bool goesOn = QByteArray(QTest::currentTestFunction()) == "Routing" && m_panel;
    if (!goesOn) Renew();
  }
  void cleanupTestCase() { End(); }

  // The rules alone, in the order in which they are asked.
  void Rules_data() {
    Columns<QString, QString, QString, TKind, QString>("url", "target", "base", "kind", "address");
    const QString page("http://a.test/def:x");
    Row("plain", page, "", "", TKind::Stays, page);
    Row("own target", page, "_main", "", TKind::OpensInMain, page);
    Row("base target", page, "", "_main", TKind::OpensInMain, page);
    Row("base target over an own one", page, "_self", "_main", TKind::OpensInMain, page);
    Row("other letters", page, "_Main", "_MAIN", TKind::Stays, page);
    Row("marked", "DEF:http://a.test/", "", "", TKind::OpensInPanel, "http://a.test/");
    Row("marked in small letters, for the main area", "dEf:http://a.test/", "_main", "_main", TKind::OpensInPanel,
        "http://a.test/");
    Row("marked, with nothing behind", "def:", "", "", TKind::OpensInPanel, "");
    Row("marked twice", "DEF:DEF:x", "", "", TKind::OpensInPanel, "DEF:x");
    Row("no address", "", "", "", TKind::Stays, "");
  }
  void Rules() {
    QFETCH(QString, url);
    QFETCH(QString, target);
    QFETCH(QString, base);
    QFETCH(TSearchRoute::TKind, kind);
    QFETCH(QString, address);
    TSearchRouting routing;
    routing.PassNext();
    QCOMPARE(routing.BeforeNavigate(url, target, base).kind, TKind::Stays);
    const TSearchRoute route = routing.BeforeNavigate(url, target, base);
    QCOMPARE(route.kind, kind);
    QCOMPARE(route.address, address);
  }

  void Routing_data() {
    Columns<QString, QString, TEnd>("body", "script", "end");
    const QString click("document.getElementById('a').click()");
    const QString base("<base target=_main>");
    const QString link("<a id=a href=/result>x</a>");
    const QString form("<form id=f action=/result><button id=a name=b>x</button></form>");
    Row("a link", link, click, InPanel);
    Row("a script", link, "location = '/result'", InPanel);
    Row("a link for the main area", "<a id=a href=/result target=_main>x</a>", click, InNewTab);
    Row("in other letters", "<a id=a href=/result target=_Main>x</a>", click, Window);
    Row("an area of a picture", "<map name=m><area id=a href=/result target=_main></map>", click, InNewTab);
    Row("a link under a base", base + link, click, InNewTab);
    Row("under a base in other letters", "<base target=_MAIN>" + link, click, Window);
    Row("under a base without a target", "<base href=/x/><base target=_main>" + link, click, InNewTab);
    Row("under the second base", "<base target=_self><base target=_main>" + link, click, InPanel);
    Row("for the same place under a base", base + "<a id=a href=/result target=_self>x</a>", click, InNewTab);
    Row("for a window under a base", base + "<a id=a href=/result target=_blank>x</a>", click, Window);
    Row("a script under a base", base, "location = '/result'", InNewTab);
    Row("a base that comes late", link,
        "document.body.innerHTML += '<base target=_main>'; setTimeout(() => document.getElementById('a').click())",
        InNewTab);
    Row("a base that goes", base + link,
        "document.querySelector('base').remove(); setTimeout(() => document.getElementById('a').click())", InPanel);
    Row("XHTML",
        "<?xml version='1.0'?><html xmlns='http://www.w3.org/1999/xhtml'><head><title>Page</title>"
        "<base target='_main'/></head><body><a id='a' href='/result'>x</a></body></html>",
        click, InNewTab);
    Row("XHTML in other letters",
        "<?xml version='1.0'?><html xmlns='http://www.w3.org/1999/xhtml'><head><title>Page</title>"
        "<Base target='_main'/></head><body><a id='a' href='/result'>x</a></body></html>",
        click, InPanel);
    Row("a form under a base", base + form, click, InNewTab);
    Row("a form for the main area", "<form id=f target=_main action=/result></form>",
        "document.getElementById('f').submit()", InNewTab);
    Row("a button for the main area", "<form action=/result><button id=a formtarget=_main>x</button></form>", click,
        InNewTab);
    Row("a window for the main area", "", "open('/result', '_main')", InNewTab);
    Row("a window", "", "open('/result')", Window);
    Row("a window from a link for the main area",
        "<a id=a target=_main href=/tab onclick=\"window.open('/result', 'w'); return "
        "false\">x</a>",
        click, Window);
    Row("a frame that loads", base + "<iframe id=i></iframe>", "document.getElementById('i').src = '/result'", InFrame);
    Row("a link in a frame for the main area", "<iframe id=i src=/framed></iframe>",
        "frames[0].document.getElementById('a').click()", InNewTab);
    Row("marked", "<a id=a href=DEF:http://SERVER/result>x</a>", click, InPanel);
    Row("marked, under a base", base + "<a id=a href=def:http://SERVER/result target=_main>x</a>", click, InPanel);
    Row("marked, by a script", "", "location = 'dEF:http://SERVER/result'", InPanel);
    Row("marked, with nothing behind", "", "location = 'def:'", Nowhere);
    Row("marked, a file", "", "location = 'def:file:///etc/hosts'", Nowhere);
    Row("marked, a script", "", "location = 'def:javascript:location=%22/result%22'", Nowhere);
    Row("marked, another program", "", "location = 'def:mailto:nobody@example.test'", Nowhere);
    Row("a script for the main area", "<a id=a target=_main href=\"javascript:document.title='x'\">x</a>", click,
        Nowhere);
    Row("sent on", "<a id=a href=/moved>x</a>", click, InPanel);
  }
  void Routing() {
    QFETCH(QString, body);
    QFETCH(QString, script);
    QFETCH(TEnd, end);
    const QString host = QString("127.0.0.1:%1").arg(m_f.server.Port());
    m_f.server.ForgetRequests();
    RoutePage(body.replace("SERVER", host));
    ShowPanel("/page");
    bool asksForFile = false;
    const QObject listener;
    connect(&Browser(), &THalvexBrowser::BeforeNavigate, &listener, [&](const TNavigation *navigation) {
      asksForFile = asksForFile || navigation->address.startsWith("file:");
    });
    Run(script.replace("SERVER", host));
    const QString result = m_f.server.Url("/result");
    const auto isResult = [&](const QString &address) { return address.section('?', 0, 0) == result; };
    TBrowserTab *first = m_f.tabs->Tab(0);
    switch (end) {
      case InPanel:
        QTRY_COMPARE_WITH_TIMEOUT(Browser().LocationName(), "Result", m_f.LoadTime);
        break;
      case InFrame:
        QTRY_COMPARE_WITH_TIMEOUT(m_f.server.RequestCount("/result"), 1, m_f.LoadTime);
        break;
      case InNewTab:
      case Window:
        QTRY_VERIFY_WITH_TIMEOUT(m_f.tabs->TabCount() == 2 && m_f.tabs->Tab(1)->Title() == "Result", m_f.LoadTime);
        QVERIFY(isResult(m_f.tabs->Tab(1)->AddressToSave()));
        break;
      case Nowhere:
        // Whatever was to come of it has come before this.
        Run("location = '/home'");
        QTRY_COMPARE_WITH_TIMEOUT(Browser().LocationName(), "Home page", m_f.LoadTime);
        QCOMPARE(m_f.server.RequestCount("/result"), 0);
        QVERIFY(!asksForFile);
        break;
    }
    if (end != InPanel && end != Nowhere) QVERIFY(Browser().LocationUrl().startsWith(m_f.server.Url("/page")));
    QCOMPARE(m_f.tabs->TabCount(), end == InNewTab || end == Window ? 2 : 1);
    // Only what the page opens as a window is tested for pop-ups.
    QCOMPARE(m_policy.tested.size(), end == Window ? 1 : 0);
    QCOMPARE(m_f.tabs->GetActivePage() == first, end != InNewTab);
    QCOMPARE(first->Title(), "Tab page");
  }

  // Real clicks, one of them where the page's own scripts may not run.
  void Clicks_data() {
    Columns<QString, Qt::KeyboardModifiers, bool, TEnd>("target", "keys", "scripts", "end");
    Row("for the main area", "_main", Qt::KeyboardModifiers(), true, InNewTab);
    Row("without scripts", "_main", Qt::KeyboardModifiers(), false, InNewTab);
    Row("with Ctrl", "_main", Qt::KeyboardModifiers(Qt::ControlModifier), true, Window);
    Row("in a frame, under a base", "FRAME", Qt::KeyboardModifiers(), true, InNewTab);
  }
  void Clicks() {
    QFETCH(QString, target);
    QFETCH(Qt::KeyboardModifiers, keys);
    QFETCH(bool, scripts);
    QFETCH(TEnd, end);
    m_policy.restrictedPath = "/page";
    m_policy.permissions.scripts = scripts;
    const QByteArray link =
        "<style>*{margin:0;border:0}a,iframe{display:block;width:100%;height:99vh;background:red}</style>"
        "<a href=/result";
    m_f.server.RoutePage("/framed", "", link + ">x</a>");
    RoutePage(target == "FRAME" ? "<base target=_main><style>*{margin:0}</style><iframe src=/framed></iframe>" + link
                                : link + " target=" + target + ">x</a>");
    ShowPanel("/page");
    const QPoint place(60, 100);
    QTRY_COMPARE_WITH_TIMEOUT(Browser().grab().toImage().pixelColor(place), QColor(Qt::red), m_f.LoadTime);
    QTest::mouseClick(View(), Qt::LeftButton, keys, place);
    QTRY_VERIFY_WITH_TIMEOUT(m_f.tabs->TabCount() == 2 && m_f.tabs->Tab(1)->Title() == "Result", m_f.LoadTime);
    QCOMPARE(m_f.tabs->GetActivePage() == m_f.tabs->Tab(1), end == InNewTab);
    QCOMPARE(m_policy.tested.size(), end == Window ? 1 : 0);
    QVERIFY(Browser().LocationUrl().startsWith(m_f.server.Url("/page")));
  }

  void ResultsInTheCurrentTab() {
    m_f.settings->Set(Setting::SearchNewWin, false);
    RoutePage("<a id=a href=/result target=_main>x</a>");
    ShowPanel("/page");
    Run("document.getElementById('a').click()");
    QTRY_COMPARE_WITH_TIMEOUT(m_f.tabs->Tab(0)->Title(), "Result", m_f.LoadTime);
    QCOMPARE(m_f.tabs->TabCount(), 1);
  }

  // The panel's own navigations go on in it, whatever the base element says, and so do the ways back to pages that were
  // in it. None of them lets a later one pass.
  void OwnNavigations() {
    RoutePage("<base target=_main><a id=a href=/result>x</a><p id=p>");
    m_lists->Save(TSearchList::SearchBar, {{"moved", m_f.server.Url("/moved")},
                                           {"blank", "about:blank"},
                                           {"jump", m_f.server.Url("/page#p")},
                                           {"marked", "def:" + m_f.server.Url("/home")},
                                           {"page", m_f.server.Url("/page")}});
    ShowPanel("/home");
    const auto choose = [this](const QString &name) {
      Q_EMIT Menu()->aboutToShow();
      for (QAction *action : Menu()->actions()) {
        if (action->text() == name) return action->trigger();
      }
      QFAIL("no such entry");
    };
    choose("page");
    AwaitPage(m_f.server.Url("/page"));
    choose("moved");
    AwaitPage(m_f.server.Url("/result"));
    Button("tbSearchBack")->click();
    AwaitPage(m_f.server.Url("/page"));
    Button("tbSearchRefresh")->click();
    AwaitPage(m_f.server.Url("/page"));
    QTRY_COMPARE_WITH_TIMEOUT(m_f.server.RequestCount("/page"), 2, m_f.LoadTime);
    QTRY_VERIFY_WITH_TIMEOUT(!Button("tbSearchStop")->isEnabled(), m_f.LoadTime);
    choose("jump");
    AwaitPage(m_f.server.Url("/page#p"));
    choose("marked");
    AwaitPage(m_f.server.Url("/home"));
    choose("blank");
    AwaitPage("about:blank");
    QCOMPARE(m_f.tabs->TabCount(), 1);
    choose("page");
    AwaitPage(m_f.server.Url("/page"));
    choose("jump");
    AwaitPage(m_f.server.Url("/page#p"));
    Run("document.getElementById('a').click()");
    QTRY_COMPARE_WITH_TIMEOUT(m_f.tabs->TabCount(), 2, m_f.LoadTime);
    Button("tbSearchBack")->click();
    QTRY_VERIFY(Button("tbSearchForward")->isEnabled());
  }

  void WhileThePageComes() {
    m_f.server.Route("/slow", {.body = "<title>Slow</title>", .delayMs = 3000});
    m_policy.restrictedPath = "/page";
    for (const bool scripts : {true, false}) {
      m_policy.permissions.scripts = scripts;
      RoutePage("page");
      ShowPanel("/page");
      m_f.settings->Set(Setting::SearchBar, m_f.server.Url("/slow"));
      Button("tbSearchBar")->click();
      const auto shown = [&] {
        QString html;
        bool isThere = false;
        Page().runJavaScript("document.body.outerHTML", QWebEngineScript::ApplicationWorld,
                             [&](const QVariant &answer) {
                               html = answer.toString().trimmed();
                               isThere = true;
                             });
        return QTest::qWaitFor([&] { return isThere; }, m_f.LoadTime) ? html : QString();
      };
      QTRY_COMPARE(shown(),
                   "<body bgcolor=\"666699\"><font face=\"Tahoma,Arial,Helvetica\" size=\"-1\" "
                   "color=\"ffffff\">Loading Search Engine...</font>\n</body>");
      QVERIFY(Button("tbSearchStop")->isEnabled());
      QTRY_COMPARE(Browser().grab().toImage().pixelColor(100, 200), QColor(0x66, 0x66, 0x99));
      AwaitPage(m_f.server.Url("/slow"));
    }
    // No entry of the history is left of it.
    Button("tbSearchBack")->click();
    QTRY_VERIFY_WITH_TIMEOUT(Browser().LocationUrl().startsWith(m_f.server.Url("/page")), m_f.LoadTime);
  }

  void FirstPage_data() {
    Columns<bool, bool, bool, QString, QString>("maker", "home", "list", "first", "chosen");
    const QString own = SearchPage::Address;
    Row("nothing", false, false, false, own, own);
    Row("a list", false, false, true, "/listed", "/listed");
    Row("a home", false, true, true, "/home", "/home");
    Row("the maker's", true, false, true, "/maker", "/maker");
    Row("the maker's and a home", true, true, false, "/home", "/maker");
  }
  void FirstPage() {
    QFETCH(bool, maker);
    QFETCH(bool, home);
    QFETCH(bool, list);
    QFETCH(QString, first);
    QFETCH(QString, chosen);
    TProductInfo product;
    if (maker) product.searchPanelPage = m_f.server.Url("/maker");
    if (home) m_f.settings->Set(Setting::SearchBar, m_f.server.Url("/home"));
    if (list) m_lists->Save(TSearchList::SearchBar, {{"l", m_f.server.Url("/listed")}, {"m", "http://b.test/"}});
    TTabEnvironment environment{m_f.Engine(), m_f.language, *m_f.store, *m_f.settings, product};
    QWidget window;
    TTabStrip tabs(&window, new TZVPageControl(&window), environment);
    tabs.NewTab();
    m_panel = std::make_unique<TSideSearch>(&window, tabs, *m_lists);
    QVERIFY(m_panel->Browser() == nullptr);
    // Nothing of this does anything yet.
    Button("tbSearchBar")->click();
    for (const char *name : {"pmSearchFavsAdd", "pmSearchHomeSet"}) m_panel->findChild<QAction *>(name)->trigger();
    m_panel->show();
    const auto address = [&](const QString &path) { return path.startsWith('/') ? m_f.server.Url(path) : path; };
    AwaitPage(address(first));
    Button("tbSearchBar")->click();
    AwaitPage(address(chosen));
    // Once is enough.
    m_panel->hide();
    m_panel->show();
    QCOMPARE(Browser().LocationUrl(), address(chosen));
    m_panel->Save();
    QCOMPARE(m_f.settings->IsChosen(Setting::SearchBar), true);
    m_panel.reset();
  }

  void NotUnderAnOldSystemBrowser() {
    QVERIFY(TSideSearch::IsAvailable(*m_f.store));
    m_f.store->Write(TRegistryHive::LocalMachine, RegistryKey::BrowserVersion, "Version", "4.72");
    QVERIFY(!TSideSearch::IsAvailable(*m_f.store));
  }

  void OwnPage() {
    MakePanel();
    m_panel->show();
    AwaitPage(SearchPage::Address);
    QVERIFY(AnswerOf(Page(), "document.getElementById('words').offsetParent === null").toBool());
    QVERIFY(!AnswerOf(Page(), "document.documentElement.outerHTML").toString().contains("{{"));
    bool isOpen = false;
    OnModalDialog<TfrmSearchEngine>([&](TfrmSearchEngine &dialog) {
      isOpen = true;
      m_policy.searchFor = [this](const QString &words) {
        return TWordSearch{"<b>", m_f.server.Url("/result?" + words.toUtf8().toPercentEncoding())};
      };
      dialog.accept();
    });
    Run("document.querySelector('a').click()");
    QTRY_VERIFY(isOpen);
    const QString label = "document.querySelector('button').textContent";
    QTRY_COMPARE(AnswerOf(Page(), label).toString(), m_f.language.Text("PAGES", "SearchInstead").arg("<b>"));
    AwaitPage(SearchPage::Address);
    // By keyboard alone.
    m_panel->activateWindow();
    Browser().setFocus();
    Run("document.getElementById('words').value = 'a+b \u00e4&c'");
    QTRY_VERIFY(AnswerOf(Page(), "document.hasFocus() && document.activeElement.id === 'words'").toBool());
    QTest::keyClick(View(), Qt::Key_Return);
    QTRY_COMPARE_WITH_TIMEOUT(m_f.tabs->TabCount(), 2, m_f.LoadTime);
    QTRY_COMPARE_WITH_TIMEOUT(m_f.tabs->Tab(1)->AddressToSave(), m_f.server.Url("/result?a%2Bb%20%C3%A4%26c"),
                              m_f.LoadTime);
    QCOMPARE(Browser().LocationUrl(), SearchPage::Address);
  }

 private:
  void Renew() {
    End();
    m_f.Begin();
    // No row takes from what the next may open.
    m_f.environment->windowSpan = 0;
    m_lists = std::make_unique<TSearchLists>(m_f.language, *m_f.store, *m_f.actions, m_f.window.get());
    m_policy.AnswerFor(m_f.Engine());
    m_f.OpenPage("/tab");
  }
  void End() {
    if (!m_lists) return;
    m_f.Engine().SetPolicy(nullptr);
    m_panel.reset();
    m_lists.reset();
    m_f.End();
  }
  // As /page, titled "Page".
  void RoutePage(const QString &body) {
    TTestResponse page = TTestResponse::Page("<!doctype html><title>Page</title>" + body.toUtf8());
    if (body.startsWith("<?xml"))
      page = {.body = body.toUtf8(), .headers = {{"Content-Type", "application/xhtml+xml"}}};
    m_f.server.Route("/page", page);
  }
  void MakePanel() {
    m_panel = std::make_unique<TSideSearch>(m_f.window.get(), *m_f.tabs, *m_lists);
    m_panel->resize(234, 500);
  }
  // With this page of the server loaded, and one tab.
  void ShowPanel(const QString &path) {
    // Another address each time.
    const QString address = m_f.server.Url(QString("%1?%2").arg(path).arg(++m_shown));
    if (m_panel) {
      while (m_f.tabs->TabCount() > 1) m_f.tabs->Tab(1)->Close();
    }
    m_f.settings->Set(Setting::SearchBar, address);
    if (!m_panel) {
      MakePanel();
      m_panel->show();
    }
    AwaitPage(address);
  }
  void AwaitPage(const QString &address) {
    QTRY_VERIFY_WITH_TIMEOUT(Browser().LocationUrl() == address && !Button("tbSearchStop")->isEnabled(), m_f.LoadTime);
  }
  [[nodiscard]] QMenu *Menu() const { return m_panel->findChild<QMenu *>("pmSearchFavs"); }
  // What takes the clicks and keys of the page.
  [[nodiscard]] QWidget *View() const { return Browser().findChild<QWebEngineView *>()->focusProxy(); }
  [[nodiscard]] QToolButton *Button(const char *name) const { return m_panel->findChild<QToolButton *>(name); }
  void Run(const QString &script) { (void)AnswerOf(Page(), script); }
  [[nodiscard]] THalvexBrowser &Browser() const { return *m_panel->Browser(); }
  [[nodiscard]] QWebEnginePage &Page() const { return *Browser().EnginePage(); }

  TTabsFixture m_f;
  int m_shown = 0;
  TAnsweringPolicy m_policy;
  std::unique_ptr<TSearchLists> m_lists;
  std::unique_ptr<TSideSearch> m_panel;
};

ENGINE_MAIN(TestSideSearch)
#include "test_side_search.moc"
