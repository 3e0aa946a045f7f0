#include <sys/stat.h>
#include <QTemporaryDir>
#include <QtTest>

#include "store/ini_file.h"
#include "support/data_row.h"

using namespace Qt::StringLiterals;

namespace {

QString Joined(const TIniFile &file, const QString &section) {
  QStringList lines;
  for (const auto &[key, value] : file.Pairs(section)) lines.append(key + u'=' + value);
  return lines.join(u'\n');
}

}  // namespace

class TTestIniFile final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void Reads_data() {
    // The pairs are those of the section "S".
    Columns<QByteArray, QString, QString>("bytes", "sections", "pairs");
    Row("plain", QByteArray("[S]\na=1\nb=2\n"), "S", "a=1\nb=2");
    Row("no line end at the end", QByteArray("[S]\na=1"), "S", "a=1");
    Row("byte-order mark", QByteArray("\xEF\xBB\xBF[S]\na=1\n"), "S", "a=1");
    Row("other case", QByteArray("[s]\nA=1\n"), "s", "A=1");
    Row("blanks", QByteArray(" [ S ] \n  a b  =  1 2  \n\t;c=3\n"), "S", "a b=1 2");
    Row("more equals signs", QByteArray("[S]\na=x=y==\n=z\n"), "S", "a=x=y==\n=z");
    Row("comments and other lines", QByteArray("[S]\n;a=1\nword\n\n#b=2\n"), "S", "#b=2");
    Row("before the first section", QByteArray("a=1\n[S]\nb=2\n"), "S", "b=2");
    Row("continued section", QByteArray("[S]\na=1\n[T]\nc=3\n[s]\nb=2\n"), "S T", "a=1\nb=2");
    Row("bracketed key", QByteArray("[S]\n[News]=http://[::1]\n[a=b]\n"), "S", "[News]=http://[::1]\n[a=b]");
    Row("empty name", QByteArray("[]\nx=1\n[S]\na=1\n"), " S", "a=1");
    Row("text after the header", QByteArray("[S] ; note\na=1\n"), "S", "a=1");
    Row("latin-1 beside utf-8", QByteArray("[S]\na=\xE4\nb=\xC3\xA4\n"), "S", "a=ä\nb=ä");
    Row("zero byte in a value", QByteArray("[S]\na=1\0z\n", 10), "S", QString::fromLatin1("a=1\0z", 5));
    // A mark is only the file's where it begins; elsewhere it is a character.
    Row("byte-order marks inside", QByteArray("\357\273\277[S]\n\357\273\277a=\357\273\2771\n"), "S",
        u"\uFEFFa=\uFEFF1"_s);
  }
  void Reads() {
    QFETCH(QByteArray, bytes);
    const TIniFile file = TIniFile::FromBytes(bytes);
    QTEST(file.Sections().join(u' '), "sections");
    QTEST(Joined(file, "S"), "pairs");
    QCOMPARE(file.ToBytes(), bytes);
  }

  void LooksUpWithoutRegardToCase() {
    const TIniFile file = TIniFile::FromBytes("[MAIN]\nKey=1\nÄnderung=2\nEmpty=\nkey=3\n");
    QCOMPARE(file.Value("main", "KEY"), "1");
    QCOMPARE(file.Value("Main", "äNDERUNG"), "2");
    QVERIFY(file.HasKey("main", "empty") && !file.HasKey("main", "none") && !file.HasKey("none", "Key"));
    QCOMPARE(file.Value("main", "Empty", "fallback"), "");
    QCOMPARE(file.Value("main", "none", "fallback"), "fallback");
    QCOMPARE(file.Value("none", "Key", "fallback"), "fallback");
  }

  void Changes_data() {
    // A change is section|key|value, section|key or section.
    Columns<QByteArray, QString, QByteArray>("before", "change", "after");
    const QByteArray file("; top\r\nloose=1\r\n[A]\r\nX = 1\r\n;note\r\n\r\n[B]\r\nY=\xE4\r\nnonsense\r\n");
    const auto with = [&](const char *from, const char *to) { return QByteArray(file).replace(from, to); };
    QTest::newRow("in place, spelling kept") << file << "a|x|2" << with("X = 1", "X =2");
    QTest::newRow("the same value") << file << "A|X|1" << file;
    QTest::newRow("new key before the blank lines") << file << "A|Z|3" << with(";note\r\n", ";note\r\nZ=3\r\n");
    QTest::newRow("new section") << file << "C|Z|3" << file + "\r\n[C]\r\nZ=3\r\n";
    QTest::newRow("changed Latin-1 line") << file << "B|Y|ö" << with("\xE4", "\xC3\xB6");
    QTest::newRow("removed key") << file << "A|X" << with("X = 1\r\n", "");
    QTest::newRow("removed section") << file << "A" << with("[A]\r\nX = 1\r\n;note\r\n\r\n", "");
    QTest::newRow("no line end") << QByteArray("[A]\na=1") << "A|b|2" << QByteArray("[A]\na=1\nb=2\n");
    Row("new section, blanks without a line end", QByteArray("[B]\n\t "), "A|b|2", QByteArray("[B]\n\t \n[A]\nb=2\n"));
    Row("end of a continued section", QByteArray("[A]\na=1\n[B]\n[A]\nb=2\n[C]\n"), "A|c|3",
        QByteArray("[A]\na=1\n[B]\n[A]\nb=2\nc=3\n[C]\n"));
    QTest::newRow("repeated key removed") << QByteArray("[A]\na=1\nb=2\nA=3\n") << "A|a" << QByteArray("[A]\nb=2\n");
    QTest::newRow("continued section removed") << QByteArray("[A]\na=1\n[B]\n[a]\nb=2\n") << "A" << QByteArray("[B]\n");
  }
  void Changes() {
    QFETCH(QByteArray, before);
    QFETCH(QString, change);
    TIniFile file = TIniFile::FromBytes(before);
    const QStringList parts = change.split(u'|');
    if (parts.size() == 3) file.SetValue(parts.at(0), parts.at(1), parts.at(2));
    if (parts.size() == 2) file.RemoveKey(parts.at(0), parts.at(1));
    if (parts.size() == 1) file.RemoveSection(parts.at(0));
    QTEST(file.ToBytes(), "after");
    QCOMPARE(file.HasKey(parts.at(0), parts.value(1)), parts.size() == 3);
  }

  // Whatever is set is found in memory and in the file that is written.
  void HostileTextsReadBack() {
    for (const QString &key :
         QStringList{";comment", "; ;x", "a=b", "[section]", "two\nlines", "  blanks ", "", u"\uFEFF=;"_s}) {
      TIniFile file;
      file.SetValue("S]\n[T=", key, " v\r\nw] ");
      file.SetValue("S", "other", "1");
      for (const TIniFile &one : {file, TIniFile::FromBytes(file.ToBytes())}) {
        QCOMPARE(one.Value("S]\n[T=", key), "v  w]");
        QCOMPARE(Joined(one, "S"), "other=1");
      }
    }
  }

  void CopiesAreIndependent() {
    TIniFile file = TIniFile::FromBytes("[A]\na=1\n");
    QCOMPARE(file.Value("A", "a"), "1");
    TIniFile copy = file;
    file.SetValue("A", "a", "9");
    QCOMPARE(copy.Value("A", "a"), "1");
    copy.RemoveSection("A");
    QCOMPARE(file.Value("A", "a"), "9");
  }

  void SavesAndLoads() {
    const QTemporaryDir folder;
    const QString path = folder.filePath("file.ini");
    const QString link = folder.filePath("link.ini");
    const QString second = folder.filePath("second.ini");
    TIniFile file = TIniFile::FromBytes("[A]\na=1\n");
    QString error;
    QVERIFY(file.Save(path, &error));
    QVERIFY(QFile::link("file.ini", link) && QFile::link("link.ini", second));
    file.SetValue("A", "a", "2");
    QVERIFY2(file.Save(second, &error), qPrintable(error));
    QVERIFY(QFileInfo(link).isSymLink() && QFileInfo(second).isSymLink());
    TIniFile loaded;
    QVERIFY(loaded.Load(path, &error) && error.isEmpty());
    QCOMPARE(loaded.Value("A", "a"), "2");
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 3);
  }

  void FailuresTellTheReason() {
    const QTemporaryDir folder;
    const QString pipe = folder.filePath("pipe.ini");
    QCOMPARE(::mkfifo(pipe.toUtf8(), 0600), 0);
    QVERIFY(QDir().mkdir(folder.filePath("folder.ini")));
    QFile huge(folder.filePath("huge.ini"));
    QVERIFY(huge.open(QIODevice::WriteOnly) && huge.resize((qint64(256) << 20) + 1));
    for (const char *name : {"missing.ini", "folder.ini", "pipe.ini", "huge.ini"}) {
      TIniFile file = TIniFile::FromBytes("[A]\na=1\n");
      QString error;
      QVERIFY2(!file.Load(folder.filePath(name), &error), name);
      QVERIFY2(!error.isEmpty() && file.Sections().isEmpty(), name);
    }
    for (const char *name : {"no/such/folder.ini", "folder.ini"}) {
      QString error;
      QVERIFY2(!TIniFile::FromBytes("[A]\n").Save(folder.filePath(name), &error), name);
      QVERIFY2(!error.isEmpty(), name);
    }
  }
};

QTEST_GUILESS_MAIN(TTestIniFile)
#include "test_ini_file.moc"
