#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include "browser/downloads/file_names.h"
#include "support/data_row.h"

using namespace Qt::StringLiterals;

// What servers call their files, made safe and free.
class TestFileNames final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() {
    for (const QString &file : QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden)) QFile::remove(In(file));
  }

  void safeNames_data() {
    Columns<QString, QString>("suggested", "safe");
    QTest::newRow("other scripts stay") << u"写真 ü.jpg"_s << u"写真 ü.jpg"_s;
    QTest::newRow("folders") << u"../../etc/passwd"_s << u"passwd"_s;
    QTest::newRow("backslash folders") << u"..\\..\\start\\run.bat"_s << u"run.bat"_s;
    QTest::newRow("only dots") << u".."_s << u"download"_s;
    QTest::newRow("hidden") << u".bashrc"_s << u"bashrc"_s;
    QTest::newRow("dots and blanks at the end") << u" name.txt. . "_s << u"name.txt"_s;
    QTest::newRow("control characters") << QString::fromUtf16(u"a\0b\nc\x7f.txt", 10) << u"abc.txt"_s;
    QTest::newRow("direction marks") << u"photo\u202Egpj\u2069\u061C.exe"_s << u"photogpj.exe"_s;
    QTest::newRow("half a pair") << QString(QChar(0xD800)) + u"a.txt"_s << u"a.txt"_s;
    QTest::newRow("characters of other systems") << u"a<b>c:d\"e|f?g*.txt"_s << u"a_b_c_d_e_f_g_.txt"_s;
    QTest::newRow("reserved with an ending") << u"lpt1.txt"_s << u"_lpt1.txt"_s;
    QTest::newRow("not reserved") << u"console.txt"_s << u"console.txt"_s;
    QTest::newRow("too long") << QString(500, 'x') + u".tar.gz"_s << QString(193, 'x') + u".tar.gz"_s;
    Row("too long, wide", QString(200, QChar(0x5199)) + u".txt"_s, QString(65, QChar(0x5199)) + u".txt"_s);
    QTest::newRow("too long ending") << u"x."_s + QString(500, 'y') << u"x."_s + QString(198, 'y');
  }

  void safeNames() {
    QFETCH(QString, suggested);
    QTEST(FileNames::Safe(suggested, u"download"_s), "safe");
  }

  void freePathNumbersNames_data() {
    Columns<QStringList, QString, QString>("there", "name", "free");
    QTest::newRow("free") << QStringList{} << u"a.txt"_s << u"a.txt"_s;
    QTest::newRow("numbers there") << QStringList{u"a.txt"_s, u"a (1).txt"_s} << u"a.txt"_s << u"a (2).txt"_s;
    QTest::newRow("two endings") << QStringList{u"a.tar.gz"_s} << u"a.tar.gz"_s << u"a (1).tar.gz"_s;
    QTest::newRow("no ending") << QStringList{u"a"_s} << u"a"_s << u"a (1)"_s;
    QTest::newRow("being written by the engine") << QStringList{u"a.txt.download"_s} << u"a.txt"_s << u"a (1).txt"_s;
    QTest::newRow("being written by us") << QStringList{} << u"taken.txt"_s << u"taken (1).txt"_s;
  }

  void freePathNumbersNames() {
    QFETCH(QStringList, there);
    QFETCH(QString, name);
    QFETCH(QString, free);
    for (const QString &file : there) QVERIFY(QFile(In(file)).open(QIODevice::WriteOnly));
    QCOMPARE(
        FileNames::FreePath(m_folder.path(), name, [this](const QString &path) { return path == In(u"taken.txt"_s); }),
        In(free));
  }

  void executables() {
    for (const char *name : {"a.sh", "a.desktop", "A.EXE"}) QVERIFY2(FileNames::IsExecutable(In(name)), name);
    QFile picture(In(u"a.jpg"_s));
    QVERIFY(picture.open(QIODevice::WriteOnly));
    QVERIFY(!FileNames::IsExecutable(picture.fileName()));
    QVERIFY(picture.setPermissions(picture.permissions() | QFile::ExeOwner));
    QVERIFY(FileNames::IsExecutable(picture.fileName()));
  }

 private:
  [[nodiscard]] QString In(const QString &name) const { return m_folder.filePath(name); }

  QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(TestFileNames)
#include "test_file_names.moc"
