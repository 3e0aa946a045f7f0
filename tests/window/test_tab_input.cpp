// What mouse, wheel, keyboard and dropped links do in the tab strip.

#include <QContextMenuEvent>
#include <QMimeData>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QToolTip>
#include <QUrl>
#include "page_control_fixture.h"
#include "support/data_row.h"

namespace {

QStringList Names(const QSignalSpy &spy) {
  QStringList names;
  for (const QList<QVariant> &arguments : spy) names << TStrip::NameOf(arguments.first().value<QWidget *>());
  return names;
}

}  // namespace

class TTabInputTest final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void KeysInTheStrip_data() {
    Columns<Qt::LayoutDirection, QString, QString>("direction", "keys", "state");
    Row("right", Qt::LeftToRight, "Right", "A B *C");
    Row("left", Qt::LeftToRight, "Left", "*A B C");
    Row("round", Qt::LeftToRight, "Right, Right", "*A B C");
    Row("mirrored", Qt::RightToLeft, "Right", "*A B C");
    Row("home", Qt::LeftToRight, "Home", "*A B C");
    Row("end", Qt::LeftToRight, "End", "A B *C");
    Row("moves", Qt::LeftToRight, "Ctrl+Right", "A C *B");
    Row("moves to the front", Qt::LeftToRight, "Ctrl+Home", "*B A C");
    Row("no row above or below", Qt::LeftToRight, "Up, Down", "A *B C");
  }
  void KeysInTheStrip() {
    QFETCH(Qt::LayoutDirection, direction);
    QFETCH(QString, keys);
    TStrip strip("A B C");
    strip.control.setLayoutDirection(direction);
    strip.control.SetActivePage(strip.Named("B"));
    strip.control.FocusStrip();
    QVERIFY(strip.control.StripHasFocus());
    QTest::keySequence(strip.View(), QKeySequence(keys));
    QTEST(strip.State(), "state");
    QVERIFY(strip.control.StripHasFocus());

    QSignalSpy closes(&strip.control, &TZVPageControl::CloseRequested);
    QSignalSpy menus(&strip.control, &TZVPageControl::TabMenuRequested);
    QTest::keyClick(strip.View(), Qt::Key_Delete);
    QCOMPARE(Names(closes), QStringList{TStrip::NameOf(strip.control.ActivePage())});
    QTest::keyClick(strip.View(), Qt::Key_Menu);
    QTest::keyClick(strip.View(), Qt::Key_F10, Qt::ShiftModifier);
    QCOMPARE(menus.size(), 2);
    for (const QList<QVariant> &menu : menus) {
      QCOMPARE(strip.PageAt(strip.View()->mapFromGlobal(menu[1].toPoint())), strip.control.ActivePage());
    }
    QTest::keyClick(strip.View(), Qt::Key_Escape);
    QVERIFY(strip.control.ActivePage()->hasFocus());
  }

  void MouseButtons() {
    TStrip strip("Alpha Beta Gamma");
    QSignalSpy closes(&strip.control, &TZVPageControl::CloseRequested);
    QSignalSpy empty(&strip.control, &TZVPageControl::EmptyStripDoubleClicked);
    QSignalSpy menus(&strip.control, &TZVPageControl::TabMenuRequested);
    const QPoint nowhere = strip.InView(strip.control.TabRect(strip.Named("Gamma")).topRight()) + QPoint(60, 10);

    QTest::mousePress(strip.View(), Qt::LeftButton, {}, strip.Centre("Beta"));
    QCOMPARE(strip.State(), "Alpha *Beta Gamma");  // the press already
    QTest::mouseRelease(strip.View(), Qt::LeftButton, {}, strip.Centre("Beta"));
    strip.Click(nowhere);
    strip.Click(nowhere, Qt::MiddleButton);
    QCOMPARE(strip.State(), "Alpha *Beta Gamma");

    strip.Click(strip.Centre("Gamma"), Qt::MiddleButton);
    QTest::mousePress(strip.View(), Qt::MiddleButton, {}, strip.Centre("Gamma"));
    QTest::mouseRelease(strip.View(), Qt::MiddleButton, {}, strip.Centre("Alpha"));
    QCOMPARE(Names(closes), QStringList{"Gamma"});
    closes.clear();

    strip.Click(strip.CloseButton("Alpha"));  // on a tab that is not active, too
    QTest::mousePress(strip.View(), Qt::LeftButton, {}, strip.CloseButton("Beta"));
    QTest::mouseRelease(strip.View(), Qt::LeftButton, {}, strip.Centre("Beta"));  // thought better of it
    QCOMPARE(Names(closes), QStringList{"Alpha"});
    QCOMPARE(strip.State(), "Alpha *Beta Gamma");

    QTest::mouseDClick(strip.View(), Qt::LeftButton, {}, strip.Centre("Beta"));
    QCOMPARE(empty.size(), 0);
    QTest::mouseDClick(strip.View(), Qt::LeftButton, {}, nowhere);
    QCOMPARE(empty.size(), 1);

    for (const QPoint &at : {nowhere, strip.Centre("Gamma")}) {
      QContextMenuEvent event(QContextMenuEvent::Mouse, at, strip.View()->mapToGlobal(at));
      QApplication::sendEvent(strip.View(), &event);
    }
    QCOMPARE(Names(menus), QStringList{"Gamma"});
    QCOMPARE(strip.State(), "Alpha *Beta Gamma");
  }

  void WheelWalks() {
    TStrip strip("A B C D");
    strip.Wheel({0, -120});
    QCOMPARE(strip.State(), "A *B C D");
    for (int i = 0; i < 11; ++i) strip.Wheel({0, -10});  // a touch pad: not yet a notch
    QCOMPARE(strip.State(), "A *B C D");
    strip.Wheel({0, -10});
    QCOMPARE(strip.State(), "A B *C D");
    strip.Wheel({0, -100});
    strip.Wheel({0, 60});  // turned back: what had added up is void
    strip.Wheel({0, 60});
    QCOMPARE(strip.State(), "A *B C D");
    strip.Wheel({0, -2000000000});
    strip.Wheel({0, -120});
    QCOMPARE(strip.State(), "A B C *D");  // stays at the end
  }

  void DraggingMovesTabs_data() {
    // Beyond: pixels right of its middle.
    Columns<Qt::LayoutDirection, QString, QString, int, QString>("direction", "dragged", "onto", "beyond", "state");
    Row("to the right, over hidden ones", Qt::LeftToRight, "A", "C", 4, "(H) B (I) C *A D");
    Row("not yet half over", Qt::LeftToRight, "A", "B", -4, "*A (H) B (I) C D");
    Row("to the left", Qt::LeftToRight, "D", "B", -4, "A (H) *D B (I) C");
    Row("to the very end", Qt::LeftToRight, "B", "D", 300, "A (H) (I) C D *B");
    Row("mirrored", Qt::RightToLeft, "A", "C", -4, "(H) B (I) C *A D");
  }
  void DraggingMovesTabs() {
    QFETCH(QString, dragged);
    QFETCH(QString, onto);
    QFETCH(int, beyond);
    QFETCH(Qt::LayoutDirection, direction);
    TStrip strip("A H B I C D");
    strip.control.setLayoutDirection(direction);
    for (const char *hidden : {"H", "I"}) strip.control.SetPageVisible(strip.Named(hidden), false);
    strip.Drag(strip.Centre(dragged), strip.Centre(onto) + QPoint(beyond, 0));
    QTEST(strip.State(), "state");
  }

  // Over what takes a drop outside of the strip and its pages a tab is let go, back in its place.
  void DraggingOut_data() {
    Columns<QString, bool>("over", "isOut");
    Row("what takes drops", "tree", true);
    Row("a field for text", "field", false);
    Row("what takes nothing", "plain", false);
    Row("the page itself", "page", false);
  }
  void DraggingOut() {
    QFETCH(QString, over);
    QFETCH(bool, isOut);
    QWidget window;
    window.resize(900, 600);
    TStrip strip("A B C D", {500, 600});
    strip.control.setParent(&window);
    strip.control.move(400, 0);
    QWidget tree(&window);
    QLineEdit field(&window);
    QWidget plain(&window);
    QWidget onPage(strip.Named("B"));
    tree.setGeometry(0, 0, 380, 100);
    field.setGeometry(0, 100, 380, 100);
    plain.setGeometry(0, 200, 380, 100);
    onPage.setGeometry(0, 0, 300, 300);
    for (QWidget *taker : {&tree, &onPage}) taker->setAcceptDrops(true);
    const QHash<QString, QWidget *> places{{"tree", &tree}, {"field", &field}, {"plain", &plain}, {"page", &onPage}};
    window.show();
    strip.control.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    TStrip::Settle();
    const QSignalSpy out(&strip.control, &TZVPageControl::DragOutWanted);
    QTest::mousePress(strip.View(), Qt::LeftButton, {}, strip.Centre("B"));
    const QString before = strip.State();
    strip.DragTo(strip.Centre("D") + QPoint(4, 0));
    QVERIFY(strip.State() != before);
    const QWidget *place = places.value(over);
    strip.DragTo(strip.View()->mapFromGlobal(place->mapToGlobal(place->rect().center())));
    QCOMPARE(out.size(), isOut ? 1 : 0);
    if (isOut) {
      QCOMPARE(Names(out), QStringList("B"));
      QCOMPARE(strip.State(), before);
      // It is not moved any more.
      strip.DragTo(strip.Centre("D") + QPoint(4, 0));
      QCOMPARE(strip.State(), before);
    }
    QTest::mouseRelease(strip.View(), Qt::LeftButton, {}, strip.Centre("D"));
    strip.control.setParent(nullptr);
  }

  // Whoever follows the moves that are told arrives at the same order, however wild the dragging is.
  void DraggingTellsEveryMove() {
    TStrip strip(QString(), {700, 600});
    for (int i = 0; i < 30; ++i) {
      strip.Add(QString(i % 7 * 5, u'x') + QString::number(i), -1, i % 5 != 0);
    }
    TStrip::Settle();
    QList<QWidget *> followed;
    for (int i = 0; i < 30; ++i) followed << strip.control.Page(i);
    connect(&strip.control, &TZVPageControl::PageMoved, this, [&](int from, int to) { followed.move(from, to); });
    const QSignalSpy moves(&strip.control, &TZVPageControl::PageMoved);
    QRandomGenerator random(3);
    const auto somewhere = [&] {
      return QPoint(random.bounded(strip.View()->width()), random.bounded(strip.View()->height()));
    };
    for (int i = 0; i < 40; ++i) {
      strip.Drag(somewhere(), somewhere());
      for (int p = 0; p < 30; ++p) QCOMPARE(strip.control.Page(p), followed[p]);
    }
    QVERIFY(moves.size() > 40);
  }

  void DraggingBeyondTheEndGoesOn() {
    TStrip strip;
    strip.AddMany(40);
    strip.control.SetMultipleLines(false);
    QWidget *page = strip.control.Page(1);
    const QPoint from = strip.Centre(strip.NameOf(page));
    const QPointF beyond(strip.View()->width() + 50, from.y());
    QTest::mousePress(strip.View(), Qt::LeftButton, {}, from);
    strip.DragTo(beyond);
    QTRY_VERIFY(strip.control.IndexOf(page) > 12);  // far behind what was in sight, without the mouse moving
    QVERIFY(!strip.control.TabRect(page).isEmpty());
    QTest::mouseRelease(strip.View(), Qt::LeftButton, {}, beyond.toPoint());
  }

  void ToolTipIsNeverMarkup() {
    TStrip strip("A B");
    strip.control.SetButtonTexts("close it", "l", "r");
    strip.control.SetPageHint(strip.Named("A"), "<b>5 &lt; 6</b><img src='x'>");
    const auto tip = [&](const QPoint &at) {
      QHelpEvent event(QEvent::ToolTip, at, strip.View()->mapToGlobal(at));
      QApplication::sendEvent(strip.View(), &event);
      return QToolTip::text();
    };
    QCOMPARE(tip(strip.Centre("A")), "<qt>&lt;b&gt;5 &amp;lt; 6&lt;/b&gt;&lt;img src='x'&gt;</qt>");
    QCOMPARE(tip(strip.CloseButton("B")), "<qt>close it</qt>");
    strip.control.SetPageCaption(strip.Named("B"), "R && D");
    QVERIFY(tip(strip.Centre("R && D") - QPoint(8, 0)).contains("R &amp; D"));
    strip.control.SetPageHint(strip.Named("A"), QString(1000000, u'w'));
    QVERIFY(tip(strip.Centre("A")).size() < 2000);
  }

  void DroppedLinks_data() {
    Columns<QStringList, QString, bool, QStringList>("urls", "text", "onTab", "dropped");
    const QStringList two{"http://a.test/", "https://b.test/x?y=1"};
    QTest::newRow("beside the tabs: all") << two << "" << false << two;
    QTest::newRow("on a tab: the first") << two << "" << true << QStringList{"http://a.test/"};
    QTest::newRow("a text") << QStringList() << " https://a.test/p \n" << true << QStringList{"https://a.test/p"};
    QTest::newRow("a file") << QStringList{"file:///tmp/a b.html"} << "" << true
                            << QStringList{"file:///tmp/a%20b.html"};
    QTest::newRow("prose") << QStringList() << "see https://a.test/ for more" << true << QStringList();
    QTest::newRow("endless") << QStringList() << "http://a.test/" + QString(10000, u'x') << true << QStringList();
    QTest::newRow("a script") << QStringList{"javascript:alert(1)"} << "" << true << QStringList();
    QTest::newRow("a script as text") << QStringList() << "javascript:alert(1)" << true << QStringList();
  }
  void DroppedLinks() {
    QFETCH(QStringList, urls);
    QFETCH(QString, text);
    QFETCH(bool, onTab);
    TStrip strip("A B");
    QStringList dropped;
    connect(&strip.control, &TZVPageControl::LinkDropped, this, [&](const QString &address, QWidget *page) {
      dropped << address;
      QCOMPARE(page, onTab ? strip.Named("B") : nullptr);
    });
    QMimeData data;
    if (!urls.isEmpty()) data.setUrls(QUrl::fromStringList(urls));
    if (!text.isEmpty()) data.setText(text);
    const QPoint at = onTab ? strip.Centre("B") : QPoint(strip.View()->width() - 5, 10);
    QDragEnterEvent enter(at, Qt::CopyAction | Qt::LinkAction, &data, Qt::LeftButton, {});
    enter.ignore();
    QApplication::sendEvent(strip.View(), &enter);
    QDropEvent drop(at, Qt::CopyAction | Qt::LinkAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(strip.View(), &drop);
    QTEST(dropped, "dropped");
    QCOMPARE(enter.isAccepted(), !dropped.isEmpty());
  }
};

QTEST_MAIN(TTabInputTest)
#include "test_tab_input.moc"
