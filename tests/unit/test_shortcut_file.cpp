#include <sys/stat.h>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include "favorites/shortcut_file.h"
#include "support/data_row.h"

using namespace Qt::StringLiterals;
using ShortcutFile::TKind;

// What stands in the files of favorites, whoever has written them.
class TTestShortcutFile final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void Reads_data() {
    Columns<QString, QByteArray, QString>("name", "bytes", "address");
    const QByteArray head("[InternetShortcut]\r\n");
    const QString page = u"http://a.example/x?q=1;2#[3]"_s;
    const QByteArray url = "URL=" + page.toLatin1();
    Row("as it is written here", u"a.url"_s, head + url + "\r\n", page);
    Row("no line end", u"a.URL"_s, head + url, page);
    Row("old line ends", u"a.url"_s, "[InternetShortcut]\r" + url + "\rIconIndex=0\r", page);
    Row("mixed line ends", u"a.url"_s, "\n\n[InternetShortcut]\rIDList=\n" + url + "\r\n", page);
    Row("upper and lower case, blanks", u"a.url"_s, QByteArray("[INTERNETSHORTCUT]\n url = http://a.example \n"),
        u"http://a.example"_s);
    Row("another section before", u"a.url"_s,
        "[DEFAULT]\nBASEURL=http://b.example\nURL=http://c.example\n" + head + url, page);
    Row("in quotes", u"a.url"_s, head + "URL=\" http://a.example \"\n", u"http://a.example"_s);
    Row("UTF-8", u"a.url"_s, head + "URL=http://a.example/\xC3\xBC", u"http://a.example/ü"_s);
    Row("UTF-8 with its mark", u"a.url"_s, "\xEF\xBB\xBF" + head + url, page);
    Row("Latin-1", u"a.url"_s, head + "URL=http://a.example/\xFC", u"http://a.example/ü"_s);
    Row("UTF-16", u"a.url"_s, Utf16(u"\uFEFF[InternetShortcut]\r\nURL=http://a.example/ü"_s, false),
        u"http://a.example/ü"_s);
    Row("UTF-16, other way round", u"a.url"_s, Utf16(u"\uFEFF[InternetShortcut]\r\nURL=http://a.example/ü"_s, true),
        u"http://a.example/ü"_s);
    Row("UTF-16 without its mark", u"a.url"_s, Utf16(u"[InternetShortcut]\rURL=http://a.example"_s, false),
        u"http://a.example"_s);
    Row("half a character", u"a.url"_s, Utf16(u"[InternetShortcut]\nURL=http://a.example"_s, true) + '\0',
        u"http://a.example"_s);
    Row("control characters", u"a.url"_s, head + QByteArray("URL=http://a.example/\0\x7F\x1B\tb", 26),
        u"http://a.example/%00%7F%1Bb"_s);
    Row("script", u"a.url"_s, head + "URL=javascript:alert(1)", u"javascript:alert(1)"_s);
    Row("no section", u"a.url"_s, url, QString());
    Row("no address", u"a.url"_s, head + "IconIndex=0\nURL=\n", QString());
    Row("nothing", u"a.url"_s, QByteArray(), QString());
    Row("noise", u"a.url"_s, QByteArray(4096, '\0') + "[=]URL\xFF\xFE[[", QString());
    Row("another kind", u"a.txt"_s, head + url, QString());

    const QByteArray entry("[Desktop Entry]\nEncoding=UTF-8\nType=Link\nName=A\n");
    Row("desktop", u"a.desktop"_s, entry + url, page);
    Row("desktop, variables", u"a.desktop"_s, entry + "URL[$e]=http://a.example\n", u"http://a.example"_s);
    Row("desktop, escapes", u"a.desktop"_s, entry + "URL=http://a.example/\\\\n\\sb\\n", u"http://a.example/\\n b"_s);
    Row("desktop, a program", u"a.desktop"_s, "[Desktop Entry]\nType=Application\nExec=true\n" + url, QString());

    const QByteArray list(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?><!DOCTYPE plist PUBLIC \"x\" \"y\">\n<plist><dict>");
    Row("webloc", u"a.webloc"_s,
        list +
            "<key>Name</key><string>b</string><key>URL</key>\n<string>http://a.example/?a&amp;b</string></dict></"
            "plist>",
        u"http://a.example/?a&b"_s);
    Row("webloc, cut off", u"a.webloc"_s, list + "<key>URL</key><string>http://a.exam", QString());
    Row("webloc, entities", u"a.webloc"_s,
        QByteArray("<!DOCTYPE p [<!ENTITY a \"0123456789\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;\"><!ENTITY c "
                   "\"&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;\"><!ENTITY d \"&c;&c;&c;&c;&c;&c;&c;&c;&c;&c;\">]><plist><dict>"
                   "<key>URL</key><string>&d;&d;&d;</string></dict></plist>"),
        QString());
    Row("webloc, binary", u"a.webloc"_s, Plist("\x53URL", "\x5F\x10\x10http://a.example"), u"http://a.example"_s);
    Row("webloc, binary, wide", u"a.webloc"_s, Plist("\x53URL", QByteArray("\x63\0h\0:\0\xFC", 7)), u"h:ü"_s);
    Row("webloc, binary, another key", u"a.webloc"_s, Plist("\x53URI", "\x53h:x"), QString());
    Row("webloc, binary, beyond the end", u"a.webloc"_s, Plist("\x53URL", "\x5F\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"),
        QString());
    Row("webloc, binary, length of no number", u"a.webloc"_s, Plist("\x53URL", "\x5F\x5F\x5F"), QString());
    Row("webloc, binary, table beyond the end", u"a.webloc"_s,
        Plist("\x53URL", "\x53h:x").chopped(8) + QByteArray(8, '\xFF'), QString());
    Row("webloc, binary, cut off", u"a.webloc"_s, QByteArray("bplist00"), QString());
  }
  void Reads() {
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    QTEST(ShortcutFile::AddressIn(bytes, ShortcutFile::KindOf(name)), "address");
    Put(name, bytes);
    QString error;
    QTEST(ShortcutFile::Read(In(name), &error), "address");
    QCOMPARE(error, QString());
  }

  void OneLine_data() {
    Columns<QString, QString>("address", "line");
    Row("broken", u" http://a.ex\r\n ample/\tx\n"_s, u"http://a.ex ample/x"_s);
    Row("another setting", u"http://a.example/\r\nIconFile=x"_s, u"http://a.example/IconFile=x"_s);
    Row("script", u" java\nscript:a()//b\n;c()\t"_s, u"javascript:a()//b%0A;c()"_s);
    Row("only looks like one", u"http://a.example/javascript:\nx"_s, u"http://a.example/javascript:x"_s);
    Row("controls", QString(u"h:\u0001\u0085\u2028x"_s), u"h:%01%C2%85%E2%80%A8x"_s);
    Row("quotes in quotes", u"\" \"h:x\" \""_s, u"h:x"_s);
    Row("nothing", u" \r\n "_s, QString());
  }
  void OneLine() {
    QFETCH(QString, address);
    QTEST(ShortcutFile::OneLine(address), "line");
    // Whatever it was, what is written is what is read.
    QFETCH(QString, line);
    QCOMPARE(ShortcutFile::AddressIn(ShortcutFile::Bytes(address), TKind::Url), line);
  }

  // Of a huge file only the beginning counts; a pipe is not waited for.
  void NoFilesOfOurs() {
    const QByteArray start("[InternetShortcut]\nURL=http://a.example\nX=");
    Put("huge.url", start);
    QVERIFY(QFile::resize(In("huge.url"), 100 * 1024 * 1024));
    QCOMPARE(ShortcutFile::Read(In("huge.url")), u"http://a.example"_s);
    QString error;
    QVERIFY(!ShortcutFile::SetAddress(In("huge.url"), u"http://b.example"_s, &error) && !error.isEmpty());
    QCOMPARE(QFileInfo(In("huge.url")).size(), 100 * 1024 * 1024);
    QCOMPARE(::mkfifo(In("pipe.url").toUtf8(), 0600), 0);
    QVERIFY(QDir(m_folder.path()).mkdir("folder.url"));
    QVERIFY(QFile::link("circle.url", In("circle.url")));
    for (const char *name : {"pipe.url", "folder.url", "circle.url", "none.url"}) {
      error.clear();
      QVERIFY2(ShortcutFile::Read(In(name), &error).isEmpty() && !error.isEmpty(), name);
      error.clear();
      QVERIFY2(!ShortcutFile::SetAddress(In(name), u"h:x"_s, &error) && !error.isEmpty(), name);
    }
  }

  void SetsAddress_data() {
    Columns<QString, QByteArray, QString, QByteArray>("name", "before", "address", "after");
    Row("the rest stays", u"a.url"_s,
        QByteArray("; mine\r\n[X]\r\ny=1\r\n[InternetShortcut]\r\nurl=h:a\r\nIconIndex=3\r\n"), u"h:b\n"_s,
        QByteArray("; mine\n[X]\ny=1\n[InternetShortcut]\nurl=h:b\nIconIndex=3\n"));
    Row("none before", u"a.url"_s, QByteArray(), u"h:b"_s, QByteArray("[InternetShortcut]\nURL=h:b\n"));
    Row("desktop", u"a.desktop"_s, QByteArray("[Desktop Entry]\nType=Link\nURL[$e]=h:a\nName=A\n"), u"h:\\b"_s,
        QByteArray("[Desktop Entry]\nType=Link\nName=A\nURL=h:\\\\b\n"));
    Row("a program", u"a.desktop"_s, QByteArray("[Desktop Entry]\nType=Application\n"), u"h:b"_s, QByteArray());
    Row("nothing", u"a.url"_s, QByteArray("[InternetShortcut]\nURL=h:a\n"), u" \n"_s, QByteArray());
    Row("too long", u"a.url"_s, QByteArray("[InternetShortcut]\nURL=h:a\n"), QString(300'000, u'x'), QByteArray());
    Row("another kind", u"a.txt"_s, QByteArray("[InternetShortcut]\nURL=h:a\n"), u"h:b"_s, QByteArray());
  }
  void SetsAddress() {
    QFETCH(QString, name);
    QFETCH(QByteArray, before);
    QFETCH(QString, address);
    QFETCH(QByteArray, after);
    Put(name, before);
    QString error;
    const bool isDone = ShortcutFile::SetAddress(In(name), address, &error);
    QCOMPARE(isDone, !after.isEmpty());
    QCOMPARE(error.isEmpty(), isDone);
    QCOMPARE(Contents(name), isDone ? after : before);
    if (isDone) QCOMPARE(ShortcutFile::Read(In(name)), ShortcutFile::OneLine(address));
  }

  void SetsAddressOfWebloc() {
    Put("a.webloc", Plist("\x53URL", "\x53h:x"));
    QVERIFY(QFile::link("a.webloc", In("link.webloc")));
    QVERIFY(QFile::setPermissions(In("a.webloc"), QFile::ReadOwner | QFile::WriteOwner));
    QVERIFY(ShortcutFile::SetAddress(In("link.webloc"), u"http://a.example/?a&<b>"_s));
    QCOMPARE(ShortcutFile::Read(In("a.webloc")), u"http://a.example/?a&<b>"_s);
    QVERIFY(QFileInfo(In("link.webloc")).isSymLink());
    QVERIFY(!(QFile::permissions(In("a.webloc")) & QFile::ReadOther));
  }

 private:
  static QByteArray Utf16(const QString &text, bool isBigEndian) {
    QByteArray bytes;
    for (const QChar unit : text) {
      const char high = char(unit.unicode() >> 8);
      const char low = char(unit.unicode() & 0xFF);
      bytes += isBigEndian ? high : low;
      bytes += isBigEndian ? low : high;
    }
    return bytes;
  }

  // A binary list of one key and its value, each written as an object.
  static QByteArray Plist(const QByteArray &key, const QByteArray &value) {
    QByteArray bytes("bplist00");
    const qsizetype dictionary = bytes.size();
    bytes += QByteArray("\xD1\x01\x02", 3);
    const qsizetype keyPlace = bytes.size();
    bytes += key;
    const qsizetype valuePlace = bytes.size();
    bytes += value;
    const qsizetype table = bytes.size();
    for (const qsizetype place : {dictionary, keyPlace, valuePlace}) bytes += char(place);
    bytes += QByteArray(6, '\0') + QByteArray("\x01\x01", 2) + QByteArray(7, '\0') + '\x03' + QByteArray(8, '\0');
    return bytes + QByteArray(7, '\0') + char(table);
  }

  [[nodiscard]] QString In(const QString &name) const { return m_folder.filePath(name); }
  void Put(const QString &name, const QByteArray &bytes) const {
    QFile file(In(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
  }
  [[nodiscard]] QByteArray Contents(const QString &name) const {
    QFile file(In(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }

  QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(TTestShortcutFile)
#include "test_shortcut_file.moc"
