#include <QRandomGenerator>
#include <QTest>

#include "popups/popup_patterns.h"
#include "popups/popup_wildcard.h"
#include "support/data_row.h"

namespace {

QString RandomText(QRandomGenerator &random, const char *letters, int longest) {
  const int count = int(qstrlen(letters));
  QString text;
  for (int length = random.bounded(longest + 1); length > 0; --length) {
    text.append(QLatin1Char(letters[random.bounded(count)]));
  }
  return text;
}

// The pop-up test as it reads: one pattern after the other, each with a star at its end.
int FirstByWalking(const QStringList &patterns, const QString &address) {
  for (int i = 0; i < patterns.size(); ++i) {
    const QString pattern = patterns[i].endsWith(u'*') ? patterns[i] : patterns[i] + u'*';
    if (!patterns[i].isEmpty() && MatchWildcard(address, pattern)) return i;
  }
  return -1;
}

}  // namespace

// The wildcards of the pop-up list and the search through a long one.
class TestWildcard final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void Rules_data() {
    Columns<QString, QString, bool>("pattern", "text", "fits");
    const auto row = [](const char *pattern, const char *text, bool fits) {
      QTest::addRow("'%s' and '%s'", pattern, text) << pattern << text << fits;
    };
    row("", "", true);
    row("", "a", false);
    row("*", "", true);
    row("**", "", false);  // only a single star fits nothing at all
    row("**", "a", true);
    row("a**", "a", false);
    row("a**", "ab", true);
    row("a*", "a", true);
    row("a**b", "ab", true);
    row("?", "", false);
    row("?", "ab", false);
    row("a?c", "ac", false);
    row("ABC*", "abcd", false);
    row("a*b*c", "a-b-c-b-c", true);
    row("*ab", "aab", true);
    row("*a?b*", "aacb", true);
  }
  void Rules() {
    QFETCH(QString, pattern);
    QFETCH(QString, text);
    QTEST(MatchWildcard(text, pattern), "fits");
  }

  // Tried star by star this would not end in anybody's life.
  void Hostile() {
    const QString text(100000, u'a');
    for (const QString &pattern :
         {QStringLiteral("*a").repeated(500) + u'b', QString(5000, u'*') + u'b',
          QStringLiteral("*?").repeated(500) + u'b', QStringLiteral("*aaaaaaab").repeated(50)}) {
      QVERIFY(!MatchWildcard(text, pattern));
      TPopupPatterns patterns;
      QStringList list;
      for (int i = 0; i < 100; ++i) list.append(pattern + QString::number(i));
      patterns.Set(list);
      QCOMPARE(patterns.FirstMatch(text), -1);
    }
  }

  void Prefixes_data() {
    Columns<QStringList, QString, int>("patterns", "address", "first");
    const QString page = "http://ads.example/x";
    Row("its beginning", QStringList{"http://ads"}, page, 0);
    Row("not behind a scheme", QStringList{"ads.example"}, page, -1);
    Row("case counts", QStringList{"http://ADS.example"}, page, -1);
    Row("a star in the host", QStringList{"http://*.example"}, page, 0);
    Row("two stars want more", QStringList{"http://ads.example/x**"}, page, -1);
    Row("an empty pattern is none", QStringList{QString()}, page, -1);
    Row("the first, not the longest", QStringList{"zzz", "http://ads", "http://ads.example/"}, page, 1);
    Row("a wildcard before a plain one", QStringList{"*ads", "http://ads"}, page, 0);
    Row("everything", QStringList{"*"}, "", 0);
  }
  void Prefixes() {
    QFETCH(QStringList, patterns);
    QFETCH(QString, address);
    TPopupPatterns list;
    list.Set(patterns);
    QTEST(list.FirstMatch(address), "first");
  }

  void LikeWalking() {
    QRandomGenerator random(815);
    // The same object takes one list after the other.
    TPopupPatterns list;
    // With few wildcards, with many, and with none.
    for (const char *letters : {"aaabbbc*", "abc*?", "ab"}) {
      int matches = 0;
      for (int round = 0; round < 300; ++round) {
        QStringList patterns;
        for (int i = 0; i < 30; ++i) patterns.append(RandomText(random, letters, 9));
        list.Set(patterns);
        for (int i = 0; i < 40; ++i) {
          const QString address = RandomText(random, "aaabbc", 12);
          const int expected = FirstByWalking(patterns, address);
          matches += expected >= 0 ? 1 : 0;
          const bool isSame = list.FirstMatch(address) == expected;
          QVERIFY2(isSame, qPrintable(patterns.join(u' ') + " and " + address));
        }
      }
      QVERIFY(matches > 1000 && matches < 300 * 40);
    }
  }
};

QTEST_APPLESS_MAIN(TestWildcard)
#include "test_wildcard.moc"
