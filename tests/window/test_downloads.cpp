#include <QDir>
#include <QListView>
#include <QPushButton>
#include <QSignalSpy>
#include <QStandardPaths>

#include "browser/downloads/download_text.h"
#include "browser/downloads/download_window.h"
#include "browser/downloads/page_downloads.h"
#include "support/data_row.h"
#include "support/modal_dialogs.h"
#include "support/shipped_files.h"
#include "ui/confirm_dialog.h"
#include "window/downloads_fixture.h"

using namespace Qt::StringLiterals;

class TestDownloads final : public QObject, private TDownloadsFixture {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { Prepare(); }

  void init() {
    Begin();
    m_opened.clear();
    list->SetOpener([this](const QUrl &address) {
      m_opened.append(address.toLocalFile());
      return true;
    });
    m_asked = 0;
    m_answer = QString();
    list->SaveQuestion().SetChooseFile([this](const QString &suggested, const TSaveQuestion::TDone &done) {
      ++m_asked;
      m_suggested = suggested;
      done(m_answer.isNull() ? In(QFileInfo(suggested).fileName()) : m_answer);
    });
  }

  void cleanup() { End(); }

  void paceInWords_data() {
    Columns<qint64, qint64, double, QString>("received", "total", "speed", "words");
    QTest::newRow("seconds") << qint64(0) << qint64(30720) << 1024.0 << u"1.0 kB/s, 30 s left"_s;
    QTest::newRow("almost done") << qint64(30700) << qint64(30720) << 1024.0 << u"1.0 kB/s, 1 s left"_s;
    QTest::newRow("minutes") << qint64(0) << qint64(1024 * 300) << 1024.0 << u"1.0 kB/s, 5 min left"_s;
    QTest::newRow("hours") << qint64(0) << qint64(1024 * 3900) << 1024.0 << u"1.0 kB/s, 1 h 5 min left"_s;
    QTest::newRow("far too long") << qint64(0) << qint64(1) * 1024 * 1024 * 1024 * 1024 << 1024.0 << u"1.0 kB/s"_s;
    QTest::newRow("total not known") << qint64(1000) << qint64(-1) << 1024.0 << u"1.0 kB/s"_s;
    QTest::newRow("stalled") << qint64(1000) << qint64(2000) << 0.0 << QString();
    QTest::newRow("more than announced") << qint64(3000) << qint64(2000) << 1024.0 << u"1.0 kB/s"_s;
  }

  void paceInWords() {
    QFETCH(qint64, received);
    QFETCH(qint64, total);
    QFETCH(double, speed);
    QTEST(DownloadText::Pace(received, total, speed, language), "words");
  }

  void amountInWords() {
    QCOMPARE(DownloadText::Amount(1024, 2048, language), u"1.0 kB of 2.0 kB"_s);
    for (const qint64 unknown : {-1, 0}) QCOMPARE(DownloadText::Amount(1024, unknown, language), u"1.0 kB"_s);
  }

  void oneOfItIsSingular() {
    TLanguage french;
    QVERIFY(french.LoadFile(SourceFile(QStringLiteral("Languages/zvfra.ini"))));
    for (const auto &[total, words] : {std::pair(1, "1 s restante"), std::pair(2, "2 s restantes"),
                                       std::pair(70, "1 min restante"), std::pair(100, "2 min restantes")}) {
      QVERIFY(DownloadText::Pace(0, 1024 * total, 1024, french).endsWith(QLatin1String(words)));
    }
  }

  void savesWhereTheUserSays() {
    QSignalSpy active(list.get(), &TDownloadList::ActiveChanged);
    QVERIFY(QDir(folder->path()).mkdir("elsewhere"));
    m_answer = In(u"elsewhere/mine.txt"_s);
    Get(u"/file"_s);
    QCOMPARE(QFileInfo(m_suggested).fileName(), u"file.txt"_s);
    QCOMPARE(Content(In(u"elsewhere/mine.txt"_s)), "content");
    QCOMPARE(active.size(), 2);
    QCOMPARE(active.last().first().toInt(), 0);
    // The next question starts in the folder that was used last.
    m_answer = u""_s;
    Download(u"/file"_s);
    QTRY_COMPARE_WITH_TIMEOUT(m_suggested, In(u"elsewhere/file.txt"_s), LongWait);
    // Cancelled, it leaves nothing.
    QCOMPARE(list->rowCount(), 1);
    QCOMPARE(QDir(folder->path()).entryList({u"file*"_s}, QDir::Files), QStringList());
    QCOMPARE(QDir(In(u"elsewhere"_s)).entryList(QDir::Files), QStringList{u"mine.txt"_s});
    QVERIFY(list->Open(0) && list->OpenFolder(0));
    QCOMPARE(m_opened, (QStringList{In(u"elsewhere/mine.txt"_s), In(u"elsewhere"_s)}));
    QVERIFY(QFile::remove(In(u"elsewhere/mine.txt"_s)));
    QVERIFY(!list->Open(0));
    // It is none for what nobody is asked about.
    QVERIFY(store->Write(TRegistryHive::CurrentUser, key, u"DownloadAsk"_s, u"0"_s));
    Get(u"/file"_s);
    QCOMPARE(Path(0), In(u"file.txt"_s));
  }

  void neverOverwritesWithoutAsking() {
    list->SaveQuestion().SetChooseFile({});
    for (const QString &name : {u"file.txt"_s, u"file (1).txt"_s}) {
      Get(u"/file"_s);
      QCOMPARE(Content(In(name)), "content");
    }
    // The user's own choice of a file that is there has been asked about by the dialog.
    QVERIFY(QFile::resize(In(u"file.txt"_s), 0));
    list->SaveQuestion().SetChooseFile(
        [this](const QString &, const TSaveQuestion::TDone &done) { done(In(u"file.txt"_s)); });
    Get(u"/file"_s);
    QCOMPARE(Content(In(u"file.txt"_s)), "content");
  }

  void hostileNameAndFolderThatIsGone() {
    QVERIFY(store->Write(TRegistryHive::CurrentUser, key, u"DownloadFolder"_s, In(u"gone"_s)));
    list->SaveQuestion().SetChooseFile({});
    server->Route("/hostile", TTestResponse::Attachment("../../../../tmp/evil\342\200\256cod.exe", "x"));
    Get(u"/hostile"_s);
    QVERIFY(!QDir(In(u"gone"_s)).exists());
    QCOMPARE(Path(0), QStandardPaths::writableLocation(QStandardPaths::DownloadLocation) + u"/evilcod.exe"_s);
    QCOMPARE(Content(Path(0)), "x");
  }

  void sameFileTwiceAtOnce() {
    RouteSlowFile();
    m_answer = In(u"one.bin"_s);
    Start(u"/slow"_s);
    Start(u"/slow"_s);
    QCOMPARE(Path(1), In(u"one.bin"_s));
    QCOMPARE(Path(0), In(u"one (1).bin"_s));
    QCOMPARE(list->ActiveCount(), 2);
    list->CancelAll();
    QTRY_COMPARE(list->ActiveCount(), 0);
  }

  void chosenFolderThatIsGone() {
    QSignalSpy finished(list.get(), &TDownloadList::Finished);
    m_answer = In(u"gone/file.txt"_s);
    Download(u"/file"_s);
    QTRY_COMPARE_WITH_TIMEOUT(list->rowCount(), 1, LongWait);
    QCOMPARE(list->State(0), TDownloadState::Failed);
    QVERIFY(Status(0).contains(language.Text("DOWNLOADS", "FolderGone")));
    // With the folder back, a retry gets the file.
    QVERIFY(QDir(folder->path()).mkdir("gone"));
    list->Retry(0);
    QTRY_COMPARE_WITH_TIMEOUT(list->State(0), TDownloadState::Finished, LongWait);
    QCOMPARE(Content(In(u"gone/file.txt"_s)), "content");
    QCOMPARE(finished.size(), 1);
    QCOMPARE(finished.first().first().toString(), In(u"gone/file.txt"_s));

    // Deleted while the file is being written.
    RouteSlowFile();
    m_answer = In(u"gone/slow.bin"_s);
    Start(u"/slow"_s);
    QVERIFY(QDir(In(u"gone"_s)).removeRecursively());
    QTRY_COMPARE_WITH_TIMEOUT(list->State(0), TDownloadState::Failed, LongWait);
    QVERIFY(list->CanRetry(0));
    QCOMPARE(finished.size(), 1);
  }

  void brokenConnectionIsToldAndRetried() {
    const TTestResponse whole = RouteBroken();
    server->Route("/there", TTestResponse::Redirect("/broken"));
    Start(u"/there"_s);
    const quint16 port = server->Port();
    server->Close();
    QTRY_COMPARE_WITH_TIMEOUT(list->State(0), TDownloadState::Failed, LongWait);
    QVERIFY(Status(0).size() > language.Text("DOWNLOADS", "FailedLine").size());
    QVERIFY(!QFileInfo::exists(In(u"broken.bin"_s)));
    QVERIFY(server->Listen(port));
    server->Route("/broken", whole);
    list->Retry(0);
    QTRY_COMPARE_WITH_TIMEOUT(list->State(0), TDownloadState::Finished, LongWait);
    QCOMPARE(list->rowCount(), 1);
    QCOMPARE(QFileInfo(Path(0)).size(), 100000);
  }

  void interruptedOneGoesOnUnasked() {
    const TTestResponse whole = RouteBroken();
    m_answer = In(u"mine.bin"_s);
    Start(u"/broken"_s);
    const quint16 port = server->Port();
    server->Route("/broken", whole);
    server->Close();
    QVERIFY(server->Listen(port));
    QTRY_COMPARE_WITH_TIMEOUT(list->State(0), TDownloadState::Finished, LongWait);
    QVERIFY(list->rowCount() == 1 && m_asked == 1);
    QCOMPARE(Content(In(u"mine.bin"_s)), whole.body);
  }

  // A page that starts many downloads at once gets one dialog; the others wait for the user in the list.
  void requestsWhileAskingWaitInTheList() {
    server->Route("/second", TTestResponse::Attachment("second.txt", "second"));
    list->SaveQuestion().SetPause(2 * LongWait);
    const QSignalSpy requests(profile.get(), &QWebEngineProfile::downloadRequested);
    Download(u"/file"_s);
    QTRY_COMPARE_WITH_TIMEOUT(requests.size(), 1, LongWait);
    for (int i = 0; i < 3; ++i) Download(u"/second"_s);
    // All are there: one that comes after the retry would be a line of its own.
    QTRY_COMPARE_WITH_TIMEOUT(requests.size(), 4, LongWait);
    QTRY_COMPARE_WITH_TIMEOUT(list->ActiveCount(), 0, LongWait);
    QCOMPARE(list->rowCount(), 2);
    QCOMPARE(m_asked, 1);
    constexpr int waiting = 0;
    QCOMPARE(list->State(waiting), TDownloadState::NotStarted);
    const QString name = list->data(list->index(waiting)).toString();
    list->Retry(waiting);
    QTRY_COMPARE_WITH_TIMEOUT(list->State(waiting), TDownloadState::Finished, LongWait);
    QCOMPARE(list->rowCount(), 2);
    QCOMPARE(m_asked, 2);
    QCOMPARE(QFileInfo(Path(waiting)).fileName(), name);
    QVERIFY(QFileInfo::exists(In(u"file.txt"_s)));
  }

  // A few run at a time, and the others when it is their turn.
  void manyWaitForTheirTurn() {
    list->SaveQuestion().SetChooseFile({});
    RouteBroken();
    constexpr int Many = 9;
    for (int i = 0; i < Many; ++i) Download(u"/broken"_s);
    QTRY_COMPARE_WITH_TIMEOUT(list->rowCount(), Many, LongWait);
    const auto count = [this](TDownloadState state) {
      int found = 0;
      for (int row = 0; row < list->rowCount(); ++row) found += list->State(row) == state ? 1 : 0;
      return found;
    };
    QCOMPARE(count(TDownloadState::Running), 4);
    QCOMPARE(count(TDownloadState::Waiting), 5);
    QCOMPARE(list->ActiveCount(), Many);
    QCOMPARE(Status(0), language.Text("DOWNLOADS", "WaitingLine"));
    list->Cancel(0);
    server->ForgetRequests();
    list->Cancel(Many - 1);
    QTRY_COMPARE_WITH_TIMEOUT(server->RequestCount("/broken"), 1, LongWait);
    QTRY_COMPARE_WITH_TIMEOUT(count(TDownloadState::Cancelled), 2, LongWait);
    QCOMPARE(count(TDownloadState::Running), 4);
    QCOMPARE(count(TDownloadState::Waiting), 3);
    list->CancelAll();
    QTRY_COMPARE_WITH_TIMEOUT(list->ActiveCount(), 0, LongWait);
  }

  void pageIsAskedAboutOnce_data() {
    Columns<bool, bool, int>("isInFront", "allow", "files");
    Row("allowed", true, true, 4);
    Row("refused", true, false, 1);
    Row("allowed in the background", false, true, 4);
    Row("refused in the background", false, false, 0);
  }
  void pageIsAskedAboutOnce() {
    QFETCH(bool, isInFront);
    QFETCH(bool, allow);
    QFETCH(int, files);
    auto *downloads = new TPageDownloads(
        page.get(), [] { return 0; }, [isInFront] { return isInFront; });
    const QSignalSpy asked(downloads, &TPageDownloads::Asked);
    server->RoutePage("/page", "Page");
    QSignalSpy loaded(page.get(), &QWebEnginePage::loadFinished);
    page->load(QUrl(server->Url(u"/page"_s)));
    QTRY_VERIFY_WITH_TIMEOUT(!loaded.isEmpty(), LongWait);
    // From the server, and made by the page itself.
    const auto get = [this](const QString &address) {
      page->runJavaScript(
          u"var a = document.createElement('a'); a.download = 'x.txt'; a.href = %1; a.click()"_s.arg(address));
    };
    get(u"'/file'"_s);
    QTRY_COMPARE_WITH_TIMEOUT(list->rowCount(), 1, LongWait);
    get(u"URL.createObjectURL(new Blob(['made']))"_s);
    QTRY_COMPARE_WITH_TIMEOUT(list->rowCount(), 2, LongWait);
    get(u"'/file'"_s);
    QTRY_COMPARE_WITH_TIMEOUT(list->rowCount(), 3, LongWait);
    QTRY_COMPARE_WITH_TIMEOUT(asked.size(), 1, LongWait);
    QCOMPARE(Status(0), language.Text("DOWNLOADS", "AskingLine"));
    QCOMPARE(m_asked, isInFront ? 1 : 0);
    downloads->Answer(allow);
    get(u"'/file'"_s);
    QTRY_COMPARE_WITH_TIMEOUT(list->rowCount(), files, LongWait);
    QTRY_COMPARE_WITH_TIMEOUT(list->ActiveCount(), 0, LongWait);
    QStringList contents;
    for (const QString &name : QDir(folder->path()).entryList({u"*.txt*"_s}, QDir::Files)) {
      contents.append(QString::fromUtf8(Content(In(name))));
    }
    QCOMPARE(contents.count(u"made"_s), allow ? 1 : 0);
    QCOMPARE(contents.size(), files);
    QCOMPARE(asked.size(), 1);
    QCOMPARE(m_asked, isInFront ? 1 : 0);
  }

  // Cancelled and fetched again while the page is asked about: the answer takes nothing away any more.
  void userTakesWhatIsAskedAbout() {
    auto *downloads = new TPageDownloads(
        page.get(), [] { return 0; }, [] { return false; });
    server->RoutePage("/page", "Page");
    QSignalSpy loaded(page.get(), &QWebEnginePage::loadFinished);
    page->load(QUrl(server->Url(u"/page"_s)));
    QTRY_VERIFY_WITH_TIMEOUT(!loaded.isEmpty(), LongWait);
    page->runJavaScript(u"var a = document.createElement('a'); a.download = 'x.txt'; a.href = '/file'; a.click()"_s);
    QTRY_COMPARE_WITH_TIMEOUT(list->rowCount(), 1, LongWait);
    QCOMPARE(Status(0), language.Text("DOWNLOADS", "AskingLine"));
    list->Cancel(0);
    QTRY_COMPARE_WITH_TIMEOUT(list->State(0), TDownloadState::Cancelled, LongWait);
    list->Retry(0);
    QTRY_COMPARE_WITH_TIMEOUT(list->State(0), TDownloadState::Finished, LongWait);
    downloads->Answer(false);
    QCOMPARE(list->rowCount(), 1);
    QCOMPARE(Content(Path(0)), "content");
  }

  void outlivesItsPage_data() {
    Columns<bool>("hasBegun");
    Row("under way", true);
    // Then nobody can say any more what page it is of.
    Row("before its server has answered", false);
  }
  void outlivesItsPage() {
    QFETCH(bool, hasBegun);
    TTestResponse response = TTestResponse::Attachment("slow.bin", QByteArray(4 * 1024 * 1024, 's'));
    response.trickleBytes = 32 * 1024;
    if (!hasBegun) response.delayMs = 300;
    const auto isAsked = std::make_shared<bool>(false);
    server->Route("/slow", [isAsked, response](const TTestRequest &) { return *isAsked = true, response; });
    new TPageDownloads(
        page.get(), [] { return 1; }, [] { return true; });
    hasBegun ? Start(u"/slow"_s) : Download(u"/slow"_s);
    QTRY_VERIFY_WITH_TIMEOUT(*isAsked, LongWait);
    page.reset();
    QTRY_COMPARE_WITH_TIMEOUT(list->rowCount(), 1, LongWait);
    QTRY_COMPARE_WITH_TIMEOUT(list->State(0), TDownloadState::Finished, LongWait);
    QCOMPARE(QFileInfo(Path(0)).size(), 4 * 1024 * 1024);
  }

  void removeAndClear() {
    RouteSlowFile();
    Get(u"/file"_s);
    Start(u"/slow"_s);
    QCOMPARE(list->State(0), TDownloadState::Running);
    list->Remove(0);
    list->ClearFinished();
    QCOMPARE(list->rowCount(), 1);
    QCOMPARE(list->State(0), TDownloadState::Running);
    // Taking a line out of the list never takes the file.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(Content(In(u"file.txt"_s)), "content");
    // Rows that are not there are left alone.
    for (const int row : {-1, 1, 7}) {
      list->Pause(row);
      list->Resume(row);
      list->Cancel(row);
      list->Retry(row);
      list->Remove(row);
      QVERIFY(!list->Open(row) && !list->OpenFolder(row));
    }
  }

  void windowFollowsTheList() {
    TDownloadWindow window(*list, language);
    window.show();
    const auto button = [&window](const char *name) { return window.findChild<QPushButton *>(QLatin1String(name)); };
    auto &view = *window.findChild<QListView *>("lvDownloads");
    QVERIFY(!view.isVisible());
    QVERIFY(!button("cmdClear")->isEnabled());
    RouteSlowFile();
    Start(u"/slow"_s);
    QVERIFY(view.isVisible());
    QTRY_VERIFY(button("cmdPause")->isEnabled());
    QTRY_VERIFY_WITH_TIMEOUT(list->data(list->index(0), TDownloadList::PercentRole).toInt() > 0, LongWait);
    QTest::keyClick(&view, Qt::Key_Space);
    QTRY_COMPARE(list->State(0), TDownloadState::Paused);
    QCOMPARE(list->ActiveCount(), 1);
    QTRY_VERIFY(button("cmdResume")->isEnabled() && !button("cmdPause")->isEnabled());
    QVERIFY(!button("cmdOpen")->isEnabled() && !button("cmdRemove")->isEnabled());
    // Delete does not throw away a download that is under way.
    QTest::keyClick(&view, Qt::Key_Delete);
    QCOMPARE(list->rowCount(), 1);
    button("cmdResume")->click();
    QTRY_COMPARE(list->State(0), TDownloadState::Running);
    button("cmdCancel")->click();
    QTRY_COMPARE(list->State(0), TDownloadState::Cancelled);
    QCOMPARE(list->ActiveCount(), 0);
    QTRY_VERIFY(QDir(folder->path()).entryList({u"slow*"_s}, QDir::Files).isEmpty());
    QTRY_VERIFY(button("cmdRetry")->isEnabled() && !button("cmdCancel")->isEnabled() &&
                !button("cmdOpen")->isEnabled());
    QVERIFY(view.currentIndex().data(Qt::AccessibleTextRole).toString().contains(Status(0)));
    QTest::keyClick(&view, Qt::Key_Delete);
    QCOMPARE(list->rowCount(), 0);
    QVERIFY(!view.isVisible());
  }

  void programsAreNotOpenedUnasked() {
    server->Route("/script", TTestResponse::Attachment("run.sh", "#!/bin/sh\n"));
    TDownloadWindow window(*list, language);
    window.show();
    auto &view = *window.findChild<QListView *>("lvDownloads");
    Get(u"/file"_s);
    QTest::keyClick(&view, Qt::Key_Return);
    QCOMPARE(m_opened.size(), 1);
    Get(u"/script"_s);
    // Enter is the safe answer.
    OnModalDialog<TfrmConfirm>([](TfrmConfirm &question) { QTest::keyClick(&question, Qt::Key_Return); });
    QTest::keyClick(&view, Qt::Key_Return);
    QCOMPARE(m_opened.size(), 1);
    OnModalDialog<TfrmConfirm>([](TfrmConfirm &question) { question.accept(); });
    QTest::keyClick(&view, Qt::Key_Return);
    QCOMPARE(m_opened, (QStringList{In(u"file.txt"_s), In(u"run.sh"_s)}));
  }

 private:
  // The same to its end.
  void Get(const QString &path) {
    const int row = list->rowCount();
    Download(path);
    QTRY_COMPARE_WITH_TIMEOUT(list->rowCount(), row + 1, LongWait);
    QTRY_COMPARE_WITH_TIMEOUT(list->State(0), TDownloadState::Finished, LongWait);
  }
  // The same until its first bytes have come.
  void Start(const QString &path) {
    const int row = list->rowCount();
    Download(path);
    QTRY_COMPARE_WITH_TIMEOUT(list->rowCount(), row + 1, LongWait);
    QTRY_VERIFY_WITH_TIMEOUT(list->data(list->index(0), TDownloadList::ReceivedRole).toLongLong() > 0, LongWait);
  }
  // A file whose sending stops in the middle; the whole one.
  TTestResponse RouteBroken() {
    const TTestResponse whole = TTestResponse::Attachment("broken.bin", QByteArray(100000, 'b'));
    TTestResponse broken = whole;
    broken.stopAfterBytes = 50000;
    server->Route("/broken", broken);
    return whole;
  }

  QStringList m_opened;
  int m_asked = 0;      // where to save
  QString m_suggested;  // then
  QString m_answer;     // to that; null takes the suggested name
};

QTEST_MAIN(TestDownloads)
#include "test_downloads.moc"
