#include <QPushButton>
#include <QWebEngineView>

#include "browser/page/page_notice.h"
#include "support/data_row.h"
#include "window/answering_policy.h"
#include "window/tabs_fixture.h"

namespace {

// What a window that a page asked for comes to.
enum TEnd { Shown, Notice, Closed };

// Engines from 6.8 on show what was written into a window.
constexpr TEnd Written = QT_VERSION < QT_VERSION_CHECK(6, 8, 0) ? Notice : Shown;

}  // namespace

Q_DECLARE_METATYPE(TEnd)

// The windows that pages open: shown only when that is safe, freed when nothing can come of them, and never without
// end.
class TestPageWindows final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    m_f.Prepare();
    m_f.server.RoutePage("/opener", "Opener");
    m_f.server.RoutePage("/page", "Page", "text");
    m_f.server.Route("/slow", {.body = "<title>Page</title>", .delayMs = 1500});
    m_f.server.Route("/nothing", TTestResponse::Status(204));
    m_f.server.Route("/file", TTestResponse::Attachment("a.bin", "data"));
  }

  void init() {
    m_f.Begin();
    m_f.Load(m_f.tabs->GetActivePage(), QStringLiteral("/opener"));
    m_opener = m_f.tabs->GetActivePage();
  }

  void cleanup() { m_f.End(); }

  void End_data() {
    Columns<QString, TEnd>("script", "end");
    Row("a page", "open('/page')", Shown);
    Row("a page that is long in coming", "open('/slow')", Shown);
    Row("blank first", "w = open('about:blank'); w.location = '/page'", Shown);
    Row("written into while its page is on its way", "w = open('/slow'); w.document.write('x')", Written);
    Row("written into and closed", "w = open('/slow'); w.document.write('x'); w.document.close()", Written);
    Row("filled with a frame", "w = open(''); w.document.write('<iframe src=/page></iframe>')", Written);
    Row("written into, with a page afterwards",
        "w = open(''); w.document.write('x'); w.document.close(); setTimeout(() => w.location = '/page', 200)", Shown);
    Row("no content", "open('/nothing')", Closed);
    Row("a download", "open('/file')", Closed);
    Row("an address of another program", "open('mailto:nobody@example.test')", Closed);
    Row("blank first, then another program's", "w = open('about:blank'); w.location = 'mailto:nobody@example.test'",
        Closed);
    Row("blank first, then a download", "w = open('about:blank'); w.location = '/file'", Closed);
    Row("closed by its opener", "w = open('/page'); setTimeout(() => w.close(), 500)", Closed);
  }
  void End() {
    QFETCH(QString, script);
    QFETCH(TEnd, end);
    m_f.settings->Set(Setting::OpenNewInForeground, true);
    bool opened = false;
    connect(m_f.tabs.get(), &TTabStrip::TabOpened, this, [&] { opened = true; });
    m_f.Run(m_opener, script);
    QTRY_VERIFY_WITH_TIMEOUT(opened, m_f.LoadTime);
    if (end == Closed) {
      QTRY_COMPARE_WITH_TIMEOUT(m_f.tabs->Tabs(), QList<TBrowserTab *>{m_opener}, m_f.LoadTime);
      return;
    }
    QTRY_VERIFY_WITH_TIMEOUT(m_f.tabs->GetActivePage() != m_opener, m_f.LoadTime);
    TBrowserTab *window = m_f.tabs->GetActivePage();
    if (end == Notice) {
      QTRY_VERIFY_WITH_TIMEOUT(window->Browser()->ShowsNotice(), m_f.LoadTime);
      QVERIFY(!ViewOf(window)->isVisible());
      QCOMPARE(window->Title(), window->AddressToSave());
      QVERIFY(window->Title().startsWith(m_f.server.Url()));
      // Turning away and back is what crashed the engine, too.
      m_f.tabs->Activate(m_opener);
      m_f.tabs->Activate(window);
      window->findChild<QPushButton *>(QStringLiteral("cmdNoticePrimary"))->click();
    }
    QTRY_VERIFY_WITH_TIMEOUT(ViewOf(window)->isVisible() && !window->Browser()->ShowsNotice(), m_f.LoadTime);
    if (script.contains(QLatin1String("write")) && end == Shown && Written == Shown) return;
    QTRY_COMPARE_WITH_TIMEOUT(window->Title(), QStringLiteral("Page"), m_f.LoadTime);
  }

  // Before anything of its page has come, there is nothing of the engine to be seen.
  void WaitingWindowIsBlank() {
    if (Written == Shown) QSKIP("this engine shows every window at once");
    m_f.settings->Set(Setting::OpenNewInForeground, true);
    m_f.Run(m_opener, QStringLiteral("open('/slow')"));
    QTRY_VERIFY_WITH_TIMEOUT(m_f.tabs->GetActivePage() != m_opener, m_f.LoadTime);
    TBrowserTab *window = m_f.tabs->GetActivePage();
    QVERIFY(!ViewOf(window)->isVisible());
    QVERIFY(window->Browser()->findChild<QWidget *>(QStringLiteral("blankSheet"))->isVisible());
    QTRY_VERIFY_WITH_TIMEOUT(ViewOf(window)->isVisible(), m_f.LoadTime);
  }

  void EmptyWindowsGo_data() {
    Columns<QString>("how");
    Row("closed by its opener", "script");
    Row("the opener goes to another page", "navigate");
    Row("the opener is closed", "close");
  }
  void EmptyWindowsGo() {
    QFETCH(QString, how);
    m_f.tabs->NewTab();
    m_f.Run(m_opener, QStringLiteral("w = open('about:blank')"));
    QTRY_COMPARE(m_f.tabs->TabCount(), 3);
    QCOMPARE(m_f.tabs->Pages().VisiblePageCount(), 2);
    if (how == QLatin1String("script")) m_f.Run(m_opener, QStringLiteral("w.close()"));
    if (how == QLatin1String("navigate")) m_opener->Navigate(m_f.server.Url(QStringLiteral("/page")));
    if (how == QLatin1String("close")) m_opener->Close();
    QTRY_COMPARE(m_f.tabs->TabCount(), how == QLatin1String("close") ? 1 : 2);
  }

  void LockedTabIsNotClosedByScript() {
    m_f.Run(m_opener, QStringLiteral("w = open('/page')"));
    QTRY_COMPARE(m_f.tabs->TabCount(), 2);
    TBrowserTab *window = m_f.tabs->Tab(1);
    QTRY_COMPARE_WITH_TIMEOUT(window->Title(), QStringLiteral("Page"), m_f.LoadTime);
    window->SetLocked(true);
    QSignalSpy asked(window->Browser(), &THalvexBrowser::CloseRequested);
    m_f.Run(m_opener, QStringLiteral("w.close()"));
    QTRY_COMPARE(asked.size(), 1);
    QCOMPARE(m_f.tabs->TabCount(), 2);
  }

  // The rest is told, with what was asked for.
  void WindowsWithoutEnd_data() {
    Columns<bool, QString, int>("locked", "script", "most");
    Row("windows", false, "open('/page?' + n)", TWindowBudget::MostByItself);
    Row("a locked page's own navigations", true, "location = '/page?' + n", TWindowBudget::MostByItself);
  }
  void WindowsWithoutEnd() {
    QFETCH(bool, locked);
    QFETCH(QString, script);
    QFETCH(int, most);
    m_opener->SetLocked(locked);
    QStringList stopped;
    connect(m_f.tabs.get(), &TTabStrip::WindowStopped, this, [&](TBrowserTab *tab, const QString &address) {
      QCOMPARE(tab, m_opener);
      stopped.append(QUrl(address).query());
    });
    m_f.Run(m_opener, QStringLiteral("n = 0; setInterval(() => { if (++n <= 12) { %1 } }, 30)").arg(script));
    QTRY_COMPARE_WITH_TIMEOUT(stopped.value(stopped.size() - 1), QStringLiteral("12"), m_f.LoadTime);
    QCOMPARE(m_f.tabs->TabCount(), 1 + most);
    QCOMPARE(stopped.size(), 12 - most);
    // What the user does next is not counted.
    m_f.tabs->OpenFromPage(m_f.server.Url(QStringLiteral("/page")), true);
    QCOMPARE(m_f.tabs->TabCount(), 2 + most);
  }

  // A page that goes on to itself gets no more windows by that; what the user does gives it as many again.
  void BudgetIsTheTabs() {
    m_f.environment->windowSpan = 0;
    m_f.server.Route("/again", [](const TTestRequest &request) {
      const int turn = request.query.toInt();
      const QByteArray next =
          turn < 5 ? "location = '/again?" + QByteArray::number(turn + 1) + "'" : "document.title = 'end'";
      return TTestResponse::Page(
          "<script>let n = 0; const t = setInterval(() => { if (++n <= 5) return open('/page'); "
          "clearInterval(t); " +
          next + " }, 20)</script>");
    });
    TBrowserTab *tab = m_f.tabs->NewTab();
    int stopped = 0;
    connect(m_f.tabs.get(), &TTabStrip::WindowStopped, this, [&](TBrowserTab *of) { stopped += of == tab ? 1 : 0; });
    tab->Navigate(m_f.server.Url(QStringLiteral("/again?0")));
    QTRY_COMPARE_WITH_TIMEOUT(tab->Title(), QStringLiteral("end"), m_f.LoadTime);
    QCOMPARE(stopped, 30 - TWindowBudget::MostUnasked);
    m_f.tabs->Activate(tab);
    ClickPage(*tab->Browser(), QPoint(10, 300));
    const int before = m_f.tabs->TabCount();
    QTest::qWait(1100);
    m_f.Run(tab, QStringLiteral("open('/page')"));
    QCOMPARE(m_f.tabs->TabCount(), before + 1);
  }

  // Windows that open windows get no more than the page that began.
  void WindowsOfWindows() {
    m_f.server.RoutePage("/chain", "Chain", "<script>open('/chain'); open('/chain')</script>");
    const QSignalSpy stopped(m_f.tabs.get(), &TTabStrip::WindowStopped);
    m_f.Run(m_opener, QStringLiteral("open('/chain')"));
    QTRY_VERIFY_WITH_TIMEOUT(stopped.size() >= 4, m_f.LoadTime);
    QCOMPARE(m_f.tabs->TabCount(), 1 + TWindowBudget::MostByItself);
  }

  void LockedPageIsTestedForPopups() {
    m_policy.isPopup = [](const QString &address) { return address.endsWith(QLatin1String("/page")); };
    m_policy.AnswerFor(m_f.Engine());
    m_opener->SetLocked(true);
    QSignalSpy stopped(m_f.tabs.get(), &TTabStrip::WindowStopped);
    m_f.Run(m_opener, QStringLiteral("location = '/page'"));
    QTRY_COMPARE(stopped.size(), 1);
    QCOMPARE(m_f.tabs->TabCount(), 1);
    // The user's own wish is none.
    m_opener->Navigate(m_f.server.Url(QStringLiteral("/page")));
    QTRY_COMPARE(m_f.tabs->TabCount(), 2);
  }

 private:
  static QWebEngineView *ViewOf(TBrowserTab *tab) { return tab->findChild<QWebEngineView *>(); }

  TAnsweringPolicy m_policy;
  TTabsFixture m_f;
  TBrowserTab *m_opener = nullptr;
};

int main(int argc, char **argv) {
  return RunWithEngine<TestPageWindows>(argc, argv);
}

#include "test_page_windows.moc"
