#include <QFileDialog>
#include <QLineEdit>
#include <QPdfDocument>
#include <QPrintDialog>
#include <QRegularExpression>
#include <QWebEngineDownloadRequest>
#include <QWebEngineProfile>
#include <QWebEngineView>
#include <QWheelEvent>

#include "browser/downloads/download_list.h"
#include "browser/engine/page_layout_store.h"
#include "browser/engine/print_preview.h"
#include "config/registry_paths.h"
#include "support/modal_dialogs.h"
#include "window/browser_fixture.h"
#include "window/page_click.h"

using namespace Qt::StringLiterals;

// The commands that a browser runs on its page, and what the page may ask of its user's desktop.
class TestPageCommands final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    m.Begin();
    m.Server().RoutePage("/a", "Page A", "a");
    m.Server().RoutePage("/b", "Page B", "b");
  }

  void cleanup() { m.End(); }

  void ViewSource() {
    // The source is what was sent, not what scripts made of it.
    m.Server().RoutePage("/s", "Source", "<p>sent</p><script>document.body.innerHTML = 'changed'</script>");
    QVERIFY(m.Open(u"view-source:"_s + Url("/s")));
    QVERIFY(m.Script(u"document.body.innerText"_s).toString().contains(u"<p>sent</p>"_s));
    const QSignalSpy wanted(&m.Browser(), &THalvexBrowser::ViewSourceRequested);
    m.Browser().ViewSource();
    QCOMPARE(wanted.size(), 0);
  }

  void TemporaryFile() {
    QVERIFY(m.OpenPath(u"/a"_s));
    QString path;
    m.Browser().SaveToTemporaryFile(false, [&](const QString &written) { path = written; });
    QTRY_VERIFY(!path.isEmpty());
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray html = file.readAll();
    QVERIFY(html.contains("<title>Page A</title>") && !html.contains("<BASE"));
    file.remove();
  }

  void SavePage() {
    QVERIFY(OpenPage("A: title/with \"signs\"", "to keep"));
    m.Browser().SaveAs();
    auto *dialog = WaitForDialog<QFileDialog>();
    QVERIFY(dialog);
    QCOMPARE(dialog->nameFilters().size(), 3);
    const QString suggested = QFileInfo(dialog->selectedFiles().value(0)).fileName();
    QVERIFY2(QRegularExpression(u"^A[^\"/]*title[^\"/]*\\.html$"_s).match(suggested).hasMatch(), qPrintable(suggested));
    dialog->selectNameFilter(dialog->nameFilters().at(2));
    const QString path = m.Folder() + u"/saved.html"_s;
    dialog->findChild<QLineEdit *>()->setText(path);
    TDownloadList downloads(m.Engine().Profile(), m.Language(), m.Engine().Store());
    QSignalSpy requested(&m.Engine().Profile(), &QWebEngineProfile::downloadRequested);
    QMetaObject::invokeMethod(dialog, "accept");
    QTRY_COMPARE(requested.size(), 1);
    const auto *download = requested.first().first().value<QWebEngineDownloadRequest *>();
    QVERIFY(download->isSavePageDownload());
    QCOMPARE(download->savePageFormat(), QWebEngineDownloadRequest::SingleHtmlSaveFormat);
    QTRY_COMPARE(downloads.State(0), TDownloadState::Finished);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().contains("to keep"));
  }

  void Properties() {
    TPageProperties properties;
    const auto collect = [&] {
      bool done = false;
      m.Browser().CollectProperties([&](const TPageProperties &found) {
        properties = found;
        done = true;
      });
      QTRY_VERIFY(done);
      QCOMPARE(properties.contentType, u"text/html"_s);
    };
    m.Server().Route("/dated", TTestResponse{.body = "<title>Dated</title>x",
                                             .headers = {{"Last-Modified", "Mon, 03 Feb 2020 10:20:30 GMT"}}});
    QVERIFY(m.OpenPath(u"/dated"_s));
    collect();
    QCOMPARE(properties.title, u"Dated"_s);
    QCOMPARE(properties.address, Url("/dated"));
    QCOMPARE(properties.size, qint64(21));
    QVERIFY2(properties.modified.contains(u"2020"_s), qPrintable(properties.modified));
    QCOMPARE(properties.encryptionLevel, TEncryptionLevel::None);
    // A page that was sent without a date has none, and its own scripts cannot lie about the rest.
    QVERIFY(OpenPage("Undated", "<script>Object.defineProperty(document, 'contentType', {value: 'a/lie'})</script>"));
    collect();
    QCOMPARE(properties.modified, QString());
  }

  void FilePickerCanBeCancelled() {
    QVERIFY(OpenPage("Pick", "<input type='file' style='width:400px;height:300px'>"));
    bool cancelled = false;
    OnModalDialog<QFileDialog>([&](QFileDialog &dialog) {
      dialog.reject();
      cancelled = true;
    });
    ClickPage(m.Browser(), QPoint(60, 150));
    QTRY_VERIFY_WITH_TIMEOUT(cancelled, 10000);
    QCOMPARE(m.Script(u"document.querySelector('input').files.length"_s).toInt(), 0);
  }

  void PageFullScreen() {
    QVERIFY(OpenPage("Full",
                     "<div id='box' onclick='this.requestFullscreen()' "
                     "style='width:400px;height:300px'>big</div>"));
    QSignalSpy asked(&m.Browser(), &THalvexBrowser::PageFullScreenRequested);
    ClickPage(m.Browser(), QPoint(60, 150));
    QTRY_COMPARE(asked.size(), 1);
    QVERIFY(m.Browser().HasPageFullScreen());
    m.Browser().LeavePageFullScreen();
    QTRY_COMPARE(asked.size(), 2);
    QCOMPARE(asked.last().first().toBool(), false);
    QVERIFY(!m.Browser().HasPageFullScreen());
  }

  void PreviewShowsAllSheets() {
    QVERIFY(OpenPage("Long", "<div style='page-break-after:always'>1</div><div>2</div>"));
    m.Browser().PrintPreview();
    auto *preview = WaitForDialog<TPrintPreview>();
    QVERIFY(preview);
    const QString path = m.Folder() + u"/preview.pdf"_s;
    QVERIFY(preview->SaveTo(path));
    QPdfDocument saved;
    QCOMPARE(saved.load(path), QPdfDocument::Error::None);
    QCOMPARE(saved.pageCount(), 2);
    QVERIFY(!preview->SaveTo(m.Folder() + u"/missing/preview.pdf"_s));
    preview->close();
  }

  void PrintingWithoutAPrinter() {
    QVERIFY(m.OpenPath(u"/a"_s));
    m.Browser().PrintWithoutAsking();
    // The page itself may ask once; after a no it is not heard again.
    m.Browser().EnginePage()->runJavaScript(u"setTimeout(() => print(), 0)"_s);
    auto *dialog = WaitForDialog<QPrintDialog>();
    QVERIFY(dialog);
    dialog->reject();
    QSignalSpy asked(m.Browser().EnginePage(), &QWebEnginePage::printRequested);
    m.Browser().EnginePage()->runJavaScript(u"setTimeout(() => print(), 0)"_s);
    QTRY_VERIFY(!asked.isEmpty());
    for (const QWidget *widget : QApplication::topLevelWidgets()) {
      QVERIFY(!qobject_cast<const QPrintDialog *>(widget) || !widget->isVisible());
    }
  }

  void PageLayoutLasts() {
    TRegistryStore &store = m.Engine().Store();
    const QPageLayout fallback = PageLayoutStore::Load(store);
    QCOMPARE(fallback.pageSize().id(), QPageSize::A4);
    QPageLayout layout(QPageSize(QPageSize::A5), QPageLayout::Landscape, QMarginsF(5, 6, 7, 8),
                       QPageLayout::Millimeter);
    PageLayoutStore::Save(store, layout);
    QCOMPARE(PageLayoutStore::Load(store), layout);
    const QString key = QString::fromLatin1(RegistryKey::PageSetup);
    store.Write(TRegistryHive::CurrentUser, key, u"PageSize"_s, u"nonsense"_s);
    store.Write(TRegistryHive::CurrentUser, key, u"MarginLeft"_s, u"400"_s);
    const QPageLayout repaired = PageLayoutStore::Load(store);
    QCOMPARE(repaired.pageSize().id(), QPageSize::A4);
    QVERIFY(repaired.paintRect(QPageLayout::Millimeter).width() > 100);
    store.DeleteKey(TRegistryHive::CurrentUser, key);
  }

  // What changes the text takes the keyboard along, what only marks it does not.
  void FocusFollowsCommands() {
    QWidget window;
    auto *line = new QLineEdit(&window);
    QVERIFY(m.OpenPath(u"/a"_s));
    m.Browser().setParent(&window);
    window.show();
    m.Browser().show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    line->setFocus();
    QSignalSpy received(&m.Browser(), &THalvexBrowser::FocusReceived);
    m.Browser().SelectAll();
    QVERIFY(line->hasFocus());
    m.Browser().Cut();
    QVERIFY(!line->hasFocus());
    QCOMPARE(received.size(), 1);
    m.Browser().setParent(nullptr);
  }

  void StatusText() {
    QVERIFY(OpenPage("Link", "<a href='/b' style='display:block;width:400px;height:300px'>b</a>"));
    QSignalSpy text(&m.Browser(), &THalvexBrowser::StatusTextChanged);
    int destination = -1;
    connect(&m.Browser(), &THalvexBrowser::NewWindowRequested, this,
            [&](QWebEngineNewWindowRequest *request) { destination = request->destination(); });
    ClickPage(m.Browser(), QPoint(60, 150), Qt::MiddleButton);
    QTRY_COMPARE(destination, int(QWebEngineNewWindowRequest::InNewBackgroundTab));
    QTest::mouseMove(m.Browser().findChild<QWebEngineView *>()->focusProxy(), QPoint(70, 150));
    QTRY_COMPARE(text.value(text.size() - 1).value(0).toString(), Url("/b"));
  }

  void ClickedLinks() {
    // The text matters: the engine drops input until the outer page has painted something of its own.
    m.Server().RoutePage("/inner", "Inner", "<a href='/b' style='display:block;width:300px;height:200px'>b</a>");
    QVERIFY(OpenPage("Frames", "<iframe id='f' src='/inner' style='width:400px;height:300px'></iframe>Text"));
    QList<std::pair<QString, bool>> asked;
    connect(&m.Browser(), &THalvexBrowser::BeforeNavigate, this, [&](const TNavigation *navigation) {
      QVERIFY(!navigation->mainFrame);
      asked.append({QUrl(navigation->address).path(), navigation->linkClicked});
    });
    m.Browser().EnginePage()->runJavaScript(u"document.getElementById('f').src = '/a'"_s);
    QTRY_COMPARE(asked, (QList<std::pair<QString, bool>>{{u"/a"_s, false}}));
    m.Browser().EnginePage()->runJavaScript(
        QStringLiteral("let f = document.getElementById('f'); f.onload = () => {"
                       "f.contentDocument.querySelector('a').focus(); document.title = 'focused' }; f.src = '/inner'"));
    QTRY_COMPARE(m.Browser().LocationName(), u"focused"_s);
    asked.clear();
    auto *view = m.Browser().findChild<QWebEngineView *>();
    view->setFocus();
    QTest::keyClick(view->focusProxy(), Qt::Key_Return);
    QTRY_COMPARE(asked, (QList<std::pair<QString, bool>>{{u"/b"_s, true}}));
  }

  void ZoomByWheel() {
    QVERIFY(m.OpenPath(u"/a"_s));
    QWidget *target = m.Browser().findChild<QWebEngineView *>()->focusProxy();
    const auto turn = [target](int angle, Qt::KeyboardModifiers modifiers) {
      QWheelEvent event(QPointF(10, 10), target->mapToGlobal(QPointF(10, 10)), {}, QPoint(0, angle), Qt::NoButton,
                        modifiers, Qt::NoScrollPhase, false);
      QCoreApplication::sendEvent(target, &event);
    };
    turn(120, Qt::ControlModifier);
    QCOMPARE(m.Browser().ZoomPercent(), 110);
    turn(-60, Qt::ControlModifier);
    QCOMPARE(m.Browser().ZoomPercent(), 110);
    turn(-180, Qt::ControlModifier);
    QCOMPARE(m.Browser().ZoomPercent(), 90);
    turn(-120, Qt::NoModifier);
    QCOMPARE(m.Browser().ZoomPercent(), 90);
    m.Browser().ResetZoom();
  }

 private:
  [[nodiscard]] bool OpenPage(const QByteArray &title, const QByteArray &body) {
    m.Server().RoutePage("/page", title, body);
    return m.OpenPath(u"/page"_s);
  }
  [[nodiscard]] QString Url(const char *path) { return m.Server().Url(QString::fromLatin1(path)); }

  TBrowserFixture m;
};

int main(int argc, char **argv) {
  return RunWithEngine<TestPageCommands>(argc, argv);
}

#include "test_page_commands.moc"
