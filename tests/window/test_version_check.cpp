#include <QLabel>
#include <QPushButton>
#include <QTextEdit>

#include "browser/engine/hidden_page.h"
#include "services/version_check.h"
#include "services/version_exchange.h"
#include "support/store_trouble.h"
#include "ui/confirm_dialog.h"
#include "window/tabs_fixture.h"

// The daily question to the update server, and the page that nobody sees which puts it.
class TestVersionCheck final : public QObject, private TTabsFixture {
  Q_OBJECT

 private:
  static constexpr int Never = 600000;  // milliseconds

  // Begins as a start of the program does; the window is activated at once.
  void StartCheck(const QString &address, bool isConnected = true) {
    m_check = std::make_unique<TVersionCheck>(
        window.get(), *tabs, *settings, language, address,
        TVersionCheck::TWorld{
            .delay = 0, .today = [this] { return m_today; }, .isConnected = [=] { return isConnected; }});
    QEvent activate(QEvent::WindowActivate);
    QCoreApplication::sendEvent(window.get(), &activate);
  }
  [[nodiscard]] QByteArray Queries() const {
    QByteArray queries;
    for (const TTestRequest &request : server.Requests("/")) queries += request.query + ';';
    return queries;
  }
  void AnswerQuestions() {
    auto *dialog = qobject_cast<TfrmConfirm *>(QApplication::activeModalWidget());
    if (dialog == nullptr) return;
    m_asked.append(dialog->windowTitle() + u'|' + dialog->findChild<QLabel *>(u"lblTitle"_s)->text());
    m_checkedWhenAsked = settings->Get(Setting::CheckedVersion);
    dialog->findChild<QPushButton *>(m_answer ? u"cmdOK"_s : u"cmdCancel"_s)->click();
  }

 private Q_SLOTS:
  void initTestCase() {
    Prepare();
    server.RoutePage("/after", "After", "<link rel=icon href=data:,>");
    connect(&m_answering, &QTimer::timeout, this, &TestVersionCheck::AnswerQuestions);
    m_answering.start(10);
  }
  void init() {
    Begin();
    m_asked.clear();
    m_answer = false;
  }
  void cleanup() {
    m_check.reset();
    End();
  }

  void Pages_data() {
    Columns<TTestResponse, QString>("response", "text");
    const QByteArray lines = "PONG=TRUE\r\nVERURL=http://a.test/?b=1&copy=2\r\n";
    const QString read = u"PONG=TRUE\nVERURL=http://a.test/?b=1&copy=2\n"_s;
    const auto typed = [](const QByteArray &type, const QByteArray &body) {
      return TTestResponse{.body = body, .headers = {{"Content-Type", type}}};
    };
    const QString failed = u"failed"_s;
    Row("plain text", TTestResponse::Text(lines), read);
    Row("in pieces", TTestResponse{.body = lines, .headers = {{"Content-Type", "text/plain"}}, .trickleBytes = 5},
        read);
    Row("empty", TTestResponse::Text({}), QString());
    Row("not there", TTestResponse{.status = 404, .body = lines, .headers = {{"Content-Type", "text/plain"}}}, failed);
    Row("server in trouble", TTestResponse::Status(503, "<p>PONG=TRUE"), failed);
    Row("a page", typed("text/html", "<html><body>PONG=TRUE\nVERID=7</body></html>"), u"PONG=TRUE\nVERID=7"_s);
    // Nothing of what a page asks for is asked for, and none of its scripts run.
    Row("a page that wants more",
        typed("text/html",
              "<link rel=stylesheet href=/more><link rel=icon href=/more><img src=/more>"
              "<script>document.write('PONG=TRUE');fetch('/more')</script>"
              "<video src=/more></video><meta http-equiv=refresh content='0;url=/more'><p>VERID=1</p>"),
        u"document.write('PONG=TRUE');fetch('/more')VERID=1"_s);
    Row("another address in a header",
        TTestResponse{.body = lines, .headers = {{"Content-Type", "text/plain"}, {"Refresh", "0;url=/more"}}}, read);
    Row("a page of frames", typed("text/html", "<iframe src=/more></iframe><object data=/more></object>VERID=1"),
        u"VERID=1"_s);
    Row("a file", TTestResponse::Attachment("a.txt", lines), failed);
    Row("bytes", typed("application/octet-stream", lines), failed);
    Row("hangs up", TTestResponse{.dropConnection = true}, failed);
    Row("sent on", TTestResponse::Redirect("/on"), u"on"_s);
    Row("sent on to where it cannot be read", TTestResponse::Redirect("https://127.0.0.1:1/"), failed);
    Row("sent to another host", TTestResponse::Redirect(server.Url(u"/more"_s, u"localhost"_s).toLatin1()), failed);
    Row("sent to a file", TTestResponse::Redirect("file:///etc/hostname"), failed);
    Row("sent in circles", TTestResponse::Redirect("/"), failed);
    Row("wants a name", TTestResponse{.status = 401, .headers = {{"WWW-Authenticate", "Basic realm=\"x\""}}}, failed);
  }
  void Pages() {
    QFETCH(TTestResponse, response);
    QFETCH(QString, text);
    response.headers.append(qMakePair("Set-Cookie"_ba, "a=b; Max-Age=1000"_ba));
    server.Route("/", response);
    server.Route("/on", TTestResponse::Text("on"));
    QCOMPARE(TextAt(server.Url(), Never), text);
    if (text.contains(u"VERID"_s)) Load(tabs->GetActivePage(), u"/after"_s);
    QCOMPARE(server.RequestCount("/more"), 0);
    for (const TTestRequest &request : server.Requests()) QVERIFY(request.Header("cookie").isEmpty());
  }

  void LongPages_data() {
    Columns<QByteArray, QByteArray>("type", "filler");
    Row("text", "text/plain"_ba, "x\n"_ba);
    Row("one line", "text/plain"_ba, "x"_ba);
    Row("a page", "text/html"_ba, "<p>x\n"_ba);
    Row("nothing but elements", "text/html"_ba, "<b></b>"_ba);
  }
  // The rest is not waited for, which would never come.
  void LongPages() {
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, filler);
    server.Route("/", TTestResponse{.body = "PONG=TRUE\n" + filler.repeated(4000000 / filler.size()),
                                    .headers = {{"Content-Type", type}},
                                    .stopAfterBytes = 2000000});
    const QString text = TextAt(server.Url(), Never);
    QVERIFY2(text.startsWith(u"PONG=TRUE\n"_s), qPrintable(text.left(20)));
    QVERIFY(text.size() <= THiddenPage::Longest + 1);
    QVERIFY(text.size() > THiddenPage::Longest || filler.startsWith("<b>"));
  }

  void SilentServers_data() {
    Columns<TTestResponse>("response");
    Row("no answer", TTestResponse{.neverAnswer = true});
    Row("stops in the middle", TTestResponse{.body = QByteArray(100, 'x'), .stopAfterBytes = 50});
  }
  void SilentServers() {
    QFETCH(TTestResponse, response);
    server.Route("/", response);
    QCOMPARE(TextAt(server.Url(), 300), u"failed"_s);
  }

  void UntrustedServers() {
    TTestServer tls;
    QVERIFY(tls.ListenWithTls());
    tls.Route("/", TTestResponse::Text("PONG=TRUE"));
    QCOMPARE(TextAt(u"https://127.0.0.1:%1/"_s.arg(tls.Port()), Never), u"failed"_s);
  }

  void Answers_data() {
    Columns<QString, bool, QString, QString>("answer", "yes", "asked", "state");
    const QString page = u"VERURL="_s + server.Url(u"/new"_s) + u'\n';
    const QString all = u"PONG=TRUE\nVERSION=7 <b>\nVERID=700\n"_s + page;
    const QString question = u"New version|Zarvela 7 <b> is available."_s;
    Row("refused", all, false, question, u"46348 0 700 tabs 1"_s);
    Row("wanted", all, true, question, u"46348 0 700 tabs 2"_s);
    Row("offered before", QString(all).replace(u"=700"_s, u"=155"_s), true, QString(), u"46348 0 155 tabs 1"_s);
    Row("no address", QString(all).remove(page), true, QString(), u"46348 0 155 tabs 1"_s);
    Row("no address of the web", QString(all).replace(u"http:"_s, u"ftp:"_s), true, QString(), u"46348 0 155 tabs 1"_s);
    Row("no version", QString(all).replace(u"VERSION"_s, u"V"_s), true, QString(), u"46348 0 155 tabs 1"_s);
    Row("not counted", QString(all).replace(u"TRUE"_s, u"true"_s), false, question, u"46000 1 700 tabs 1"_s);
    Row("something else", u"<h1>Please sign in</h1>"_s, true, QString(), u"46000 1 155 tabs 1"_s);
  }
  void Answers() {
    QFETCH(QString, answer);
    QFETCH(bool, yes);
    QFETCH(QString, asked);
    QFETCH(QString, state);
    server.Route("/", TTestResponse::Text(answer.toUtf8()));
    server.RoutePage("/new", "New");
    settings->Set(Setting::LastPong, 46000);
    settings->Set(Setting::New, true);
    m_answer = yes;
    const QSignalSpy opened(tabs.get(), &TTabStrip::TabOpened);
    StartCheck(server.Url(u"/ignored?this#too"_s));
    const auto stateNow = [this] {
      return u"%1 %2 %3 tabs %4"_s.arg(
          QString::number(settings->Get(Setting::LastPong)), settings->Get(Setting::New) ? u"1"_s : u"0"_s,
          QString::number(settings->Get(Setting::CheckedVersion)), QString::number(tabs->TabCount()));
    };
    QTRY_COMPARE_WITH_TIMEOUT(stateNow(), state, LoadTime);
    QTRY_COMPARE(m_asked.join(u';'), asked);
    QTRY_COMPARE_WITH_TIMEOUT(Queries(), "ver=621A&new=1&mo=1;", LoadTime);
    if (!asked.isEmpty()) QCOMPARE(m_checkedWhenAsked, 700);
    if (tabs->TabCount() > 1) {
      QTRY_COMPARE_WITH_TIMEOUT(tabs->GetActivePage()->GetLocationUrl(), server.Url(u"/new"_s), LoadTime);
    }
    // Where nothing changes nothing could be waited for: a page that comes later tells that this one is over.
    Load(tabs->GetActivePage(), u"/after"_s);
    QCOMPARE(stateNow(), state);
    QCOMPARE(m_asked.join(u';'), asked);

    // Once a day, and again the same day where it was not counted.
    StartCheck(server.Url());
    const bool isCounted = settings->Get(Setting::LastPong) == 46348;
    const QByteArray queries = isCounted ? "ver=621A&new=1&mo=1;"_ba : "ver=621A&new=1&mo=1;ver=621A&new=1&mo=1;"_ba;
    Load(tabs->GetActivePage(), u"/after"_s);
    QTRY_COMPARE_WITH_TIMEOUT(Queries(), queries, LoadTime);
    QVERIFY(m_asked.size() <= 1);
  }

  void NotAsked_data() {
    Columns<int, int, QString, bool, bool>("versionCheck", "lastPong", "server", "connected", "isAsked");
    const QString good = server.Url();
    Row("asked", 1, 0, good, true, true);
    Row("asked, by any number that is not 0", -1, 0, good, true, true);
    Row("the clock was ahead", 1, 46349, good, true, true);
    Row("switched off", 0, 0, good, true, false);
    Row("today", 1, 46348, good, true, false);
    Row("not connected", 1, 0, good, false, false);
    Row("no server", 1, 0, QString(), true, false);
    Row("no scheme", 1, 0, QString(good).remove(u"http://"_s), true, false);
    Row("another scheme", 1, 0, QString(good).replace(u"http"_s, u"ftp"_s), true, false);
    Row("a name in it", 1, 0, QString(good).replace(u"//"_s, u"//me@"_s), true, false);
  }
  void NotAsked() {
    QFETCH(int, versionCheck);
    QFETCH(int, lastPong);
    QFETCH(QString, server);
    QFETCH(bool, connected);
    QFETCH(bool, isAsked);
    settings->Set(Setting::VersionCheck, versionCheck);
    settings->Set(Setting::LastPong, lastPong);
    this->server.Route("/", TTestResponse::Text("PONG=TRUE"));
    StartCheck(server, connected);
    Load(tabs->GetActivePage(), u"/after"_s);
    if (isAsked) QTRY_COMPARE_WITH_TIMEOUT(settings->Get(Setting::LastPong), 46348, LoadTime);
    QCOMPARE(this->server.RequestCount("/"), isAsked ? 1 : 0);
    QCOMPARE(TVersionCheck::HasServer(server), server == this->server.Url());
  }

  void LockedSettings_data() {
    Columns<bool>("isWanted");
    Row("on", true);
    Row("off", false);
  }
  // What the settings say is waited for.
  void LockedSettings() {
    QFETCH(bool, isWanted);
    settings->Set(Setting::VersionCheck, int(isWanted));
    server.Route("/", TTestResponse::Text("PONG=TRUE"));
    {
      const TStoreLock lock(store->FilePath(), TStoreLock::TKind::Unreadable);
      StartCheck(server.Url());
      QVERIFY(store->HasMissedReads());
      Load(tabs->GetActivePage(), u"/after"_s);
      QCOMPARE(server.RequestCount("/"), 0);
    }
    const auto *timer = m_check->findChild<QTimer *>(u"tmrVersionCheck"_s);
    QTRY_VERIFY(!timer->isActive());
    Load(tabs->GetActivePage(), u"/after"_s);
    QCOMPARE(server.RequestCount("/"), int(isWanted));
  }

 private:
  QString TextAt(const QString &address, int longestWait) {
    THiddenPage page(nullptr, longestWait);
    QSignalSpy loaded(&page, &THiddenPage::Loaded);
    const QSignalSpy failed(&page, &THiddenPage::Failed);
    page.Load(QUrl(address));
    (void)QTest::qWaitFor([&] { return !loaded.isEmpty() || !failed.isEmpty(); }, LoadTime);
    if (loaded.size() + failed.size() != 1)
      return u"%1 times loaded, %2 failed"_s.arg(loaded.size()).arg(failed.size());
    return failed.isEmpty() ? loaded.first().first().toString() : u"failed"_s;
  }

  std::unique_ptr<TVersionCheck> m_check;
  QDate m_today{2026, 11, 22};
  QTimer m_answering;
  QStringList m_asked;
  bool m_answer = false;
  int m_checkedWhenAsked = 0;
};

ENGINE_MAIN(TestVersionCheck)
#include "test_version_check.moc"
