#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <memory>
#include <QWebEngineHistory>
#include <QWebEngineView>
#include <QWindow>
#include <vector>

#include "browser/engine/view_supply.h"
#include "platform/memory.h"
#include "support/data_row.h"
#include "window/browser_fixture.h"

namespace {

bool shortOfMemory = false;

}  // namespace

// The view that is kept ready for the next page.
class TestViewSupply final : public QObject, private TBrowserFixture {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    shortOfMemory = false;
    Begin();
    Server().RoutePage("/a", "Page A");
  }
  void cleanup() { End(); }

  void TakenByTheNextPage() {
    QWidget window;
    Engine().Views().KeepReady(&window);
    const QPointer<QWebEngineView> ready = window.findChild<QWebEngineView *>();
    QVERIFY(ready && Engine().Views().IsReady());
    window.show();
    QVERIFY(ready->isHidden());
    QTRY_VERIFY_WITH_TIMEOUT(ready->page()->renderProcessPid() != 0, LoadTime);
    const qint64 renderer = ready->page()->renderProcessPid();

    QVERIFY(OpenPath(u"/a"_s));
    QCOMPARE(Browser().EnginePage(), ready->page());
    QCOMPARE(Browser().EnginePage()->renderProcessPid(), renderer);
    QVERIFY(ready->isVisible());
    // The page is all that it has ever shown.
    QVERIFY(!Browser().CanGoBack());
    QCOMPARE(Browser().EnginePage()->history()->count(), 1);
    const QStringList titles = Events().filter(u"title "_s);
    QCOMPARE(titles.last(), u"title Page A"_s);
    QVERIFY(Events().filter(u"about:blank"_s).isEmpty());

    QTRY_VERIFY_WITH_TIMEOUT(Engine().Views().IsReady(), LoadTime);
    QVERIFY(window.findChild<QWebEngineView *>() != ready);
  }

  // With the first page behind the show the toolkit replaced the window, and desktops forgot what it had been.
  void WindowStaysTheSame() {
    QWidget window;
    Engine().Views().KeepReady(&window);
    Browser().setParent(&window);
    window.show();
    const QPointer<QWindow> handle = window.windowHandle();
    Browser().show();
    QVERIFY(OpenPath(u"/a"_s));
    QVERIFY(handle);
    QCOMPARE(window.windowHandle(), handle.data());
    Browser().setParent(nullptr);
  }

  void GivenUp_data() {
    Columns<bool>("shortOf");
    Row("its renderer has died", false);
    Row("short of memory", true);
  }
  void GivenUp() {
    QFETCH(bool, shortOf);
    QWidget window;
    TViewSupply views(Engine(), [] { return shortOfMemory; });
    views.KeepReady(&window);
    const QPointer<QWebEngineView> ready = window.findChild<QWebEngineView *>();
    QTRY_VERIFY_WITH_TIMEOUT(ready->page()->renderProcessPid() != 0, LoadTime);
    auto *look = views.findChild<QTimer *>();
    if (shortOf) {
      shortOfMemory = true;
      look->start(0);
    } else {
      ::kill(pid_t(ready->page()->renderProcessPid()), SIGKILL);
    }
    QTRY_VERIFY_WITH_TIMEOUT(!ready, LoadTime);
    QVERIFY(!views.IsReady());
    // What is opened now gets a view all the same.
    const std::unique_ptr<QWebEngineView> view(views.Take());
    QVERIFY(view);
    look->start(0);
    QTRY_VERIFY(look->interval() > TViewSupply::IdleTime);
    QCOMPARE(views.IsReady(), !shortOf);
    shortOfMemory = false;
    look->start(0);
    QTRY_VERIFY(views.IsReady());
  }

  void WaitsForQuiet() {
    QWidget window;
    TViewSupply &views = Engine().Views();
    views.KeepReady(&window);
    const std::unique_ptr<QWebEngineView> view(views.Take());
    auto *look = views.findChild<QTimer *>();
    look->setInterval(100000);
    QVERIFY(OpenPath(u"/a"_s));
    QCOMPARE(look->interval(), TViewSupply::IdleTime);
    QVERIFY(look->isActive() && !views.IsReady());
  }

  void MemoryReport_data() {
    Columns<QByteArray, bool>("report", "isShort");
    QTest::newRow("plenty") << QByteArray("MemTotal:  8000000 kB\nMemAvailable:    4000000 kB\n") << false;
    QTest::newRow("little") << QByteArray("MemTotal:  8000000 kB\nMemAvailable:     100000 kB\n") << true;
    QTest::newRow("not told") << QByteArray("MemTotal:  8000000 kB\nMemFree: 1 kB\n") << false;
    QTest::newRow("no number") << QByteArray("MemAvailable: some kB\n") << false;
    QTest::newRow("cut off") << QByteArray("MemAvailable:") << false;
    QTest::newRow("nothing") << QByteArray() << false;
  }
  void MemoryReport() {
    QFETCH(QByteArray, report);
    QTEST(TellsOfShortMemory(report), "isShort");
  }

  void FreedMemoryGoesBack() {
    // Small pieces, every second of which stays until the end: nothing goes back by itself.
    constexpr int Piece = 64 * 1024;
    constexpr int Pieces = 1024;
    std::vector<std::unique_ptr<char[]>> held;
    for (int i = 0; i < Pieces; ++i) held.emplace_back(new char[Piece])[0] = 1;
    for (const auto &piece : held) std::fill_n(piece.get(), Piece, 'x');
    for (size_t i = 0; i < held.size(); i += 2) held[i].reset();
    const qint64 before = Resident();
    ReturnFreedMemory();
    QVERIFY2(before - Resident() > Pieces / 4 * Piece, qPrintable(QString::number(before - Resident())));
  }

 private:
  // Of this program, in bytes.
  static qint64 Resident() {
    QFile report(QStringLiteral("/proc/self/statm"));
    return report.open(QFile::ReadOnly) ? report.readAll().split(' ').value(1).toLongLong() * ::getpagesize() : 0;
  }
};

ENGINE_MAIN(TestViewSupply)
#include "test_view_supply.moc"
