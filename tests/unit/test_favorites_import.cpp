#include <sys/resource.h>
#include <csignal>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include "favorites/bookmark_file.h"
#include "favorites/favorites_edit.h"
#include "favorites/favorites_folder.h"
#include "favorites/favorites_job.h"
#include "favorites/favorites_transfer.h"
#include "platform/folder_entries.h"
#include "store/sqlite_connection.h"
#include "support/data_row.h"

using namespace Qt::StringLiterals;
using TEnd = TTransferReport::TEnd;
using TReason = TSkippedBookmark::TReason;

// Bookmarks of other browsers become favorites, all of them or none, and favorites a bookmark file.
class TTestFavoritesImport final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    m_temporary = std::make_unique<QTemporaryDir>();
    m_folder = m_temporary->filePath("Favorites");
  }

  void Profiles() {
    Put("home/.mozilla/firefox/profiles.ini",
        "[Install1]\nDefault=ab.x\n[Profile0]\nName=Work\nIsRelative=1\nPath=ab.x\n[Profile1]\nName=Away\nIsRelative="
        "0\nPath=" +
            In("away").toUtf8() + "\n[Profile2]\nName=Gone\nPath=gone\n");
    for (const char *file :
         {"home/.mozilla/firefox/ab.x/places.sqlite", "home/.mozilla/firefox/cd.y/places.sqlite", "away/places.sqlite",
          "config/chromium/Default/Bookmarks", "config/chromium/Profile 1/Bookmarks",
          "home/snap/chromium/common/chromium/Default/Bookmarks", "config/falkon/profiles/default/bookmarks.json"}) {
      Put(file, "x");
    }
    QVERIFY(QDir().mkpath(In("config/chromium/Profile 2/Bookmarks")));
    Put("config/chromium/Local State", R"({"profile":{"info_cache":{"Profile 1":{"name":"Me"}}}})");
    QStringList found;
    for (const TBookmarkSource &source : BookmarkSources::Find(In("home"), In("config"))) {
      found.append(QString::number(int(source.kind)) + ' ' + source.profile + ' ' +
                   source.path.mid(m_temporary->path().size() + 1));
    }
    QCOMPARE(found,
             QStringList({"1 Work home/.mozilla/firefox/ab.x/places.sqlite", "1 Away away/places.sqlite",
                          "1 cd.y home/.mozilla/firefox/cd.y/places.sqlite",
                          "2 Default config/chromium/Default/Bookmarks", "2 Me config/chromium/Profile 1/Bookmarks",
                          "2 Default home/snap/chromium/common/chromium/Default/Bookmarks",
                          "3 default config/falkon/profiles/default/bookmarks.json"}));
  }

  void Imports() {
    Put("b.html",
        "<DL><DT><A HREF=h:z>Zebra</A><DT><H3 PERSONAL_TOOLBAR_FOLDER=true>Bar</H3><DL><DT><A HREF=h:1>same</A>"
        "<DT><A HREF=h:2>Same</A><HR><DT><A HREF=javascript:x>a/b:c</A></DL><DT><H3>Bar</H3><DL></DL>"
        "<DT><A HREF=h:a>.apple.</A><DT><A>none</A></DL>");
    for (const char *caption : {"From there", "From there (2)"}) {
      const TTransferReport report = Import({.path = In("b.html")}, {.bar = "Links?"});
      QVERIFY2(report.end == TEnd::Done, qPrintable(report.error));
      QCOMPARE(report.path, m_folder + '/' + caption);
      QCOMPARE(Tree(report.path), QStringList({"Zebra=h:z", "Links_/", " same=h:1", " Same (2)=h:2",
                                               " a_b_c=javascript:x", "Bar/", "apple=h:a"}));
      QVERIFY(report.pages == 5 && report.folders == 2 && report.skipped.count == 2);
      QCOMPARE(report.skipped.first.value(1), (TSkippedBookmark{TReason::NoAddress, "none", {}}));
    }
    QCOMPARE(Hidden(), QStringList());
  }

  // The browser's file stays as it is, and what is only in its log is there.
  void Firefox() {
    const QString file = In("places.sqlite");
    TSqliteConnection database;
    QCOMPARE(database.Open(file, TSqliteConnection::TMode::ReadWrite), 0);
    QCOMPARE(database.Execute(
                 "PRAGMA journal_mode = WAL; PRAGMA wal_autocheckpoint = 0;"
                 "CREATE TABLE moz_places(id INTEGER PRIMARY KEY, url TEXT);"
                 "CREATE TABLE moz_bookmarks(id INTEGER PRIMARY KEY, type INTEGER, fk INTEGER, parent INTEGER,"
                 " position INTEGER, title TEXT, dateAdded INTEGER, guid TEXT);"
                 "INSERT INTO moz_places VALUES(1, 'h:a'), (2, 'h:b'), (3, 'place:x'), (4, 'h:tag');"
                 "INSERT INTO moz_bookmarks VALUES"
                 "(1, 2, NULL, 0, 0, '', 0, 'root________'), (2, 2, NULL, 1, 0, 'menu', 0, 'menu________'),"
                 "(3, 2, NULL, 1, 1, 'toolbar', 0, 'toolbar_____'), (4, 2, NULL, 1, 2, 'tags', 0, 'tags________'),"
                 "(5, 2, NULL, 1, 3, 'unfiled', 0, 'unfiled_____'), (6, 2, NULL, 1, 4, 'mobile', 0, 'mobile______'),"
                 "(10, 1, 1, 3, 1, 'A', 5000000, 'a'), (11, 1, 2, 3, 0, NULL, 0, 'b'),"
                 "(12, 3, NULL, 3, 2, NULL, 0, 'c'), (13, 2, NULL, 2, 0, 'F', 0, 'd'),"
                 "(14, 1, 3, 13, 0, 'Query', 0, 'e'), (15, 1, 1, 13, 1, 'In F', 0, 'f'),"
                 "(16, 1, 4, 4, 0, 'Tagged', 0, 'g'), (17, 1, 99, 2, 1, 'No place', 0, 'h'),"
                 "(20, 2, NULL, 21, 0, 'Circle', 0, 'i'), (21, 2, NULL, 20, 0, 'Circle', 0, 'j');"),
             0);
    const QByteArray before = Contents(file);
    const TTransferReport report =
        Import({TBookmarkSource::TKind::Firefox, {}, file}, {.bar = "Bar", .other = "Other"});
    QVERIFY2(report.end == TEnd::Done, qPrintable(report.error));
    QCOMPARE(Tree(report.path), QStringList({"Bar/", " h_b=h:b", " A=h:a", "menu/", " F/", "  In F=h:a"}));
    QCOMPARE(report.skipped.count, 3);
    QCOMPARE(Contents(file), before);
  }

  void NoBookmarks_data() {
    // The file's contents, whether it is told why, and whether anything is there at all.
    Columns<QByteArray, bool>("bytes", "isTold");
    Row("another text", QByteArray("hello"), false);
    Row("nothing", QByteArray(), false);
    Row("broken database", "SQLite format 3" + QByteArray(5000, '\0'), false);
    Row("broken JSON", QByteArray("{\"roots\":"), false);
    Row("not there", QByteArray("none"), true);
    Row("a folder", QByteArray("folder"), true);
  }
  void NoBookmarks() {
    QFETCH(QByteArray, bytes);
    const QString tag = QTest::currentDataTag();
    if (tag == "a folder") QVERIFY(QDir().mkpath(In("x")));
    if (tag != "a folder" && tag != "not there") Put("x", bytes);
    const TTransferReport report = Import({.path = In("x")}, {});
    QVERIFY(report.end == TEnd::Failed && report.path.isEmpty());
    QTEST(!report.error.isEmpty(), "isTold");
    QVERIFY(!QFileInfo::exists(m_folder));
  }

  // Deeper than a path can be: what is in the folders that cannot be is not lost.
  void TooDeep() {
    TBookmarks bookmarks;
    constexpr int Depth = 500;
    for (int depth = 0; depth < Depth; ++depth) {
      bookmarks.append({TBookmark::TKind::Folder, depth, QString(300, u'ü')});
      bookmarks.append({TBookmark::TKind::Page, depth + 1, "p", "h:x"});
    }
    bookmarks.append({TBookmark::TKind::Page, 0, "last", "h:y"});
    TTransferControl control;
    const TTransferReport report = FavoritesTransfer::Import(bookmarks, m_folder, "deep", {}, control);
    QVERIFY2(report.end == TEnd::Done, qPrintable(report.error));
    QCOMPARE(report.pages, Depth + 1);
    QCOMPARE(report.folders + report.skipped.count, Depth);
    QVERIFY(report.folders > 10 && report.skipped.first.first().reason == TReason::TooDeep);
    QCOMPARE(FavoritesFolder::List(report.path).last().caption, u"last"_s);
    const TTransferReport back = FavoritesTransfer::Export(m_folder, In("out.html"), "T", control);
    QCOMPARE(back.pages, Depth + 1);
    QVERIFY(BookmarkFile::Read(Contents(In("out.html"))).size() == Depth + 1 + back.folders);
  }

  // A disk that takes nothing more half-way: nothing of it stays.
  void FullDisk() {
    QVERIFY(QDir().mkpath(m_folder));
    struct rlimit before {};
    QCOMPARE(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const struct rlimit small { 4096, before.rlim_max };
    const auto signal = std::signal(SIGXFSZ, SIG_IGN);
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const TBookmarks bookmarks{{TBookmark::TKind::Page, 0, "a", "h:a"},
                               {TBookmark::TKind::Page, 0, "b", "h:" + QString(10'000, 'x')}};
    TTransferControl control;
    const TTransferReport report = FavoritesTransfer::Import(bookmarks, m_folder, "x", {}, control);
    const TFavoritesChange change = FavoritesEdit::AddPage(m_folder, "y", bookmarks.last().address);
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, signal);
    QVERIFY(report.end == TEnd::Failed && !report.error.isEmpty() && report.pages == 0);
    QVERIFY(!change.IsGood());
    QCOMPARE(Hidden(), QStringList());
    QVERIFY(FavoritesFolder::List(m_folder).isEmpty());
  }

  void Cancelled_data() {
    Columns<qint64>("after");
    for (const qint64 after : {0, 1, 500, 999, 1000}) Row(qPrintable(QString::number(after)), after);
  }
  void Cancelled() {
    QFETCH(qint64, after);
    TTransferControl control;
    control.progress = [&](qint64 done, qint64) {
      if (done >= after) control.Cancel();
    };
    const TTransferReport report = after == 0 ? [&] {
      Put("x", "<DL>");
      return FavoritesTransfer::Import({.path = In("x")}, m_folder, "x", {}, control);
    }()
                                              : FavoritesTransfer::Import(Many(1000), m_folder, "x", {}, control);
    QVERIFY(report.end == TEnd::Cancelled && report.pages == 0 && report.path.isEmpty() && report.error.isEmpty());
    QVERIFY(FavoritesFolder::List(m_folder).isEmpty());
    QCOMPARE(Hidden(), QStringList());
    QVERIFY(QDir().mkpath(m_folder) && FavoritesEdit::AddPage(m_folder, "a", "h:a").IsGood());
    QVERIFY(FavoritesTransfer::Export(m_folder, In("out.html"), "T", control).end == TEnd::Cancelled);
    QVERIFY(!QFile::exists(In("out.html")));
  }

  // What a killed import has left goes with the next one; one that is at work stays.
  void LeftOvers() {
    QVERIFY(QDir().mkpath(m_folder + "/.zvimport-old/x") && QDir().mkpath(m_folder + "/.zvimport-busy"));
    QVERIFY(QFile::link(m_temporary->path(), m_folder + "/.zvimport-old/link"));
    Put("stays", "x");
    const FolderEntries::THold hold(m_folder + "/.zvimport-busy");
    QVERIFY(hold.IsHeld());
    TTransferControl control;
    QVERIFY(FavoritesTransfer::Import(Many(3), m_folder, "x", {}, control).end == TEnd::Done);
    QCOMPARE(Hidden(), QStringList{".zvimport-busy"});
    QVERIFY(QFile::exists(In("stays")));
  }

  void Exports() {
    QVERIFY(QDir().mkpath(m_folder));
    const auto add = [](const QString &folder, const char *name) {
      QVERIFY(FavoritesEdit::AddPage(folder, name, "h:" + QString(name)).IsGood());
    };
    const QString inner = FavoritesEdit::AddFolder(m_folder, "F & G").paths.value(0);
    add(inner, "in");
    add(m_folder, "b");
    add(m_folder, "a");
    Put("Favorites/c.txt", "no address");
    QVERIFY(QFile::link(m_folder, inner + "/circle"));
    QVERIFY(FavoritesEdit::Order(m_folder, QStringList{"b.url", "F & G"}).IsGood());
    TTransferControl control;
    const TTransferReport report = FavoritesTransfer::Export(m_folder, In("out.html"), "Mine", control);
    QVERIFY2(report.end == TEnd::Done, qPrintable(report.error));
    QCOMPARE(report.skipped.first,
             QList<TSkippedBookmark>({{TReason::Circle, "circle", {}}, {TReason::Unreadable, "c", {}}}));
    QVERIFY(report.pages == 3 && report.folders == 1);
    const TTransferReport back = Import({.path = In("out.html")}, {});
    QCOMPARE(Tree(back.path), QStringList({"b=h:b", "F & G/", " in=h:in", "a=h:a"}));
    const TTransferReport refused = FavoritesTransfer::Export(m_folder, In("no/out.html"), "Mine", control);
    QVERIFY(refused.end == TEnd::Failed && !refused.error.isEmpty());
  }

  void Jobs() {
    {
      TFavoritesJob job([this](TTransferControl &control) {
        return FavoritesTransfer::Import(Many(400), m_folder, "x", {}, control);
      });
      QSignalSpy progress(&job, &TFavoritesJob::Progress);
      TTransferReport report;
      int finished = 0;
      connect(&job, &TFavoritesJob::Finished, this, [&](const TTransferReport &told) { report = told, ++finished; });
      job.Start();
      job.Start();
      QTRY_COMPARE(finished, 1);
      QVERIFY(report.end == TEnd::Done && report.pages == 398 && report.folders == 2);
      QVERIFY(progress.size() >= 1 && progress.size() < 1000);
    }
    // One that goes while it is at work takes its work along.
    const auto isAtWork = std::make_shared<std::atomic<bool>>(false);
    auto job = std::make_unique<TFavoritesJob>([this, isAtWork](TTransferControl &control) {
      *isAtWork = true;
      while (!control.IsCancelled()) std::this_thread::yield();
      return FavoritesTransfer::Import(Many(400), m_folder, "y", {}, control);
    });
    job->Start();
    QTRY_VERIFY(*isAtWork);
    job.reset();
    QCOMPARE(FavoritesFolder::List(m_folder).size(), 1);
    QCOMPARE(Hidden(), QStringList());
  }

 private:
  [[nodiscard]] QString In(const QString &name) const { return m_temporary->filePath(name); }
  void Put(const QString &name, const QByteArray &bytes) const {
    QFile file(In(name));
    QVERIFY(QDir().mkpath(QFileInfo(file.fileName()).path()));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
  }
  [[nodiscard]] static QByteArray Contents(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }
  [[nodiscard]] TTransferReport Import(const TBookmarkSource &source, const TRootNames &names) const {
    TTransferControl control;
    return FavoritesTransfer::Import(source, m_folder, "From there", names, control);
  }
  // Every two-hundredth is a folder.
  static TBookmarks Many(int count) {
    TBookmarks bookmarks;
    for (int i = 0; i < count; ++i) {
      const QString number = QString::number(i);
      bookmarks.append(i % 200 == 0 ? TBookmark{TBookmark::TKind::Folder, 0, number}
                                    : TBookmark{TBookmark::TKind::Page, 1, number, "h:" + number});
    }
    return bookmarks;
  }
  // Everything below a folder, a blank for each level.
  static QStringList Tree(const QString &folder, const QString &margin = {}) {
    QStringList lines;
    for (const TFavorite &favorite : FavoritesFolder::List(folder)) {
      lines.append(margin + favorite.caption + (favorite.isFolder ? "/" : '=' + FavoritesFolder::Target(favorite)));
      if (favorite.isFolder) lines.append(Tree(favorite.path, margin + ' '));
    }
    return lines;
  }
  [[nodiscard]] QStringList Hidden() const {
    return QDir(m_folder).entryList({".*"}, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
  }

  std::unique_ptr<QTemporaryDir> m_temporary;
  QString m_folder;
};

QTEST_GUILESS_MAIN(TTestFavoritesImport)
#include "test_favorites_import.moc"
