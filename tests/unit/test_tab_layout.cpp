#include <QTest>

#include "browser/strip/tab_layout.h"
#include "browser/tabs/tab_caption.h"
#include "support/data_row.h"

// What stands on a tab, and its place without a widget: shrinking, wrapping, and what lies where.
class TTabLayoutTest final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void Places_data() {
    Columns<bool, QList<int>, QString, int>("multiple", "wishes", "places", "extent");
    using L = QList<int>;
    Row("nothing", true, L{}, "", 300);
    Row("as wide as they wish", false, L{100, 80}, "0:0+100 0:100+80", 300);
    Row("just fits", false, L{100, 200}, "0:0+100 0:100+200", 300);
    Row("only the wide ones shrink", false, L{60, 300, 300}, "0:0+60 0:60+120 0:180+120", 300);
    Row("no further than to the narrowest", false, L{90, 90, 90, 90, 90, 90, 30},
        "0:0+50 0:50+50 0:100+50 0:150+50 0:200+50 0:250+50 0:300+30", 260);
    Row("hidden ones take no place", false, L{100, 0, 80}, "0:0+100 0:100+0 0:100+80", 300);
    Row("wraps", true, L{200, 100, 1, 300}, "0:0+200 0:200+100 1:0+1 2:0+300", 300);
    Row("wider than a row", true, L{500, 100}, "0:0+300 1:0+100", 300);
    Row("too many rows give way to the scroll bar", true, L{290, 290, 290, 290}, "0:0+280 1:0+280 2:0+280 3:0+280",
        280);
  }
  void Places() {
    QFETCH(bool, multiple);
    QFETCH(QList<int>, wishes);
    const TTabLayout layout({wishes.begin(), wishes.end()}, Space(multiple));
    QStringList places;
    for (int i = 0; i < layout.Count(); ++i) {
      const TTabLayout::TPlace &place = layout.Place(i);
      places << QStringLiteral("%1:%2+%3").arg(place.row).arg(place.x).arg(place.width);
    }
    QTEST(places.join(u' '), "places");
    QTEST(layout.Extent(), "extent");
    QCOMPARE(layout.Overflows(), layout.Extent() < 300);
  }

  void Caption_data() {
    Columns<QString, QString, int, QString>("title", "sticky", "limit", "caption");
    const auto text = [](int length) { return QString(length, QLatin1Char('x')); };
    const QString dots = QStringLiteral("...");
    Row("short", "Hello", "", 35, "Hello");
    Row("as long as the limit", text(35), "", 35, text(35));
    Row("cut at the limit", text(36), "", 35, text(35) + dots);
    Row("no limit, fixed cut", text(51), "", 0, text(50) + dots);
    Row("no limit, 50 fit", text(50), "", 0, text(50));
    Row("limit above the fixed cut, shorter title", text(60), "", 80, text(50) + dots);
    Row("limit above the fixed cut, longer title", text(100), "", 80, text(80) + dots);
    Row("negative limit is none", text(51), "", -1, text(50) + dots);
    Row("sticky name is never cut", "Title", text(90), 10, text(90));
    Row("ampersands are doubled", "A & B && C", "", 35, "A && B &&&& C");
    Row("sticky ampersand", "Title", "R&D", 35, "R&&D");
    Row("blank", "about:blank", "", 35, "Nothing");
    Row("blank is compared exactly", "About:Blank", "", 35, "About:Blank");
    const QString face = QString::fromUcs4(U"\U0001F600");
    Row("a pair of surrogates stays whole", text(9) + face + text(9), "", 10, text(9) + dots);
    Row("empty", "", "", 35, "");
  }
  void Caption() {
    QFETCH(QString, title);
    QFETCH(QString, sticky);
    QFETCH(int, limit);
    QFETCH(QString, caption);
    QCOMPARE(TabCaption(title, sticky, limit, QStringLiteral("Nothing")), caption);
  }

  void FindsWhatLiesThere() {
    const TTabLayout layout({100, 0, 150, 0, 200, 90}, Space(true));  // rows: 100 150 | 200 90
    QCOMPARE(layout.IndexAt(0, 0), 0);
    QCOMPARE(layout.IndexAt(0, 99), 0);
    QCOMPARE(layout.IndexAt(0, 100), 2);
    QCOMPARE(layout.IndexAt(0, 260), -1);
    QCOMPARE(layout.IndexAt(1, 0), 4);
    QCOMPARE(layout.IndexAt(1, 289), 5);
    QCOMPARE(layout.IndexAt(1, 290), -1);
    QCOMPARE(layout.IndexAt(2, 0), -1);
    QCOMPARE(layout.FirstEndingAfter(0, 260), 4);
  }

 private:
  static TTabLayout::TSpace Space(bool multiple) {
    return {.extent = 300, .narrowest = 50, .maxRows = 3, .multiple = multiple, .lineReserve = 40, .rowsReserve = 20};
  }
};

QTEST_APPLESS_MAIN(TTabLayoutTest)
#include "test_tab_layout.moc"
