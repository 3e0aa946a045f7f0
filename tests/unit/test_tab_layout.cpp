// The places of tabs without a widget: shrinking, wrapping, and what lies where.

#include <QTest>
#include "browser/strip/tab_layout.h"

class TTabLayoutTest final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void Places_data() {
    QTest::addColumn<bool>("multiple");
    QTest::addColumn<QList<int>>("wishes");
    QTest::addColumn<QString>("places");
    QTest::addColumn<int>("extent");

    QTest::newRow("nothing") << true << QList<int>{} << "" << 300;
    QTest::newRow("as wide as they wish") << false << QList<int>{100, 80} << "0:0+100 0:100+80" << 300;
    QTest::newRow("just fits") << false << QList<int>{100, 200} << "0:0+100 0:100+200" << 300;
    QTest::newRow("only the wide ones shrink")
        << false << QList<int>{60, 300, 300} << "0:0+60 0:60+120 0:180+120" << 300;
    QTest::newRow("to the narrowest") << false << QList<int>{90, 90, 90, 90, 90, 90}
                                      << "0:0+50 0:50+50 0:100+50 0:150+50 0:200+50 0:250+50" << 300;
    QTest::newRow("no further: the row is too long")
        << false << QList<int>{90, 90, 90, 90, 90, 90, 30}
        << "0:0+50 0:50+50 0:100+50 0:150+50 0:200+50 0:250+50 0:300+30" << 260;
    QTest::newRow("hidden ones take no place") << false << QList<int>{100, 0, 80} << "0:0+100 0:100+0 0:100+80" << 300;
    QTest::newRow("wraps") << true << QList<int>{200, 100, 1, 300} << "0:0+200 0:200+100 1:0+1 2:0+300" << 300;
    QTest::newRow("wider than a row") << true << QList<int>{500, 100} << "0:0+300 1:0+100" << 300;
    QTest::newRow("too many rows give way to the scroll bar")
        << true << QList<int>{290, 290, 290, 290} << "0:0+280 1:0+280 2:0+280 3:0+280" << 280;
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
