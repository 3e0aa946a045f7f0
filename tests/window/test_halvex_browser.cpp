#include <QAbstractButton>
#include <QBuffer>
#include <QImage>

#include "browser/engine/zoom_table.h"
#include "support/data_row.h"
#include "window/browser_fixture.h"

namespace {

// The smallest picture there is.
QByteArray Pixel() {
  QImage image(1, 1, QImage::Format_RGB32);
  image.fill(Qt::red);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "PNG");
  return bytes;
}

}  // namespace

// The wrapper around the engine's view, with real pages from a local server.
class TestHalvexBrowser final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    m.Begin();
    m.Server().RoutePage("/a", "Page A",
                         "<a id='toB' href='/b'>to b</a> <a id='jump' href='#end'>jump</a>"
                         "<p style='margin-top:3000px' id='end'>The end. The END.</p>");
    m.Server().RoutePage("/b", "Page B", "b");
  }

  void cleanup() { m.End(); }

  void UnusedBrowserIsEmpty() {
    const std::unique_ptr<THalvexBrowser> browser = m.NewBrowser();
    browser->resize(200, 200);
    browser->show();
    QCOMPARE(browser->LocationUrl(), QString());
    // None of these has anything to work on.
    using TOperation = void (THalvexBrowser::*)();
    using B = THalvexBrowser;
    for (const TOperation operation :
         {&B::GoBack, &B::GoForward, &B::Stop, &B::Refresh, &B::RefreshCompletely, &B::SaveAs, &B::Print,
          &B::PrintWithoutAsking, &B::PrintPreview, &B::Cut, &B::Copy, &B::Paste, &B::SelectAll, &B::Undo, &B::Redo,
          &B::FindOnPage, &B::ViewSource, &B::LeavePageFullScreen}) {
      (browser.get()->*operation)();
    }
    browser->FindNext(true);
    browser->Navigate(QStringLiteral("  "));
    QString path = QStringLiteral("unset");
    browser->SaveToTemporaryFile(true, [&](const QString &written) { path = written; });
    QCOMPARE(path, QString());
    QSignalSpy complete(browser.get(), &THalvexBrowser::DocumentComplete);
    browser->Navigate(QStringLiteral("about:blank"));
    QCOMPARE(browser->LocationUrl(), QStringLiteral("about:blank"));
    QTRY_COMPARE(complete.size(), 1);
    QVERIFY(!browser->EnginePageIfAny());
    QCOMPARE(browser->grab().toImage().pixelColor(100, 100), QColor(Qt::white));
    // The zoom that was set before there was a page is the page's.
    browser->SetZoom(3);
    QCOMPARE(browser->EnginePage()->zoomFactor(), ZoomFactors[3]);
  }

  void OrderOfSignals() {
    QVERIFY(m.OpenPath(QStringLiteral("/a")));
    const QString a = Url("/a");
    QStringList events = m.Events();
    const QStringList once{"before " + a, "navigated " + a, "title Page A", "complete " + a};
    for (const int event : {1, 3}) QCOMPARE(events.count(once.at(event)), 1);
    events.removeIf([&](const QString &event) { return !once.contains(event); });
    events.removeDuplicates();
    QCOMPARE(events, once);
    QCOMPARE(m.Browser().LocationUrl(), a);
    QCOMPARE(m.Browser().LocationName(), QStringLiteral("Page A"));
    // A reload keeps the address and still begins and ends.
    m.ForgetEvents();
    QSignalSpy done(&m.Browser(), &THalvexBrowser::DocumentComplete);
    m.Browser().Refresh();
    QVERIFY(done.wait(TBrowserFixture::LoadTime));
    QCOMPARE(m.Events().count(QStringLiteral("navigated ") + a), 1);
    QVERIFY(m.Events().indexOf(QStringLiteral("navigated ") + a) < m.Events().indexOf(QStringLiteral("complete ") + a));
  }

  void CancelledNavigation_data() {
    QTest::addColumn<QString>("how");
    for (const char *how : {"address", "link", "script", "redirect"}) QTest::newRow(how) << QString::fromLatin1(how);
  }

  void CancelledNavigation() {
    QFETCH(QString, how);
    m.Server().Route("/away", TTestResponse::Redirect("/b"));
    QVERIFY(m.OpenPath(QStringLiteral("/a")));
    m.ForgetEvents();
    m.Cancel(Url("/b"));
    QSignalSpy finished(m.Browser().EnginePage(), &QWebEnginePage::loadFinished);
    if (how == QLatin1String("address")) m.Browser().Navigate(Url("/b"));
    if (how == QLatin1String("redirect")) m.Browser().Navigate(Url("/away"));
    if (how == QLatin1String("script")) m.Browser().EnginePage()->runJavaScript(QStringLiteral("location='/b'"));
    if (how == QLatin1String("link")) {
      m.Browser().EnginePage()->runJavaScript(QStringLiteral("document.getElementById('toB').click()"));
    }
    QTRY_VERIFY(m.Events().contains(QStringLiteral("before ") + Url("/b")));
    QTRY_VERIFY(!m.Browser().EnginePage()->isLoading());
    if (how != QLatin1String("script") && how != QLatin1String("link")) QTRY_COMPARE(finished.size(), 1);
    QCOMPARE(m.Browser().LocationUrl(), Url("/a"));
    QCOMPARE(m.Browser().LocationName(), QStringLiteral("Page A"));
    QVERIFY(m.Events().filter(QStringLiteral("navigated")).isEmpty());
    QVERIFY(!m.Notice());
    // Only a load that had been allowed to begin has an end.
    QCOMPARE(int(m.Events().filter(QStringLiteral("complete")).size()), how == QLatin1String("redirect") ? 1 : 0);
    QCOMPARE(m.Server().RequestCount("/b"), 0);
    m.Cancel({});
    QVERIFY(m.OpenPath(QStringLiteral("/b")));
    QCOMPARE(m.Browser().LocationName(), QStringLiteral("Page B"));
  }

  void CancelWhileLoading() {
    // The page is there, one picture is still missing, and a link is refused: the page's own load must still end.
    m.Server().RoutePage("/waiting", "Waiting", "<img src='/late.png'><a id='toB' href='/b'>b</a>");
    TTestResponse late{.body = Pixel(), .headers = {{"Content-Type", "image/png"}}, .delayMs = 1500};
    m.Server().Route("/late.png", late);
    m.Cancel(Url("/b"));
    m.Browser().Navigate(Url("/waiting"));
    QTRY_VERIFY(m.Server().RequestCount("/late.png") == 1);
    m.Browser().EnginePage()->runJavaScript(QStringLiteral("document.getElementById('toB').click()"));
    QTRY_VERIFY(m.Events().contains(QStringLiteral("before ") + Url("/b")));
    QTRY_COMPARE(m.Events().count(QStringLiteral("complete ") + Url("/waiting")), 1);
    m.Cancel({});
  }

  void JumpInsideThePage() {
    QVERIFY(m.OpenPath(QStringLiteral("/a")));
    m.ForgetEvents();
    QSignalSpy moved(&m.Browser(), &THalvexBrowser::AddressChanged);
    m.Browser().EnginePage()->runJavaScript(QStringLiteral("document.getElementById('jump').click()"));
    QTRY_COMPARE(m.Browser().LocationUrl(), Url("/a#end"));
    QCOMPARE(moved.last().first().toString(), Url("/a#end"));
    QCOMPARE(m.Events(), QStringList());
    // Typed again, it is a jump too; the caption gets its title back.
    m.Browser().Navigate(Url("/a#end"));
    QCOMPARE(m.Events(), QStringList{QStringLiteral("title Page A")});
  }

  void Redirect() {
    m.Server().Route("/away", TTestResponse::Redirect("/b"));
    QVERIFY(m.OpenPath(QStringLiteral("/away")));
    QCOMPARE(m.Browser().LocationUrl(), Url("/b"));
    QCOMPARE(m.Events().filter(QStringLiteral("navigated")), QStringList{QStringLiteral("navigated ") + Url("/b")});
    QCOMPARE(m.Events().filter(QStringLiteral("before")),
             (QStringList{QStringLiteral("before ") + Url("/away"), QStringLiteral("before ") + Url("/b")}));
  }

  void HistoryAndStates() {
    QSignalSpy states(&m.Browser(), &THalvexBrowser::CommandStateChanged);
    QVERIFY(m.OpenPath(QStringLiteral("/a")));
    QVERIFY(!m.Browser().CanGoBack());
    QVERIFY(m.OpenPath(QStringLiteral("/b")));
    QTRY_COMPARE(states.size(), 1);
    QCOMPARE(states.first(), (QVariantList{2, true}));
    m.Browser().GoBack();
    QTRY_COMPARE(m.Browser().LocationUrl(), Url("/a"));
    QTRY_VERIFY(m.Browser().CanGoForward() && !m.Browser().CanGoBack());
    QVERIFY(states.contains(QVariantList{1, true}));
    m.Browser().GoForward();
    QTRY_COMPARE(m.Browser().LocationName(), QStringLiteral("Page B"));
  }

  void LoadThatBecomesNoPage_data() {
    QTest::addColumn<QString>("path");
    for (const char *path : {"/download", "/nothing", "/stopped", "mailto"})
      QTest::newRow(path) << QString::fromLatin1(path);
  }

  void LoadThatBecomesNoPage() {
    QFETCH(QString, path);
    m.Server().Route("/download", TTestResponse::Attachment("f.bin", "content"));
    m.Server().Route("/nothing", TTestResponse::Status(204));
    m.Server().Route("/stopped", TTestResponse{.neverAnswer = true});
    QVERIFY(m.OpenPath(QStringLiteral("/a")));
    m.ForgetEvents();
    if (path == QLatin1String("mailto")) {
      // A script without a user behind it starts no program, and the page stays.
      m.Browser().EnginePage()->runJavaScript(QStringLiteral("location='mailto:someone@example.invalid'"));
      QTRY_VERIFY(!m.Events().isEmpty());
    } else {
      m.Browser().Navigate(m.Server().Url(path));
      QTRY_COMPARE(m.Server().RequestCount(path.toLatin1()), 1);
      if (path == QLatin1String("/stopped")) m.Browser().Stop();
    }
    // It was allowed to begin, so it ends; the page stays as it was.
    QTRY_COMPARE(m.Events().count(QStringLiteral("complete ") + Url("/a")), 1);
    QCOMPARE(m.Browser().LocationUrl(), Url("/a"));
    QCOMPARE(m.Events().filter(QStringLiteral("title")).value(0), QStringLiteral("title Page A"));
    QVERIFY(m.Events().filter(QStringLiteral("navigated")).isEmpty());
    QVERIFY(!m.Notice());
  }

  void NewWindow_data() {
    QTest::addColumn<QString>("script");
    QTest::newRow("address") << "w = window.open('/b')";
    QTest::newRow("blank first") << "w = window.open('about:blank'); w.location = '/b'";
  }

  void NewWindow() {
    QFETCH(QString, script);
    QVERIFY(m.OpenPath(QStringLiteral("/a")));
    const std::unique_ptr<THalvexBrowser> other = m.NewBrowser();
    QStringList asked;
    connect(other.get(), &THalvexBrowser::BeforeNavigate, this,
            [&](TNavigation *navigation) { asked.append(QUrl(navigation->address).path()); });
    int requests = 0;
    connect(&m.Browser(), &THalvexBrowser::NewWindowRequested, this, [&](QWebEngineNewWindowRequest *request) {
      ++requests;
      request->openIn(other->EnginePage());
    });
    m.Browser().EnginePage()->runJavaScript(script);
    QTRY_COMPARE(other->LocationName(), QStringLiteral("Page B"));
    QCOMPARE(requests, 1);
    QCOMPARE(asked, QStringList{QStringLiteral("/b")});
    // The two pages know each other.
    QVERIFY(TBrowserFixture::Script(other->EnginePage(), QStringLiteral("window.opener !== null")).toBool());
  }

  void Zoom() {
    QVERIFY(m.OpenPath(QStringLiteral("/a")));
    QCOMPARE(m.Browser().Zoom(), MediumZoom);
    const double plain = m.Script(QStringLiteral("window.innerWidth")).toDouble();
    for (int zoom = 0; zoom < int(ZoomFactors.size()); ++zoom) {
      m.Browser().SetZoom(zoom);
      QCOMPARE(m.Browser().Zoom(), zoom);
      QTRY_VERIFY(qAbs(m.Script(QStringLiteral("window.innerWidth")).toDouble() * ZoomFactors[zoom] - plain) < 3);
    }
    for (const int outside : {-1, 5, 1000}) m.Browser().SetZoom(outside);
    QCOMPARE(m.Browser().Zoom(), 4);
    m.Browser().ZoomIn();
    QCOMPARE(m.Browser().Zoom(), 4);
    m.Browser().ZoomOut();
    QCOMPARE(m.Browser().Zoom(), 3);
    // Another site has another renderer, and the size stays.
    QVERIFY(m.Open(m.Server().Url(QStringLiteral("/a"), QStringLiteral("localhost"))));
    QCOMPARE(m.Browser().Zoom(), 3);
    QTRY_VERIFY(qAbs(m.Script(QStringLiteral("window.innerWidth")).toDouble() * ZoomFactors[3] - plain) < 3);
    m.Browser().ResetZoom();
    QCOMPARE(m.Browser().Zoom(), MediumZoom);
  }

  void RefreshCompletely() {
    TTestResponse cached = TTestResponse::Page("<title>Cached</title><script src='/s.js'></script>");
    m.Server().Route("/cached", cached);
    m.Server().Route(
        "/s.js", TTestResponse{.body = "1",
                               .headers = {{"Content-Type", "text/javascript"}, {"Cache-Control", "max-age=3600"}}});
    QVERIFY(m.OpenPath(QStringLiteral("/cached")));
    QCOMPARE(m.Server().RequestCount("/s.js"), 1);
    QSignalSpy done(&m.Browser(), &THalvexBrowser::DocumentComplete);
    m.Browser().Refresh();
    QVERIFY(done.wait(TBrowserFixture::LoadTime));
    QCOMPARE(m.Server().RequestCount("/s.js"), 1);
    m.Browser().RefreshCompletely();
    QVERIFY(done.wait(TBrowserFixture::LoadTime));
    QCOMPARE(m.Server().RequestCount("/s.js"), 2);
    QCOMPARE(m.Server().Requests("/cached").last().Header("cache-control"), QByteArray("no-cache"));
  }

  void ReloadOfAForm() {
    m.Server().RoutePage("/form", "Form", "<form method='post' action='/post'><input name='q' value='1'></form>");
    m.Server().RoutePage("/post", "Posted");
    QVERIFY(m.OpenPath(QStringLiteral("/form")));
    m.Browser().EnginePage()->runJavaScript(QStringLiteral("document.forms[0].submit()"));
    QTRY_COMPARE(m.Browser().LocationName(), QStringLiteral("Posted"));
    QTRY_VERIFY(!m.Browser().EnginePage()->isLoading());
    QSignalSpy done(&m.Browser(), &THalvexBrowser::DocumentComplete);
    m.Browser().Refresh();
    QVERIFY(done.wait(TBrowserFixture::LoadTime));
    QCOMPARE(m.Server().RequestCount("/post"), 2);
    QCOMPARE(m.Server().Requests("/post").last().body, QByteArray("q=1"));
  }

  void ContentSwitches() {
    m.Server().RoutePage("/media", "Media",
                         "<img src='/i.png'>"
                         "<video src='/v.mp4' preload='auto'></video><audio src='/s.mp3' preload='auto'></audio>");
    m.Server().Route("/i.png", TTestResponse{.body = Pixel(), .headers = {{"Content-Type", "image/png"}}});
    QVERIFY(m.OpenPath(QStringLiteral("/media")));
    QCOMPARE(m.Server().RequestCount("/i.png"), 1);
    // The change waits for the next navigation; a reload is one.
    m.Server().ForgetRequests();
    m.Browser().SetDownloadControlOptionSet({});
    QCOMPARE(int(m.Browser().DownloadControlOptionSet()), 0);
    m.Browser().EnginePage()->runJavaScript(QStringLiteral("new Image().src = '/i.png?2'"));
    QTRY_COMPARE(m.Server().RequestCount("/i.png"), 1);
    m.Server().ForgetRequests();
    QSignalSpy done(&m.Browser(), &THalvexBrowser::DocumentComplete);
    m.Browser().RefreshCompletely();
    QVERIFY(done.wait(TBrowserFixture::LoadTime));
    for (const char *path : {"/i.png", "/v.mp4", "/s.mp3"}) QCOMPARE(m.Server().RequestCount(path), 0);

    m.Browser().SetDownloadControlOptionSet(TDownloadControlOption::BackgroundSounds);
    m.Browser().RefreshCompletely();
    QVERIFY(done.wait(TBrowserFixture::LoadTime));
    QTRY_VERIFY(m.Server().RequestCount("/s.mp3") >= 1);
    for (const char *path : {"/i.png", "/v.mp4"}) QCOMPARE(m.Server().RequestCount(path), 0);
  }

  void ScriptAddress() {
    QVERIFY(m.OpenPath(QStringLiteral("/a")));
    m.Browser().Navigate(QStringLiteral("javascript:document.title='set%20here'"));
    QTRY_COMPARE(m.Browser().LocationName(), QStringLiteral("set here"));
    QCOMPARE(m.Browser().LocationUrl(), Url("/a"));
  }

  // A page that borrows the engine's words for leaving a page cannot ask for ever either.
  void DialogLoopHasAWayOut() {
    const QByteArray question("Are you sure you want to leave this page? Changes that you made may not be saved.");
    m.Server().RoutePage(
        "/loop", "Loop",
        "<script>function go() { while (confirm('" + question + "')) ; document.title = 'out' }</script>");
    QVERIFY(m.OpenPath(QStringLiteral("/loop")));
    // The user says yes every time, and takes the way out as soon as it is offered.
    int shown = 0;
    QTimer user;
    connect(&user, &QTimer::timeout, this, [&] {
      auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
      if (!dialog) return;
      ++shown;
      for (QAbstractButton *button : dialog->findChildren<QAbstractButton *>()) {
        if (button->isCheckable() && button->isVisible()) button->setChecked(true);
      }
      dialog->accept();
    });
    user.start(30);
    m.Browser().EnginePage()->runJavaScript(QStringLiteral("setTimeout(go, 0)"));
    QTRY_COMPARE_WITH_TIMEOUT(m.Browser().LocationName(), QStringLiteral("out"), m.LoadTime);
    QVERIFY2(shown >= 2 && shown <= 4, qPrintable(QString::number(shown)));
  }

  void ClosedWhileLoading() {
    m.Server().Route("/never", TTestResponse{.neverAnswer = true});
    auto browser = m.NewBrowser();
    browser->show();
    browser->Navigate(Url("/never"));
    QTRY_COMPARE(m.Server().RequestCount("/never"), 1);
    browser->SaveToTemporaryFile(false, [](const QString &) {});
    browser->CollectProperties([](const TPageProperties &) {});
    browser.reset();
    QVERIFY(m.OpenPath(QStringLiteral("/a")));
  }

  void SleepingPageWakes() {
    QVERIFY(m.OpenPath(QStringLiteral("/a")));
    m.Browser().hide();
    QWebEnginePage *page = m.Browser().EnginePage();
    QTRY_COMPARE(page->recommendedState() != QWebEnginePage::LifecycleState::Active, true);
    page->setLifecycleState(QWebEnginePage::LifecycleState::Discarded);
    QCOMPARE(page->lifecycleState(), QWebEnginePage::LifecycleState::Discarded);
    QCOMPARE(m.Browser().LocationUrl(), Url("/a"));
    QCOMPARE(m.Browser().LocationName(), QStringLiteral("Page A"));
    QVERIFY(!m.Notice());
    bool reload = false;
    connect(&m.Browser(), &THalvexBrowser::BeforeNavigate, this,
            [&](const TNavigation *navigation) { reload = navigation->reload; });
    QSignalSpy done(&m.Browser(), &THalvexBrowser::DocumentComplete);
    m.Browser().show();
    QTRY_COMPARE(done.size(), 1);
    // It is the same page again and not one that was navigated to.
    QVERIFY(reload);
    QCOMPARE(m.Script(QStringLiteral("document.title")).toString(), QStringLiteral("Page A"));
  }

 private:
  [[nodiscard]] QString Url(const char *path) { return m.Server().Url(QString::fromLatin1(path)); }

  TBrowserFixture m;
};

int main(int argc, char **argv) {
  return RunWithEngine<TestHalvexBrowser>(argc, argv);
}

#include "test_halvex_browser.moc"
