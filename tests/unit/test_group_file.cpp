#include <sys/stat.h>
#include <memory>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include "groups/halvex_group.h"
#include "support/data_row.h"
#include "support/named_lines.h"

class TTestGroupFile final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    m_folder = std::make_unique<QTemporaryDir>();
    m_path = m_folder->filePath("group.hgp");
  }

  void Reads_data() {
    Columns<QByteArray, QString>("bytes", "lines");
    Row("pages in order", QByteArray("[HalvexGroup]\nb=http://x/?q=1&r=2\na=*http://y\n"),
        "b=http://x/?q=1&r=2\na=*http://y");
    Row("blanks, other case, carriage returns", QByteArray("[HALVEXGROUP]\r\n  a b = http://x  \r\n\r\n"),
        "a b=http://x");
    QTest::newRow("same name twice") << QByteArray("[HalvexGroup]\na=1\na=2\n") << "a=1\na=2";
    QTest::newRow("no name, no address") << QByteArray("[HalvexGroup]\n=1\nb=\n=\n") << "=1\nb=\n=";
  }
  void Reads() {
    QFETCH(QByteArray, bytes);
    QVERIFY(Put(bytes));
    const THalvexGroup group(m_path);
    QTEST(LinesOf(group).join(u'\n'), "lines");
    QCOMPARE(group.FileName(), m_path);
    QVERIFY(group.ReadError().isEmpty());
  }

  void Saves_data() {
    // An entry is name|address|locked, or a line as it stands.
    Columns<QByteArray, QStringList, QByteArray>("before", "entries", "after");
    const QByteArray head("[HalvexGroup]\n");
    Row("numbers go by position", QByteArray(), QStringList{"x|1|", "|2|", "y|3|", "|4|"},
        head + "x=1\nblank2=2\ny=3\nblank4=4\n");
    Row("equals signs", QByteArray(), QStringList{"a=b=|http://x/?q=1=2|"}, head + "ab=http://x/?q=1=2\n");
    QTest::newRow("locked") << QByteArray() << QStringList{"a|http://x|locked"} << head + "a=*http://x\n";
    QTest::newRow("same name twice") << QByteArray() << QStringList{"a|1|", "b|2|", "a|3|"} << head + "a=3\nb=2\n";
    QTest::newRow("line breaks") << QByteArray() << QStringList{"a\nb|1\r\n[X]|"} << head + "a b=1  [X]\n";
    Row("lines without an equals sign", QByteArray(), QStringList{"loose", "a=1", "loose", "b=2"},
        head + "=\na=1\nb=2\n");
    Row("other sections stay", QByteArray("; note\n[Mine]\nx=1\n") + head + "old=1\n", QStringList{"clear", "a|2|"},
        QByteArray("; note\n[Mine]\nx=1\n\n") + head + "a=2\n");
    QTest::newRow("emptied") << head + "old=1\n" << QStringList{"clear"} << QByteArray();
  }
  void Saves() {
    QFETCH(QByteArray, before);
    QFETCH(QStringList, entries);
    if (!before.isEmpty()) QVERIFY(Put(before));
    THalvexGroup group(m_path);
    QCOMPARE(group.FileName().isEmpty(), before.isEmpty());
    group.SetFileName(m_path);
    for (const QString &entry : entries) {
      const QStringList parts = entry.split(u'|');
      if (entry == "clear") {
        group.Clear();
      } else if (parts.size() == 3) {
        group.AddEntry(parts.at(0), parts.at(1), !parts.at(2).isEmpty());
      } else {
        group.AddLine(entry);
      }
    }
    QString error;
    QVERIFY2(group.Save(&error), qPrintable(error));
    QTEST(Contents(), "after");
  }

  // A refused write leaves the file as it was, and nothing else behind.
  void RefusedWrites() {
    const QByteArray before("[HalvexGroup]\na=1\n");
    QVERIFY(Put(before));
    THalvexGroup group(m_path);
    group.AddEntry("b", "2", false);
    QString error;

    const QString pipe = m_folder->filePath("pipe.hgp");
    QCOMPARE(::mkfifo(pipe.toUtf8(), 0600), 0);
    for (const QString &place : {m_folder->filePath("no/such.hgp"), m_folder->path(), pipe}) {
      error.clear();
      group.SetFileName(place);
      QVERIFY2(!group.Save(&error), qPrintable(place));
      QVERIFY2(!error.isEmpty(), qPrintable(place));
    }
    QCOMPARE(Contents(), before);
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size(), 2);

    const THalvexGroup unreadable(pipe);
    QVERIFY(unreadable.Count() == 0 && !unreadable.ReadError().isEmpty());
    const THalvexGroup missing(m_folder->filePath("none.hgp"));
    QVERIFY(missing.Count() == 0 && missing.ReadError().isEmpty() && missing.FileName().isEmpty());
  }

 private:
  [[nodiscard]] static QStringList LinesOf(const THalvexGroup &group) {
    TNamedAddresses pages;
    for (int line = 0; line < group.Count(); ++line) pages.append(group.At(line));
    return ToLines(pages);
  }
  [[nodiscard]] bool Put(const QByteArray &bytes) const {
    QFile file(m_path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
  }
  [[nodiscard]] QByteArray Contents() const {
    QFile file(m_path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }

  std::unique_ptr<QTemporaryDir> m_folder;
  QString m_path;
};

QTEST_GUILESS_MAIN(TTestGroupFile)
#include "test_group_file.moc"
