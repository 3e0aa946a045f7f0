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

  void Reads() {
    QVERIFY(Put("x=1\n[HALVEXGROUP]\nb=http://x/?q=1&r=2\n  a b = *http://y  \r\na b=2\n=1\nc=\n[More]\nd=3\n"));
    const THalvexGroup group(m_path);
    TNamedAddresses pages;
    for (int line = 0; line < group.Count(); ++line) pages.append(group.At(line));
    QCOMPARE(ToLines(pages), QStringList({"b=http://x/?q=1&r=2", "a b=*http://y", "a b=2", "=1", "c="}));
    QVERIFY(group.FileName() == m_path && group.ReadError().isEmpty());
  }

  void Saves_data() {
    // An entry is name|address|locked, or a line as it stands.
    Columns<QByteArray, QStringList, QByteArray>("before", "entries", "after");
    const QByteArray head("[HalvexGroup]\n");
    Row("numbers go by position", QByteArray(), QStringList{"x|1|", "|2|", "y|3|", "|4|"},
        head + "x=1\nblank2=2\ny=3\nblank4=4\n");
    Row("a number that is taken", head + "a=1\nBlank3=3\nblank5=5\n", QStringList{"|6|", "|7|"},
        head + "a=1\nBlank3=3\nblank5=5\nblank4=6\nblank6=7\n");
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

  // A refused write leaves nothing behind.
  void RefusedWrites() {
    const QString pipe = m_folder->filePath("pipe.hgp");
    QCOMPARE(::mkfifo(pipe.toUtf8(), 0600), 0);
    THalvexGroup group(m_path);
    QVERIFY(group.ReadError().isEmpty() && group.FileName().isEmpty());  // is not there
    group.AddEntry("b", "2", false);
    for (const QString &place : {m_folder->filePath("no/such.hgp"), m_folder->path(), pipe}) {
      QString error;
      group.SetFileName(place);
      QVERIFY2(!group.Save(&error) && !error.isEmpty(), qPrintable(place));
    }
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size(), 1);
    const THalvexGroup unreadable(pipe);
    QVERIFY(unreadable.Count() == 0 && !unreadable.ReadError().isEmpty());
  }

 private:
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
