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

  void Hostile_data() {
    QTest::addColumn<QString>("pattern");
    QTest::newRow("many stars") << QStringLiteral("*a").repeated(500) + QStringLiteral("b");
    QTest::newRow("nearly fitting parts") << QStringLiteral("*aaaaaaab").repeated(50);
  }

  void Hostile() {
    QFETCH(QString, pattern);
    // Tried star by star this would not end in anybody's life.
    const QString text(100000, u'a');
    QVERIFY(!MatchWildcard(text, pattern));
    QVERIFY(!MatchWildcard(text, QStringLiteral("a") + pattern));
    TPopupPatterns patterns;
    QStringList list;
    for (int i = 0; i < 100; ++i) list.append(pattern + QString::number(i));
    patterns.Set(list);
    QCOMPARE(patterns.FirstMatch(text), -1);
  }

  void Prefixes_data() {
    Columns<QStringList, QString, int>("patterns", "address", "first");
    const QString host = QStringLiteral("ads.example");
    const QString page = QStringLiteral("http://ads.example/x");
    QTest::newRow("itself") << QStringList{host} << host << 0;
    QTest::newRow("not behind a scheme") << QStringList{host} << page << -1;
    QTest::newRow("case counts") << QStringList{"http://ADS.example"} << page << -1;
    QTest::newRow("a star in the host") << QStringList{"http://*.example"} << page << 0;
    QTest::newRow("two stars want more") << QStringList{"http://ads.example/x**"} << page << -1;
    QTest::newRow("an empty pattern is none") << QStringList{QString()} << page << -1;
    QTest::newRow("the first, not the longest") << QStringList{"zzz", "http://ads", "http://ads.example/"} << page << 1;
    QTest::newRow("the first, not the shortest") << QStringList{"http://ads.example/", "http://ads"} << page << 0;
    QTest::newRow("a wildcard before a plain one") << QStringList{"*ads", "http://ads"} << page << 0;
    QTest::newRow("a plain one before a wildcard") << QStringList{"http://ads", "*ads"} << page << 0;
    QTest::newRow("everything") << QStringList{"*"} << QString() << 0;
  }

  void Prefixes() {
    QFETCH(QStringList, patterns);
    QFETCH(QString, address);
    TPopupPatterns list;
    list.Set(patterns);
    QTEST(list.FirstMatch(address), "first");
  }

  void LikeWalking_data() {
    QTest::addColumn<QByteArray>("letters");
    QTest::newRow("few wildcards") << QByteArray("aaabbbc*");
    QTest::newRow("many wildcards") << QByteArray("abc*?");
    QTest::newRow("no wildcards") << QByteArray("ab");
  }

  void LikeWalking() {
    QFETCH(QByteArray, letters);
    QRandomGenerator random(815);
    int matches = 0;
    for (int round = 0; round < 300; ++round) {
      QStringList patterns;
      for (int i = 0; i < 30; ++i) patterns.append(RandomText(random, letters.constData(), 9));
      // The same object takes one list after the other.
      static TPopupPatterns list;
      list.Set(patterns);
      for (int i = 0; i < 40; ++i) {
        const QString address = RandomText(random, "aaabbc", 12);
        const int expected = FirstByWalking(patterns, address);
        matches += expected >= 0 ? 1 : 0;
        if (list.FirstMatch(address) != expected) {
          QFAIL(qPrintable(patterns.join(u' ') + QStringLiteral(" and ") + address));
        }
      }
    }
    QVERIFY(matches > 1000 && matches < 300 * 40);
  }
};

QTEST_APPLESS_MAIN(TestWildcard)
#include "test_wildcard.moc"
