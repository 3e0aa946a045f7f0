#include <QSaveFile>
#include <QWebEngineDownloadRequest>
#include <QWebEngineProfile>

#include "browser/engine/own_scripts.h"
#include "browser/page/page_prompts.h"
#include "browser/page/permission_bar.h"
#include "browser/page/permission_decisions.h"
#include "browser/tabs/auto_refresh.h"
#include "browser/tabs/sleeping_tabs.h"
#include "browser/tabs/tab_record.h"
#include "platform/memory.h"
#include "window/answering_policy.h"
#include "window/tabs_fixture.h"

using TStep = std::function<void(TBrowserTab *)>;
Q_DECLARE_METATYPE(TStep)

#define SOON(condition) QTRY_VERIFY_WITH_TIMEOUT(condition, TTabsFixture::LoadTime)

// Pages in the background fall asleep in their time, but none that has something to lose, and come back as they were.
class TestSleepingTabs final : public QObject, private TTabsFixture {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    Prepare();
    const QByteArray form =
        "<style>body{margin:0}input,div,iframe{display:block;height:40px;border:0}</style>"
        "<form action=/plain method=post><input id=text value=old>"
        // Ticked once, however often the key comes.
        "<input id=box type=checkbox oninput=blur()></form>"
        "<div id=rich contenteditable>rich</div>";
    server.RoutePage("/plain", "Plain");
    server.RoutePage("/form", "Form", form);
    server.RoutePage("/framed", "Framed", "<style>body{margin:0}</style><iframe src=/form></iframe>");
    server.RoutePage("/keeps", "Keeps", "<script>onbeforeunload = e => e.returnValue = 'x'</script>");
    server.RoutePage("/long", "Long", "<div style='height:5000px'></div>" + form);
    server.Route("/icon", TTestResponse::Page("<title>Icon</title><link rel=icon href=/icon.svg>"));
    server.Route("/icon.svg", {.body = "<svg xmlns='http://www.w3.org/2000/svg' width='16' height='16'>"
                                       "<rect width='16' height='16' fill='red'/></svg>",
                               .headers = {{"Content-Type", "image/svg+xml"}}});
    server.Route("/scripts", TTestResponse::Page("<title>off</title><script>document.title = 'on'</script>"));
    auto file = TTestResponse::Attachment("file.bin", QByteArray(100'000, 'x'));
    file.stopAfterBytes = 10;
    server.Route("/file", file);
  }
  void init() {
    Begin();
    policy = std::make_unique<TAnsweringPolicy>();
    policy->AnswerFor(Engine());
    refresh = std::make_unique<TAutoRefresh>(*actions, *tabs, *settings);
    sleeping = std::make_unique<TSleepingTabs>(*tabs, *settings, *refresh);
    sleeping->SetClock([this] { return now; });
    sleeping->SetMemory([] { return false; });
    home = tabs->Tab(0);
    window->activateWindow();
    QTRY_VERIFY(window->isActiveWindow());
  }
  void cleanup() {
    sleeping.reset();
    refresh.reset();
    policy.reset();
    End();
  }

  void NothingIsLost_data() {
    Columns<QString, TStep, TStep>("page", "begin", "end");
    const auto script = [](const QString &source) { return TStep([source](TBrowserTab *tab) { Run(tab, source); }); };
    const auto typed = [](const QString &field, const QString &expression, Qt::Key key = Qt::Key_A) {
      return TStep([=](TBrowserTab *tab) { Type(tab, field, expression, key); });
    };
    const QString play =
        u"(async d => { const v = d.createElement('video'), c = d.createElement('canvas');"
        "c.getContext('2d'); v.muted = true; v.srcObject = c.captureStream(5);"
        "(d.body ?? d).append(v); window.video = v; v.play(); })"_s;
    const auto plays = [=](const QString &where) {
      return TStep([=](TBrowserTab *tab) {
        Run(tab, play + where);
        SOON(AnswerOf(*tab->Browser()->EnginePage(), u"!video.paused"_s).toBool());
      });
    };
    const auto ask = [](TPermission permission) {
      return TStep([permission](TBrowserTab *tab) {
        Prompts(tab)->AskPermission({QUrl(tab->GetLocationUrl()), permission, [](TPermissionAnswer) {}});
      });
    };
    const TStep nothing;
    const QString reset = u"document.forms[0].reset()"_s;
    Row("typed", "/form", typed(u"text"_s, u"text.value !== 'old'"_s), script(reset));
    Row("ticked", "/form", typed(u"box"_s, u"box.checked"_s, Qt::Key_Space), script(reset));
    Row("typed into a text", "/form", typed(u"rich"_s, u"rich.textContent !== 'rich'"_s),
        script(u"rich.remove(); document.forms[0].reset()"_s));
    Row("typed in a closed tree", "/form",
        Then(script(u"const host = document.forms[0].appendChild(document.createElement('p'));"
                    "window.hidden = host.attachShadow({mode: 'closed'}); hidden.innerHTML = '<input>'"_s),
             typed(u"hidden.firstChild"_s, u"hidden.firstChild.value !== ''"_s)),
        script(reset));
    Row("typed in a frame", "/framed", typed(u"frames[0].text"_s, u"frames[0].text.value !== 'old'"_s),
        script(u"frames[0].document.forms[0].reset()"_s));
    Row("sent and refused by the page", "/form",
        Then(typed(u"text"_s, u"text.value !== 'old'"_s),
             script(u"document.forms[0].onsubmit = () => false; document.forms[0].requestSubmit()"_s)),
        script(reset));
    Row("does not want to be left", "/keeps", TStep([](TBrowserTab *tab) {
          // A page that has just come may still miss a click.
          const auto isKnown = [tab] {
            ClickPage(*tab->Browser(), {300, 300});
            return AnswerOf(*tab->Browser()->EnginePage(), u"navigator.userActivation.hasBeenActive"_s).toBool();
          };
          SOON(isKnown());
        }),
        script(u"onbeforeunload = null"_s));
    Row("silent video", "/plain", plays(u"(document)"_s), script(u"video.pause()"_s));
    Row("video in a frame", "/framed", plays(u"(frames[0].document)"_s), script(u"video.pause()"_s));
    Row("video in a frame without scripts", "/plain", TStep([=, this](TBrowserTab *tab) {
          policy->permissions.scripts = false;
          policy->restrictedPath = u"/framed"_s;
          Load(tab, u"/framed"_s);
          QWebEnginePage &page = *tab->Browser()->EnginePage();
          (void)AnswerOf(page, play + u"(frames[0].document)"_s, ScriptWorld::Own);
          SOON(AnswerOf(page, u"!video.paused"_s, ScriptWorld::Own).toBool());
        }),
        TStep([](TBrowserTab *tab) {
          (void)AnswerOf(*tab->Browser()->EnginePage(), u"video.pause()"_s, ScriptWorld::Own);
        }));
    Row("video in a hidden tree", "/form",
        plays(u"(Object.assign(rich.attachShadow({mode: 'open'}), "
              "{createElement: n => document.createElement(n)}))"_s),
        script(u"video.pause(); text.focus()"_s));
    Row("captures", "/plain", ask(TPermission::Camera), TStep([this](TBrowserTab *tab) { Reload(tab); }));
    Row("asks for a permission", "/plain", ask(TPermission::Location),
        TStep([](TBrowserTab *tab) { Q_EMIT Prompts(tab)->Bar()->Answered(TPermissionDecision::Refused); }));
    Row("asks the user", "/plain", Then(script(u"setTimeout(() => confirm('x'))"_s), TStep([](TBrowserTab *tab) {
                                          SOON(tab->Browser()->HasOpenQuestion());
                                        })),
        TStep([](TBrowserTab *tab) { tab->Browser()->DismissQuestions(); }));
    Row("downloads", "/plain",
        Then(script(u"Object.assign(document.createElement('a'), {href: '/file', download: ''}).click()"_s),
             TStep([this](TBrowserTab *) { SOON(download); })),
        TStep([this](TBrowserTab *) { download->cancel(); }));
    Row("answers a form", "/form", Then(script(u"document.forms[0].submit()"_s), TStep([](TBrowserTab *tab) {
                                          SOON(tab->Title() == u"Plain"_s && !tab->Busy());
                                        })),
        nothing);
    Row("has opened a window", "/plain", Then(script(u"void window.open('/form')"_s), TStep([this](TBrowserTab *) {
                                                SOON(tabs->TabCount() == 3 && tabs->Tab(2)->Title() == u"Form"_s);
                                              })),
        nothing);
    Row("failed", "/plain", TStep([this](TBrowserTab *tab) {
          tab->Navigate(u"http://127.0.0.1:1/"_s);
          SOON(tab->Load() == TLoad::Failed);
        }),
        TStep([this](TBrowserTab *tab) { Load(tab, u"/plain"_s); }));
    Row("spared", "/plain", TStep([](TBrowserTab *tab) { tab->SetKeptAwake(true); }),
        TStep([](TBrowserTab *tab) { tab->SetKeptAwake(false); }));
  }
  void NothingIsLost() {
    QFETCH(QString, page);
    QFETCH(TStep, begin);
    QFETCH(TStep, end);
    connect(&Engine().Profile(), &QWebEngineProfile::downloadRequested, sleeping.get(), [this](auto *request) {
      request->setDownloadDirectory(Path(QString()));
      request->accept();
      download = request;
    });
    TPermissionDecisions::Of(Engine().Profile())
        .Remember(QUrl(server.Url()), TPermission::Camera, TPermissionDecision::Allowed);
    TBrowserTab *tab = OpenNew(page);
    begin(tab);
    tabs->Activate(home);
    TBrowserTab *plain = OpenNew(u"/plain"_s);
    tabs->Activate(home);
    PassTime(30);
    SOON(plain->Asleep());
    // Whatever was asked of the page then is answered before this.
    for (int turn = 0; turn < 2; ++turn) {
      if (!tab->Browser()->HasOpenQuestion()) (void)AnswerOf(*tab->Browser()->EnginePage(), u"1"_s);
    }
    QVERIFY(!tab->Asleep());
    if (!end) return;
    end(tab);
    SOON((PassTime(30), tab->Asleep()));
  }

  // What the user had put in and took out again, or sent, keeps nothing awake.
  void NothingToLose_data() {
    Columns<QString>("script");
    Row("cleared by the page", u"text.value = 'old'"_s);
    Row("sent to a frame",
        u"document.body.insertAdjacentHTML('beforeend', '<iframe name=x>'),"
        "document.forms[0].target = 'x', document.forms[0].requestSubmit()"_s);
  }
  void NothingToLose() {
    QFETCH(QString, script);
    TBrowserTab *tab = OpenNew(u"/form"_s);
    Type(tab, u"text"_s, u"text.value !== 'old'"_s);
    Run(tab, script);
    tabs->Activate(home);
    SOON((PassTime(30), tab->Asleep()));
  }

  void ComesBack() {
    policy->permissions.scripts = false;
    policy->restrictedPath = u"/scripts"_s;
    TBrowserTab *tab = OpenNew(u"/plain"_s);
    Load(tab, u"/long"_s);
    Run(tab, u"document.title = 'Mine'"_s);
    SOON(tab->Title() == u"Mine"_s);
    const QByteArray before = tab->Record().history;
    Run(tab, u"text.value = 'new'; scrollTo(0, 1000)"_s);
    SOON(tab->Record().history != before);
    tab->SetLocked(true);
    TBrowserTab *icon = OpenNew(u"/icon"_s);
    SOON(!icon->Browser()->Icon().isNull());
    TBrowserTab *off = OpenNew(u"/scripts"_s);
    QCOMPARE(off->Title(), u"off"_s);
    tabs->Activate(home);
    server.ForgetRequests();
    PassTime(30);
    for (TBrowserTab *one : {tab, icon, off}) SOON(one->Asleep());
    QCOMPARE(tab->Browser()->EnginePage()->renderProcessPid(), 0);
    QCOMPARE(tab->AddressToSave(), server.Url(u"/long"_s));
    QCOMPARE(tab->ListCaption(), u"Mine"_s);
    QCOMPARE(tab->Description(), u"Mine, locked, asleep"_s);
    QVERIFY(tab->BackEnabled() && tab->Load() == TLoad::Shown && !tab->Announced());
    QVERIFY(!icon->Browser()->Icon().isNull());
    const TTabRecord record = tab->Record();
    tabs->RefreshAll();
    tabs->RefreshUnattended();
    QCOMPARE(server.Requests().size(), 0);

    tabs->Activate(tab);
    SOON(AnswerOf(*tab->Browser()->EnginePage(), u"scrollY === 1000 && text.value === 'new'"_s).toBool());
    SOON(!tab->Busy());
    QCOMPARE(tab->Description(), u"Long, locked"_s);
    QCOMPARE(tabs->TabCount(), 4);
    tabs->Activate(off);
    SOON(!off->Asleep() && !off->Busy());
    QCOMPARE(off->Title(), u"off"_s);
    tabs->Activate(icon);
    SOON(!icon->Asleep() && !icon->Busy() && !icon->Browser()->Icon().isNull());
    // It is elsewhere when it falls asleep again.
    Run(icon, u"history.pushState(null, '', '/icon?second')"_s);
    const QString second = server.Url(u"/icon?second"_s);
    SOON(icon->AddressToSave() == second);
    tabs->Activate(home);
    PassTime(30);
    SOON(icon->Asleep());
    QCOMPARE(icon->AddressToSave(), second);
    // What was kept of it as it slept is the page with all that is behind it.
    TBrowserTab *again = tabs->NewTab();
    again->Announce(record);
    again->NavigateStored();
    SOON(again->BackEnabled() && again->Load() == TLoad::Shown);
    SOON(AnswerOf(*again->Browser()->EnginePage(), u"scrollY"_s).toInt() == 1000);
  }

  void Commands_data() {
    Columns<TStep, QString>("command", "title");
    Row("refresh", TStep([](TBrowserTab *tab) { tab->Reload(false); }), u"Form"_s);
    Row("refresh wholly", TStep([](TBrowserTab *tab) { tab->Reload(true); }), u"Form"_s);
    Row("back", TStep([](TBrowserTab *tab) { tab->GoBack(); }), u"Plain"_s);
    Row("another address", TStep([this](TBrowserTab *tab) { tab->Navigate(server.Url(u"/long"_s)); }), u"Long"_s);
    Row("the address asked for", TStep([](TBrowserTab *tab) { tab->NavigateStored(); }), u"Form"_s);
  }
  void Commands() {
    QFETCH(TStep, command);
    QFETCH(QString, title);
    TBrowserTab *tab = OpenNew(u"/plain"_s);
    Load(tab, u"/form"_s);
    tabs->Activate(home);
    PassTime(30);
    SOON(tab->Asleep());
    command(tab);
    SOON(!tab->Asleep() && tab->Load() == TLoad::Shown && tab->Title() == title);
    QVERIFY(AnswerOf(*tab->Browser()->EnginePage(), u"document.title"_s).toString() == title);
    PassTime(30);
    SOON(tab->Asleep());
    tabs->CloseByUser(tab);
    QCOMPARE(tabs->TabCount(), 1);
  }

  void Time_data() {
    Columns<int, int, int, bool>("setting", "minutes", "interval", "sleeps");
    Row("too soon", 30, 29, 0, false);
    Row("in time", 30, 30, 0, true);
    Row("another time", 5, 5, 0, true);
    Row("never", 0, 100000, 0, false);
    Row("all are refreshed", 30, 100, 300000, false);
  }
  void Time() {
    QFETCH(int, setting);
    QFETCH(int, minutes);
    QFETCH(int, interval);
    settings->Set(Setting::SleepMinutes, setting);
    settings->Set(Setting::AutoRefresh, interval);
    QCOMPARE(refresh->Interval(), interval);
    QVERIFY((*actions)[interval == 0 ? TCommand::AutoRefreshNone : TCommand::AutoRefresh300]->isChecked());
    TBrowserTab *tab = OpenNew(u"/plain"_s);
    PassTime(1000);
    tabs->Activate(home);
    PassTime(minutes);
    QFETCH(bool, sleeps);
    Expect(tab, sleeps);
  }

  void Memory_data() {
    Columns<QByteArray, bool>("report", "isShort");
    Row("enough", QByteArray("some avg10=9.99 avg60=50.00 avg300=0.00 total=1\nfull avg10=50.00\n"), false);
    Row("short", QByteArray("some avg10=10.00 avg60=0.00 avg300=0.00 total=1\nfull avg10=0.00\n"), true);
    Row("no number", QByteArray("some avg10=x"), MemoryIsShort());
    Row("something else", QByteArray(), MemoryIsShort());
  }
  void Memory() {
    QFETCH(QByteArray, report);
    QSaveFile file(Path(u"pressure"_s));
    QVERIFY(file.open(QFile::WriteOnly) && file.write(report) == report.size() && file.commit());
    sleeping->SetMemory([this] { return MemoryIsUnderPressure(Path(u"pressure"_s)); });
    TBrowserTab *tab = OpenNew(u"/plain"_s);
    tabs->Activate(home);
    sleeping->Look();
    Expect(tab, false);
    now += 10'000;
    sleeping->Look();
    QFETCH(bool, isShort);
    Expect(tab, isShort);
  }

  void RecordsKeepIt() {
    TBrowserTab *tab = OpenNew(u"/plain"_s);
    tab->SetKeptAwake(true);
    QCOMPARE(tab->Description(), u"Plain, kept awake"_s);
    const QString text = tab->Record().ToText();
    TBrowserTab *again = tabs->NewTab();
    again->Announce(TTabRecord::FromText(text).value());
    QVERIFY(again->KeptAwake());
  }

 private:
  static TPagePrompts *Prompts(TBrowserTab *tab) { return tab->Browser()->EnginePage()->findChild<TPagePrompts *>(); }
  static TStep Then(const TStep &first, const TStep &second) {
    return [=](TBrowserTab *tab) {
      first(tab);
      second(tab);
    };
  }
  TBrowserTab *OpenNew(const QString &path) {
    tabs->NewTab(TTabPlace::AtEnd);
    return OpenPage(path);
  }
  // Presses the key in the field of the page that is shown, and waits for what it does.
  static void Type(TBrowserTab *tab, const QString &field, const QString &expression, Qt::Key key = Qt::Key_A) {
    QWidget *view = tab->Browser()->findChild<QWebEngineView *>()->focusProxy();
    view->setFocus();
    Run(tab, field + u".focus()"_s);
    // A frame takes no keys before it has been painted.
    SOON((QTest::keyClick(view, key), AnswerOf(*tab->Browser()->EnginePage(), expression).toBool()));
  }
  void Reload(TBrowserTab *tab) {
    const int before = server.RequestCount("/plain");
    tab->Reload(false);
    SOON(server.RequestCount("/plain") > before && !tab->Busy());
  }
  void Expect(TBrowserTab *tab, bool sleeps) {
    // A page that is asked whether it may sleep answers in turn.
    if (sleeps) {
      SOON(tab->Asleep());
    } else {
      (void)AnswerOf(*tab->Browser()->EnginePage(), u"1"_s);
      QVERIFY(!tab->Asleep());
    }
    // What it leaves is tidied up, and only then.
    QCOMPARE(sleeping->findChild<QTimer *>(u"tmrTidyUp"_s)->isActive(), sleeps);
  }
  void PassTime(int minutes) {
    sleeping->Look();
    now += qint64(minutes) * 60'000;
    sleeping->Look();
  }

  std::unique_ptr<TAnsweringPolicy> policy;
  std::unique_ptr<TAutoRefresh> refresh;
  std::unique_ptr<TSleepingTabs> sleeping;
  TBrowserTab *home = nullptr;
  QPointer<QWebEngineDownloadRequest> download;
  qint64 now = 1;
};

ENGINE_MAIN(TestSleepingTabs)
#include "test_sleeping_tabs.moc"
