// The tab strip with its pages: order, activation, layout, look, screen readers, and what is painted anew.

#include <functional>
#include <QAccessible>
#include <QElapsedTimer>
#include <QPaintEvent>
#include <QScrollBar>
#include <QSignalSpy>
#include <QToolButton>
#include <utility>
#include "page_control_fixture.h"
#include "support/data_row.h"
#include "ui/contrast.h"
#include "ui/frame_updates.h"

namespace {

QIcon Filled(const QColor &color) {
  QPixmap pixmap(64, 64);
  pixmap.fill(color);
  return QIcon(pixmap);
}

bool Shows(const QImage &image, const QColor &color) {
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (image.pixelColor(x, y) == color) return true;
    }
  }
  return false;
}

// What of a widget was painted.
class TPaintLog final : public QObject {
 public:
  explicit TPaintLog(QWidget &widget) { widget.installEventFilter(this); }
  bool eventFilter(QObject *, QEvent *event) override {
    if (event->type() == QEvent::Paint) {
      painted += static_cast<QPaintEvent *>(event)->region();
      ++times;
    }
    return false;
  }
  QRegion painted;
  int times = 0;
};

}  // namespace

class TPageControlTest final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  // Script: "+A" adds at the end, "+A@1" there, "?A" adds a hidden one, "-A" removes, "xA" has it deleted, "!A" deletes
  // it, "hA" hides, "sA" shows, "aA" activates, "m1>2" moves, ">" and "<" walk.
  void PositionsAndActivation_data() {
    Columns<QString, QString, QString>("script", "state", "changes");
    Row("the first page becomes active", "+A +B +C", "*A B C", "A");
    Row("in the middle and in front", "+A +B@0 +C@1", "B C *A", "A");
    Row("a hidden page does not become active", "?H +A", "(H) *A", "A");
    Row("nor when it is asked to", "+A ?H aH", "*A (H)", "A");
    Row("only hidden ones: none is active", "?H ?I", "(H) (I)", "");
    Row("shown, the only one becomes active", "?H ?I sI", "(H) *I", "I");
    Row("shown beside others, it does not", "+A ?H sH", "*A H", "A");
    Row("removing the active one: next", "+A +B +C aB -B", "A *C", "A B C");
    Row("... next visible", "+A +B ?H +C aB -B", "A (H) *C", "A B C");
    Row("... previous at the end", "+A ?H +B aB -B", "*A (H)", "A B A");
    Row("... none left", "+A ?H -A", "(H)", "A -");
    Row("hiding the active one: next", "+A +B +C aB hB", "A (B) *C", "A B C");
    Row("... previous at the end", "+A +B aB hB", "*A (B)", "A B A");
    Row("... none left", "+A hA", "(A)", "A -");
    Row("removing another one", "+A +B +C aC -A", "B *C", "A C");
    Row("giving up the active one: next", "+A +B +C aB xB", "A *C", "A B C");
    Row("... none left", "+A ?H xA", "(H)", "A -");
    Row("giving up another one", "+A +B +C aC xA", "B *C", "A C");
    Row("deleting the active one", "+A +B aA !A", "*B", "A B");
    Row("deleting a hidden one", "+A ?H +B !H", "*A B", "A");
    Row("moving counts hidden pages", "+A ?H +B +C m0>2", "(H) B *A C", "A");
    Row("moving beyond the end", "+A +B +C m0>9", "B C *A", "A");
    Row("moving from nowhere", "+A +B m5>0", "*A B", "A");
    Row("walking goes round and passes hidden ones", "+A ?H +B > > <", "A (H) *B", "A B A B");
    Row("walking with none", "?H > <", "(H)", "");
    Row("a position out of range is the end", "+A +B@99 +C@-5", "*A B C", "A");
  }
  void PositionsAndActivation() {
    QFETCH(QString, script);
    TStrip strip;
    QList<QWidget *> removed;
    QList<QPointer<QWidget>> givenUp;
    QString changed;
    connect(&strip.control, &TZVPageControl::ActivePageChanged, this, [&](const QWidget *page) {
      changed += (changed.isEmpty() ? "" : " ") + TStrip::NameOf(page);
      QVERIFY(!page || page->isVisible());
      QCOMPARE(strip.control.ActivePage(), page);
    });
    for (const QString &step : script.split(u' ')) {
      const QString name = step.mid(1).section(u'@', 0, 0);
      const int position = step.contains(u'@') ? step.section(u'@', 1).toInt() : -1;
      QWidget *page = strip.Named(name);
      const QChar act = step[0];
      if (act == u'+' || act == u'?') strip.Add(name, position, act == u'+');
      if (act == u'-') strip.control.RemovePage(page);
      if (act == u'-') removed << page;
      if (act == u'x') strip.control.DeletePage(page);
      if (act == u'x') givenUp << page;
      if (act == u'!') delete page;
      if (act == u'h' || act == u's') strip.control.SetPageVisible(page, act == u's');
      if (act == u'a') strip.control.SetActivePage(page);
      if (act == u'm') strip.control.MovePage(name.section(u'>', 0, 0).toInt(), name.section(u'>', 1).toInt());
      if (act == u'>' || act == u'<') strip.control.SelectNextPage(act == u'>');
    }
    QTEST(strip.State(), "state");
    QTEST(changed, "changes");
    int visible = 0;
    for (int i = 0; i < strip.control.PageCount(); ++i) {
      QWidget *page = strip.control.Page(i);
      QCOMPARE(strip.control.IndexOf(page), i);
      QCOMPARE(page->isVisible(), page == strip.control.ActivePage());
      QCOMPARE(strip.control.TabRect(page).isEmpty(), !strip.control.IsPageVisible(page));
      if (strip.control.IsPageVisible(page)) ++visible;
    }
    QCOMPARE(strip.control.VisiblePageCount(), visible);
    for (const QWidget *page : std::as_const(removed)) {
      QCOMPARE(strip.control.IndexOf(page), -1);
      QCOMPARE(page->parent(), nullptr);
      QVERIFY(!page->isVisible());
    }
    qDeleteAll(removed);
    for (const QPointer<QWidget> &page : std::as_const(givenUp)) {
      QVERIFY(page && !page->isVisible());
      QCOMPARE(strip.control.IndexOf(page), -1);
      QCoreApplication::sendPostedEvents(page, QEvent::DeferredDelete);
      QVERIFY(!page);
      QTEST(strip.State(), "state");
    }
  }

  void PagesThatGoByThemselves() {
    TStrip strip("A B C D");
    QWidget other;
    strip.control.SetActivePage(strip.Named("B"));
    strip.Named("B")->setParent(&other);  // somebody else takes it
    QCOMPARE(strip.State(), "A *C D");
    strip.Named("C")->deleteLater();
    QTRY_COMPARE(strip.State(), "A *D");
    TStrip::Settle();
    QVERIFY(strip.Named("D")->isVisible());
    for (const char *gone : {"D", "A"}) delete strip.Named(gone);
    QCOMPARE(strip.control.PageCount(), 0);
    QCOMPARE(strip.control.ActivePage(), nullptr);
    QVERIFY(!strip.control.grab().isNull());

    // Pages that ask for themselves while the whole control goes find nothing.
    auto *dying = new TZVPageControl;
    auto *page = new QWidget;
    dying->InsertPage(0, page);
    int asked = 0;
    connect(page, &QObject::destroyed, this, [&] {
      ++asked;
      QCOMPARE(dying->IndexOf(page), -1);
      dying->RemovePage(page);
    });
    delete dying;
    QCOMPARE(asked, 1);
  }

  void HandlersMayChangeThePages() {
    TStrip strip("A B C D E");
    // Whatever becomes active is closed at once, until two are left; and once a page comes in.
    bool added = false;
    connect(&strip.control, &TZVPageControl::ActivePageChanged, this, [&](QWidget *page) {
      if (strip.control.PageCount() <= 2) return;
      if (!std::exchange(added, true)) strip.Add("N", 0, false);
      delete page;
    });
    strip.control.SetActivePage(strip.Named("C"));
    QCOMPARE(strip.State(), "(N) *A");
    TStrip::Settle();
    QVERIFY(strip.Named("A")->isVisible());

    // A close handler that deletes the tab under the mouse, and the next press in the same place.
    connect(&strip.control, &TZVPageControl::CloseRequested, this, [](QWidget *page) { delete page; });
    for (const char *name : {"X", "Y", "Z"}) strip.Add(name);
    strip.Click(strip.CloseButton("X"));
    const QPoint next = strip.CloseButton("Y");
    QTest::mouseDClick(strip.View(), Qt::LeftButton, {}, next);
    QTest::mouseRelease(strip.View(), Qt::LeftButton, {}, next);
    QCOMPARE(strip.State(), "(N) *A Z");
  }

  void OnlyTheActivePageIsOnScreen() {
    TStrip strip("A B");
    const QSize before = strip.Named("B")->size();
    strip.control.resize(500, 250);
    TStrip::Settle();
    QCOMPARE(strip.Named("A")->width(), 500);
    QCOMPARE(strip.Named("B")->size(), before);  // what cannot be seen is not laid out
    strip.control.SetActivePage(strip.Named("B"));
    QCOMPARE(strip.Named("B")->size(), strip.Named("A")->size());
  }

  void FocusGoesToTheNewPage() {
    TStrip strip("A B C");
    strip.Named("A")->setFocus();
    strip.control.SelectNextPage(true);
    QVERIFY(strip.Named("B")->hasFocus());
    delete strip.Named("B");
    strip.Named("C")->setFocus();
    strip.control.RemovePage(strip.Named("C"));  // the page keeps no keyboard when it leaves
    QVERIFY(strip.Named("A")->hasFocus());
    strip.Add("D");
    strip.control.FocusStrip();
    strip.control.SelectNextPage(true);  // not in the page: stays where it was
    QVERIFY(strip.control.StripHasFocus());
  }

  void RowsStayInTheirShare() {
    TStrip strip(QString(), {800, 600});
    strip.Add("first");
    TStrip::Settle();
    const int oneRow = strip.View()->height();
    strip.AddMany(20);
    QVERIFY(strip.View()->height() > 2 * oneRow);
    strip.AddMany(480);
    QVERIFY(strip.View()->height() <= strip.control.height() / 3 + 4);
    QVERIFY(strip.View()->findChild<QScrollBar *>()->isVisible());
    QCOMPARE(strip.control.ActivePage()->height() + strip.View()->height(), strip.control.height());
    // The arrow keys go from row to row.
    strip.control.FocusStrip();
    const QRect before = strip.control.TabRect(strip.control.ActivePage());
    QTest::keyClick(strip.View(), Qt::Key_Down);
    const QRect after = strip.control.TabRect(strip.control.ActivePage());
    QVERIFY(after.y() > before.y() && after.left() <= before.center().x());
    QTest::keyClick(strip.View(), Qt::Key_Up);
    QCOMPARE(strip.control.TabRect(strip.control.ActivePage()).y(), before.y());
  }

  void ActiveTabIsAlwaysInSight_data() {
    Columns<bool, Qt::LayoutDirection>("multiple", "direction");
    Row("several rows", true, Qt::LeftToRight);
    Row("one row", false, Qt::LeftToRight);
    Row("one row, mirrored", false, Qt::RightToLeft);
  }
  void ActiveTabIsAlwaysInSight() {
    QFETCH(bool, multiple);
    QFETCH(Qt::LayoutDirection, direction);
    TStrip strip;
    strip.control.setLayoutDirection(direction);
    strip.control.SetMultipleLines(multiple);
    strip.AddMany(200);
    const auto inSight = [&] {
      const QRect rect = strip.control.TabRect(strip.control.ActivePage());
      return rect.width() > 30 && strip.PageAt(strip.InView(rect.center())) == strip.control.ActivePage();
    };
    for (const int position : {199, 0, 100, 101, 150, 20}) {
      strip.control.SetActivePage(strip.control.Page(position));
      QVERIFY2(inSight(), qPrintable(QString::number(position)));
    }
    strip.control.resize(400, 300);
    QVERIFY(inSight());
    strip.control.SetTabsDown(false);
    QVERIFY(inSight());
    strip.control.MovePage(20, 190);
    QVERIFY(inSight());
    strip.control.SetMultipleLines(!multiple);
    QVERIFY(inSight());
    for (int i = 0; i < 180; ++i) delete strip.control.Page(0);
    QVERIFY(inSight());
  }

  void AboveBelowAndMirrored() {
    TStrip strip("A B C");
    const auto centre = [&](const char *name) { return strip.control.TabRect(strip.Named(name)).center(); };
    QVERIFY(strip.control.TabsDown() && strip.control.MultipleLines());
    QVERIFY(centre("A").y() > strip.control.height() / 2);
    QCOMPARE(strip.Named("A")->mapTo(&strip.control, QPoint()), QPoint(0, 0));
    strip.control.SetTabsDown(false);
    TStrip::Settle();
    QVERIFY(centre("A").y() < strip.control.height() / 2);
    QCOMPARE(strip.Named("A")->mapTo(&strip.control, QPoint()).y(), strip.View()->height());
    QVERIFY(centre("A").x() < centre("B").x());
    const int width = strip.control.width();
    const int left = centre("A").x();
    strip.control.setLayoutDirection(Qt::RightToLeft);
    QVERIFY(centre("A").x() > centre("B").x());
    QVERIFY(qAbs(centre("A").x() - (width - left)) <= 2);
  }

  // On every side, in every direction, and with any number of tabs and rows: in the last row, at its end, and nothing
  // else lies there.
  void CornerAtTheEnd_data() {
    Columns<bool, bool, Qt::LayoutDirection, int>("below", "several", "direction", "tabs");
    for (const bool below : {true, false}) {
      for (const bool several : {true, false}) {
        for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
          for (const int tabs : {1, 12, 80}) {
            const QString name = QStringLiteral("%1 tabs %2, %3, %4")
                                     .arg(tabs)
                                     .arg(below ? "below" : "above", several ? "several rows" : "one row",
                                          direction == Qt::LeftToRight ? "left to right" : "right to left");
            Row(qPrintable(name), below, several, direction, tabs);
          }
        }
      }
    }
  }
  void CornerAtTheEnd() {
    QFETCH(bool, below);
    QFETCH(bool, several);
    QFETCH(Qt::LayoutDirection, direction);
    QFETCH(int, tabs);
    TStrip strip;
    strip.control.setLayoutDirection(direction);
    strip.control.SetTabsDown(below);
    strip.control.SetMultipleLines(several);
    strip.AddMany(tabs);
    auto *corner = new QToolButton();
    corner->setText("corner");
    strip.control.SetCorner(corner);
    for (const char *text : {"corner", "a wider corner", "c"}) {
      corner->setText(text);
      TStrip::Settle();
      const QRect place = corner->geometry();
      QCOMPARE(place.width(), corner->sizeHint().width());
      QVERIFY(corner->isVisible() && strip.View()->geometry().contains(place));
      QCOMPARE(direction == Qt::LeftToRight ? place.right() : strip.control.width() - 1 - place.left(),
               strip.control.width() - 1);
      const int row = strip.control.TabRect(strip.control.ActivePage()).height();
      QCOMPARE(place.height(), row);
      QVERIFY(strip.View()->geometry().bottom() - place.bottom() < row);
      QRegion taken;
      for (int i = 0; i < strip.control.PageCount(); ++i) taken += strip.control.TabRect(strip.control.Page(i));
      for (const QWidget *child : strip.View()->findChildren<QWidget *>(Qt::FindDirectChildrenOnly)) {
        if (child->isVisible()) taken += child->geometry().translated(strip.View()->pos());
      }
      QVERIFY(!taken.isEmpty() && !taken.intersects(place));
    }
    strip.control.SetStripVisible(false);
    QVERIFY(!corner->isVisible());
  }

  void ScrollButtonsAreThereWhenNeeded() {
    TStrip strip("A B C");
    strip.control.SetMultipleLines(false);
    strip.control.SetButtonTexts("close it", "to the left", "to the right");
    auto *left = strip.View()->findChild<QToolButton *>("tbScrollLeft");
    auto *right = strip.View()->findChild<QToolButton *>("tbScrollRight");
    QCOMPARE(left->accessibleName(), "to the left");
    QVERIFY(strip.control.TabRect(strip.Named("A")).width() >= 60);  // a caption of one letter can still be hit
    TStrip::Settle();
    QVERIFY(!left->isVisible() && !right->isVisible());
    strip.AddMany(50);
    QVERIFY(left->isVisible() && !left->isEnabled() && right->isEnabled());
    QVERIFY(strip.control.TabRect(strip.Named("a-longer-caption-49")).isEmpty());
    for (int i = 0; i < 60; ++i) right->click();
    QVERIFY(!strip.control.TabRect(strip.Named("a-longer-caption-49")).isEmpty());
    QVERIFY(left->isEnabled() && !right->isEnabled());
    strip.control.SetPageCaption(strip.Named("B"), "A title arrives while somebody looks elsewhere");
    TStrip::Settle();
    QVERIFY(!strip.control.TabRect(strip.Named("a-longer-caption-49")).isEmpty());  // and he still does
    strip.control.MovePage(0, 30);
    QVERIFY(!strip.control.TabRect(strip.control.ActivePage()).isEmpty());  // until he takes up the active one
  }

  void ColoursAndImages() {
    TStrip strip("A B");
    strip.control.SetInactiveTabColor(QColor(10, 200, 30));
    strip.control.SetInactiveFontColor(QColor(200, 10, 220));
    strip.control.SetPageCaption(strip.Named("B"), QString(5, QChar(0x2588)));  // full blocks: pure ink
    QWidget *second = strip.control.Page(1);
    const auto picture = [&](QWidget *page) {
      TStrip::Settle();
      return strip.control.grab(strip.control.TabRect(page)).toImage();
    };
    QVERIFY(Shows(picture(second), QColor(10, 200, 30)));
    QVERIFY(Shows(picture(second), QColor(200, 10, 220)));
    QVERIFY(!Shows(picture(strip.Named("A")), QColor(10, 200, 30)));
    QVERIFY(Shows(picture(strip.Named("A")), strip.control.palette().color(QPalette::Highlight)));

    // The status image stands beside the site's icon. No width changes.
    strip.control.SetImages({Filled(Qt::darkRed), Filled(Qt::blue)});
    TStrip::Settle();
    const QRect before = strip.control.TabRect(second);
    strip.control.SetPageIcon(second, Filled(Qt::yellow));
    for (const auto &[image, shown] : {std::pair(0, Qt::darkRed), {1, Qt::blue}, {-1, Qt::yellow}, {7, Qt::yellow}}) {
      strip.control.SetPageImage(second, image);
      QCOMPARE(strip.control.PageImage(second), image);
      const QImage picked = picture(second);
      for (const Qt::GlobalColor color : {Qt::darkRed, Qt::blue}) QCOMPARE(Shows(picked, color), color == shown);
      QVERIFY(Shows(picked, Qt::yellow));
      QCOMPARE(strip.control.TabRect(second), before);
    }
  }

  void ScreenReadersSeeATabList() {
    TStrip strip("A H B C");
    strip.control.setAccessibleName("open pages");
    strip.control.SetPageVisible(strip.Named("H"), false);
    strip.control.SetPageCaption(strip.Named("C"), "R && D");
    strip.control.SetPageHint(strip.Named("B"), "the whole title");
    strip.control.SetActivePage(strip.Named("B"));
    strip.control.FocusStrip();

    QAccessibleInterface *list = QAccessible::queryAccessibleInterface(strip.View());
    QCOMPARE(list->role(), QAccessible::PageTabList);
    QCOMPARE(list->text(QAccessible::Name), "open pages");
    QStringList names;
    for (int i = 0; i < list->childCount(); ++i) {
      QAccessibleInterface *child = list->child(i);
      QCOMPARE(list->indexOfChild(child), i);
      if (child->role() != QAccessible::PageTab) continue;
      QCOMPARE(child->parent(), list);
      QVERIFY(list->rect().contains(child->rect()));
      QCOMPARE(list->childAt(child->rect().center().x(), child->rect().center().y()), child);
      names << child->text(QAccessible::Name);
    }
    QCOMPARE(names, (QStringList{"A", "B", "R & D"}));
    QAccessibleInterface *second = list->child(1);
    QCOMPARE(second->text(QAccessible::Description), "the whole title");
    strip.control.SetDescriber([](const QWidget *page) { return "page " + TStrip::NameOf(page); });
    QCOMPARE(second->text(QAccessible::Description), "page B");
    QVERIFY(second->state().selected && second->state().focused);
    QVERIFY(!list->child(0)->state().selected);
    QCOMPARE(list->focusChild(), second);

    list->child(2)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(strip.State(), "A (H) B *R && D");

    delete strip.Named("B");
    QCOMPARE(list->child(1)->text(QAccessible::Name), "R & D");
  }

  // The marks that tell a page's state, on every ground that a tab may have.
  void MarksStandOut_data() {
    Columns<QColor, QColor>("window", "inactive");
    Row("light", QColor(239, 239, 239), QColor(0xAA, 0xAA, 0xAA));
    Row("dark", QColor(40, 40, 40), QColor(0xAA, 0xAA, 0xAA));
    Row("inactive ones dark, too", QColor(40, 40, 40), QColor(60, 60, 60));
    Row("inactive ones in colour", QColor(239, 239, 239), QColor(48, 140, 198));
  }
  void MarksStandOut() {
    QFETCH(QColor, window);
    QFETCH(QColor, inactive);
    const QPalette before = QApplication::palette();
    QApplication::setPalette(QPalette(window));
    const auto restore = qScopeGuard([&] { QApplication::setPalette(before); });
    TStrip strip("A B");
    strip.control.SetInactiveTabColor(inactive);
    const QStringList names{"tab_loading", "tab_unseen", "tab_arriving", "tab_locked", "tab_asks"};
    QList<QIcon> marks;
    for (const QString &name : names) marks << QIcon(QStringLiteral(":/icons/%1.svg").arg(name));
    strip.control.SetImages(marks);
    for (int image = 0; image < marks.size(); ++image) {
      for (const char *name : {"A", "B"}) {
        const bool isActive = strip.control.ActivePage() == strip.Named(name);
        const QColor ground = isActive ? QApplication::palette().color(QPalette::Base) : inactive;
        strip.control.SetPageImage(strip.Named(name), image);
        TStrip::Settle();
        QRect place = strip.control.TabRect(strip.Named(name));
        place.setWidth(32);  // without the caption
        place.adjust(6, 5, 0, -5);
        const QImage picture = strip.control.grab(place).toImage();
        int ink = 0;
        for (int i = 0; i < picture.width() * picture.height(); ++i) {
          const QColor pixel = picture.pixelColor(i % picture.width(), i / picture.width());
          if (Contrast::Between(pixel, ground) >= Contrast::ForMarks) ++ink;
        }
        QVERIFY2(ink >= 8, qPrintable(QStringLiteral("%1 on %2: %3").arg(names[image], ground.name()).arg(ink)));
      }
    }
  }

  void PaintsWhatChanged() {
    TStrip strip;
    strip.control.SetMultipleLines(false);
    for (int i = 0; i < 60; ++i) strip.Add(QStringLiteral("T%1").arg(i));
    TStrip::Settle();
    TPaintLog log(*strip.View());
    const auto at = [&](int position) {
      return QRegion(strip.control.TabRect(strip.control.Page(position)).translated(-strip.View()->pos()));
    };
    const auto paints = [&](const QRegion &wanted, const std::function<void()> &change) {
      strip.View()->repaint();
      log.painted = {};
      change();
      (void)at(0);  // laid out at once
      (void)QTest::qWaitFor([&] { return wanted.subtracted(log.painted).isEmpty(); });
      // The scroll buttons paint themselves, and what lies below them.
      return log.painted.subtracted(strip.View()->childrenRegion()) == wanted;
    };
    QVERIFY(paints(at(1), [&] { strip.control.SetPageImage(strip.control.Page(1), 3); }));
    QVERIFY(paints(at(1), [&] { strip.control.SetPageCaption(strip.control.Page(1), "T-"); }));
    QVERIFY(paints(at(0) + at(2), [&] { strip.control.SetActivePage(strip.control.Page(2)); }));
    QVERIFY(paints(at(2) + at(3), [&] { strip.control.MovePage(3, 2); }));
    QVERIFY(paints(at(1), [&] {
      strip.Add("out of sight");
      strip.control.MovePage(50, 40);
      strip.control.SetPageImage(strip.control.Page(1), 2);
    }));
    while (strip.control.PageCount() > 6) delete strip.control.Page(5);
    QVERIFY(paints(at(4) + at(5), [&] { delete strip.control.Page(4); }));
    QVERIFY(paints(at(4), [&] { delete strip.control.Page(4); }));
  }

  void PagesAreShownTogether_data() {
    Columns<int, int>("toCome", "interval");
    Row("a few pages", TFrameUpdates::Crowd, TFrameUpdates::Interval);
    Row("many pages to come", TFrameUpdates::Crowd + 1, TFrameUpdates::CrowdInterval);
  }
  void PagesAreShownTogether() {
    QFETCH(int, toCome);
    QFETCH(int, interval);
    TStrip strip("a b c");
    auto *updates = strip.control.findChild<TFrameUpdates *>();
    updates->SetPagesToCome(toCome);
    QSignalSpy shown(updates, &TFrameUpdates::Show);
    strip.control.SetPageImage(strip.control.Page(0), 1);
    QTRY_COMPARE(shown.size(), 1);
    strip.Settle();
    // However often they change, the strip is painted in the frame's turns and not between them.
    TPaintLog log(*strip.View());
    QElapsedTimer clock;
    clock.start();
    int changes = 0;
    for (; shown.size() < 5 && !clock.hasExpired(10000); ++changes) {
      strip.control.SetPageCaption(strip.control.Page(changes % 3), QString::number(changes));
      strip.Settle();
    }
    QCOMPARE(shown.size(), 5);
    QVERIFY(clock.elapsed() >= 3 * interval);
    QVERIFY(changes > 20 && log.times <= 5);
    // What is asked for where a tab is, is true all the same.
    const int width = strip.control.TabRect(strip.control.Page(1)).width();
    strip.control.SetPageCaption(strip.control.Page(1), "a much longer caption");
    QVERIFY(strip.control.TabRect(strip.control.Page(1)).width() > width);
    updates->Hurry();
    strip.Settle();
    QCOMPARE(shown.size(), 6);
    // Nothing changes: nothing is painted.
    strip.View()->repaint();
    log.painted = {};
    strip.control.SetPageCaption(strip.control.Page(1), "a much longer caption");
    strip.control.SetPageImage(strip.control.Page(0), 1);
    updates->Hurry();
    strip.Settle();
    strip.View()->repaint(strip.control.TabRect(strip.control.Page(2)).translated(-strip.View()->pos()));
    QVERIFY(!log.painted.intersects(strip.control.TabRect(strip.control.Page(1)).translated(-strip.View()->pos())));
  }
};

QTEST_MAIN(TPageControlTest)
#include "test_page_control.moc"
