#include <QtTest>

#include "services/version_exchange.h"
#include "support/data_row.h"

using namespace Qt::StringLiterals;

// What the update server is asked, and what is made of its answer.
class TestVersionExchange final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void Queries_data() {
    Columns<bool, int, QDate, QString>("isNew", "lastPong", "today", "query");
    const QDate day(2026, 11, 22);
    const int today = 46348;  // the 22nd of November 2026
    Row("never", false, 0, day, u"?ver=621A&new=0&mo=1"_s);
    Row("a new one", true, 0, day, u"?ver=621A&new=1&mo=1"_s);
    Row("the first of the month", false, today - 21, day, u"?ver=621A&new=0&mo=0"_s);
    Row("the month before", false, today - 22, day, u"?ver=621A&new=0&mo=1"_s);
    Row("later this month: the clock was wrong", false, today + 8, day, u"?ver=621A&new=0&mo=0"_s);
    Row("the same month of another year", false, today - 365, day, u"?ver=621A&new=0&mo=1"_s);
    Row("day 0 is a day like any other", false, 1, QDate(1899, 12, 30), u"?ver=621A&new=0&mo=0"_s);
    Row("the lowest number", false, std::numeric_limits<int>::min(), day, u"?ver=621A&new=0&mo=1"_s);
    Row("the highest number", false, std::numeric_limits<int>::max(), day, u"?ver=621A&new=0&mo=1"_s);
  }
  void Queries() {
    QFETCH(bool, isNew);
    QFETCH(int, lastPong);
    QFETCH(QDate, today);
    QTEST(VersionRequest::Query(isNew, lastPong, today), "query");
  }

  void Days() {
    QCOMPARE(VersionRequest::DayNumber(QDate(2026, 11, 22)), 46348);
    QCOMPARE(VersionRequest::DayNumber(QDate(1899, 12, 30)), 0);
  }

  void Answers_data() {
    Columns<QString, QString>("text", "read");
    const QString all = u"PONG=TRUE\nVERSION=7.0\nVERURL=http://a.test/7?b=c&d\nVERID=700\n"_s;
    Row("all", all, u"counted 7.0 http://a.test/7?b=c&d 700"_s);
    Row("ends of lines", QString(all).replace(u"\n"_s, u"\r\n"_s), u"counted 7.0 http://a.test/7?b=c&d 700"_s);
    Row("old ends, none at the end", all.trimmed().replace(u'\n', u'\r'), u"counted 7.0 http://a.test/7?b=c&d 700"_s);
    Row("nothing", QString(), u"-   0"_s);
    Row("other cases", u"PONG=true\nversion=7\nVerUrl=http://a.test\n"_s, u"-   0"_s);
    Row("blanks", u" PONG=TRUE\nVERID =7\nPONG =TRUE"_s, u"-   0"_s);
    Row("a blank behind", u"PONG=TRUE "_s, u"-   0"_s);
    Row("keys that begin alike", u"PONGS=TRUE\nVERIDS=7\nVER=1"_s, u"-   0"_s);
    Row("the first one counts", u"PONG=FALSE\nPONG=TRUE\nVERID=3\nVERID=4"_s, u"-   3"_s);
    Row("empty values", u"PONG=\nVERSION=\nVERURL=\nVERID="_s, u"-   0"_s);
    Row("more signs", u"VERSION=a=b\nPONG==TRUE"_s, u"- a=b  0"_s);
    Row("text of a page", u"<html>\nPONG=TRUE\n<p>VERID=9</p>\n</html>"_s, u"counted   0"_s);
    Row("a version of many signs", u"VERSION="_s + QString(500, u'x'),
        u"- "_s + QString(66, u'x') + u'…' + QString(33, u'x') + u"  0"_s);
    Row("a version that turns the text round", u"VERSION=\u202E7\u0007.0"_s, u"- 7 .0  0"_s);
    Row("a version of blanks", u"VERSION= \t"_s, u"-   0"_s);
    for (const QString &number : {u"x"_s, u"7x"_s, u"0x10"_s, u"7.5"_s, u"2147483648"_s, u"99999999999999999999"_s}) {
      Row(qPrintable(u"id "_s + number), u"VERID="_s + number, u"-   0"_s);
    }
    Row("id below zero", u"VERID=-5"_s, u"-   -5"_s);
    Row("the highest id", u"VERID=2147483647"_s, u"-   2147483647"_s);
    for (const QString &address :
         {u"javascript:alert(1)"_s, u"file:///etc/passwd"_s, u"ftp://a.test/"_s, u"a.test/7"_s, u"//a.test/7"_s,
          u"http:///7"_s, u"http:"_s, u"data:text/html,x"_s, u"http://you@a.test/"_s, u"https://a b/"_s,
          u"http://a.test/"_s + QString(2048, u'x')}) {
      Row(qPrintable(address.left(40)), u"VERURL="_s + address, u"-   0"_s);
    }
    Row("https", u"VERURL=HTTPS://A.test/x"_s, u"-  https://a.test/x 0"_s);
    const QString filler = QString(TVersionAnswer::Longest - 9, u'x') + u'\n';
    Row("as much as is read", filler + u"VERID=7\n"_s + u"VERSION=8"_s, u"-   7"_s);
    Row("a line that is cut off", filler + u"VERID=789"_s, u"-   0"_s);
    Row("beyond", filler + u"xxxxxxxx\nPONG=TRUE"_s, u"-   0"_s);
  }
  void Answers() {
    QFETCH(QString, text);
    const TVersionAnswer answer = TVersionAnswer::Read(text);
    const QString read = u"%1 %2 %3 %4"_s.arg(answer.isCounted ? u"counted"_s : u"-"_s, answer.version, answer.address,
                                              QString::number(answer.id));
    QTEST(read, "read");
  }
};

QTEST_APPLESS_MAIN(TestVersionExchange)
#include "test_version_exchange.moc"
