#include <QElapsedTimer>
#include <QTest>

#include "favorites/bookmark_file.h"
#include "favorites/bookmark_json.h"
#include "support/data_row.h"

using namespace Qt::StringLiterals;
using TReasons = QList<TSkippedBookmark::TReason>;

// Bookmarks in the files that browsers exchange, as lines: a blank for each level, "[name]" for a folder,
// "name=address" for a page.
class TTestBookmarkFile final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void Reads_data() {
    Columns<QByteArray, QStringList, TReasons>("bytes", "lines", "skipped");
    using enum TSkippedBookmark::TReason;
    const TReasons none;
    Row("as browsers write it",
        QByteArray(
            "<!DOCTYPE NETSCAPE-Bookmark-file-1>\n<!-- <A HREF=\"h:no\">no</A> -->\n<TITLE>T</TITLE><H1>T</H1>\n"
            "<DL><p>\n <DT><H3 ADD_DATE=\"7\" PERSONAL_TOOLBAR_FOLDER=\"true\">Bar</H3>\n <DD>About it\n <DL><p>\n"
            "  <DT><A HREF=\"http://a.example/?a&amp;b\" ICON=\"data:x>y\" ADD_DATE=\"8\">A &lt;b&gt; &#38; "
            "&#x43;</A>\n  <DD>About <b>it</b>\n </DL><p>\n <HR>\n <DT><A HREF='http://b.example'>B</A>\n</DL><p>\n"),
        QStringList{"[Bar] 7 bar", " A <b> & C=http://a.example/?a&b 8", "B=http://b.example"}, TReasons{Separator});
    Row("nothing closed",
        QByteArray("<dl><dt><h3>F<dl><dt><a href=h:1>One<dt><a href=h:2 >Two<dt><h3>G<dl><a href=h:3>"),
        QStringList{"[F]", " One=h:1", " Two=h:2", " [G]", "  =h:3"}, none);
    Row("closed too often", QByteArray("</DL></DL><DT><H3>F</H3><DL></DL></DL><DT><A HREF=\"h:1\">One</A></DL>"),
        QStringList{"[F]", "One=h:1"}, none);
    Row("lists of no folder", QByteArray("<DL><DL><DT><H3>F</H3></DL><DL><A HREF=h:1>One</A></DL></DL>"),
        QStringList{"[F]", "One=h:1"}, none);
    Row("no list at all", QByteArray("<a href=h:1>One</a> text <a href=h:2>Two</a>"), QStringList{"One=h:1", "Two=h:2"},
        none);
    Row("no addresses", QByteArray("<DT><A>none</A><DT><A HREF=\" \">blank</A><DT><A HREF=\"place:sort=8\">query</A>"),
        QStringList{}, TReasons{NoAddress, NoAddress, NotAPage});
    Row("scripts and line ends",
        QByteArray("<DT><A HREF=\"javascript:a()//b&#10;c()\">Run</A><DT><A "
                   "HREF=\"http://a.ex\nample&#13;&#10;X=y\">L\nM</A>"),
        QStringList{"Run=javascript:a()//b%0Ac()", "L M=http://a.exampleX=y"}, none);
    Row("too long an address", "<DT><A HREF=\"h:" + QByteArray(300'000, 'x') + "\">long</A>", QStringList{},
        TReasons{TooLong});
    Row("no such references", QByteArray("<A HREF=h:&bad;&#0;&#xD800;&#1114112;&amp>&;&&amp;&amp</A>"),
        QStringList{"&;&&&amp=h:&bad;&#0;&#xD800;&#1114112;&amp"}, none);
    Row("less-than signs in a name", QByteArray("<A HREF=h:1>1 < 2 <3 <<b></A>"), QStringList{"1 < 2 <3 <=h:1"}, none);
    Row("Latin-1", QByteArray("<A HREF=h:\xFC>\xE4\xF6</A><A HREF=h:2>\xC3\xBC</A>"),
        QStringList{u"äö=h:ü"_s, u"ü=h:2"_s}, none);
    Row("UTF-16", QByteArray("\xFF\xFE<\0A\0 \0H\0R\0E\0F\0=\0h\0:\0\1\1>\0x\0", 28), QStringList{u"x=h:ā"_s}, none);
    Row("open quotes", QByteArray("<A HREF=\"h:1>One</A><A HREF='h:2>Two</A>"), QStringList{"One=\"h:1", "Two='h:2"},
        none);
    Row("an open comment", QByteArray("<!-- <A HREF=h:1>One</A>"), QStringList{}, none);
    Row("an open tag", QByteArray("<A HREF=h:1>One</A><A HREF=h:2 "), QStringList{"One=h:1"}, none);
    Row("noise", QByteArray("<\0<a\0href=h:1 \xFF><//><a=/=\"\"'<dl/><h3", 36), QStringList{"=h:1"},
        TReasons{NoAddress});
    Row("nothing", QByteArray(), QStringList{}, none);
  }
  void Reads() {
    QFETCH(QByteArray, bytes);
    TSkippedBookmarks skipped;
    const TBookmarks bookmarks = BookmarkFile::Read(bytes, &skipped);
    QTEST(Lines(bookmarks), "lines");
    QTEST(Reasons(skipped), "skipped");
    QCOMPARE(BookmarkFile::Read(BookmarkFile::Write(bookmarks, u"<T>"_s)), bookmarks);
  }

  void Writes() {
    const TBookmarks bookmarks{{TBookmark::TKind::Folder, 0, u"a & <b>"_s, {}, 7, TBookmark::TRoot::Bar},
                               {TBookmark::TKind::Folder, 1, u"ü"_s},
                               {TBookmark::TKind::Page, 2, u"\"c\""_s, u"h:\"'<&amp;"_s, 8},
                               {TBookmark::TKind::Folder, 1, u"empty"_s},
                               {TBookmark::TKind::Page, 0, {}, u"javascript:x%0A"_s}};
    const QByteArray bytes = BookmarkFile::Write(bookmarks, u"a<b"_s);
    QVERIFY(bytes.startsWith("<!DOCTYPE NETSCAPE-Bookmark-file-1>\n") && bytes.contains("<H1>a&lt;b</H1>"));
    QVERIFY(BookmarkFile::IsOne(bytes));
    QCOMPARE(BookmarkFile::Read(bytes), bookmarks);
    QCOMPARE(bytes.count("<DL>"), bytes.count("</DL>"));
  }

  // As long as the file, not as its square.
  void HugeAndDeep_data() {
    Columns<QByteArray>("piece");
    Row("lists in lists", QByteArray("<DT><H3>x</H3><DL>"));
    Row("open comments", QByteArray("<!-- <a href=h:x"));
    Row("open tags", QByteArray("<a "));
    Row("open quotes", QByteArray("<a href=\"'>"));
    Row("open references", QByteArray("&"));
    Row("less-than signs", QByteArray("<"));
  }
  void HugeAndDeep() {
    QFETCH(QByteArray, piece);
    QElapsedTimer clock;
    clock.start();
    const TBookmarks bookmarks = BookmarkFile::Read("<A HREF=h:1>" + piece.repeated(500'000));
    // A square would take many minutes.
    QVERIFY(clock.elapsed() < 30'000);
    QCOMPARE(bookmarks.value(0).address, u"h:1"_s);
  }

  void Json_data() {
    Columns<QByteArray, QStringList, TReasons>("bytes", "lines", "skipped");
    using enum TSkippedBookmark::TReason;
    Row("one browser", QByteArray(R"({"checksum":"x","roots":{
          "other":{"children":[{"type":"url","name":"B","url":"h:b"}],"name":"Other","type":"folder"},
          "bookmark_bar":{"children":[
            {"type":"folder","name":"F","children":[{"type":"url","name":"A","url":"h:a","date_added":"11644473601000000"}]},
            {"type":"url","name":"C","url":""}],"name":"Bar","type":"folder"},
          "synced":{"children":[],"name":"Mobile","type":"folder"},"sync_transaction_version":"1"},"version":1})"),
        QStringList{"[Bar] bar", " [F]", "  A=h:a 1", "[Other] other", " B=h:b"}, TReasons{NoAddress});
    Row("another", QByteArray(R"({"version":1,"roots":{"bookmark_menu":{"children":[{"type":"separator"},
          {"type":"url","name":"A","url":"h:a","description":""}],"name":"Menu","type":"folder"}}})"),
        QStringList{"[Menu] menu", " A=h:a"}, TReasons{Separator});
    Row("odd values",
        QByteArray(R"({"roots":{"other":{"children":[1,null,"x",[],{"type":7,"url":8},{"type":"folder"}]}}})"),
        QStringList{"[] other", " []"}, TReasons{NoAddress, NoAddress, NoAddress, NoAddress, NoAddress});
    Row("no roots that are known", QByteArray(R"({"roots":{"x":{}}})"), QStringList{"none"}, TReasons{});
    Row("another file", QByteArray(R"({"a":1})"), QStringList{"none"}, TReasons{});
    Row("cut off", QByteArray(R"({"roots":{"other":{"children":[)"), QStringList{"none"}, TReasons{});
    Row("too deep to be read", R"({"roots":{"other":)" + QByteArray(100'000, '['), QStringList{"none"}, TReasons{});
  }
  void Json() {
    QFETCH(QByteArray, bytes);
    TSkippedBookmarks skipped;
    const auto bookmarks = BookmarkJson::Read(bytes, &skipped);
    QTEST(bookmarks ? Lines(*bookmarks) : QStringList{"none"}, "lines");
    QTEST(Reasons(skipped), "skipped");
  }

  void SkippedOnesAreCounted() {
    TSkippedBookmarks skipped;
    (void)BookmarkFile::Read(QByteArray("<HR>").repeated(5000) + "<A>" + QByteArray(9000, 'x'), &skipped);
    QCOMPARE(skipped.count, 5001);
    QCOMPARE(skipped.first.size(), TSkippedBookmarks::MostKept);
  }

 private:
  static QStringList Lines(const TBookmarks &bookmarks) {
    static const char *const Roots[] = {"", " bar", " menu", " other", " mobile"};
    QStringList lines;
    for (const TBookmark &bookmark : bookmarks) {
      const QString added = bookmark.added > 0 ? ' ' + QString::number(bookmark.added) : QString();
      const QString text = bookmark.kind == TBookmark::TKind::Folder ? '[' + bookmark.name + ']'
                                                                     : bookmark.name + '=' + bookmark.address;
      lines.append(QString(bookmark.depth, ' ') + text + added + Roots[int(bookmark.root)]);
    }
    return lines;
  }
  static TReasons Reasons(const TSkippedBookmarks &skipped) {
    TReasons reasons;
    for (const TSkippedBookmark &one : skipped.first) reasons.append(one.reason);
    return reasons;
  }
};

QTEST_GUILESS_MAIN(TTestBookmarkFile)
#include "test_bookmark_file.moc"
