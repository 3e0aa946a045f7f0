#include <QAccessible>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QSignalSpy>
#include <QToolButton>

#include "chrome/bands/band_grip.h"
#include "chrome/bands/band_store.h"
#include "chrome/bands/cool_bar.h"
#include "chrome/bands/main_menu_bar.h"
#include "chrome/bands/menu_extender.h"
#include "config/registry_paths.h"
#include "search/address_bar.h"
#include "search/address_label.h"
#include "support/data_row.h"
#include "support/shipped_files.h"
#include "window/main_window_fixture.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int RowHeight = 30;  // pixels

// Counts how often it is given another size.
struct TContent final : QWidget {
  using QWidget::QWidget;
  QSize sizeHint() const override { return {100, RowHeight}; }
  void resizeEvent(QResizeEvent *) override { ++resizes; }

  int resizes = 0;
};

// A bar with four plain bands, 1000 pixels wide.
struct TBar final {
  explicit TBar(const TLanguage &language, Qt::LayoutDirection direction = Qt::LeftToRight)
      : bar(new TCoolBar(language, &window)), page(new TContent(&window)) {
    window.setLayoutDirection(direction);
    window.setMenuWidget(bar);
    window.setCentralWidget(page);
    for (const TBandRow &row : BandRows) bar->SetContent(row.band, contents[row.band] = new TContent);
    language.TranslateForm(&window, "MAIN");
    window.resize(1000, 400);
    window.show();
  }

  [[nodiscard]] TBandGrip *Grip(TBand band) const {
    for (auto *grip : bar->findChildren<TBandGrip *>()) {
      if (grip->Band() == band) return grip;
    }
    return nullptr;
  }
  // The letters of the bands that are shown, row by row as they lie there.
  [[nodiscard]] QString Order() const {
    QString order;
    QMap<int, QMap<int, QChar>> rows;
    const bool isMirrored = bar->layoutDirection() == Qt::RightToLeft;
    for (const TBandRow &row : BandRows) {
      const QWidget *grip = Grip(row.band);
      if (grip->isVisible()) rows[grip->y()][isMirrored ? -grip->x() : grip->x()] = QChar(row.name[0]);
    }
    for (const auto &row : std::as_const(rows)) {
      if (!order.isEmpty()) order += u'/';
      for (const QChar letter : row) order += letter;
    }
    return order;
  }
  [[nodiscard]] int Width(TBand band) const { return Grip(band)->width() + contents[band]->width(); }
  // In the window, which has the bar at its top.
  [[nodiscard]] QPoint Handle(TBand band) const { return Grip(band)->geometry().center(); }
  [[nodiscard]] QPoint Mirrored(const QPoint &place) const {
    return bar->layoutDirection() == Qt::RightToLeft ? QPoint(bar->width() - 1 - place.x(), place.y()) : place;
  }
  void Press(TBand band) { QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, Handle(band)); }
  void MoveTo(const QPoint &place) {
    for (int i = 1; i <= 10; ++i) QTest::mouseMove(window.windowHandle(), at + (place - at) * i / 10);
    at = place;
  }
  void Release() { QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, at); }
  void Drag(TBand band, const QPoint &place) {
    at = Handle(band);
    Press(band);
    MoveTo(place);
    Release();
  }
  [[nodiscard]] QList<QRect> Places() const {
    QList<QRect> places;
    for (const TBandRow &row : BandRows) places << Grip(row.band)->geometry() << contents[row.band]->geometry();
    return places;
  }

  QMainWindow window;
  TCoolBar *bar;
  TContent *page;
  TForEachBand<TContent *> contents;
  QPoint at;  // the mouse
};

}  // namespace

// The bands as the user has them before him: by mouse, by keyboard, for a screen reader, in the main window.
class TestBands final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    m_f.Prepare();
    QVERIFY(m_language.LoadFile(SourceFile(QStringLiteral("Languages/zveng.ini"))));
  }
  void init() { m_f.Begin(); }
  void cleanup() { m_f.End(); }

  // From the bands at first, "M/T/AL", with the links bar 516 pixels wide; to a place in the bar, from where reading
  // begins.
  void Drags_data() {
    Columns<TBand, QPoint, QString>("band", "to", "order");
    Row("beyond the one behind", TBand::Address, QPoint(900, 75), u"M/T/LA"_s);
    Row("beyond the one before", TBand::Links, QPoint(20, 75), u"M/T/LA"_s);
    Row("into another row", TBand::Menu, QPoint(990, 45), u"TM/AL"_s);
    Row("into another row, before", TBand::Links, QPoint(3, 15), u"LM/T/A"_s);
    Row("above all", TBand::Links, QPoint(500, -20), u"L/M/T/A"_s);
    Row("below all", TBand::Tool, QPoint(500, 130), u"M/AL/T"_s);
    Row("between two rows", TBand::Links, QPoint(500, 32), u"M/L/T/A"_s);
    Row("where it is", TBand::Tool, QPoint(700, 45), u"M/T/AL"_s);
  }
  void Drags() {
    QFETCH(TBand, band);
    QFETCH(QPoint, to);
    for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
      TBar f(m_language, direction);
      QVERIFY(QTest::qWaitForWindowExposed(&f.window));
      QCOMPARE(f.Order(), u"M/T/AL"_s);
      f.Drag(band, f.Mirrored(to));
      QTEST(f.Order(), "order");
      QCOMPARE(f.bar->height(), RowHeight * (f.Order().count(u'/') + 1));
    }
  }

  // On the way to another place nothing moves but the mark; Esc gives it up.
  void NothingJumpsWhileDragging() {
    TBar f(m_language);
    QVERIFY(QTest::qWaitForWindowExposed(&f.window));
    const QList<QRect> places = f.Places();
    const int resizes = f.page->resizes;
    const auto marks = [&f] {
      int count = 0;
      for (const QWidget *child : f.bar->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
        count += child->isVisible() && child->width() > 0 && std::min(child->width(), child->height()) <= 3;
      }
      return count;
    };
    f.at = f.Handle(TBand::Menu);
    f.Press(TBand::Menu);
    for (const QPoint &place : {QPoint(500, 45), QPoint(20, 75), QPoint(20, 200)}) {
      f.MoveTo(place);
      QCOMPARE(f.Places(), places);
      QCOMPARE(marks(), 1);
    }
    QTest::keyClick(f.window.windowHandle(), Qt::Key_Escape);
    QCOMPARE(marks(), 0);
    f.MoveTo(QPoint(500, 45));
    QCOMPARE(marks(), 0);
    f.Release();
    QCOMPARE(f.Places(), places);
    QCOMPARE(f.page->resizes, resizes);
  }

  // The edge between two bands goes with the mouse, and nothing else is laid out.
  void EdgesFollowTheMouse() {
    for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
      TBar f(m_language, direction);
      QVERIFY(QTest::qWaitForWindowExposed(&f.window));
      const int resizes = f.page->resizes;
      const int others = f.contents[TBand::Menu]->resizes + f.contents[TBand::Tool]->resizes;
      const int width = f.Width(TBand::Links);
      f.at = f.Handle(TBand::Links);
      const QPoint from = f.Mirrored(f.at);
      f.Press(TBand::Links);
      f.MoveTo(f.Mirrored(from - QPoint(100, 0)));
      QCOMPARE(f.Width(TBand::Links), width + 100);
      QCOMPARE(f.Width(TBand::Address), 1000 - width - 100);
      f.MoveTo(f.Mirrored(from + QPoint(50, 5)));
      f.Release();
      QCOMPARE(f.Width(TBand::Links), width - 50);
      QCOMPARE(f.bar->Arrangement().Width(TBand::Address), 1000 - width + 50);
      QCOMPARE(f.page->resizes, resizes);
      QCOMPARE(f.contents[TBand::Menu]->resizes + f.contents[TBand::Tool]->resizes, others);
      // What was given up comes back, in the widths as well.
      f.at = f.Handle(TBand::Links);
      f.Press(TBand::Links);
      f.MoveTo(f.Mirrored(from - QPoint(100, 0)));
      QTest::keyClick(f.window.windowHandle(), Qt::Key_Escape);
      QCOMPARE(f.Width(TBand::Links), width - 50);
      f.Release();
    }
  }

  // However far the mouse went meanwhile, the edges come back with it.
  void EdgesComeBack() {
    TBar f(m_language);
    TBandArrangement bands = f.bar->Arrangement();
    for (const TBandRow &row : BandRows) {
      bands.SetBreak(row.band, false);
      bands.SetWidth(row.band, 250);
    }
    f.bar->SetArrangement(bands);
    QVERIFY(QTest::qWaitForWindowExposed(&f.window));
    const QList<QRect> places = f.Places();
    f.at = f.Handle(TBand::Links);
    const QPoint from = f.at;
    f.Press(TBand::Links);
    f.MoveTo(QPoint(300, from.y()));
    QVERIFY(f.Width(TBand::Links) > 600 && f.Width(TBand::Tool) < 250);
    f.MoveTo(from);
    QCOMPARE(f.Places(), places);
    f.Release();
  }

  void Keys_data() {
    Columns<TBand, QString, QString, QString>("band", "keys", "order", "told");
    Row("down", TBand::Menu, u"Down"_s, u"TM/AL"_s, u"Row 1 of 2, place 2 of 2, 352 pixels wide"_s);
    Row("up and to a row of its own", TBand::Links, u"Up Up Up"_s, u"L/M/T/A"_s,
        u"Row 1 of 4, place 1 of 1, 1000 pixels wide"_s);
    Row("forth and back", TBand::Address, u"Right Left Right"_s, u"M/T/LA"_s,
        u"Row 3 of 3, place 2 of 2, 838 pixels wide"_s);
    Row("break", TBand::Links, u"Return"_s, u"M/T/A/L"_s, u"Row 4 of 4, place 1 of 1, 1000 pixels wide"_s);
    Row("no break", TBand::Tool, u"Enter"_s, u"MT/AL"_s, u"Row 1 of 2, place 2 of 2, 352 pixels wide"_s);
    Row("wider", TBand::Address, u"Ctrl+Right"_s, u"M/T/AL"_s, u"Row 3 of 3, place 1 of 2, 500 pixels wide"_s);
    Row("narrower", TBand::Links, u"Ctrl+Left Ctrl+Left"_s, u"M/T/AL"_s,
        u"Row 3 of 3, place 2 of 2, 484 pixels wide"_s);
    Row("nothing to do", TBand::Menu, u"Left Up Return Ctrl+Right"_s, u"M/T/AL"_s,
        u"Row 1 of 3, place 1 of 1, 1000 pixels wide"_s);
  }
  void Keys() {
    QFETCH(TBand, band);
    QFETCH(QString, keys);
    for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
      TBar f(m_language, direction);
      QVERIFY(QTest::qWaitForWindowActive(&f.window));
      // The Tab key leads to it.
      for (int i = 0; i < 8 && !f.Grip(band)->hasFocus(); ++i) QTest::keyClick(f.window.windowHandle(), Qt::Key_Tab);
      QVERIFY(f.Grip(band)->hasFocus());
      for (QString key : keys.split(u' ')) {
        if (direction == Qt::RightToLeft) {
          key = key.contains(u"Left"_s) ? key.replace(u"Left"_s, u"Right"_s) : key.replace(u"Right"_s, u"Left"_s);
        }
        const QKeyCombination press = QKeySequence(key, QKeySequence::PortableText)[0];
        QTest::keyClick(f.window.windowHandle(), press.key(), press.keyboardModifiers());
      }
      QTEST(f.Order(), "order");
      QVERIFY(f.Grip(band)->hasFocus());
      // Screen readers tell what changes of what has the keyboard.
      QTEST(QAccessible::queryAccessibleInterface(f.Grip(band))->text(QAccessible::Description), "told");
    }
  }

  void WhatScreenReadersKnow() {
    TBar f(m_language);
    for (const auto &[band, name] : {std::pair(TBand::Menu, "Menu bar"), {TBand::Address, "Address bar"}}) {
      const QAccessibleInterface *grip = QAccessible::queryAccessibleInterface(f.Grip(band));
      QCOMPARE(grip->role(), QAccessible::Grip);
      QCOMPARE(grip->text(QAccessible::Name), QLatin1String(name) + u": handle"_s);
    }
    QCOMPARE(f.Grip(TBand::Links)->Caption(), u"Links"_s);
    // In the order in which they stand, wherever they have been moved to.
    TBandArrangement bands = f.bar->Arrangement();
    bands.MoveTo(TBand::Address, 0);
    f.bar->SetArrangement(bands);
    QList<TBand> order;
    QWidget *widget = f.Grip(TBand::Address);
    for (int i = 0; i < 50 && order.size() < BandCount; ++i, widget = widget->nextInFocusChain()) {
      if (const auto *grip = qobject_cast<TBandGrip *>(widget)) order << grip->Band();
    }
    QCOMPARE(order, (QList<TBand>{TBand::Address, TBand::Menu, TBand::Tool, TBand::Links}));
  }

  void BandsThatAreNotShown() {
    TBar f(m_language);
    QVERIFY(QTest::qWaitForWindowExposed(&f.window));
    f.bar->ShowBands({{TBand::Address, false}, {TBand::Tool, false}});
    QCOMPARE(f.Order(), u"M/L"_s);
    QVERIFY(!f.contents[TBand::Tool]->isVisible());
    f.bar->ShowBands({{TBand::Menu, false}, {TBand::Links, false}});
    QCOMPARE(f.Order(), QString());
    QTRY_COMPARE(f.page->geometry(), f.window.rect());
    f.bar->ShowBands({{TBand::Menu, true}, {TBand::Tool, true}, {TBand::Address, true}, {TBand::Links, true}});
    QCOMPARE(f.Order(), u"M/T/AL"_s);
    QTRY_COMPARE(f.page->y(), 3 * RowHeight);
    // One that goes while it is dragged stays where it was.
    f.at = f.Handle(TBand::Links);
    f.Press(TBand::Links);
    f.MoveTo(QPoint(500, -20));
    f.bar->ShowBands({{TBand::Tool, false}});
    f.Release();
    QCOMPARE(f.Order(), u"M/AL"_s);
    // A narrow window breaks rows, and has them again when it is wide.
    f.window.resize(120, 400);
    QTRY_COMPARE(f.Order(), u"M/A/L"_s);
    f.window.resize(1000, 400);
    QTRY_COMPARE(f.Order(), u"M/AL"_s);
    // Higher contents make a higher row.
    f.contents[TBand::Links]->setMinimumHeight(50);
    QTRY_COMPARE(f.page->y(), RowHeight + 50);
  }

  void TheArrangementIsKept() {
    m_f.Open();
    TCoolBar *bar = Bands();
    auto *grip = bar->findChild<TBandGrip *>(u"gripAddress"_s);
    grip->setFocus();
    QTest::keyClick(grip, Qt::Key_Up);
    const TBandArrangement bands = bar->Arrangement();
    QCOMPARE(bands.At(2), TBand::Address);
    QVERIFY(!bands.Breaks(TBand::Address));
    QVERIFY(!m_f.store->KeyExists(TRegistryHive::CurrentUser, QString::fromLatin1(RegistryKey::Bands)));
    m_f.Open();
    QVERIFY(Bands()->Arrangement().IsLike(bands));
    const auto *address = m_f.window->findChild<QWidget *>(u"pnlAddress"_s);
    QCOMPARE(address->mapTo(m_f.window.get(), QPoint()).y(), Bands()->findChild<TBandGrip *>(u"gripTool"_s)->y());
  }

  // The grips stand before the address box for the Tab key, but nobody begins on one.
  void TheKeyboardBeginsInTheAddressBox() {
    for (const bool isShown : {true, false}) {
      TZVOptions(*m_f.store).Set(Setting::ViewAddressBar, isShown);
      m_f.Open();
      const QWidget *focused = QApplication::focusWidget();
      QVERIFY(qobject_cast<const TBandGrip *>(focused) == nullptr);
      QCOMPARE(m_f.window->findChild<TAddressBar *>()->isAncestorOf(focused), isShown);
    }
  }

  // Whatever lies in the store, every band can be seen and taken hold of.
  void NoBandIsLost() {
    const QString key = QString::fromLatin1(RegistryKey::Bands);
    for (const int width : {0, 100000}) {
      for (int i = 0; i < BandCount; ++i) {
        m_f.store->Write(TRegistryHive::CurrentUser, u"%1\\Band%2"_s.arg(key).arg(i), u"Name"_s,
                         i == 1 ? u"Menu"_s : QString::fromLatin1(BandRows[size_t(i)].name));
        m_f.store->WriteInteger(TRegistryHive::CurrentUser, u"%1\\Band%2"_s.arg(key).arg(i), u"Width"_s, width);
        m_f.store->WriteInteger(TRegistryHive::CurrentUser, u"%1\\Band%2"_s.arg(key).arg(i), u"Break"_s, 0);
      }
      m_f.Open();
      m_f.window->resize(700, 400);
      QTRY_COMPARE(Bands()->width(), 700);
      for (const char *name : {"Menu", "Tool", "Address"}) {
        const auto *grip = Bands()->findChild<QWidget *>(QLatin1String("grip") + QLatin1String(name));
        QVERIFY(grip->isVisible() && grip->width() >= 8 && grip->height() >= 23 &&
                Bands()->rect().contains(grip->geometry()));
      }
      m_f.window.reset();
    }
  }

  void TheLabelMakesItsBandNarrow() {
    m_f.Open();
    m_f.window->resize(900, 500);
    TBandArrangement bands = Bands()->Arrangement();
    bands.SetBreak(TBand::Address, false);
    Bands()->SetArrangement(bands);
    auto *label = m_f.window->findChild<TAddressLabel *>();
    const auto *band = m_f.window->findChild<QWidget *>(u"pnlAddress"_s);
    QTRY_VERIFY(band->width() >= 100);
    QTest::mouseDClick(label, Qt::LeftButton);
    QTRY_COMPARE(band->width(), BandRows[size_t(TBand::Address)].minWidth);
    QTest::mouseDClick(label, Qt::LeftButton);
    QTRY_VERIFY(band->width() > 700);
  }

  void ChevronHasWhatDoesNotFit() {
    m_f.Open();
    m_f.window->resize(900, 500);
    auto *panel = m_f.window->findChild<QWidget *>(u"pnlMenuExtender"_s);
    auto *chevron = m_f.window->findChild<QToolButton *>(u"tbxMenu"_s);
    QTRY_COMPARE(panel->width(), 0);
    QVERIFY(!chevron->isVisible());
    QHash<TMenu, QList<QAction *>> items;
    for (const TMenuRow &row : MenuRows()) {
      if (row.parent == row.menu && row.menu != TMenu::Groups) items[row.menu] = Menu(row.menu)->actions();
    }
    MakeNarrow(200);
    QTRY_VERIFY(chevron->isVisible() && panel->width() == chevron->width());
    const QList<QAction *> titles = m_f.window->menuBar()->actions();

    auto *menu = qobject_cast<TMenuExtender *>(chevron->menu());
    QCOMPARE(menu->objectName(), u"pmMenuExtender"_s);
    // Whoever fills a menu that opens finds what he has filled in before.
    bool isEmpty = false;
    connect(Menu(TMenu::File), &QMenu::aboutToShow, menu, [&] { isEmpty |= Menu(TMenu::File)->isEmpty(); });
    for (int time = 0; time < 2; ++time) {  // the second one finds all borrowed still
      Q_EMIT menu->aboutToShow();
      QStringList shown;
      QStringList all;
      for (const QAction *entry : menu->actions()) {
        all << entry->text();
        if (entry->isVisible()) shown << entry->text();
      }
      QStringList expected;
      QStringList behind;
      for (const QAction *title : titles) {
        if (title->text() == Menu(TMenu::Tabs)->title()) continue;
        expected << title->text();
        const QPoint corner = m_f.window->menuBar()->actionGeometry(const_cast<QAction *>(title)).bottomRight();
        if (m_f.window->menuBar()->mapTo(panel->parentWidget(), corner).x() >= panel->x()) behind << title->text();
      }
      QCOMPARE(all, expected);
      QCOMPARE(shown, behind);
      QVERIFY(!shown.isEmpty() && shown.size() < all.size());
      QVERIFY(Menu(TMenu::File)->isEmpty() && !Menu(TMenu::Tabs)->isEmpty() && !isEmpty);
      QCOMPARE(menu->actions().first()->menu()->actions(), items[TMenu::File]);
      QCOMPARE(menu->actions().last()->menu()->actions(), items[TMenu::Help]);
    }
    menu->GiveBack();
    QVERIFY(menu->isEmpty());
    for (auto menuItems = items.cbegin(); menuItems != items.cend(); ++menuItems) {
      QCOMPARE(Menu(menuItems.key())->actions(), menuItems.value());
    }
  }

  // What is chosen there is done, and the menus have their items again.
  void ChoosingBehindTheChevron() {
    m_f.Open();
    MakeNarrow(0);
    auto *chevron = m_f.window->findChild<QToolButton *>(u"tbxMenu"_s);
    QTRY_VERIFY(chevron->isVisible());
    const int tabs = m_f.window->Tabs().TabCount();
    const qsizetype items = Menu(TMenu::File)->actions().size();
    QTimer choice;
    connect(&choice, &QTimer::timeout, this, [&] {
      auto *open = qobject_cast<QMenu *>(QApplication::activePopupWidget());
      if (open == nullptr) return;
      // The first menu, and its first item.
      if (open->activeAction() == nullptr) QTest::keyClick(open, Qt::Key_Down);
      if (qobject_cast<TMenuExtender *>(open) != nullptr) {
        QTest::keyClick(open, Qt::Key_Right);
      } else {
        choice.stop();
        QTest::keyClick(open, Qt::Key_Return);
      }
    });
    choice.start(1);
    QTest::mouseClick(chevron, Qt::LeftButton);
    QTRY_COMPARE(m_f.window->Tabs().TabCount(), tabs + 1);
    QTRY_COMPARE(Menu(TMenu::File)->actions().size(), items);
  }

  // The keyboard walks through all menus; each opens where its title is, which has come into view.
  void KeyboardWalksThroughAllMenus_data() {
    Columns<int, bool>("width", "mirrored");
    Row("wide", 900, false);
    Row("half", 250, false);
    Row("half, right to left", 250, true);
    Row("nothing fits", 0, false);
  }
  void KeyboardWalksThroughAllMenus() {
    QFETCH(int, width);
    QFETCH(bool, mirrored);
    if (mirrored) TZVOptions(*m_f.store).Set(Setting::LanguageFile, u"zvara.ini"_s);
    m_f.Open();
    m_f.window->resize(900, 500);
    MakeNarrow(width);
    QMenuBar *bar = m_f.window->menuBar();
    const QPoint place = bar->pos();
    m_f.window->Actions()[TCommand::FocusMenuBar]->trigger();
    for (const QAction *title : bar->actions()) {
      QTRY_COMPARE(bar->activeAction(), title);
      QCOMPARE(QApplication::activePopupWidget(), title->menu());
      const QRect shown = bar->parentWidget()->rect().translated(-bar->pos());
      const QRect item = bar->actionGeometry(const_cast<QAction *>(title));
      QVERIFY(shown.intersects(item));
      QVERIFY(mirrored ? shown.right() >= item.right() : shown.left() <= item.left());
      QTest::keyClick(QApplication::activePopupWidget(), mirrored ? Qt::Key_Left : Qt::Key_Right);
    }
    QTRY_COMPARE(bar->activeAction(), bar->actions().first());
    for (int i = 0; i < 2; ++i) {
      QWidget *popup = QApplication::activePopupWidget();
      QTest::keyClick(popup != nullptr ? popup : bar, Qt::Key_Escape);
    }
    QTRY_VERIFY(bar->activeAction() == nullptr);
    QTRY_COMPARE(bar->pos(), place);
    // Once something is chosen the bar stands as before, too.
    m_f.window->Actions()[TCommand::FocusMenuBar]->trigger();
    while (QApplication::activePopupWidget() != Menu(TMenu::Tools)) {
      QWidget *open = QApplication::activePopupWidget();
      QVERIFY(open != nullptr && open != Menu(TMenu::Help));
      QTest::keyClick(open, mirrored ? Qt::Key_Left : Qt::Key_Right);
    }
    QCOMPARE(bar->pos() == place, width == 900);
    Menu(TMenu::Tools)->setActiveAction(m_f.window->Actions()[TCommand::UsePopupBlocker]);
    QTest::keyClick(Menu(TMenu::Tools), Qt::Key_Return);
    QTRY_COMPARE(bar->pos(), place);
  }

  void LettersLeadToAllMenus() {
    for (const int width : {900, 250, 0}) {
      for (const TMenu menu : {TMenu::View, TMenu::Tools}) {
        m_f.Open();
        MakeNarrow(width);
        const QMenuBar *bar = m_f.window->menuBar();
        const QPoint place = bar->pos();
        const QKeyCombination letter = QKeySequence::mnemonic(Menu(menu)->title())[0];
        QTest::keyClick(m_f.window.get(), letter.key(), letter.keyboardModifiers());
        QTRY_COMPARE(QApplication::activePopupWidget(), Menu(menu));
        // Once something is chosen the bar stands as before.
        QAction *item = m_f.window->Actions()[menu == TMenu::View ? TCommand::StopAll : TCommand::UsePopupBlocker];
        Menu(menu)->setActiveAction(item);
        QTest::keyClick(Menu(menu), Qt::Key_Return);
        QTRY_VERIFY(!Menu(menu)->isVisible());
        QTRY_COMPARE(bar->pos(), place);
      }
    }
  }

  void FullScreenHasTheBandsThatItIsToHave() {
    m_f.Open();
    const auto isShown = [this](const char *grip) {
      return Bands()->findChild<QWidget *>(QLatin1String(grip))->isVisible();
    };
    QVERIFY(isShown("gripMenu") && isShown("gripTool") && isShown("gripAddress") && !isShown("gripLinks"));
    m_f.window->Actions()[TCommand::FullScreen]->trigger();
    QTRY_VERIFY(m_f.window->isFullScreen());
    QVERIFY(!isShown("gripMenu") && isShown("gripTool"));
    m_f.window->Actions()[TCommand::ViewMenuBar]->trigger();
    QVERIFY(isShown("gripMenu"));
    QVERIFY(TZVOptions(*m_f.store).Get(Setting::FullscreenMenuBar));
    m_f.window->Actions()[TCommand::ViewToolbar]->trigger();
    QVERIFY(!isShown("gripTool"));

    // A menu bar in the last row comes with the mouse at the top edge, and stays on the way to it.
    m_f.window->Actions()[TCommand::ViewMenuBar]->trigger();
    m_f.window->Actions()[TCommand::ViewToolbar]->trigger();
    TBandArrangement bands = Bands()->Arrangement();
    bands.MoveTo(TBand::Menu, BandCount - 1);
    bands.SetBreak(TBand::Menu, true);
    Bands()->SetArrangement(bands);
    const auto moveTo = [this](int y) { QTest::mouseMove(m_f.window->windowHandle(), QPoint(200, y)); };
    moveTo(m_f.window->height() / 2);
    moveTo(0);
    QTRY_VERIFY(isShown("gripMenu"));
    const QWidget *menus = m_f.window->menuBar();
    const int top = menus->mapTo(m_f.window.get(), QPoint()).y();
    QVERIFY(top > 30);
    for (int y = 1; y < top + menus->height(); y += 4) {
      moveTo(y);
      QCoreApplication::processEvents();
      QVERIFY(isShown("gripMenu"));
    }
    moveTo(m_f.window->height() / 2);
    QTRY_VERIFY(!isShown("gripMenu"));
  }

  // A right click on a band that takes none itself is the bar's.
  void ContextMenuIsOffered() {
    m_f.Open();
    const QSignalSpy asked(Bands(), &QWidget::customContextMenuRequested);
    for (QWidget *widget : {static_cast<QWidget *>(m_f.window->menuBar()),
                            static_cast<QWidget *>(m_f.window->findChild<TAddressLabel *>()),
                            m_f.window->findChild<QWidget *>(u"gripTool"_s)}) {
      const QPoint at(2, 2);
      QContextMenuEvent event(QContextMenuEvent::Mouse, at, widget->mapToGlobal(at));
      QApplication::sendEvent(widget, &event);
      QCOMPARE(asked.last().first().toPoint(), widget->mapTo(Bands(), at));
    }
    QCOMPARE(asked.size(), 3);
  }

 private:
  [[nodiscard]] TCoolBar *Bands() const { return m_f.window->findChild<TCoolBar *>(u"cbCoolbar"_s); }
  [[nodiscard]] QMenu *Menu(TMenu menu) const { return m_f.window->Actions().Menu(menu); }
  // Puts the tool bar beside the menu bar, whose band gets that width at the most.
  void MakeNarrow(int width) {
    TBandArrangement bands = Bands()->Arrangement();
    bands.SetBreak(TBand::Tool, width >= m_f.window->width());
    bands.SetWidth(TBand::Menu, width);
    Bands()->SetArrangement(bands);
  }

  TMainWindowFixture m_f;
  TLanguage m_language;
};

ENGINE_MAIN(TestBands)
#include "test_bands.moc"
