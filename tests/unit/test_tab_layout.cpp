// The places of tabs without a widget: shrinking, wrapping, and that working out only what changed gives the same as
// working out everything.

#include <numeric>
#include <QRandomGenerator>
#include <QTest>
#include <vector>
#include "browser/strip/tab_layout.h"

namespace {

QString Places(const TTabLayout &layout) {
  QStringList places;
  for (int i = 0; i < layout.Count(); ++i) {
    const TTabLayout::TPlace &place = layout.Place(i);
    places << QStringLiteral("%1:%2+%3").arg(place.row).arg(place.x).arg(place.width);
  }
  return places.join(u' ');
}

TTabLayout::TSpace Space(int extent, bool multiple) {
  TTabLayout::TSpace space;
  space.extent = extent;
  space.narrowest = 50;
  space.maxRows = 3;
  space.multiple = multiple;
  space.lineReserve = 40;
  space.rowsReserve = 20;
  return space;
}

TTabLayout Fresh(const std::vector<int> &wishes, const TTabLayout::TSpace &space) {
  TTabLayout layout;
  layout.SetSpace(space);
  for (const int wish : wishes) layout.Insert(layout.Count(), wish);
  layout.Update();
  return layout;
}

}  // namespace

class TTabLayoutTest final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void Places_data();
  void Places();
  void ChangesGiveTheSameAsStartingAnew_data();
  void ChangesGiveTheSameAsStartingAnew();
  void FindsWhatLiesThere();
  void AnotherTabCostsTheSame_data();
  void AnotherTabCostsTheSame();
};

void TTabLayoutTest::Places_data() {
  QTest::addColumn<bool>("multiple");
  QTest::addColumn<QList<int>>("wishes");
  QTest::addColumn<QString>("places");
  QTest::addColumn<bool>("overflows");

  QTest::newRow("nothing") << true << QList<int>{} << "" << false;
  QTest::newRow("as wide as they wish") << false << QList<int>{100, 80} << "0:0+100 0:100+80" << false;
  QTest::newRow("only the wide ones shrink")
      << false << QList<int>{60, 300, 300} << "0:0+60 0:60+120 0:180+120" << false;
  QTest::newRow("down to the narrowest, then the row is too long")
      << false << QList<int>{90, 90, 90, 90, 90, 90, 30}
      << "0:0+50 0:50+50 0:100+50 0:150+50 0:200+50 0:250+50 0:300+30" << true;
  QTest::newRow("hidden ones take no place") << false << QList<int>{100, 0, 80} << "0:0+100 0:100+0 0:100+80" << false;
  QTest::newRow("wraps") << true << QList<int>{200, 100, 1, 300} << "0:0+200 0:200+100 1:0+1 2:0+300" << false;
  QTest::newRow("wider than a row") << true << QList<int>{500, 100} << "0:0+300 1:0+100" << false;
  QTest::newRow("too many rows give way to the scroll bar")
      << true << QList<int>{290, 290, 290, 290} << "0:0+280 1:0+280 2:0+280 3:0+280" << true;
}

void TTabLayoutTest::Places() {
  QFETCH(bool, multiple);
  QFETCH(QList<int>, wishes);
  const TTabLayout layout = Fresh(std::vector<int>(wishes.begin(), wishes.end()), Space(300, multiple));
  QTEST(::Places(layout), "places");
  QTEST(layout.Overflows(), "overflows");
}

void TTabLayoutTest::ChangesGiveTheSameAsStartingAnew_data() {
  QTest::addColumn<bool>("multiple");
  QTest::newRow("one row") << false;
  QTest::newRow("several rows") << true;
}

void TTabLayoutTest::ChangesGiveTheSameAsStartingAnew() {
  QFETCH(bool, multiple);
  QRandomGenerator random(7);
  std::vector<int> wishes;
  TTabLayout layout;
  TTabLayout::TSpace space = Space(600, multiple);
  space.maxRows = 1000;  // when the scroll bar comes and goes depends on the way there
  layout.SetSpace(space);
  for (int round = 0; round < 3000; ++round) {
    const int count = static_cast<int>(wishes.size());
    const int what = random.bounded(10);
    if (what < 4 || count < 2) {
      const int at = random.bounded(count + 1);
      const int wish = random.bounded(5) == 0 ? 0 : random.bounded(20, 200);
      wishes.insert(wishes.begin() + at, wish);
      layout.Insert(at, wish);
    } else if (what < 7) {
      const int at = random.bounded(count);
      wishes.erase(wishes.begin() + at);
      layout.Remove(at);
    } else if (what < 8) {
      const int at = random.bounded(count);
      wishes[at] = random.bounded(200);
      layout.SetWish(at, wishes[at]);
    } else {
      const int from = random.bounded(count);
      const int to = random.bounded(count);
      const int wish = wishes[from];
      wishes.erase(wishes.begin() + from);
      wishes.insert(wishes.begin() + to, wish);
      layout.Move(from, to);
    }
    if (random.bounded(3) != 0) continue;
    layout.Update();
    const TTabLayout fresh = Fresh(wishes, space);
    QCOMPARE(::Places(layout), ::Places(fresh));
    QCOMPARE(layout.Overflows(), fresh.Overflows());
    QCOMPARE(layout.Length(), fresh.Length());
  }
}

void TTabLayoutTest::FindsWhatLiesThere() {
  const TTabLayout layout = Fresh({100, 0, 150, 0, 200, 90}, Space(300, true));  // rows: 100 150 | 200 90
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

void TTabLayoutTest::AnotherTabCostsTheSame_data() {
  ChangesGiveTheSameAsStartingAnew_data();
}

void TTabLayoutTest::AnotherTabCostsTheSame() {
  QFETCH(bool, multiple);
  TTabLayout layout;
  layout.SetSpace(Space(600, multiple));
  for (int i = 0; i < 5000; ++i) {
    layout.Insert(i, 90);
    const long long before = layout.Steps();
    layout.Update();
    // While a row shrinks, or when the scroll bar comes, all that one screen holds is placed anew; after that one tab.
    if (i > 50) QVERIFY2(layout.Steps() - before <= 2, qPrintable(QString::number(i)));
  }
  const long long before = layout.Steps();
  layout.Move(4990, 4980);
  layout.Update();
  layout.Remove(4990);
  layout.Update();
  QVERIFY(layout.Steps() - before < 50);
}

QTEST_APPLESS_MAIN(TTabLayoutTest)
#include "test_tab_layout.moc"
