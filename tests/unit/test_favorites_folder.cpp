#include <sys/stat.h>
#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include "config/registry_paths.h"
#include "favorites/favicon_cache.h"
#include "favorites/favorites_edit.h"
#include "favorites/favorites_folder.h"
#include "favorites/favorites_order.h"
#include "favorites/page_icons.h"
#include "platform/native_path.h"
#include "platform/program_folders.h"
#include "store/registry_store.h"
#include "support/data_row.h"

using namespace Qt::StringLiterals;

// The favorites on disk: what is listed, in which order, and what can be done with them.
class TTestFavoritesFolder final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    m_temporary = std::make_unique<QTemporaryDir>();
    m_folder = m_temporary->filePath("Favorites");
    QVERIFY(QDir().mkpath(m_folder));
  }

  void WhereTheyAre_data() {
    Columns<QString, QString, QString, QString, QString>("user", "shell", "links", "path", "linksPath");
    const QString own = ProgramFolders::UserData() + "/Favorites";
    Row("nothing is said", QString(), QString(), QString(), own, own + "/Links");
    Row("by the user", u"/a/b/"_s, u"/c"_s, u"Bar"_s, u"/a/b"_s, u"/a/b/Bar"_s);
    Row("by the shell", QString(), u"/c"_s, u" "_s, u"/c"_s, u"/c/Links"_s);
    Row("of the user's own", u"~/x"_s, QString(), u"A\\B"_s, QDir::homePath() + "/x", QDir::homePath() + "/x/A/B");
    Row("no full path", u"x"_s, u"y"_s, u"..\\x"_s, own, own + "/Links");
    Row("links elsewhere", QString(), QString(), u"/etc"_s, own, own + "/Links");
  }
  void WhereTheyAre() {
    QFETCH(QString, user);
    QFETCH(QString, shell);
    QFETCH(QString, links);
    TRegistryStore store(m_temporary->filePath("registry.sqlite"));
    const auto write = [&store](const char *key, const QString &name, const QString &value) {
      if (!value.isNull()) QVERIFY(store.Write(TRegistryHive::CurrentUser, key, name, value));
    };
    write(RegistryKey::UserShellFolders, "Favorites", user);
    write(RegistryKey::ShellFolders, "Favorites", shell);
    write(RegistryKey::SystemToolbar, "LinksFolderName", links);
    QTEST(FavoritesFolder::Path(store), "path");
    QTEST(FavoritesFolder::LinksPath(store), "linksPath");
    if (user == u"/a/b/"_s) {
      QCOMPARE(FavoritesFolder::Path(store, FavoritesFolder::TPlace::ShellFolders), u"/c"_s);
    }
  }

  void Lists_data() {
    // A name that ends in "/" is a folder.
    Columns<QStringList, QString, QStringList>("there", "order", "listed");
    const QStringList mixed{u"b.url"_s, u"Z/"_s, u"A.url"_s, u"c.txt"_s, u".hidden.url"_s, u".h/"_s, u"a/"_s};
    Row("folders, then names regardless of case", mixed, QString(), QStringList{"a/", "Z/", "A", "b", "c"});
    Row("by hand", mixed, u"c.txt\r\nZ\n\ngone.url\nb.url\nc.txt\n"_s, QStringList{"c", "Z/", "b", "a/", "A"});
    Row("no order at all", mixed, u"../x\n.\n..\n%zz\n/\n"_s, QStringList{"a/", "Z/", "A", "b", "c"});
    Row("numbers by their value", QStringList{"p10.url", "p2.url", "p1x.url", "p02.url", "p.url", "p10a.url"},
        QString(), QStringList{"p", "p1x", "p02", "p2", "p10", "p10a"});
    Row("captions", QStringList{"a.b.url", "plain", "end.", "..x"}, QString(), QStringList{"a.b", "end", "plain"});
    Row("same caption", QStringList{"a.webloc", "a.url", "A.url"}, QString(), QStringList{"A", "a", "a"});
    Row("names that need escapes", QStringList{"a%b.url", "c\nd.url", "%25.url"}, u"c%0Ad.url\n%2525.url\n"_s,
        QStringList{"c\nd", "%25", "a%b"});
    Row("nothing", QStringList{}, QString(), QStringList{});
  }
  void Lists() {
    QFETCH(QStringList, there);
    QFETCH(QString, order);
    for (const QString &name : there) Make(name);
    if (!order.isNull()) Put(".zvorder", order.toUtf8());
    QTEST(Captions(m_folder), "listed");
    // The order that is written of what was read is the same.
    if (const auto names = FavoritesOrder::Read(m_folder)) {
      QVERIFY(FavoritesOrder::Write(m_folder, names));
      QCOMPARE(FavoritesOrder::Read(m_folder), names);
      QTEST(Captions(m_folder), "listed");
    }
  }

  void Hints() {
    Put("a.url", "[InternetShortcut]\r\nURL=http://a.example\r\n");
    Put("b.url", "nothing");
    Put("c.txt", "[InternetShortcut]\r\nURL=http://c.example\r\n");
    Put("d.url", "[InternetShortcut]\r\nURL=JavaScript:alert(1)\r\n");
    Make("e.url/");
    QStringList hints;
    for (const TFavorite &favorite : FavoritesFolder::List(m_folder)) hints.append(FavoritesFolder::Hint(favorite));
    QCOMPARE(hints, QStringList({"e.url\r\n" + In("e.url"), "a\r\nhttp://a.example", "b\r\n" + In("b.url"),
                                 "c\r\n" + In("c.txt"), "d\r\nJavaScript:alert(1)"}));
    // Nothing runs without having been chosen by itself.
    QCOMPARE(FavoritesFolder::Targets(m_folder), QStringList({"http://a.example", In("b.url"), In("c.txt")}));
  }

  // What the desktop would run is not opened together with all others, however it is reached.
  void ProgramsAreNoTargets_data() {
    Columns<QString, QString, bool, bool>("name", "text", "isExecutable", "isTarget");
    const char *starter = "[Desktop Entry]\nType=Application\nName=x\nExec=x\n";
    Row("plain file", "a.txt", "text", false, true);
    Row("link of the desktop", "a.desktop", "[Desktop Entry]\nType=Link\nURL=http://a.test/\n", false, true);
    Row("starter", "a.DESKTOP", starter, false, false);
    Row("starter under another name", "a", starter, false, false);
    Row("executable", "a.txt", "text", true, false);
    Row("leads to a plain file", "a.url", "[InternetShortcut]\nURL=$/.d/plain.txt\n", false, true);
    Row("leads to a starter", "a.url", "[InternetShortcut]\nURL=$/.d/x.desktop\n", false, false);
    Row("leads to an executable", "a.url", "[InternetShortcut]\nURL=$/.d/run\n", false, false);
    Row("desktop's own leads to one", "a.desktop", "[Desktop Entry]\nType=Link\nURL=$/.d/run\n", false, false);
  }
  void ProgramsAreNoTargets() {
    QFETCH(QString, name);
    QFETCH(QString, text);
    QFETCH(bool, isExecutable);
    const auto allow = [this](const QString &file) {
      QVERIFY(QFile::setPermissions(In(file), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    };
    Make(".d/");
    Put(".d/plain.txt", "text");
    Put(".d/x.desktop", "[Desktop Entry]\nType=Link\nURL=http://a.test/\n");
    Put(".d/run", "text");
    allow(".d/run");
    Put(name, text.replace('$', m_folder).toUtf8());
    if (isExecutable) allow(name);
    QTEST(FavoritesFolder::Targets(m_folder).size() == 1, "isTarget");
  }

  // Circles of links, what cannot be read, and names that are no text.
  void HostileFolders() {
    Make("a/");
    QVERIFY(QFile::link(m_folder, In("a/circle")) && QFile::link("self", In("self")) &&
            QFile::link("no", In("no.url")));
    const QByteArray name = QByteArray(250, '\xFF') + ".url";
    const QByteArray path = In({}).toUtf8() + name;
    QFile file;
    FILE *out = fopen(path.constData(), "w");
    QVERIFY(out != nullptr);
    fputs("[InternetShortcut]\nURL=h:x\n", out);
    fclose(out);
    QCOMPARE(Captions(m_folder), QStringList({"a/", "no", "self", QString(250, QChar::ReplacementCharacter)}));
    QCOMPARE(Captions(In("a")), QStringList{"circle/"});
    QCOMPARE(Captions(In("a/circle/a/circle/a")), QStringList{"circle/"});
    const TFavorite odd = FavoritesFolder::List(m_folder).last();
    QCOMPARE(FavoritesFolder::Target(odd), u"h:x"_s);
    QCOMPARE(NativePath::ToBytes(odd.path), path);
    const QStringList before = Everything();
    for (const bool isCopy : {true, false}) {
      const TFavoritesChange change =
          isCopy ? FavoritesEdit::Copy({odd.path}, m_folder) : FavoritesEdit::Trash({odd.path});
      QVERIFY2(change.IsGood(), qPrintable(change.error));
      QVERIFY(Everything() != before);
      QVERIFY(FavoritesEdit::Undo(change).IsGood());
      QCOMPARE(Everything(), before);
    }
    const TFavoritesChange moved = FavoritesEdit::Move({odd.path}, In("a"), 0);
    QVERIFY2(moved.IsGood(), qPrintable(moved.error));
    QCOMPARE(Captions(In("a")), QStringList({odd.caption, "circle/"}));
    const TFavoritesChange named = FavoritesEdit::Rename(moved.paths.first(), "b");
    QVERIFY(named.IsGood() && named.paths == QStringList{In("a/b.url")});
    QString error;
    QVERIFY(FavoritesFolder::List(In("none"), &error).isEmpty() && !error.isEmpty());
    error.clear();
    QVERIFY(FavoritesFolder::List(In("no.url"), &error).isEmpty() && !error.isEmpty());
    // A folder cannot become a part of itself, by whatever way.
    for (const QString &into : {In("a"), In("a/circle/a")}) {
      const TFavoritesChange change = FavoritesEdit::Copy({In("a")}, into);
      QVERIFY(!change.IsGood() && change.IsEmpty());
      QVERIFY(!FavoritesEdit::Move({In("a")}, into).IsGood());
    }
  }

  void NativeNames_data() {
    Columns<QByteArray, bool>("bytes", "isPlain");
    Row("text", QByteArray("a\xC3\xBC\xF0\x9F\x98\x80"), true);
    Row("byte-order mark", QByteArray("\xEF\xBB\xBFx"), true);
    Row("no text", QByteArray("a\xFF\xC3(\xC3\xBC\xF0\x9F\x98"), false);
    Row("half a pair", QByteArray("\xED\xB2\x80\xED\xA0\x80"), false);
  }
  void NativeNames() {
    QFETCH(QByteArray, bytes);
    const QString text = NativePath::ToText(bytes);
    QCOMPARE(NativePath::ToBytes(text), bytes);
    QTEST(NativePath::IsPlain(text), "isPlain");
    QVERIFY(NativePath::IsPlain(NativePath::Shown(text)));
    QCOMPARE(FavoritesOrder::NamesIn(FavoritesOrder::Bytes({text, "b"})), QStringList({text, "b"}));
    QVERIFY(QByteArrayView(FavoritesOrder::Bytes({text})).isValidUtf8());
  }

  void Names_data() {
    Columns<QString, QString, QString>("caption", "address", "name");
    Row("plain", u"News of today"_s, QString(), u"News of today"_s);
    Row("folders", u" a/b\\c:d "_s, QString(), u"a_b_c_d"_s);
    Row("lines", u"a\n\tb"_s, QString(), u"a b"_s);
    Row("hidden", u"..a."_s, QString(), u"a"_s);
    Row("of a device", u"Con"_s, QString(), u"_Con"_s);
    Row("long", QString(150, u'ü'), QString(), QString(100, u'ü'));
    Row("a blank at the cut", QString(199, u'a') + " b", QString(), QString(199, u'a'));
    Row("none", u" . "_s, u"http://a.example/b"_s, u"a.example"_s);
    Row("none, and no host", QString(), u"about:blank"_s, u"about_blank"_s);
    Row("nothing at all", QString(), QString(), u"_"_s);
    Row("two ways to write it", u"u\u0308"_s, QString(), u"ü"_s);
  }
  void Names() {
    QFETCH(QString, caption);
    QFETCH(QString, address);
    QTEST(FavoritesEdit::NameFor(caption, address), "name");
  }

  void Edits_data() {
    // Made in "b/" (with "x.url"), "A.url" and "c.url"; then one change, and what is there after it.
    Columns<QString, QStringList, QStringList, QString>("order", "edit", "after", "path");
    const QString byHand = u"c.url\nA.url\n"_s;
    Row("add", QString(), QStringList{"add", "b"}, QStringList{"b/", "A", "b", "c"}, u"b.url"_s);
    Row("add at a place", QString(), QStringList{"add", "z", "1"}, QStringList{"b/", "z", "A", "c"}, u"z.url"_s);
    Row("add by hand", byHand, QStringList{"add", "a"}, QStringList{"c", "A", "b/", "a (2)"}, u"a (2).url"_s);
    Row("add, taken in another case", QString(), QStringList{"add", "a"}, QStringList{"b/", "A", "a (2)", "c"},
        u"a (2).url"_s);
    Row("add folder", QString(), QStringList{"folder", "B", "9"}, QStringList{"b/", "A", "c", "B (2)/"}, u"B (2)"_s);
    Row("rename", QString(), QStringList{"rename", "c.url", "0"}, QStringList{"b/", "0", "A"}, u"0.url"_s);
    Row("rename by hand", byHand, QStringList{"rename", "c.url", "z"}, QStringList{"z", "A", "b/"}, u"z.url"_s);
    Row("rename to a name that is taken", QString(), QStringList{"rename", "c.url", "a"},
        QStringList{"b/", "A", "a (2)"}, u"a (2).url"_s);
    Row("rename, other case", QString(), QStringList{"rename", "b", "B"}, QStringList{"B/", "A", "c"}, u"B"_s);
    Row("move into a folder", QString(), QStringList{"move", "c.url", "b"}, QStringList{"b/", "A"}, u"b/c.url"_s);
    Row("move within", QString(), QStringList{"move", "c.url", ".", "0"}, QStringList{"c", "b/", "A"}, u"c.url"_s);
    Row("move within, down", byHand, QStringList{"move", "c.url", ".", "2"}, QStringList{"A", "c", "b/"}, u"c.url"_s);
    Row("copy beside", byHand, QStringList{"copy", "b", "."}, QStringList{"c", "A", "b/", "b (2)/"}, u"b (2)"_s);
    Row("copy into another", QString(), QStringList{"copy", "A.url", "b", "0"}, QStringList{"b/", "A", "c"},
        u"b/A.url"_s);
    Row("trash", byHand, QStringList{"trash", "A.url"}, QStringList{"c", "b/"}, QString());
    Row("trash a folder", QString(), QStringList{"trash", "b"}, QStringList{"A", "c"}, QString());
    Row("order", QString(), QStringList{"order", "c.url"}, QStringList{"c", "b/", "A"}, QString());
    Row("forget the order", byHand, QStringList{"order"}, QStringList{"b/", "A", "c"}, QString());
    Row("address", QString(), QStringList{"address", "c.url", "h:new"}, QStringList{"b/", "A", "c"}, u"c.url"_s);
  }
  void Edits() {
    QFETCH(QString, order);
    QFETCH(QStringList, edit);
    QFETCH(QString, path);
    for (const char *name : {"b/", "b/x.url", "A.url", "c.url"}) Make(name);
    if (!order.isNull()) Put(".zvorder", order.toUtf8());
    const QStringList before = Everything();
    const TFavoritesChange change = Do(edit);
    QVERIFY2(change.IsGood(), qPrintable(change.error));
    QTEST(Captions(m_folder), "after");
    QCOMPARE(change.paths, path.isEmpty() ? QStringList() : QStringList{In(path)});
    const QStringList after = Everything();
    QVERIFY(after != before);

    // And back, and there again.
    const TFavoritesChange back = FavoritesEdit::Undo(change);
    QVERIFY2(back.IsGood(), qPrintable(back.error));
    QCOMPARE(Everything(), before);
    const TFavoritesChange again = FavoritesEdit::Undo(back);
    QVERIFY2(again.IsGood(), qPrintable(again.error));
    QCOMPARE(Everything(), after);
  }

  void RefusedEdits() {
    for (const char *name : {"a.url", "b.url"}) Make(name);
    const QStringList before = Everything();
    const QString nowhere = In("a.url/x");
    const TFavoritesChange changes[] = {FavoritesEdit::AddPage(m_folder, "x", " \n"),
                                        FavoritesEdit::AddPage(m_folder, "x", QString(300'000, u'x')),
                                        FavoritesEdit::AddPage(nowhere, "x", "h:x"),
                                        FavoritesEdit::AddFolder(nowhere, "x"),
                                        FavoritesEdit::Rename(In("gone.url"), "x"),
                                        FavoritesEdit::Move({In("gone.url")}, m_folder),
                                        FavoritesEdit::Copy({In("a.url")}, nowhere),
                                        FavoritesEdit::Trash({In("gone.url")}),
                                        FavoritesEdit::SetAddress(In("a.url"), QString()),
                                        FavoritesEdit::Order(nowhere, QStringList{"a"})};
    for (const TFavoritesChange &change : changes) QVERIFY(!change.IsGood() && change.IsEmpty());
    QVERIFY(FavoritesEdit::Rename(In("a.url"), " ").IsEmpty());
    QCOMPARE(Everything(), before);
    // One that goes along with its folder, or comes twice, is no fault.
    for (const char *name : {"d/", "d/x.url", "e/"}) Make(name);
    const TFavoritesChange along = FavoritesEdit::Move({In("d/x.url"), In("d/"), In("d")}, In("e"));
    QVERIFY(along.IsGood() && along.paths == QStringList{In("e/d")});
    QCOMPARE(Captions(In("e/d")), QStringList{"x"});
    // What can be done is done.
    const TFavoritesChange half = FavoritesEdit::Trash({In("gone.url"), In("a.url")});
    QVERIFY(!half.IsGood() && half.steps.size() == 1);
    // A name that was taken meanwhile is left alone.
    Make("a.url");
    const TFavoritesChange back = FavoritesEdit::Undo(half);
    QVERIFY(back.IsGood() && back.paths == QStringList{In("a (2).url")});
  }

  // A move from another disk, where nothing can be taken away: what has come is there, once, and can be undone.
  void MovesFromWhereNothingGoes() {
    const QString fixed = u"/proc/version"_s;
    const TFavoritesChange change = FavoritesEdit::Move({fixed}, m_folder);
    QVERIFY(!change.IsGood() && QFile::exists(fixed));
    QCOMPARE(change.paths, QStringList{In("version")});
    QCOMPARE(Captions(m_folder), QStringList{"version"});
    QVERIFY(FavoritesEdit::Undo(change).IsGood());
    QCOMPARE(Captions(m_folder), QStringList());
  }

  // What another program does shows at the next look.
  void Stamps() {
    quint64 stamp = FavoritesFolder::Stamp(m_folder);
    QVERIFY(stamp != 0 && FavoritesFolder::Stamp(m_folder) == stamp);
    const auto isNew = [&] { return std::exchange(stamp, FavoritesFolder::Stamp(m_folder)) != stamp; };
    const auto step = [&](const std::function<void()> &work) {
      // The clock of the file system goes in steps of some milliseconds.
      return QTest::qWaitFor([&] { return work(), isNew(); });
    };
    int number = 0;
    QVERIFY(step([&] { Make(QString::number(number++) + ".url"); }));
    QVERIFY(step([&] { QVERIFY(QFile::rename(In("0.url"), In("x.url")) && QFile::rename(In("x.url"), In("0.url"))); }));
    QVERIFY(step([&] { Put(".zvorder", "0.url\n"); }));
    QVERIFY(!isNew());
    QCOMPARE(FavoritesFolder::Stamp(In("none")), quint64(0));
  }

  void Icons() {
    const QString folder = m_temporary->filePath("icons");
    const QString page = "http://a.example/b?c#d";
    const auto plain = [](Qt::GlobalColor colour, int size) {
      QImage image(size, size, QImage::Format_RGB32);
      image.fill(colour);
      return image;
    };
    const auto colourOf = [](const QImage &image) { return image.isNull() ? QColor() : image.pixelColor(1, 1); };
    {
      TFaviconCache cache(folder);
      QVERIFY(cache.Find(page).isNull());
      cache.Put(page, plain(Qt::red, 64));
      cache.Put("http://a.example/e", plain(Qt::blue, 16));
      cache.Put("javascript:x", plain(Qt::red, 16));
      cache.Put("http://c.example", QImage());
      QCOMPARE(cache.Find(page).size(), QSize(TFaviconCache::Size, TFaviconCache::Size));
    }
    TFaviconCache cache(folder);
    QCOMPARE(colourOf(cache.Find("http://a.example/b?c")), QColor(Qt::red));
    QCOMPARE(colourOf(cache.Find("http://a.example/e")), QColor(Qt::blue));
    QCOMPARE(colourOf(cache.Find("http://A.example:80/other")), QColor(Qt::red));  // its site's
    for (const char *none :
         {"http://a.example:81/", "https://a.example/", "javascript:x", "http://c.example", "", "x"}) {
      QVERIFY2(cache.Find(none).isNull(), none);
    }
    // The site's own page decides for the site.
    cache.Put("http://a.example/", plain(Qt::green, 16));
    QCOMPARE(colourOf(TFaviconCache(folder).Find("http://a.example/other")), QColor(Qt::green));
    // Files that are none, or no small ones.
    for (const QString &name : QDir(folder).entryList(QDir::Files)) {
      QVERIFY(plain(Qt::red, 2000).save(folder + '/' + name, "PNG"));
    }
    QVERIFY(TFaviconCache(folder).Find(page).isNull());
    // Nothing stays of what a power cut has broken off, either.
    QFile part(folder + "/p0.png.part");
    QVERIFY(part.open(QIODevice::WriteOnly));
    cache.Clear();
    QVERIFY(cache.Find(page).isNull() && QDir(folder).isEmpty());
  }

  void IconsFromMemory() {
    const QString folder = m_temporary->filePath("icons");
    QImage red(16, 16, QImage::Format_RGB32);
    red.fill(Qt::red);
    TFaviconCache(folder).Put("http://a.example/", red);
    const TFaviconCache cache(folder);
    TPageIcons icons(cache);
    const QSignalSpy changed(&icons, &TPageIcons::Changed);
    const QStringList addresses{"http://a.example/x", "http://b.example/", "about:x"};
    // Asking alone never goes to the disk.
    QVERIFY(icons.Of(addresses[0]).isNull() && !cache.Known(addresses[0]) && cache.Known("about:x"));
    icons.Fetch(addresses);
    QTRY_COMPARE(changed.size(), 1);
    QCOMPARE(icons.Of(addresses[0]).pixelColor(1, 1), QColor(Qt::red));
    // That there is none is known as well, and nothing is read again.
    QVERIFY(icons.Of(addresses[1]).isNull() && cache.Known(addresses[1]));
    QVERIFY(QDir(folder).removeRecursively());
    icons.Fetch(addresses);
    QVERIFY(!icons.Of(addresses[0]).isNull());

    // What was read before all were forgotten, or before a newer one came, does not come back.
    TFaviconCache own(folder);
    own.Put("http://a.example/", red);
    const QList<TFaviconCache::TFile> old = TFaviconCache::Read(folder, "http://a.example/");
    const int before = own.Clearings();
    own.Clear();
    own.Learn(old, before);
    QVERIFY(!own.Known("http://a.example/"));
    QImage blue(red);
    blue.fill(Qt::blue);
    own.Put("http://a.example/", blue);
    own.Learn(old, own.Clearings());
    QCOMPARE(own.Known("http://a.example/")->pixelColor(1, 1), QColor(Qt::blue));
  }

  void OldIconsGo() {
    const QString folder = m_temporary->filePath("icons");
    QVERIFY(QDir().mkpath(folder));
    for (int i = 0; i < TFaviconCache::MostFiles; ++i) {
      QVERIFY(QFile(folder + '/' + QString::number(i) + ".png").open(QIODevice::WriteOnly));
    }
    QImage image(16, 16, QImage::Format_RGB32);
    image.fill(Qt::red);
    TFaviconCache(folder).Put("http://a.example", image);
    QVERIFY(!TFaviconCache(folder).Find("http://a.example").isNull());
    const qsizetype count = QDir(folder).entryList(QDir::Files).size();
    QVERIFY(count < TFaviconCache::MostFiles && count > TFaviconCache::MostFiles / 2);
  }

  // One that takes the place of another is no more, and where others have made room nothing goes.
  void NewIconsCount() {
    const QString folder = m_temporary->filePath("icons");
    TFaviconCache cache(folder);
    QImage image(1, 1, QImage::Format_RGB32);
    const auto put = [&](const QString &address, int number) {
      image.setPixel(0, 0, QRgb(number));
      return cache.Put(address, image);
    };
    QVERIFY(put("http://a.test/", 1) && !put("http://a.test/", 1));
    for (int i = 2; i < TFaviconCache::MostFiles + 2; ++i) QVERIFY(put("http://b.test/", i));
    QCOMPARE(QDir(folder).entryList(QDir::Files).size(), 2);
    for (int i = 0; i < TFaviconCache::MostFiles - 2; ++i) {
      QVERIFY(QFile(folder + '/' + QString::number(i) + ".png").open(QIODevice::WriteOnly));
    }
    TFaviconCache full(folder);
    QVERIFY(full.Put("http://a.test/", image));
    QCOMPARE(QDir(folder).entryList(QDir::Files).size(), TFaviconCache::MostFiles);
    for (int i = 0; i < 100; ++i) QVERIFY(QFile::remove(folder + '/' + QString::number(i) + ".png"));
    QVERIFY(full.Put("http://c.test/", image));
    QCOMPARE(QDir(folder).entryList(QDir::Files).size(), TFaviconCache::MostFiles - 99);
  }

 private:
  [[nodiscard]] QString In(const QString &name) const { return m_folder + '/' + name; }
  void Put(const QString &name, const QByteArray &bytes) const {
    QFile file(In(name));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
  }
  void Make(const QString &name) const {
    if (name.endsWith('/')) {
      QVERIFY(QDir().mkpath(In(name)));
    } else {
      Put(name, "[InternetShortcut]\r\nURL=h:" + name.toUtf8().toHex() + "\r\n");
    }
  }
  [[nodiscard]] static QStringList Captions(const QString &folder) {
    QStringList captions;
    for (const TFavorite &favorite : FavoritesFolder::List(folder)) {
      captions.append(favorite.isFolder ? favorite.caption + '/' : favorite.caption);
    }
    return captions;
  }
  // Both folders in their order, with what each file leads to.
  [[nodiscard]] QStringList Everything() const {
    QStringList all;
    for (const TFavorite &favorite : FavoritesFolder::List(m_folder)) {
      all.append(favorite.path + ' ' + FavoritesFolder::Target(favorite));
      for (const TFavorite &inner : FavoritesFolder::List(favorite.isFolder ? favorite.path : QString())) {
        all.append(inner.path + ' ' + FavoritesFolder::Target(inner));
      }
    }
    return all;
  }
  [[nodiscard]] TFavoritesChange Do(const QStringList &edit) const {
    const QString &kind = edit.first();
    const auto text = [&edit](qsizetype i) { return edit.value(i); };
    const auto position = [&edit](qsizetype i) { return edit.size() > i ? edit.at(i).toInt() : -1; };
    if (kind == "add") return FavoritesEdit::AddPage(m_folder, text(1), "h:x", position(2));
    if (kind == "folder") return FavoritesEdit::AddFolder(m_folder + '/', text(1), position(2));
    if (kind == "rename") return FavoritesEdit::Rename(In(text(1)), text(2));
    const QString target = text(2) == "." ? m_folder : In(text(2));
    if (kind == "move") return FavoritesEdit::Move({In(text(1))}, target, position(3));
    if (kind == "copy") return FavoritesEdit::Copy({In(text(1))}, target, position(3));
    if (kind == "trash") return FavoritesEdit::Trash({In(text(1))});
    if (kind == "address") return FavoritesEdit::SetAddress(In(text(1)), text(2));
    return FavoritesEdit::Order(m_folder, edit.size() > 1 ? std::optional(edit.mid(1)) : std::nullopt);
  }

  std::unique_ptr<QTemporaryDir> m_temporary;
  QString m_folder;
};

QTEST_GUILESS_MAIN(TTestFavoritesFolder)
#include "test_favorites_folder.moc"
