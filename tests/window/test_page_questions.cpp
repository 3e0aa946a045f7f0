#include <QCheckBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>

#include "browser/engine/hang_watch.h"
#include "browser/page/page_notice.h"
#include "browser/page/script_dialog.h"
#include "ui/confirm_dialog.h"
#include "window/tabs_fixture.h"

// What pages ask is asked in their own tabs: others, and the window, stay as usable as ever.
class TestPageQuestions final : public QObject, private TTabsFixture {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    Prepare();
    server.RoutePage("/page", "Page");
    auto strict = TTestResponse::Page("<title>Strict</title>");
    strict.headers = {{"Content-Security-Policy", "default-src 'none'; connect-src 'none'"}};
    server.Route("/strict", strict);
    server.Route("/sandbox", [](const TTestRequest &request) {
      return TTestResponse::Page(
          "<title>Sandbox</title><script>onmessage = e => document.title = 'got ' + e.data</script>"
          "<iframe sandbox='allow-scripts " +
          request.query +
          "' srcdoc=\"<script>"
          "onmessage = () => parent.postMessage(confirm('x'), '*')</script>\"></iframe>");
    });
    server.RoutePage("/framed", "Framed", "<iframe src=/page></iframe>");
  }
  void init() {
    Begin();
    window->activateWindow();
    QTRY_VERIFY(window->isActiveWindow());
  }
  void cleanup() { End(); }

  void BackgroundTabWaits_data() {
    Columns<QString, QString, QString, QString, bool, QString>("place", "call", "text", "typed", "accept", "answer");
    Row("alert", "/page", "alert()", "", "", true, "undefined");
    Row("confirm", "/page", "confirm('really? \\u00e4&\\ud800')", u"really? ä&\ufffd"_s, "", true, "true");
    Row("confirm, no", "/page", "confirm(1)", "1", "", false, "false");
    Row("prompt", "/page", "prompt('name', 'old')", "name", u"ne&w"_s, true, u"ne&w"_s);
    Row("prompt, default", "/page", "prompt('name', 'ö')", "name", "", true, u"ö"_s);
    Row("prompt, cancelled", "/page", "prompt('name')", "name", "", false, "null");
    Row("page that may load nothing", "/strict", "confirm('x')", "x", "", true, "true");
    Row("frame", "/framed", "frames[0].confirm('x')", "x", "", true, "true");
    Row("file", "file", "confirm('x')", "x", "", true, "true");
    // What the frame may is a matter of its sandbox, which lets it ask.
    Row("sandboxed frame", "/sandbox?allow-modals", "(frames[0].postMessage(1, '*'), '')", "x", "", true, "true");
  }
  void BackgroundTabWaits() {
    QFETCH(QString, place);
    QFETCH(QString, typed);
    QFETCH(bool, accept);
    TBrowserTab *asking = tabs->GetActivePage();
    LoadPlace(asking, place);
    TBrowserTab *front = tabs->NewTab();
    Load(front, "/page");
    front->Browser()->setFocus();
    QFETCH(QString, call);
    Begin(asking, u"document.title = 'got ' + %1"_s.arg(call));
    QTRY_VERIFY_WITH_TIMEOUT(asking->Browser()->HasOpenQuestion(), LoadTime);
    QCOMPARE(tabs->GetActivePage(), front);
    QCOMPARE(QApplication::activeModalWidget(), nullptr);
    QCOMPARE(pages->PageImage(asking), TBrowserTab::QuestionImage);
    // The engine goes on for all others.
    QCOMPARE(AnswerOf(*front->Browser()->EnginePage(), u"1 + 1"_s).toInt(), 2);
    Load(front, "/framed");

    tabs->Activate(asking);
    auto *dialog = asking->findChild<TScriptDialog *>();
    QVERIFY(dialog->isVisible() && !dialog->isWindow());
    QTEST(dialog->findChild<QPlainTextEdit *>()->toPlainText(), "text");
    QTRY_VERIFY(dialog->isAncestorOf(QApplication::focusWidget()));
    QCOMPARE(dialog->findChild<QLineEdit *>()->accessibleName(), dialog->findChild<QPlainTextEdit *>()->toPlainText());
    if (!typed.isEmpty()) QTest::keyClicks(QApplication::focusWidget(), typed);
    QTest::keyClick(QApplication::focusWidget(), accept ? Qt::Key_Return : Qt::Key_Escape);
    QFETCH(QString, answer);
    QTRY_COMPARE_WITH_TIMEOUT(asking->GetLocationName(), u"got "_s + answer, LoadTime);
    QCOMPARE(pages->PageImage(asking), -1);
    QVERIFY(!asking->Browser()->HasOpenQuestion());
    QTRY_VERIFY(asking->Browser()->isAncestorOf(QApplication::focusWidget()));
  }

  // From the tabs to what the page asks, from there into the page if it does not wait, and back.
  void TabKeyReachesQuestions_data() {
    Columns<QString, QStringList>("script", "stops");
    Row("permission", u"navigator.geolocation.getCurrentPosition(() => {})"_s,
        QStringList{"cmdAllow", "cmdAllowNow", "cmdDeny", "cmdNever", "cmdClose", "page"});
    Row("dialog", u"confirm('?')"_s, QStringList{"cmdOK", "cmdCancel"});
  }
  void TabKeyReachesQuestions() {
    QFETCH(QString, script);
    QFETCH(QStringList, stops);
    TBrowserTab *tab = OpenPage("/page");
    Begin(tab, script);
    const auto isAsked = [&] {
      const auto *button = tab->findChild<QPushButton *>(stops.first());
      return button != nullptr && button->isVisible() && button->isEnabled();
    };
    QTRY_VERIFY_WITH_TIMEOUT(isAsked(), LoadTime);
    pages->FocusStrip();
    const auto place = [tab] {
      const QWidget *focused = QApplication::focusWidget();
      if (focused == nullptr) return u"nowhere"_s;
      return tab->Browser()->findChild<QWebEngineView *>()->isAncestorOf(focused) ? u"page"_s : focused->objectName();
    };
    for (const QString &stop : std::as_const(stops)) {
      QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
      QTRY_COMPARE(place(), stop);
    }
    if (stops.last() != u"page"_s) return;
    const QStringList back{"cmdClose", "cmdNever", "cmdDeny", "cmdAllowNow", "cmdAllow", "tabBar"};
    for (const QString &stop : back) {
      QTest::keyClick(window->focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
      QTRY_COMPARE(place(), stop);
    }
  }

  // A sandboxed frame that may not ask gets its answers at once, as the engine gives them.
  void SandboxedFrameMayNot() {
    TBrowserTab *tab = OpenPage("/sandbox?");
    Begin(tab, u"frames[0].postMessage(1, '*')"_s);
    QTRY_COMPARE_WITH_TIMEOUT(tab->GetLocationName(), u"got false"_s, LoadTime);
    QVERIFY(!tab->Browser()->HasOpenQuestion());
  }

  // Nothing of what only the page's own documents know is left where its scripts can look.
  void WordIsNotTold() {
    TBrowserTab *tab = OpenPage("/page");
    Begin(tab, u"confirm('x'); document.title = 'asked'"_s);
    QTRY_VERIFY_WITH_TIMEOUT(tab->Browser()->HasOpenQuestion(), LoadTime);
    tab->findChild<TScriptDialog *>()->accept();
    QTRY_COMPARE_WITH_TIMEOUT(tab->GetLocationName(), u"asked"_s, LoadTime);
    const QString seen = AnswerOf(*tab->Browser()->EnginePage(),
                                  u"performance.getEntries().map(e => e.name).join(' ') + ' ' + confirm.toString()"_s)
                             .toString();
    QVERIFY(seen.contains(u"/page"_s));
    static const QRegularExpression word(u"[0-9a-f]{8}-[0-9a-f]{4}-"_s);
    QVERIFY2(!word.match(seen).hasMatch(), qPrintable(seen));
  }

  // Two at a time, answered in the order in which they came.
  void EachTabForItself() {
    TBrowserTab *first = OpenPage("/page");
    TBrowserTab *second = tabs->NewTab();
    LoadPlace(second, "/page");
    for (TBrowserTab *tab : {first, second}) {
      Begin(tab, u"document.title = 'got ' + confirm('?')"_s);
      QTRY_VERIFY_WITH_TIMEOUT(tab->Browser()->HasOpenQuestion(), LoadTime);
    }
    first->findChild<TScriptDialog *>()->accept();
    QTRY_COMPARE_WITH_TIMEOUT(first->GetLocationName(), u"got true"_s, LoadTime);
    QVERIFY(second->Browser()->HasOpenQuestion());
  }

  void WhateverTheUserBeginsAnswers_data() {
    Columns<std::function<void(TestPageQuestions &, TBrowserTab *)>>("act");
    using TThis = TestPageQuestions;
    const auto row = [](const char *name, std::function<void(TThis &, TBrowserTab *)> act) { Row(name, act); };
    row("opens an address", [](TThis &self, TBrowserTab *tab) { self.Load(tab, "/framed"); });
    row("refreshes", [](TThis &, TBrowserTab *tab) { tab->Reload(false); });
    row("stops", [](TThis &, TBrowserTab *tab) { tab->Stop(); });
    row("makes blank", [](TThis &, TBrowserTab *tab) { tab->MakeBlank(); });
    row("closes", [](TThis &self, TBrowserTab *tab) { self.tabs->CloseByUser(tab); });
  }
  void WhateverTheUserBeginsAnswers() {
    using TAct = std::function<void(TestPageQuestions &, TBrowserTab *)>;
    QFETCH(TAct, act);
    const QPointer<TBrowserTab> tab(OpenPage("/page"));
    TBrowserTab *other = tabs->NewTab();
    Begin(tab, u"confirm('?')"_s);
    QTRY_VERIFY_WITH_TIMEOUT(tab->Browser()->HasOpenQuestion(), LoadTime);
    act(*this, tab);
    QTRY_VERIFY(!tab || tab->Browser() == nullptr || !tab->Browser()->HasOpenQuestion());
    Load(other, "/page");
    QCOMPARE(AnswerOf(*other->Browser()->EnginePage(), u"1 + 1"_s).toInt(), 2);
  }

  // A page that hangs is noticed when the user does something in it, and may be ended.
  void HangingPage_data() {
    Columns<bool, bool>("hangs", "ends");
    Row("is ended", true, true);
    Row("comes back", true, false);
    Row("waits for the user's answer", false, false);
  }
  void HangingPage() {
    QFETCH(bool, hangs);
    QFETCH(bool, ends);
    const QByteArray act = hangs ? "for (const t = Date.now(); Date.now() - t < 4000;);" : "alert('?')";
    server.RoutePage("/busy", "Busy",
                     "<script>let n = 0; onmousedown = () => { if (n++ == 0) { " + act + " } }</script>");
    TBrowserTab *tab = OpenPage("/busy");
    auto &watch = *tab->Browser()->EnginePage()->findChild<THangWatch *>();
    watch.SetPatience(hangs && !ends ? 1000 : 300);
    const QSignalSpy noticed(&watch, &THangWatch::Hangs);
    // A page that has just come may still miss a click.
    const auto asks = [tab] {
      QTest::mouseClick(tab->findChild<QWebEngineView *>()->focusProxy(), Qt::LeftButton, {}, QPoint(50, 50));
      return tab->Browser()->HasOpenQuestion();
    };
    QTRY_VERIFY_WITH_TIMEOUT(asks(), LoadTime);
    QCOMPARE(noticed.size(), hangs ? 1 : 0);
    if (ends) {
      tab->findChild<TfrmConfirm *>()->accept();
      QTRY_VERIFY_WITH_TIMEOUT(tab->Browser()->ShowsNotice(), LoadTime);
      QCOMPARE(tab->findChild<TPageNotice *>()->accessibleName(), language.Text("PAGES", "CrashTitle"));
    } else if (hangs) {
      QTRY_VERIFY_WITH_TIMEOUT(!tab->Browser()->HasOpenQuestion(), LoadTime);
      QVERIFY(!tab->Browser()->ShowsNotice());
    } else {
      // Many times the patience.
      QTest::qWait(1000);
      QVERIFY(noticed.isEmpty() && tab->findChild<TfrmConfirm *>() == nullptr);
    }
  }

  // What came in answer to a form is not sent again unasked, by the timer not at all.
  void FormIsSentAgainWhenTheUserSaysSo() {
    server.RoutePage("/form", "Form", "<form method=post action=/post><input name=q value=1></form>");
    server.RoutePage("/post", "Posted");
    server.RoutePage("/other", "Other");
    TBrowserTab *tab = OpenPage("/form");
    Begin(tab, u"document.forms[0].submit()"_s);
    QTRY_COMPARE_WITH_TIMEOUT(tab->GetLocationName(), u"Posted"_s, LoadTime);
    TBrowserTab *other = tabs->NewTab();
    Load(other, "/other");
    tabs->RefreshUnattended();
    QTRY_COMPARE_WITH_TIMEOUT(server.RequestCount("/other"), 2, LoadTime);
    QVERIFY(!tab->Browser()->HasOpenQuestion());
    for (const bool sends : {false, true}) {
      tab->Reload(false);
      QVERIFY(tab->Browser()->HasOpenQuestion());
      QCOMPARE(server.RequestCount("/post"), 1);
      auto *question = tab->findChild<TfrmConfirm *>();
      sends ? question->accept() : question->reject();
      QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    QTRY_COMPARE_WITH_TIMEOUT(server.RequestCount("/post"), 2, LoadTime);
    QCOMPARE(server.Requests("/post").last().body, QByteArray("q=1"));
    // Pages that came otherwise are not asked about.
    Load(tab, "/form");
    tab->Reload(false);
    QVERIFY(!tab->Browser()->HasOpenQuestion());
    QTRY_COMPARE_WITH_TIMEOUT(server.RequestCount("/form"), 3, LoadTime);
  }

  // Nor is one that a worker of the site has answered, which no request tells of.
  void FormThatAWorkerAnswers() {
    server.Route("/served/worker.js",
                 TTestResponse{.body = "onfetch = e => { if (e.request.method === 'POST') e.respondWith(new Response("
                                       "`<title>Answer ${Math.random()}</title>`, "
                                       "{headers: {'Content-Type': 'text/html'}})) }",
                               .headers = {{"Content-Type", "text/javascript"}}});
    server.RoutePage("/served/form", "Form",
                     "<form method=post action=/served/post></form><script>"
                     "navigator.serviceWorker.register('worker.js');"
                     "navigator.serviceWorker.ready.then(() => document.title = 'ready')</script>");
    TBrowserTab *tab = OpenPage("/served/form");
    QTRY_COMPARE_WITH_TIMEOUT(tab->GetLocationName(), u"ready"_s, LoadTime);
    Begin(tab, u"document.forms[0].submit()"_s);
    const auto answer = [tab] { return tab->Busy() ? QString() : tab->GetLocationName(); };
    QTRY_VERIFY_WITH_TIMEOUT(answer().startsWith(u"Answer"_s), LoadTime);
    const QString first = answer();
    tab->Reload(false);
    QVERIFY(tab->Browser()->HasOpenQuestion());
    tab->findChild<TfrmConfirm *>()->accept();
    QTRY_VERIFY_WITH_TIMEOUT(answer().startsWith(u"Answer"_s) && answer() != first, LoadTime);
    QCOMPARE(server.RequestCount("/served/post"), 0);
  }

  void LoopHasAWayOut() {
    TBrowserTab *tab = OpenPage("/page");
    Begin(tab, u"while (confirm('again?')) ; document.title = 'out'"_s);
    int shown = 0;
    const auto answer = [&] {
      if (auto *dialog = tab->findChild<TScriptDialog *>(); dialog != nullptr && dialog->isVisible()) {
        ++shown;
        auto *keep = dialog->findChild<QCheckBox *>();
        keep->setChecked(keep->isVisible());
        dialog->accept();
      }
      return tab->GetLocationName() == u"out"_s;
    };
    QTRY_VERIFY_WITH_TIMEOUT(answer(), LoadTime);
    QCOMPARE(shown, 2);
  }

 private:
  using TTabsFixture::Begin;
  // Runs a script that the test does not wait for.
  static void Begin(TBrowserTab *tab, const QString &script) {
    tab->Browser()->EnginePage()->runJavaScript(u"setTimeout(() => { %1 }, 0)"_s.arg(script));
  }
  void LoadPlace(TBrowserTab *tab, const QString &place) {
    if (place.startsWith(u'/')) return Load(tab, place);
    QFile file(Path(u"page.html"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<title>File</title>");
    file.close();
    const QSignalSpy loaded(tabs.get(), &TTabStrip::TabLoaded);
    tab->Navigate(file.fileName());
    QTRY_VERIFY_WITH_TIMEOUT(!loaded.isEmpty(), LoadTime);
  }
};

ENGINE_MAIN(TestPageQuestions)

#include "test_page_questions.moc"
