#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileDialog>

#include "browser/downloads/file_copy.h"
#include "browser/downloads/page_downloads.h"
#include "config/options.h"
#include "support/data_row.h"
#include "window/downloads_fixture.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 Endless = 4LL * 1024 * 1024 * 1024;  // bytes; no copy of them comes to its end here
constexpr int SoonEnough = 10000;                     // ms; for what stops within five seconds

}  // namespace

// Where downloads go: how the user is asked, and how they come there.
class TestDownloadPlaces final : public QObject, private TDownloadsFixture {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { Prepare(); }

  void init() {
    Begin();
    QVERIFY(QDir(folder->path()).mkdir("elsewhere"));
    m_open.clear();
    BeginRun();
    list->SaveQuestion().SetChooseFile(
        [this](const QString &, const TSaveQuestion::TDone &done) { m_open.append(done); });
  }

  void cleanup() { End(); }

  // Nobody is asked where that is not wanted.
  void noQuestion() {
    QVERIFY(TZVOptions(*store).Set(Setting::DownloadAsk, false));
    Download(u"/file"_s);
    QTRY_COMPARE_WITH_TIMEOUT(list->State(0), TDownloadState::Finished, LongWait);
    QVERIFY(m_open.isEmpty());
    QCOMPARE(Hidden().size(), 0);
  }

  // While the user looks for a place the file comes already, and everything else goes on.
  void placeIsAskedForBeside_data() {
    Columns<QString, QString, bool, bool>("path", "answer", "arrives", "there");
    Row("where it was suggested", "/slow", "slow.bin", false, true);
    Row("elsewhere", "/slow", "elsewhere/mine.bin", false, true);
    Row("elsewhere, all of it there", "/file", "elsewhere/mine.txt", true, true);
    Row("over a file that is there", "/file", "there.txt", true, true);
    Row("given up", "/slow", "", false, false);
    Row("given up, all of it there", "/file", "", true, false);
    Row("cancelled in the list", "/file", "late.txt", true, false);
  }
  void placeIsAskedForBeside() {
    QFETCH(QString, path);
    QFETCH(QString, answer);
    QFETCH(bool, arrives);
    QVERIFY(QFile(In(u"there.txt"_s)).open(QIODevice::WriteOnly));
    RouteSlowFile();
    Download(path);
    QTRY_COMPARE_WITH_TIMEOUT(m_open.size(), 1, LongWait);
    QCOMPARE(Status(0), language.Text("DOWNLOADS", "PlaceLine"));
    // Out of sight, so that the suggested name stays free.
    const QDir inside(folder->path());
    if (arrives) QTRY_COMPARE_WITH_TIMEOUT(Hidden().size(), 1, LongWait);
    QCOMPARE(inside.entryList({u"file*"_s, u"slow*"_s}, QDir::Files), QStringList());
    QCOMPARE(list->State(0), TDownloadState::Waiting);
    if (answer == u"late.txt"_s) {
      list->Cancel(0);
      QCOMPARE(list->State(0), TDownloadState::Cancelled);
      list->Remove(0);
    }
    m_open.first()(answer.isEmpty() ? QString() : In(answer));
    QFETCH(bool, there);
    QTRY_COMPARE_WITH_TIMEOUT(list->ActiveCount(), 0, LongWait);
    QCOMPARE(list->rowCount(), there ? 1 : 0);
    QStringList files{u"there.txt"_s};
    if (there) {
      QCOMPARE(list->State(0), TDownloadState::Finished);
      QCOMPARE(Path(0), In(answer));
      QCOMPARE(Content(In(answer)).size(), arrives ? 7 : 4 * 1024 * 1024);
      if (!answer.contains(u'/') && answer != files.first()) files.prepend(answer);
    }
    // Nothing else is left.
    QTRY_COMPARE(inside.entryList({u"*.txt*"_s, u"*.bin*"_s}, QDir::Files | QDir::Hidden), files);
  }

  // What the user clicks meanwhile is asked about next, what comes by itself waits in the list.
  void placesOneAfterTheOther() {
    int act = 1;
    new TPageDownloads(
        page.get(), [&act] { return act; }, [] { return true; });
    Download(u"/file"_s);
    QTRY_COMPARE_WITH_TIMEOUT(m_open.size(), 1, LongWait);
    ++act;
    Download(u"/file?2"_s);
    QTRY_COMPARE_WITH_TIMEOUT(list->rowCount(), 2, LongWait);
    act = 0;
    Download(u"/file?3"_s);
    QTRY_COMPARE_WITH_TIMEOUT(list->rowCount(), 3, LongWait);
    QCOMPARE(list->State(0), TDownloadState::NotStarted);
    QCOMPARE(m_open.size(), 1);
    m_open.at(0)(In(u"one.txt"_s));
    QTRY_COMPARE_WITH_TIMEOUT(m_open.size(), 2, LongWait);
    m_open.at(1)(In(u"two.txt"_s));
    QTRY_VERIFY_WITH_TIMEOUT(Content(In(u"one.txt"_s)) == "content" && Content(In(u"two.txt"_s)) == "content",
                             LongWait);
  }

  void dialogStandsBeside() {
    BeginRun();
    Download(u"/file"_s);
    QTRY_VERIFY_WITH_TIMEOUT(Dialog() != nullptr, LongWait);
    QFileDialog *dialog = Dialog();
    QVERIFY(!dialog->isModal() && QApplication::activeModalWidget() == nullptr);
    QCOMPARE(dialog->selectedFiles(), QStringList{In(u"file.txt"_s)});
    static_cast<QDialog *>(dialog)->accept();
    QTRY_COMPARE_WITH_TIMEOUT(list->State(0), TDownloadState::Finished, LongWait);
    QCOMPARE(Content(In(u"file.txt"_s)), "content");
  }

  // Cancelled while the user looks for a place: the dialog goes, and so does what has come already.
  void cancelledWhileAsked_data() {
    Columns<bool, bool>("isWhole", "quits");
    Row("under way", false, false);
    Row("all of it there", true, false);
    Row("all of it there, at the end of the program", true, true);
  }
  void cancelledWhileAsked() {
    QFETCH(bool, isWhole);
    QFETCH(bool, quits);
    RouteSlowFile();
    BeginRun();
    Download(isWhole ? u"/file"_s : u"/slow"_s);
    QTRY_VERIFY_WITH_TIMEOUT(Dialog() != nullptr, LongWait);
    if (isWhole) QTRY_VERIFY_WITH_TIMEOUT(Hidden().size() == 1 && Received() == 7, LongWait);
    quits ? list->CancelAll() : list->Cancel(0);
    QVERIFY(Dialog() == nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(list->State(0), TDownloadState::Cancelled, LongWait);
    QTRY_COMPARE_WITH_TIMEOUT(Files(), QStringList(), LongWait);
    // The next one is asked about again.
    Download(u"/file"_s);
    QTRY_VERIFY_WITH_TIMEOUT(Dialog() != nullptr, LongWait);
    Dialog()->reject();
  }

  // A file that the page has made, which waits for the page's question, is there from the beginning.
  void cancelledWhilePageIsAskedAbout() {
    new TPageDownloads(
        page.get(), [] { return 0; }, [] { return false; });
    page->download(QUrl(u"data:text/plain,made"_s), u"made.txt"_s);
    QTRY_COMPARE_WITH_TIMEOUT(Files(), QStringList{u"made.txt"_s}, LongWait);
    list->Cancel(0);
    QTRY_COMPARE_WITH_TIMEOUT(list->State(0), TDownloadState::Cancelled, LongWait);
    QCOMPARE(Files(), QStringList());
  }

  // The user was asked whether it may be replaced; that it had to wait for its turn changes nothing.
  void waitingOneReplacesToo() {
    TTestResponse stuck = TTestResponse::Attachment("stuck.bin", QByteArray(100000, 'b'));
    stuck.stopAfterBytes = 50000;
    server->Route("/stuck", stuck);
    const auto ask = [this](const QString &path, const QString &place) {
      const qsizetype asked = m_open.size();
      Download(path);
      QTRY_COMPARE_WITH_TIMEOUT(m_open.size(), asked + 1, LongWait);
      m_open.last()(In(place));
    };
    for (int i = 0; i < 4; ++i) ask(u"/stuck"_s, u"stuck%1.bin"_s.arg(i));
    Put(u"there.txt"_s, "old");
    ask(u"/file"_s, u"there.txt"_s);
    QCOMPARE(Status(0), language.Text("DOWNLOADS", "WaitingLine"));
    list->Cancel(4);
    QTRY_COMPARE_WITH_TIMEOUT(list->State(0), TDownloadState::Finished, LongWait);
    QCOMPARE(Path(0), In(u"there.txt"_s));
    QCOMPARE(Content(In(u"there.txt"_s)), "content");
    list->CancelAll();
    QTRY_COMPARE_WITH_TIMEOUT(list->ActiveCount(), 0, LongWait);
  }

  // What stands in the place cannot be moved onto, as if it were another disk, and refuses the copy as well.
  void failedMoveIsDoneAgain_data() {
    Columns<bool>("nextRun");
    Row("in this run", false);
    Row("in the next one", true);
  }
  void failedMoveIsDoneAgain() {
    QFETCH(bool, nextRun);
    const QString place = u"elsewhere/mine.txt"_s;
    QVERIFY(QDir(folder->path()).mkpath(place + u"/inside"_s));
    TakeWhole();
    m_open.first()(In(place));
    QTRY_COMPARE_WITH_TIMEOUT(list->State(0), TDownloadState::Failed, LongWait);
    QVERIFY(Status(0).contains(language.Text("DOWNLOADS", "FileFailed")));
    QVERIFY(QFileInfo::exists(In(place + u"/inside"_s)));
    QVERIFY(QDir(In(place)).removeRecursively());
    if (nextRun) BeginRun();
    server->ForgetRequests();
    QVERIFY(list->CanRetry(0));
    list->Retry(0);
    QTRY_COMPARE_WITH_TIMEOUT(list->State(0), TDownloadState::Finished, LongWait);
    QCOMPARE(Path(0), In(place));
    QCOMPARE(Content(In(place)), "content");
    QCOMPARE(server->RequestCount("/file"), 0);
    QCOMPARE(Files() + Files(u"elsewhere"_s), QStringList{u"mine.txt"_s});
  }

  // A line that is taken out of the list does not take the only copy with it, nor hide it.
  void unplacedOneIsSeenWithoutItsLine() {
    QVERIFY(QDir(folder->path()).mkpath(u"elsewhere/mine.txt"_s));
    TakeWhole();
    m_open.first()(In(u"elsewhere/mine.txt"_s));
    QTRY_COMPARE_WITH_TIMEOUT(list->State(0), TDownloadState::Failed, LongWait);
    list->Remove(0);
    QCOMPARE(list->rowCount(), 0);
    QCOMPARE(Files() + Files(u"elsewhere"_s), QStringList{u"mine (1).txt"_s});
  }

  // A copy that would take minutes.
  void moveIsStopped_data() {
    Columns<bool, bool>("quits", "isKept");
    Row("by the end of the program", true, true);
    Row("by the user", false, false);
  }
  void moveIsStopped() {
    QFETCH(bool, quits);
    QFETCH(bool, isKept);
    QVERIFY(QDir(folder->path()).mkpath(u"elsewhere/mine.txt"_s));
    TakeWhole();
    QVERIFY(QFile::resize(In(Hidden().first()), Endless));
    m_open.first()(In(u"elsewhere/mine.txt"_s));
    QTRY_VERIFY_WITH_TIMEOUT(!Files(u"elsewhere"_s).isEmpty(), LongWait);
    QCOMPARE(list->State(0), TDownloadState::Running);
    QElapsedTimer timer;
    timer.start();
    quits ? list->CancelAll() : list->Cancel(0);
    QCOMPARE_LT(timer.elapsed(), SoonEnough);
    QTRY_COMPARE_WITH_TIMEOUT(Files(u"elsewhere"_s), QStringList(), LongWait);
    if (quits) BeginRun();
    QCOMPARE(list->State(0), isKept ? TDownloadState::Finished : TDownloadState::Cancelled);
    QCOMPARE(Files(), isKept ? QStringList{u"mine.txt"_s} : QStringList());
    if (isKept) QVERIFY(Path(0) == In(u"mine.txt"_s) && QFileInfo(Path(0)).size() == Endless);
  }

  void copyEnds_data() {
    Columns<QString, QString, TCopyEnd>("from", "to", "end");
    Row("all of it", "whole", "copy", TCopyEnd::Good);
    Row("nothing in it", "empty", "copy", TCopyEnd::Good);
    Row("nothing there", "gone", "copy", TCopyEnd::Failed);
    Row("something in its place", "whole", "there", TCopyEnd::Failed);
    Row("no folder", "whole", "gone/copy", TCopyEnd::Failed);
  }
  void copyEnds() {
    QFETCH(QString, from);
    QFETCH(QString, to);
    const QByteArray bytes = QByteArray(1024 * 1024 + 1, 'x') + QByteArray(1024 * 1024, 'y');
    Put(u"whole"_s, bytes);
    Put(u"empty"_s, "");
    Put(u"there"_s, "there");
    std::optional<TCopyEnd> end;
    TFileCopy copy(In(from), In(to), this, [&end](TCopyEnd how) { end = how; });
    QTRY_VERIFY_WITH_TIMEOUT(end.has_value(), LongWait);
    QTEST(*end, "end");
    QCOMPARE(Content(In(u"there"_s)), "there");
    QCOMPARE(QFileInfo::exists(In(u"copy"_s)), *end == TCopyEnd::Good);
    if (*end == TCopyEnd::Good) QVERIFY(Content(In(u"copy"_s)) == Content(In(from)));
  }

 private:
  // With a real dialog.
  void BeginRun() {
    MakeList();
    list->Keep(1, [](int) { return false; });
  }
  [[nodiscard]] static QFileDialog *Dialog() {
    for (QWidget *widget : QApplication::topLevelWidgets()) {
      if (auto *one = qobject_cast<QFileDialog *>(widget); one != nullptr && one->isVisible()) return one;
    }
    return nullptr;
  }
  [[nodiscard]] qint64 Received() const { return list->data(list->index(0), TDownloadList::ReceivedRole).toLongLong(); }
  // Hidden ones too, but for the store's.
  [[nodiscard]] QStringList Files(const QString &below = {}) const {
    QStringList names = QDir(In(below)).entryList(QDir::Files | QDir::Hidden);
    names.removeIf([](const QString &name) { return name.startsWith(u"registry."_s); });
    return names;
  }
  [[nodiscard]] QStringList Hidden() const {
    return QDir(folder->path()).entryList({u".*.part"_s}, QDir::Files | QDir::Hidden);
  }
  void Put(const QString &name, const QByteArray &content) {
    QFile file(In(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
  }
  // All of it has come, and the user is being asked where to.
  void TakeWhole() {
    Download(u"/file"_s);
    QTRY_COMPARE_WITH_TIMEOUT(m_open.size(), 1, LongWait);
    QTRY_COMPARE_WITH_TIMEOUT(Hidden().size(), 1, LongWait);
    QTRY_COMPARE_WITH_TIMEOUT(Received(), 7, LongWait);
  }

  QList<TSaveQuestion::TDone> m_open;  // answers that are waited for
};

QTEST_MAIN(TestDownloadPlaces)
#include "test_download_places.moc"
