#include <QtTest>

#include "search/quick_search.h"

// The quick searches of the address bar.
using TFault = QuickSearchFormat::TFault;
using TKind = TQuickSearch::TKind;
Q_DECLARE_METATYPE(TFault)
Q_DECLARE_METATYPE(TKind)

class TTestQuickSearch final : public QObject {
  Q_OBJECT

 private Q_SLOTS:

  void Formats_data() {
    QTest::addColumn<QString>("format");
    QTest::addColumn<TFault>("fault");
    QTest::addColumn<QString>("address");
    const auto good = [](const char *format, const char *address) {
      QTest::newRow(format) << format << TFault::None << address;
    };
    const auto bad = [](const char *format, TFault fault) { QTest::newRow(format) << format << fault << QString(); };
    good("http://a.example/?q=%s", "http://a.example/?q=two  %s words");
    good("http://a.example/%%20%s%%", "http://a.example/%20two  %s words%");
    good("http://a.example/", "http://a.example/");
    good("%%%s", "%two  %s words");
    bad("%s%s", TFault::SeveralPlaces);
    bad("http://a.example/%20%s", TFault::BadPlace);
    bad("%d", TFault::BadPlace);
    bad("%S", TFault::BadPlace);
    bad("%s%", TFault::BadPlace);
  }

  void Formats() {
    QFETCH(QString, format);
    auto fault = TFault::SeveralPlaces;
    QTEST(QuickSearchFormat::Fill(format, "two  %s words", fault), "address");
    QTEST(fault, "fault");
  }

  void Keywords_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<TKind>("kind");
    QTest::addColumn<QString>("address");
    QTest::newRow("one word") << "g word" << TKind::Address << "http://a.example/?q=word";
    QTest::newRow("all words, as they are") << "g two  words " << TKind::Address << "http://a.example/?q=two  words ";
    QTest::newRow("keyword's case") << "G word" << TKind::Address << "http://a.example/?q=word";
    QTest::newRow("keyword alone") << "g" << TKind::None << "";
    QTest::newRow("other blank than the blank") << "g\tword" << TKind::None << "";
    QTest::newRow("unknown") << "x word" << TKind::None << "";
    QTest::newRow("empty format") << "none word" << TKind::None << "";
    QTest::newRow("format with =") << "long word" << TKind::Address << "http://b.example/?a=1&q=word";
    QTest::newRow("first of two") << "twice word" << TKind::Address << "http://1.example/";
    QTest::newRow("bad") << "bad word" << TKind::BadFormat << "";
  }

  void Keywords() {
    const TNamedAddresses searches = {
        {"g", "http://a.example/?q=%s"}, {"none", ""},          {"long", "http://b.example/?a=1&q=%s"},
        {"twice", "http://1.example/"},  {"TWICE", "http://2"}, {"bad", "http://c.example/%s%s"}};
    QFETCH(QString, text);
    const TQuickSearch found = TQuickSearch::Of(text, searches);
    QTEST(found.kind, "kind");
    QTEST(found.address, "address");
  }
};

QTEST_GUILESS_MAIN(TTestQuickSearch)
#include "test_quick_search.moc"
