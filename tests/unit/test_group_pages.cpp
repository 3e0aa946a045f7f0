#include <functional>
#include <memory>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include "groups/group_pages.h"
#include "support/data_row.h"

using namespace Qt::StringLiterals;

// Single pages of group files: put in, taken out, moved and taken back, whatever others have done to the file.
class TTestGroupPages final : public QObject {
  Q_OBJECT

 private:
  using TDo = std::function<TGroupChange()>;

 private Q_SLOTS:
  void init() {
    m_folder = std::make_unique<QTemporaryDir>();
    Put(u"a"_s, u"x=1\nblank2=*2\ny=3"_s);
    Put(u"b"_s, u"X=9\nblank1=8"_s);
  }

  void Changes_data() {
    Columns<TDo, QString, QString>("change", "a", "b");
    const QString a = u"x=1 blank2=*2 y=3"_s;
    const QString b = u"X=9 blank1=8"_s;
    Row("put in", TDo([this] {
          return GroupPages::Insert(Path(u"a"_s), {2, u"y=3"_s}, {{u"n=m"_s, u"5?a=b"_s, true}, {{}, u"6"_s}});
        }),
        u"x=1 blank2=*2 nm=*5?a=b blank5=6 y=3"_s, b);
    Row("put at the end", TDo([this] {
          return GroupPages::Insert(Path(u"a"_s), {}, {{u"z"_s, u"5"_s}});
        }),
        a + u" z=5"_s, b);
    // A page of that name is not written over.
    Row("a name that is taken", TDo([this] {
          return GroupPages::Insert(Path(u"a"_s), {0, u"x=1"_s}, {{u"X"_s, u"5"_s}, {u"x"_s, u"6"_s}});
        }),
        u"X (2)=5 x (3)=6 x=1 blank2=*2 y=3"_s, b);
    Row("taken out", TDo([this] {
          return GroupPages::Remove(Path(u"a"_s), {{0, u"x=1"_s}, {2, u"y=3"_s}});
        }),
        u"blank2=*2"_s, b);
    Row("all taken out", TDo([this] {
          return GroupPages::Remove(Path(u"b"_s), {{0, u"X=9"_s}, {1, u"blank1=8"_s}});
        }),
        a, QString());
    Row("down", TDo([this] {
          return GroupPages::Move(Path(u"a"_s), {{0, u"x=1"_s}}, Path(u"a"_s), {2, u"y=3"_s});
        }),
        u"blank2=*2 x=1 y=3"_s, b);
    Row("up", TDo([this] {
          return GroupPages::Move(Path(u"a"_s), {{2, u"y=3"_s}, {1, u"blank2=*2"_s}}, Path(u"a"_s), {0, u"x=1"_s});
        }),
        u"blank2=*2 y=3 x=1"_s, b);
    Row("to its own place", TDo([this] {
          return GroupPages::Move(Path(u"a"_s), {{1, u"blank2=*2"_s}}, Path(u"a"_s), {1, u"blank2=*2"_s});
        }),
        a, b);
    Row("to another group", TDo([this] {
          return GroupPages::Move(Path(u"a"_s), {{0, u"x=1"_s}, {1, u"blank2=*2"_s}}, Path(u"b"_s), {1, u"blank1=8"_s});
        }),
        u"y=3"_s, u"X=9 x (2)=1 blank4=*2 blank1=8"_s);
    // What was seen is not where it was, or not there at all.
    Row("another place", TDo([this] {
          return GroupPages::Remove(Path(u"a"_s), {{0, u"y=3"_s}, {1, u"gone=4"_s}});
        }),
        u"x=1 blank2=*2"_s, b);
    Row("before one that has gone", TDo([this] {
          return GroupPages::Insert(Path(u"a"_s), {1, u"gone=4"_s}, {{u"z"_s, u"5"_s}});
        }),
        u"x=1 z=5 blank2=*2 y=3"_s, b);
  }
  void Changes() {
    QFETCH(TDo, change);
    const TGroupChange done = change();
    QVERIFY2(done.error.isEmpty(), qPrintable(done.error));
    QTEST(Lines(u"a"_s), "a");
    QTEST(Lines(u"b"_s), "b");
    const QStringList now = GroupPages::LinesIn(done.path);
    for (const QString &line : done.lines) QVERIFY2(now.contains(line), qPrintable(line));
    // Comments, blanks and other sections come back as well.
    QCOMPARE(GroupPages::Undo(done), QString());
    QCOMPARE(m_put, (QList<QByteArray>{Bytes(u"a"_s), Bytes(u"b"_s)}));
  }

  // A change is taken back out of what somebody else has made of the file since.
  void UndoesBesideOthers_data() {
    // `made` is what the change makes of x=1 y=2 z=3, `now` what the file has become.
    Columns<QString, QString, QString>("made", "now", "undone");
    Row("one put in", u"x=1 n=5 y=2 z=3"_s, u"x=1 n=5 y=2 z=3 other=7"_s, u"x=1 y=2 z=3 other=7"_s);
    Row("one taken out", u"x=1 z=3"_s, u"x=1 other=7 z=4"_s, u"x=1 other=7 y=2 z=4"_s);
    Row("what was put in was changed", u"x=1 y=2 z=3 n=5"_s, u"x=1 y=2 z=3 n=6"_s, u"x=1 y=2 z=3 n=6"_s);
    Row("what was moved has gone", u"y=2 z=3 x=1"_s, u"y=2 z=3"_s, u"y=2 z=3"_s);
    Row("moved", u"y=2 z=3 x=1"_s, u"y=2 other=7 z=3 x=1"_s, u"x=1 y=2 other=7 z=3"_s);
    Row("both have moved", u"y=2 x=1 z=3"_s, u"z=3 y=2 x=1"_s, u"z=3 y=2 x=1"_s);
    Row("another address", u"x=8 y=2 z=3"_s, u"x=8 y=4 z=3"_s, u"x=1 y=4 z=3"_s);
  }
  void UndoesBesideOthers() {
    QFETCH(QString, made);
    QFETCH(QString, now);
    Put(u"c"_s, u"x=1 y=2 z=3"_s.replace(u' ', u'\n'));
    TGroupChange change{.files = {{Path(u"c"_s), Bytes(u"c"_s), {}}}};
    Put(u"c"_s, made.replace(u' ', u'\n'));
    change.files.first().after = Bytes(u"c"_s);
    Put(u"c"_s, now.replace(u' ', u'\n'));
    QCOMPARE(GroupPages::Undo(change), QString());
    QTEST(Lines(u"c"_s), "undone");
  }

  // Where a file cannot be changed the page stays in the other, and the reason is told.
  void Failures() {
    TGroupChange change = GroupPages::Move(Path(u"a"_s), {{0, u"x=1"_s}}, Path(u"none"_s), {});
    QVERIFY(!change.error.isEmpty() && change.files.isEmpty());
    QVERIFY(!QFile::exists(Path(u"none"_s)));
    QCOMPARE(Lines(u"a"_s), u"x=1 blank2=*2 y=3"_s);
    change = GroupPages::Remove(Path(u"a"_s), {{0, u"x=1"_s}});
    QVERIFY(QFile::remove(Path(u"a"_s)));
    QVERIFY(!GroupPages::Undo(change).isEmpty());
  }

  void Pages() {
    QCOMPARE(GroupPages::PageOf(u"a=*http://x/?q=1"_s), (TGroupPage{u"a"_s, u"http://x/?q=1"_s, true}));
    QCOMPARE(GroupPages::PageOf(u"blank7=1"_s), (TGroupPage{{}, u"1"_s}));
    QCOMPARE(GroupPages::PageOf(u"Blank7=1"_s), (TGroupPage{u"Blank7"_s, u"1"_s}));
  }

 private:
  [[nodiscard]] QString Path(const QString &name) const { return m_folder->filePath(name + u".hgp"_s); }
  void Put(const QString &name, const QString &lines) {
    QFile file(Path(name));
    const QByteArray bytes = "; note\n[Other]\nq=1\n\n[HalvexGroup]\n; inside\n" + lines.toUtf8() + "\n";
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    file.close();
    if (name == u"b"_s) m_put = {Bytes(u"a"_s), Bytes(u"b"_s)};
  }
  [[nodiscard]] QByteArray Bytes(const QString &name) const {
    QFile file(Path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }
  [[nodiscard]] QString Lines(const QString &name) const { return GroupPages::LinesIn(Path(name)).join(u' '); }

  std::unique_ptr<QTemporaryDir> m_folder;
  QList<QByteArray> m_put;
};

QTEST_GUILESS_MAIN(TTestGroupPages)
#include "test_group_pages.moc"
