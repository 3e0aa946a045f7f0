#include <sys/stat.h>
#include <memory>
#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include "favorites/favorites_finder.h"
#include "favorites/shortcut_file.h"
#include "platform/folder_entries.h"
#include "support/data_row.h"

using namespace Qt::StringLiterals;

// What is found in the favorites, and in which order.
class TestFavoritesFinder final : public QObject {
  Q_OBJECT

 private:
  [[nodiscard]] QString In(const QString &name) const { return m_folder->filePath(name); }
  void Put(const QString &name, const QString &address) const {
    QVERIFY(QDir().mkpath(QFileInfo(In(name)).path()));
    QFile file(In(name));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(ShortcutFile::Bytes(address)) > 0);
  }
  void Find(const QString &text) {
    m_found.clear();
    m_finder->Find(m_folder->path(), text);
    QVERIFY(m_finder->IsSearching());
    QTRY_VERIFY(!m_finder->IsSearching());
  }
  // By their paths below the folder.
  [[nodiscard]] QStringList Paths() const {
    QStringList paths;
    for (const TFoundFavorite &one : m_found) paths.append(one.favorite.path.mid(m_folder->path().size() + 1));
    return paths;
  }

  std::unique_ptr<QTemporaryDir> m_folder;
  std::unique_ptr<TFavoritesFinder> m_finder;
  TFoundFavorites m_found;

 private Q_SLOTS:
  void init() {
    m_folder = std::make_unique<QTemporaryDir>();
    m_finder = std::make_unique<TFavoritesFinder>();
    connect(m_finder.get(), &TFavoritesFinder::Found, this, [this](const auto &found) { m_found += found; });
  }
  void cleanup() { m_finder.reset(); }

  void Matches_data() {
    Columns<QString, QString, QString, bool>("name", "address", "text", "isMatch");
    const QString address = u"http://www.site.example/Page?id=7"_s;
    Row("name", u"My Page"_s, address, u"my p"_s, true);
    Row("address", u"My Page"_s, address, u"SITE.ex"_s, true);
    Row("neither", u"My Page"_s, address, u"my page id"_s, false);
    Row("half in each", u"site"_s, u"http://a.example/"_s, u"siteh"_s, false);
    Row("letters with accents", u"Ärzte"_s, address, u"ärZ"_s, true);
    Row("a letter that becomes two", u"Straße"_s, address, u"STRASSE"_s, true);
    Row("Greek", u"ΟΔΟΣ"_s, address, u"οδος"_s, true);
    Row("blanks count", u"My Page"_s, address, u"my  page"_s, false);
    Row("no wildcards", u"My Page"_s, address, u"m*e"_s, false);
    Row("without an address", u"My Page"_s, QString(), u"page"_s, true);
  }
  void Matches() {
    QFETCH(QString, name);
    QFETCH(QString, address);
    QFETCH(QString, text);
    QTEST(TFavoritesFinder::IsMatch(name, address, text), "isMatch");
  }

  // Of each folder the sub-folders first, as the disk has them, then the files.
  void Order() {
    for (const char *name : {"z.url", "one/b.url", "one/deep/a.url", "two/c.url", "three/d.url", ".away/no.url"}) {
      Put(QLatin1String(name), u"http://test.example/"_s);
    }
    Put(u"dir.url/inside.url"_s, u"http://test.example/"_s);
    QStringList expected;
    const auto entries = FolderEntries::List(m_folder->path());
    for (const auto &[name, isFolder] : *entries) {
      if (name == u"one") expected += {u"one/deep/a.url"_s, u"one/b.url"_s};
      if (name == u"two") expected += u"two/c.url"_s;
      if (name == u"three") expected += u"three/d.url"_s;
      if (name == u"dir.url") expected += u"dir.url/inside.url"_s;
    }
    Find(u"test.EXAMPLE"_s);
    QCOMPARE(Paths(), expected + QStringList(u"z.url"_s));
    QCOMPARE(m_found.last().favorite.caption, u"z"_s);
    QCOMPARE(m_found.last().address, u"http://test.example/"_s);
  }

  void WhichFiles_data() {
    Columns<QString, QString, bool>("name", "text", "isFound");
    Row("hidden", u".hidden.url"_s, u"hidden"_s, true);
    Row("ending in capitals", u"LOUD.URL"_s, u"loud"_s, true);
    Row("the ending is no name", u"quiet.url"_s, u"url"_s, false);
    Row("another kind", u"page.desktop"_s, u"page"_s, false);
    Row("none at all", u"url"_s, u"url"_s, false);
    Row("in a hidden folder", u".dot/page.url"_s, u"page"_s, false);
    Row("hidden in a folder", u"dot/.page.url"_s, u"page"_s, true);
  }
  void WhichFiles() {
    QFETCH(QString, name);
    QFETCH(QString, text);
    QFETCH(bool, isFound);
    Put(name, u"http://a.example/"_s);
    Find(text);
    QCOMPARE(Paths(), isFound ? QStringList(name) : QStringList());
  }

  // Links that lead back or nowhere, and what is no file, end no search and keep none from its end.
  void StrangeThings() {
    Put(u"f/page1.url"_s, u"http://a.example/"_s);
    Put(u"g/page2.url"_s, u"http://a.example/"_s);
    QVERIFY(QFile::link(m_folder->path(), In(u"f/up"_s)) && QFile::link(In(u"g"_s), In(u"f/side"_s)) &&
            QFile::link(In(u"f"_s), In(u"g/side"_s)) && QFile::link(In(u"nowhere"_s), In(u"g/page3"_s)) &&
            QFile::link(In(u"nowhere"_s), In(u"g/page4.url"_s)));
    QCOMPARE(::mkfifo(qPrintable(In(u"page5.url"_s)), 0600), 0);
    Find(u"page"_s);
    QStringList names;
    for (const TFoundFavorite &one : m_found) names.append(one.favorite.caption);
    names.sort();
    // What holds no address has a name all the same.
    QCOMPARE(names, (QStringList{u"page1"_s, u"page2"_s, u"page4"_s, u"page5"_s}));
    QVERIFY(m_folder->remove());
    Find(u"page"_s);
    QVERIFY(m_found.isEmpty());
  }

  // The first is told at once; what follows belongs to the last search, until that is cancelled.
  void ComesInPiecesAndEnds() {
    for (int i = 0; i < 1000; ++i) {
      Put(u"f/old %1.url"_s.arg(i), u"http://a.example/"_s);
      Put(u"f/new %1.url"_s.arg(i), u"http://a.example/"_s);
    }
    QList<qsizetype> pieces;
    connect(m_finder.get(), &TFavoritesFinder::Found, this, [&pieces](const auto &found) { pieces += found.size(); });
    const QSignalSpy ends(m_finder.get(), &TFavoritesFinder::Finished);
    // Another one begins as soon as this one has found anything, while its thread goes on finding.
    QMetaObject::Connection another;
    another = connect(m_finder.get(), &TFavoritesFinder::Found, this, [&] {
      disconnect(another);
      m_found.clear();
      m_finder->Find(m_folder->path(), u"new"_s);
    });
    Find(u"old"_s);
    QCOMPARE(m_found.size(), 1000);
    for (const TFoundFavorite &one : m_found) QVERIFY(one.favorite.caption.startsWith(u"new"_s));
    QCOMPARE(pieces.first(), 1);
    QCOMPARE(ends.size(), 1);
    m_finder->Find(m_folder->path(), u"old"_s);
    m_finder->Cancel();
    // Its thread has come to the end by then.
    Find(u"no such name"_s);
    QCOMPARE(m_found.size(), 0);
    QCOMPARE(ends.size(), 2);
    // One that goes on ends with its owner.
    m_finder->Find(m_folder->path(), u"old"_s);
    m_finder.reset();
    QCOMPARE(ends.size(), 2);
  }
};

QTEST_GUILESS_MAIN(TestFavoritesFinder)
#include "test_favorites_finder.moc"
