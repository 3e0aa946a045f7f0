#include <QFile>
#include <QSignalSpy>

#include "browser/downloads/file_names.h"
#include "browser/downloads/kept_downloads.h"
#include "support/data_row.h"
#include "window/downloads_fixture.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int Own = 1;  // the number of this process

bool NobodyElse(int) {
  return false;
}

}  // namespace

// What is left of downloads when the program has ended, in whatever way, and starts again.
class TestKeptDownloads final : public QObject, private TDownloadsFixture {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { Prepare(); }
  void init() {
    Begin();
    TTestResponse slow = TTestResponse::Attachment("slow.bin", QByteArray(1024 * 1024, 's'));
    slow.stopAfterBytes = 1024;
    server->Route("/slow", slow);
    BeginRun();
  }
  void cleanup() { End(); }

  void IsThereAgain() {
    Download(u"/file"_s, TDownloadState::Finished);
    m_answer = In(u"gone/other.txt"_s);
    Download(u"/file?2"_s, TDownloadState::Failed);
    Download(u"/slow"_s, TDownloadState::Failed);
    const QStringList before = Lines();
    BeginRun();
    QCOMPARE(Lines(), before);
    QCOMPARE(list->State(2), TDownloadState::Finished);
    QVERIFY(list->CanOpen(2) && !list->CanRetry(2));
    // A file that is gone is shown as gone, and can be fetched again.
    QVERIFY(QFile::remove(In(u"file.txt"_s)));
    QCOMPARE(Text(2, TDownloadList::StatusRole), language.Text("DOWNLOADS", "FileGone"));
    QVERIFY(!list->CanOpen(2));
    server->Route("/file", TTestResponse::Attachment("file.txt", "new"));
    list->Retry(2);
    QTRY_COMPARE_WITH_TIMEOUT(list->State(2), TDownloadState::Finished, LongWait);
    QVERIFY(QFile::exists(In(u"file.txt"_s)));
    // What is taken out of the list stays out.
    list->Remove(1);
    BeginRun();
    QCOMPARE(list->rowCount(), 2);
    list->ClearFinished();
    BeginRun();
    QCOMPARE(list->rowCount(), 0);
  }

  // The process was killed while it fetched a file.
  void InterruptedIsFetchedAgain_data() {
    Columns<int, bool, bool>("window", "runs", "listed");
    Row("of this number", Own, true, true);
    Row("of one that has ended", 2, false, true);
    Row("of one that still runs", 2, true, false);
  }
  void InterruptedIsFetchedAgain() {
    QFETCH(int, window);
    QFETCH(bool, runs);
    TKeptDownloads(*store, window, &NobodyElse)
        .Write({.id = u"a"_s, .address = server->Url(u"/file"_s), .path = In(u"file.txt"_s)});
    QFile partial(FileNames::PartialOf(In(u"file.txt"_s)));
    QVERIFY(partial.open(QIODevice::WriteOnly));
    BeginRun([runs](int) { return runs; });
    QTEST(list->rowCount() == 1, "listed");
    if (list->rowCount() == 0) {
      list->ClearFinished();
      QCOMPARE(store->Values(TRegistryHive::CurrentUser, QLatin1String(RegistryKey::Downloads)).size(), 1);
      return;
    }
    QVERIFY(Text(0, TDownloadList::StatusRole).contains(language.Text("DOWNLOADS", "ProgramEnded")));
    QCOMPARE(list->ActiveCount(), 0);
    list->Retry(0);
    QTRY_COMPARE_WITH_TIMEOUT(list->State(0), TDownloadState::Finished, LongWait);
    // In its own place, since what was left of it is gone.
    QCOMPARE(Text(0, TDownloadList::PathRole), In(u"file.txt"_s));
    QVERIFY(!partial.exists());
  }

  // Killed while a complete file was on its way to its place: it need not be fetched again.
  void CompleteOneIsOnlyMoved() {
    QFile part(In(u".file.txt.01234567.part"_s));
    QVERIFY(part.open(QIODevice::WriteOnly) && part.write("all of it") > 0);
    part.close();
    // Neither is its address of any use.
    TKeptDownloads(*store, Own, &NobodyElse)
        .Write({.id = u"a"_s, .address = u"blob:null/1"_s, .path = In(u"file.txt"_s), .part = part.fileName()});
    BeginRun();
    QCOMPARE(list->State(0), TDownloadState::Failed);
    QVERIFY(list->CanRetry(0));
    list->Retry(0);
    QCOMPARE(list->State(0), TDownloadState::Finished);
    QCOMPARE(QFileInfo(In(u"file.txt"_s)).size(), 9);
    QVERIFY(!part.exists());
  }

  // A process that is killed leaves what it was about.
  void IsKeptFromTheBeginning() {
    Download(u"/slow"_s, TDownloadState::Running);
    const QList<TKeptDownload> kept = TKeptDownloads(*store, 2, &NobodyElse).Read();
    QCOMPARE(kept.size(), 1);
    QCOMPARE(kept.first().state, TKeptDownload::TState::UnderWay);
    QVERIFY(TKeptDownloads(*store, 2, [](int) { return true; }).Read().isEmpty());
  }

  // Each window writes its own; the newest two hundred stay.
  void WindowsSideBySide() {
    TRegistryStore otherStore(store->FilePath());
    TKeptDownloads here(*store, 1, &NobodyElse);
    TKeptDownloads there(otherStore, 2, &NobodyElse);
    const auto ids = [&here] {
      QStringList all;
      for (const TKeptDownload &one : here.Read()) all.append(one.id);
      return all;
    };
    here.Write({.id = u"a"_s, .state = TKeptDownload::TState::Finished});
    there.Write({.id = u"b"_s, .state = TKeptDownload::TState::Failed});
    here.Write({.id = u"a"_s, .state = TKeptDownload::TState::Cancelled});
    QCOMPARE(ids(), (QStringList{u"b"_s, u"a"_s}));
    there.Remove(u"b"_s);
    QCOMPARE(ids(), QStringList{u"a"_s});
    for (int i = 1; i <= TKeptDownloads::Most; ++i) {
      (i % 2 == 0 ? here : there).Write({.id = QString::number(i), .state = TKeptDownload::TState::Finished});
    }
    QCOMPARE(ids().size(), TKeptDownloads::Most);
    QCOMPARE(ids().first(), QString::number(TKeptDownloads::Most));
    QCOMPARE(ids().last(), u"1"_s);
  }

  void NonsenseIsPassedOver_data() {
    Columns<QString, int>("data", "rows");
    Row("nothing", "", 0);
    Row("no object", "[1]", 0);
    Row("half of one", "{\"state\":", 0);
    Row("no state", "{\"path\":\"/a\"}", 0);
    Row("another state", "{\"state\":\"lost\"}", 0);
    Row("only a state", "{\"state\":\"finished\"}", 1);
    Row("other kinds", "{\"state\":\"failed\",\"path\":1,\"received\":-5,\"when\":[],\"address\":{},\"page\":2}", 1);
  }
  void NonsenseIsPassedOver() {
    QFETCH(QString, data);
    store->Write(TRegistryHive::CurrentUser, QLatin1String(RegistryKey::Downloads), u"a"_s, data);
    BeginRun();
    QTEST(list->rowCount(), "rows");
    QVERIFY(list->rowCount() == 0 || !list->CanRetry(0));
    for (const QString &line : Lines()) QVERIFY(!line.isEmpty());
  }

 private:
  void BeginRun(const std::function<bool(int)> &isRunning = &NobodyElse) {
    page.reset();
    MakeList();
    m_answer = In(u"file.txt"_s);
    list->SaveQuestion().SetChooseFile([this](const QString &, const TSaveQuestion::TDone &done) { done(m_answer); });
    list->Keep(Own, isRunning);
    page = std::make_unique<QWebEnginePage>(profile.get());
  }
  // What the user sees of each.
  [[nodiscard]] QStringList Lines() const {
    QStringList lines;
    for (int row = 0; row < list->rowCount(); ++row) {
      lines.append(Text(row, Qt::AccessibleTextRole) + Text(row, Qt::ToolTipRole));
    }
    return lines;
  }
  void Download(const QString &path, TDownloadState end) {
    const int rows = list->rowCount();
    page->download(QUrl(server->Url(path)));
    QTRY_COMPARE_WITH_TIMEOUT(list->rowCount(), rows + 1, LongWait);
    QTRY_COMPARE_WITH_TIMEOUT(list->State(0), end, LongWait);
  }

  QString m_answer;
};

QTEST_MAIN(TestKeptDownloads)
#include "test_kept_downloads.moc"
