#include <QBuffer>
#include <QCheckBox>
#include <QLabel>
#include <QRegularExpression>

#include "browser/engine/site_zoom.h"
#include "browser/engine/zoom_table.h"
#include "browser/page/find_bar.h"
#include "browser/page/permission_bar.h"
#include "config/registry_paths.h"
#include "support/data_row.h"
#include "window/browser_fixture.h"

// The wrapper around the engine's view, with real pages from a local server.
class TestHalvexBrowser final : public QObject, private TBrowserFixture {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    Begin();
    Server().RoutePage("/a", "Page A",
                       "<a id='toB' href='/b'>to b</a> <a id='jump' href='#end'>jump</a>"
                       "<p style='margin-top:3000px' id='end'>The end. The END.</p>");
    Server().RoutePage("/b", "Page B", "b");
  }

  void cleanup() { End(); }

  void UnusedBrowserIsEmpty() {
    const std::unique_ptr<THalvexBrowser> browser = NewBrowser();
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
    browser->Navigate(u"  "_s);
    QString path = u"unset"_s;
    browser->SaveToTemporaryFile(true, [&](const QString &written) { path = written; });
    QCOMPARE(path, QString());
    QSignalSpy complete(browser.get(), &THalvexBrowser::DocumentComplete);
    browser->Navigate(u"about:blank"_s);
    QCOMPARE(browser->LocationUrl(), u"about:blank"_s);
    QTRY_COMPARE(complete.size(), 1);
    QVERIFY(!browser->EnginePageIfAny());
    QCOMPARE(browser->grab().toImage().pixelColor(100, 100), QColor(Qt::white));
    // The zoom that was set before there was a page is the page's.
    browser->SetZoom(3);
    QCOMPARE(browser->EnginePage()->zoomFactor(), ZoomFactors[3]);
  }

  void OrderOfSignals() {
    Server().Route("/away", TTestResponse::Redirect("/a"));
    QVERIFY(OpenPath(u"/away"_s));
    const QString a = Url("/a");
    QStringList events = Events();
    for (const char *word : {"navigated", "complete"}) QCOMPARE(events.filter(QLatin1String(word)).size(), 1);
    const QStringList once{"before " + Url("/away"), "before " + a, "navigated " + a, "title Page A", "complete " + a};
    events.removeIf([&](const QString &event) { return !once.contains(event); });
    events.removeDuplicates();
    QCOMPARE(events, once);
    QCOMPARE(Browser().LocationUrl(), a);
    QCOMPARE(Browser().LocationName(), u"Page A"_s);
    // A reload keeps the address and still begins and ends.
    ForgetEvents();
    QVERIFY(Refresh());
    QCOMPARE(Events().count(u"navigated "_s + a), 1);
    QVERIFY(Events().indexOf(u"navigated "_s + a) < Events().indexOf(u"complete "_s + a));
  }

  void CancelledNavigation_data() {
    QTest::addColumn<QString>("how");
    for (const char *how : {"address", "link", "script", "redirect"}) QTest::newRow(how) << QString::fromLatin1(how);
  }

  void CancelledNavigation() {
    QFETCH(QString, how);
    Server().Route("/away", TTestResponse::Redirect("/b"));
    QVERIFY(OpenPath(u"/a"_s));
    ForgetEvents();
    Cancel(Url("/b"));
    QSignalSpy finished(Browser().EnginePage(), &QWebEnginePage::loadFinished);
    if (how == u"address"_s) Browser().Navigate(Url("/b"));
    if (how == u"redirect"_s) Browser().Navigate(Url("/away"));
    if (how == u"script"_s) Run(u"location='/b'"_s);
    if (how == u"link"_s) Run(u"document.getElementById('toB').click()"_s);
    QTRY_VERIFY(Events().contains(u"before "_s + Url("/b")));
    QTRY_VERIFY(!Browser().EnginePage()->isLoading());
    if (how != u"script"_s && how != u"link"_s) QTRY_COMPARE(finished.size(), 1);
    QCOMPARE(Browser().LocationUrl(), Url("/a"));
    QCOMPARE(Browser().LocationName(), u"Page A"_s);
    QVERIFY(Events().filter(u"navigated"_s).isEmpty());
    QVERIFY(!Notice());
    // Only a load that had been allowed to begin has an end.
    QCOMPARE(int(Events().filter(u"complete"_s).size()), how == u"redirect"_s ? 1 : 0);
    QCOMPARE(Server().RequestCount("/b"), 0);
    Cancel({});
    QVERIFY(OpenPath(u"/b"_s));
    QCOMPARE(Browser().LocationName(), u"Page B"_s);
  }

  void CancelWhileLoading() {
    // The page is there, one picture is still missing, and a link is refused: the page's own load must still end.
    Server().RoutePage("/waiting", "Waiting", "<img src='/late.png'><a id='toB' href='/b'>b</a>");
    Server().Route("/late.png", TTestResponse{.delayMs = 1500});
    Cancel(Url("/b"));
    Browser().Navigate(Url("/waiting"));
    QTRY_VERIFY(Server().RequestCount("/late.png") == 1);
    Run(u"document.getElementById('toB').click()"_s);
    QTRY_VERIFY(Events().contains(u"before "_s + Url("/b")));
    QTRY_COMPARE(Events().count(u"complete "_s + Url("/waiting")), 1);
    Cancel({});
  }

  void JumpInsideThePage() {
    QVERIFY(OpenPath(u"/a"_s));
    ForgetEvents();
    QSignalSpy moved(&Browser(), &THalvexBrowser::AddressChanged);
    Run(u"document.getElementById('jump').click()"_s);
    QTRY_COMPARE(Browser().LocationUrl(), Url("/a#end"));
    QCOMPARE(moved.last().first().toString(), Url("/a#end"));
    QCOMPARE(Events(), QStringList());
    // Typed again, it is a jump too; the caption gets its title back.
    Browser().Navigate(Url("/a#end"));
    QCOMPARE(Events(), QStringList{u"title Page A"_s});
  }

  void LoadThatBecomesNoPage_data() {
    QTest::addColumn<QString>("path");
    for (const char *path : {"/download", "/nothing", "/stopped", "mailto"})
      QTest::newRow(path) << QString::fromLatin1(path);
  }

  void LoadThatBecomesNoPage() {
    QFETCH(QString, path);
    Server().Route("/download", TTestResponse::Attachment("f.bin", "content"));
    Server().Route("/nothing", TTestResponse::Status(204));
    Server().Route("/stopped", TTestResponse{.neverAnswer = true});
    QVERIFY(OpenPath(u"/a"_s));
    ForgetEvents();
    if (path == u"mailto"_s) {
      // A script without a user behind it starts no program, and the page stays.
      Run(u"location='mailto:someone@example.invalid'"_s);
      QTRY_VERIFY(!Events().isEmpty());
    } else {
      Browser().Navigate(Server().Url(path));
      QTRY_COMPARE(Server().RequestCount(path.toLatin1()), 1);
      if (path == u"/stopped"_s) Browser().Stop();
    }
    // It was allowed to begin, so it ends; the page stays as it was.
    QTRY_COMPARE(Events().count(u"complete "_s + Url("/a")), 1);
    QCOMPARE(Browser().LocationUrl(), Url("/a"));
    QCOMPARE(Events().filter(u"title"_s).value(0), u"title Page A"_s);
    QVERIFY(Events().filter(u"navigated"_s).isEmpty());
    QVERIFY(!Notice());
  }

  void Zoom() {
    QVERIFY(OpenPath(u"/a"_s));
    QCOMPARE(Browser().Zoom(), MediumZoom);
    const double plain = Script(u"window.innerWidth"_s).toDouble();
    for (int zoom = 0; zoom < int(ZoomFactors.size()); ++zoom) {
      Browser().SetZoom(zoom);
      QTRY_VERIFY(qAbs(Script(u"window.innerWidth"_s).toDouble() * ZoomFactors[zoom] - plain) < 3);
    }
    for (const int outside : {-1, 5, 1000}) Browser().SetZoom(outside);
    QCOMPARE(Browser().Zoom(), 4);
    // Another site has another renderer, and the size stays.
    QVERIFY(Open(Server().Url(u"/a"_s, u"localhost"_s)));
    QTRY_VERIFY(qAbs(Script(u"window.innerWidth"_s).toDouble() * ZoomFactors[4] - plain) < 3);
    Browser().ResetZoom();
  }

  void ZoomSteps() {
    QVERIFY(OpenPath(u"/a"_s));
    for (const bool in : {true, false}) {
      QList<int> steps;
      for (int before = 0; before != Browser().ZoomPercent();) {
        before = Browser().ZoomPercent();
        steps.append(before);
        in ? Browser().ZoomIn() : Browser().ZoomOut();
      }
      QCOMPARE(steps, in ? QList({100, 110, 125, 150, 175, 200, 250, 300, 400, 500})
                         : QList({500, 400, 300, 250, 200, 175, 150, 125, 110, 100, 90, 80, 75, 67, 50, 30, 25}));
    }
    // The engine takes them as they are.
    QCOMPARE(Browser().EnginePage()->zoomFactor(), 0.25);
    Browser().ResetZoom();
    QCOMPARE(Browser().ZoomPercent(), 100);
  }

  // The other tabs of a site follow, and the tabs that come later, but not those of other sites.
  void ZoomOfSite() {
    const auto widthOf = [](THalvexBrowser &browser) {
      return AnswerOf(*browser.EnginePage(), u"window.innerWidth"_s).toDouble();
    };
    const auto open = [this](THalvexBrowser &browser, const QString &host) {
      const QSignalSpy done(&browser, &THalvexBrowser::DocumentComplete);
      browser.resize(800, 600);
      browser.show();
      browser.Navigate(Server().Url(u"/a"_s, host));
      QTRY_VERIFY_WITH_TIMEOUT(!done.isEmpty(), LoadTime);
    };
    QVERIFY(OpenPath(u"/a"_s));
    const auto same = NewBrowser();
    const auto other = NewBrowser();
    open(*same, u"127.0.0.1"_s);
    open(*other, u"localhost"_s);
    const double plain = widthOf(Browser());
    const QSignalSpy told(same.get(), &THalvexBrowser::ZoomChanged);
    for (int i = 0; i < 5; ++i) Browser().ZoomIn();
    QCOMPARE(same->ZoomPercent(), 200);
    QCOMPARE(told.size(), 5);
    QTRY_VERIFY(qAbs(widthOf(*same) * 2 - plain) < 3);
    QCOMPARE(other->ZoomPercent(), 100);
    // The tab goes to the other site and comes back.
    QVERIFY(Open(Server().Url(u"/a"_s, u"localhost"_s)));
    QCOMPARE(Browser().ZoomPercent(), 100);
    QTRY_VERIFY(qAbs(widthOf(Browser()) - plain) < 3);
    open(*other, u"127.0.0.1"_s);
    QTRY_VERIFY(qAbs(widthOf(*other) * 2 - plain) < 3);
    other->ResetZoom();
    QCOMPARE(same->ZoomPercent(), 100);
  }

  // It is there again after a start, but for windows that may keep nothing.
  void ZoomIsKept() {
    const QTemporaryDir folder;
    TRegistryStore store(folder.filePath(u"registry.sqlite"_s));
    const QString key = QString::fromLatin1(RegistryKey::SiteZoom);
    {
      TSiteZoom keeping(&store);
      TSiteZoom forgetting(nullptr);
      for (TSiteZoom *zoom : {&keeping, &forgetting}) {
        zoom->Set(u"a.test"_s, 150);
        zoom->Set(u"b.test"_s, 90);
        zoom->Set(u"b.test"_s, std::nullopt);
        QCOMPARE(zoom->PercentOf(u"a.test"_s), 150);
        QCOMPARE(zoom->PercentOf(u"b.test"_s), std::nullopt);
      }
    }
    QCOMPARE(TSiteZoom(nullptr).PercentOf(u"a.test"_s), std::nullopt);
    for (const QString &nonsense : {u"0"_s, u"24"_s, u"501"_s, u"-100"_s, u"large"_s}) {
      store.Write(TRegistryHive::CurrentUser, key, u"c.test"_s, nonsense);
      QCOMPARE(TSiteZoom(&store).PercentOf(u"c.test"_s), std::nullopt);
    }
    QCOMPARE(TSiteZoom(&store).PercentOf(TSiteZoom::SiteOf(QUrl(u"https://A.test:81/page"_s))), 150);
    QCOMPARE(store.Values(TRegistryHive::CurrentUser, key).size(), 2);
  }

  void ContentSwitches() {
    Server().RoutePage("/media", "Media",
                       "<img src='/i.png'>"
                       "<video src='/v.mp4' preload='auto'></video><audio src='/s.mp3' preload='auto'></audio>");
    QVERIFY(OpenPath(u"/media"_s));
    QCOMPARE(Server().RequestCount("/i.png"), 1);
    // The change waits for the next navigation; a reload is one.
    Server().ForgetRequests();
    Browser().SetDownloadControlOptionSet({});
    Run(u"new Image().src = '/i.png?2'"_s);
    QTRY_COMPARE(Server().RequestCount("/i.png"), 1);
    Server().ForgetRequests();
    QVERIFY(Refresh());
    for (const char *path : {"/i.png", "/v.mp4", "/s.mp3"}) QCOMPARE(Server().RequestCount(path), 0);

    Browser().SetDownloadControlOptionSet(TDownloadControlOption::BackgroundSounds);
    QVERIFY(Refresh());
    QTRY_VERIFY(Server().RequestCount("/s.mp3") >= 1);
    for (const char *path : {"/i.png", "/v.mp4"}) QCOMPARE(Server().RequestCount(path), 0);
  }

  // What comes to nothing leaves the page as it was, its icon included.
  void IconStays_data() {
    QTest::addColumn<QString>("address");
    QTest::newRow("a download") << u"/file"_s;
    QTest::newRow("no content") << u"/nothing"_s;
    QTest::newRow("stopped") << u"/never"_s;
  }
  void IconStays() {
    QFETCH(QString, address);
    QPixmap picture(16, 16);
    picture.fill(Qt::red);
    QBuffer png;
    picture.save(&png, "PNG");
    Server().Route("/icon.png", {.body = png.data(), .headers = {{"Content-Type", "image/png"}}});
    Server().Route("/with", TTestResponse::Page("<title>With</title><link rel=icon href=/icon.png>"));
    Server().Route("/file", TTestResponse::Attachment("a.bin", "data"));
    Server().Route("/nothing", TTestResponse::Status(204));
    Server().Route("/never", TTestResponse{.neverAnswer = true});
    QVERIFY(OpenPath(u"/with"_s));
    QTRY_VERIFY_WITH_TIMEOUT(!Browser().Icon().isNull(), LoadTime);
    QVERIFY(Completes([&] {
      Run(u"location = '%1'"_s.arg(address));
      if (address != u"/never"_s) return;
      QTRY_COMPARE(Server().RequestCount("/never"), 1);
      Browser().Stop();
    }));
    QVERIFY(!Browser().Icon().isNull());
    // The next page has none.
    QVERIFY(OpenPath(u"/a"_s));
    QVERIFY(Browser().Icon().isNull());
  }

  void ScriptAddress() {
    QVERIFY(OpenPath(u"/a"_s));
    Browser().Navigate(u"javascript:document.title='set%20here'"_s);
    QTRY_COMPARE(Browser().LocationName(), u"set here"_s);
    QCOMPARE(Browser().LocationUrl(), Url("/a"));
  }

  // A page that borrows the engine's words for leaving a page cannot ask for ever either. In an empty frame the
  // engine's own dialogs are left.
  void DialogLoopHasAWayOut() {
    const QByteArray question("Are you sure you want to leave this page? Changes that you made may not be saved.");
    auto loop = TTestResponse::Page("<title>Loop</title><script>function go() { while (confirm('" + question +
                                    "')) ; document.title = 'out' }</script>");
    loop.headers = {{"Permissions-Policy", "sync-xhr=()"}};
    Server().Route("/loop", loop);
    QVERIFY(OpenPath(u"/loop"_s));
    // The user says yes every time, and takes the way out as soon as it is offered.
    int shown = 0;
    QTimer user;
    connect(&user, &QTimer::timeout, this, [&] {
      auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
      if (!dialog) return;
      ++shown;
      auto *keep = dialog->findChild<QCheckBox *>();
      keep->setChecked(keep->isVisible());
      dialog->accept();
    });
    user.start(30);
    Run(u"setTimeout(go, 0)"_s);
    QTRY_COMPARE_WITH_TIMEOUT(Browser().LocationName(), u"out"_s, LoadTime);
    QVERIFY2(shown >= 2 && shown <= 4, qPrintable(QString::number(shown)));
  }

  void ClosedWhileLoading() {
    Server().Route("/never", TTestResponse{.neverAnswer = true});
    auto browser = NewBrowser();
    browser->show();
    browser->Navigate(Url("/never"));
    QTRY_COMPARE(Server().RequestCount("/never"), 1);
    browser->SaveToTemporaryFile(false, [](const QString &) {});
    browser->CollectProperties([](const TPageProperties &) {});
    browser.reset();
    QVERIFY(OpenPath(u"/a"_s));
  }

  void SleepingPageWakes() {
    QVERIFY(OpenPath(u"/a"_s));
    Browser().hide();
    QWebEnginePage *page = Browser().EnginePage();
    QTRY_VERIFY(page->recommendedState() != QWebEnginePage::LifecycleState::Active);
    page->setLifecycleState(QWebEnginePage::LifecycleState::Discarded);
    QCOMPARE(Browser().LocationUrl(), Url("/a"));
    QCOMPARE(Browser().LocationName(), u"Page A"_s);
    QVERIFY(!Notice());
    bool reload = false;
    connect(&Browser(), &THalvexBrowser::BeforeNavigate, this,
            [&](const TNavigation *navigation) { reload = navigation->reload; });
    QSignalSpy done(&Browser(), &THalvexBrowser::DocumentComplete);
    Browser().show();
    QTRY_COMPARE(done.size(), 1);
    // It is the same page again and not one that was navigated to.
    QVERIFY(reload);
    QCOMPARE(Script(u"document.title"_s).toString(), u"Page A"_s);
  }

  void StartPage() {
    QVERIFY(Open(TEngine::StartPageAddress()) && !Notice());
    QCOMPARE(Browser().LocationUrl(), TEngine::StartPageAddress());
    const QString text = Script(u"document.documentElement.outerHTML"_s).toString();
    QVERIFY(text.contains(Language().Text("PAGES", "StartIntro").toHtmlEscaped()));
    QVERIFY2(!text.contains(QRegularExpression(uR"(\{\{|UNDEFINED|(src|href)=)"_s)), qPrintable(text));
    // It is as light or dark as the window around it.
    const auto ground = [this] { return Script(u"getComputedStyle(document.body).backgroundColor"_s); };
    QCOMPARE(ground(), u"rgb(247, 249, 251)"_s);
    const QPalette light = QApplication::palette();
    QApplication::setPalette(QPalette(QColor(49, 54, 59)));
    QVERIFY(Open(TEngine::StartPageAddress()));
    QCOMPARE(ground(), u"rgb(27, 33, 40)"_s);
    QApplication::setPalette(light);
    // A page of the web cannot get at it.
    QVERIFY(OpenPath(u"/a"_s));
    QCOMPARE(Server().Requests("/a").last().Header("accept-language"), QByteArray("en"));
    Run(QStringLiteral(
        "fetch('zarvela:start').then(() => document.title = 'got it', () => document.title = 'refused')"));
    QTRY_COMPARE(Browser().LocationName(), u"refused"_s);
    QVERIFY(Fails(u"zarvela:other"_s));
  }

  // A question and the find bar come and go over the page, which keeps its size.
  void PanelsOverThePage_data() {
    Columns<QSize, Qt::LayoutDirection>("size", "direction");
    Row("wide", QSize(900, 600), Qt::LeftToRight);
    Row("from right to left", QSize(900, 600), Qt::RightToLeft);
    Row("narrow", QSize(480, 300), Qt::LeftToRight);
    Row("as narrow as the window gets", QSize(300, 260), Qt::LeftToRight);
  }
  void PanelsOverThePage() {
    QFETCH(QSize, size);
    QFETCH(Qt::LayoutDirection, direction);
    Browser().setLayoutDirection(direction);
    Browser().resize(size);
    QVERIFY(OpenPath(u"/a"_s));
    QTRY_COMPARE(Script(u"innerWidth + 'x' + innerHeight"_s).toString(),
                 u"%1x%2"_s.arg(size.width()).arg(size.height()));
    auto *question = Browser().findChild<TPermissionBar *>();
    Run(u"window.sizes = 0; onresize = () => ++sizes; Notification.requestPermission()"_s);
    QTRY_VERIFY(question->isVisible());
    Browser().FindOnPage();
    auto *find = Browser().findChild<TFindBar *>();
    // Both at once, one below the other, with all that is in them, and in the reading direction's own corner.
    QVERIFY(find->geometry().top() > question->geometry().bottom());
    const bool mirrored = direction == Qt::RightToLeft;
    const int margin = question->y();
    QCOMPARE(mirrored ? size.width() - question->geometry().right() - 1 : question->x(), margin);
    QCOMPARE(mirrored ? find->x() : size.width() - find->geometry().right() - 1, margin);
    for (const QWidget *panel : {static_cast<QWidget *>(question), static_cast<QWidget *>(find)}) {
      QVERIFY(Browser().rect().contains(panel->geometry()));
      const auto parts = panel->findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
      for (const QWidget *part : parts) {
        if (part->isHidden()) continue;
        QVERIFY2(panel->rect().contains(part->geometry()), qPrintable(part->objectName()));
        for (const QWidget *other : parts) {
          const bool overlaps = other != part && !other->isHidden() && other->geometry().intersects(part->geometry());
          QVERIFY2(!overlaps, qPrintable(part->objectName() + u" on "_s + other->objectName()));
        }
      }
      // What is over the page there is the panel and not the page, to the mouse as well.
      QWidget *hit = Browser().childAt(panel->geometry().center());
      QVERIFY(hit == panel || panel->isAncestorOf(hit));
      // Its shadow is only to be seen.
      hit = Browser().childAt(panel->geometry().bottomLeft() + QPoint(20, 3));
      QVERIFY(hit != nullptr && !Browser().findChild<TFindBar *>()->isAncestorOf(hit) && hit->inherits("QQuickWidget"));
    }
    QTest::keyClick(find, Qt::Key_Escape);
    QVERIFY(!find->isVisible());
    Browser().FindOnPage();
    QTest::keyClick(question, Qt::Key_Escape);
    QVERIFY(!question->isVisible());
    QCOMPARE(find->y(), margin);
    QCOMPARE(Script(u"sizes"_s).toInt(), 0);
  }

 private:
  [[nodiscard]] bool Fails(const QString &address) {
    return Open(address) && QTest::qWaitFor([this] { return Notice() != nullptr; });
  }
  [[nodiscard]] QString Text(const char *label) {
    const auto *found = Browser().findChild<QLabel *>(QLatin1String(label));
    return found ? found->text() : QString();
  }
  [[nodiscard]] QString Url(const char *path) { return Server().Url(QString::fromLatin1(path)); }
};

ENGINE_MAIN(TestHalvexBrowser)
#include "test_halvex_browser.moc"
