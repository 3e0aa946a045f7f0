#include "chrome/toolbar/toolbar_definition.h"
#include "store/ini_file.h"
#include "support/data_row.h"

using namespace Qt::StringLiterals;

// The rules by which the file of the tool bar is read and written.
class TestToolbarDefinition final : public QObject {
  Q_OBJECT

 private:
  // Indices from left to right, "|" for a separator, in brackets what is hidden.
  [[nodiscard]] static QString Text(const TToolbarEntries &entries) {
    QStringList texts;
    for (const TToolbarEntry &entry : entries) {
      const QString text = entry.index == TToolbarEntry::Separator ? u"|"_s : QString::number(entry.index);
      texts.append(entry.visible ? text : u'(' + text + u')');
    }
    return texts.join(u' ');
  }
  [[nodiscard]] static TToolbarEntries Read(const QByteArray &bytes) {
    return ToolbarDefinition::FromFile(TIniFile::FromBytes(bytes));
  }

 private Q_SLOTS:
  void Reading_data() {
    Columns<QByteArray, QString>("lines", "entries");
    Row("nothing", ""_ba, u"21"_s);
    Row("a hidden separator only", "Sep0=0\n"_ba, u"| 21"_s);
    Row("older than the last button", "0=1\n1=0\n"_ba, u"0 (1) 21"_s);
    Row("as it stands", "21=0\nSep=1\n5=1\n0=1"_ba, u"(21) | 5 0"_s);
    Row("only 0 hides", "0=00\n1= 0 \n2=no\n3=\n21=1\n"_ba, u"0 (1) 2 3 21"_s);
    Row("a word ends it", "0=1\nx=1\n2=1\n21=1\n"_ba, u"2 21"_s);
    Row("a word at the end", "0=1\n21=1\n5x=1\n"_ba, QString());
    Row("a word without the last button", "0=1\nx=1"_ba, u"21"_s);
    Row("letters count", "0=1\nsep1=1\n21=1"_ba, u"21"_s);
    Row("any separator", "Separate=1\n21=1"_ba, u"| 21"_s);
    Row("beyond any number", "0=1\n99999999999=1\n21=1"_ba, u"21"_s);
    Row("of a later version", "22=1\n99=0\n-7=1\n21=1"_ba, u"22 (99) -7 21"_s);
    Row("a separator by its index", "-1=0\n-1=1\n21=1"_ba, u"(|) | 21"_s);
    Row("twice", "2=1\n2=0\n21=1"_ba, u"2 (2) 21"_s);
    Row("other lines", "; 5=1\nno line\n\n2=1\r\n21=1"_ba, u"2 21"_s);
    Row("no other section's", "2=1\n21=1\n[Other]\n3=1"_ba, u"2 21"_s);
  }
  void Reading() {
    QFETCH(QByteArray, lines);
    QFETCH(QString, entries);
    const TToolbarEntries read = Read("1=1\n[Toolbar]\n" + lines);
    QCOMPARE(Text(read), entries);
    // What is written comes back as it was, but for separators, which always come back visible.
    const QString written = Text(Read(ToolbarDefinition::ToBytes(read)));
    const QString shown = QString(entries).replace(u"(|)"_s, u"|"_s);
    QCOMPARE(written, entries.contains(u"21"_s) ? shown : u"21"_s);
  }

  // The end counts: it is read from there.
  void EndlessFile() {
    const TToolbarEntries read = Read("[Toolbar]\n" + QByteArray("1=1\n").repeated(100000) + "2=1\n21=1\n");
    QCOMPARE(read.size(), ToolbarDefinition::MostEntries);
    QCOMPARE(Text(read.last(3)), u"1 2 21"_s);
  }

  void Default() {
    QCOMPARE(Text(ToolbarDefinition::Default()),
             u"0 (1) | 2 3 | 4 5 6 7 | 8 9 | 10 11 12 | 13 14 15 16 (17) (18) (19) (20) 21"_s);
    QCOMPARE(ToolbarDefinition::ToBytes(ToolbarDefinition::Default()),
             "[Toolbar]\n0=1\n1=0\nSep2=1\n2=1\n3=1\nSep5=1\n4=1\n5=1\n6=1\n7=1\nSep10=1\n8=1\n9=1\nSep13=1\n10=1\n"
             "11=1\n12=1\nSep17=1\n13=1\n14=1\n15=1\n16=1\n17=0\n18=0\n19=0\n20=0\n21=1\n"_ba);
  }
};

QTEST_GUILESS_MAIN(TestToolbarDefinition)
#include "test_toolbar_definition.moc"
