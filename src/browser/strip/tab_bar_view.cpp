#include "browser/strip/tab_bar_view.h"

#include <algorithm>
#include <cstdlib>
#include <QAccessible>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QPaintEvent>
#include <QPointer>
#include <QStyle>
#include <QToolTip>
#include <QWheelEvent>
#include <utility>
#include "browser/strip/link_mime.h"
#include "browser/strip/tab_bar_accessible.h"
#include "browser/strip/tab_drag.h"
#include "browser/strip/tab_scrollers.h"
#include "ui/frame_updates.h"
#include "ui/shown_text.h"

namespace {
constexpr int kScrolledTabs = 2;       // narrowest tabs per click on a scroll button
constexpr int kWheelStep = 120;        // eighths of a degree: one notch
constexpr int kGreatestWheelWalk = 3;  // tabs per wheel event, however wild the wheel

TTabMetrics MetricsFor(const QWidget *widget) {
  return TTabMetrics(widget->fontMetrics(), widget->style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, widget));
}

// As drawn: one line, and without the signs that mark keyboard accelerators.
QString PlainText(const QString &caption) {
  QString text;
  text.reserve(caption.size());
  for (qsizetype i = 0; i < caption.size(); ++i) {
    if (caption[i] == u'&' && ++i == caption.size()) break;
    text += caption[i];
  }
  return text.simplified();
}

QWidget *PageOf(const TTab *tab) {
  return tab ? tab->page : nullptr;
}
}  // namespace

TTabBarView::TTabBarView(const TTabList &tabs, TFrameUpdates &updates, QWidget *parent)
    : QWidget(parent),
      m_tabs(tabs),
      m_geometry(MetricsFor(this)),
      m_scrollers(new TTabScrollers(this)),
      m_drag(new TTabDrag(tabs, m_geometry, this)),
      m_updates(updates) {
  connect(&updates, &TFrameUpdates::Show, this, &TTabBarView::MeasureChanged);
  TTabBarAccessible::Install();
  setFocusPolicy(Qt::TabFocus);  // a click leaves the keyboard with the page
  setMouseTracking(true);
  setAcceptDrops(true);
  m_geometry.direction = layoutDirection();
  connect(m_scrollers, &TTabScrollers::Scrolled, this, &TTabBarView::ScrollByHand);
  connect(m_scrollers, &TTabScrollers::Stepped, this, [this](int visualDirection) {
    const int direction = layoutDirection() == Qt::RightToLeft ? -visualDirection : visualDirection;
    ScrollByHand(m_geometry.Offset() + direction * kScrolledTabs * m_geometry.metrics.narrowest);
  });
  connect(m_drag, &TTabDrag::MoveWanted, this, &TTabBarView::MoveWanted);
  connect(m_drag, &TTabDrag::ScrollWanted, this, [this](int direction) {
    LayOut();
    ScrollByHand(m_geometry.Offset() + direction * (m_geometry.multiple ? 1 : m_geometry.metrics.narrowest));
  });
}

TTabBarView::~TTabBarView() = default;

void TTabBarView::TabShown(TTab *tab) {
  Measure(tab);
  Invalidate();
  TTabBarAccessible::Announce(*this, QAccessible::ObjectCreated, tab);
}

void TTabBarView::TabAboutToGo(TTab *tab) {
  UpdateTab(tab);
  TTabBarAccessible::Announce(*this, QAccessible::ObjectDestroyed, tab);
  m_drag->Forget(tab->page);
}

void TTabBarView::TabRemoved() {
  Invalidate();
}

void TTabBarView::TabHidden(TTab *tab) {
  Measure(tab);
  Invalidate();
}

void TTabBarView::TabMoved(const TTab *tab) {
  if (m_tabs.Active() == tab) m_scrolledByHand = false;
  Invalidate();
  TTabBarAccessible::AnnounceMove(*this, tab);
}

void TTabBarView::TabCaptionChanged(TTab *tab, const QString &caption) {
  tab->caption = caption;
  const QString text = PlainText(caption);
  if (text == tab->text) return;
  tab->text = text;
  tab->elidedWidth = -1;
  if (!tab->visible) return;
  Gather(tab);
  TTabBarAccessible::Announce(*this, QAccessible::NameChanged, tab);
}

void TTabBarView::TabImageChanged(TTab *tab) {
  if (!tab->visible) return;
  Gather(tab);
  // The image says what the tab's description tells in words.
  TTabBarAccessible::Announce(*this, QAccessible::DescriptionChanged, tab);
}

void TTabBarView::ActiveChanged(TTab *before) {
  TTab *active = m_tabs.Active();
  m_scrolledByHand = false;
  if (before) UpdateTab(before);
  if (!active) return;
  UpdateTab(active);
  if (!m_stale) Reveal(active);
}

void TTabBarView::SetImages(const QList<QIcon> &images) {
  m_images = images;
  MeasureAll();
}

void TTabBarView::SetInactiveColors(const QColor &tab, const QColor &font) {
  m_inactiveTab = tab;
  m_inactiveFont = font;
  update();
}

void TTabBarView::SetMultipleLines(bool multiple) {
  if (m_geometry.multiple == multiple) return;
  m_geometry.multiple = multiple;
  m_geometry.ScrollTo(0);
  m_scrolledByHand = false;
  Invalidate();
}

void TTabBarView::SetTabsDown(bool down) {
  if (m_geometry.tabsDown == down) return;
  m_geometry.tabsDown = down;
  update();
  Invalidate();
}

void TTabBarView::SetButtonTexts(const QString &closeTab, const QString &scrollLeft, const QString &scrollRight) {
  m_closeText = closeTab;
  m_scrollers->SetTexts(scrollLeft, scrollRight);
}

int TTabBarView::HeightFor(const QSize &control) {
  if (m_geometry.SetControl(control)) {
    m_scrolledByHand = false;
    m_stale = true;
  }
  LayOut();
  return m_geometry.Height();
}

QRect TTabBarView::TabRect(const TTab *tab) {
  LayOut();
  return m_geometry.ShownPartOf(tab);
}

TTab *TTabBarView::TabAt(const QPoint &position) {
  LayOut();
  return m_tabs.At(m_geometry.IndexAt(position));
}

bool TTabBarView::event(QEvent *event) {
  switch (event->type()) {
    case QEvent::LayoutRequest:
      m_arrangePosted = false;
      Q_EMIT ArrangeWanted();
      return true;
    case QEvent::ToolTip: {
      const auto *help = static_cast<QHelpEvent *>(event);
      ShowTip(help->pos(), help->globalPos());
      return true;
    }
    default:
      return QWidget::event(event);
  }
}

void TTabBarView::changeEvent(QEvent *event) {
  switch (event->type()) {
    case QEvent::FontChange:
    case QEvent::StyleChange:
      m_geometry.metrics = MetricsFor(this);
      MeasureAll();
      break;
    case QEvent::LayoutDirectionChange:
      m_geometry.direction = layoutDirection();
      update();
      Invalidate();
      break;
    default:
      break;
  }
  QWidget::changeEvent(event);
}

void TTabBarView::paintEvent(QPaintEvent *event) {
  PlaceTabs();
  QPainter painter(this);
  TTabPainter tabPainter(painter, m_geometry.metrics, palette(), layoutDirection(), m_geometry.tabsDown);
  tabPainter.inactiveTab = m_inactiveTab;
  tabPainter.inactiveFont = m_inactiveFont;
  tabPainter.DrawBackground(rect());

  painter.setClipRect(m_geometry.Area());
  for (int i = 0; i < m_tabs.Count(); ++i) {
    if (m_geometry.ShownPartOf(m_tabs.At(i)).intersects(event->rect())) DrawTab(tabPainter, m_tabs.At(i));
  }
}

void TTabBarView::mousePressEvent(QMouseEvent *event) {
  m_mouse = event->position().toPoint();
  m_mouseInside = true;
  TTab *tab = TabAt(m_mouse);
  UpdateHover();
  if (event->button() == Qt::MiddleButton) m_pressedMiddle = PageOf(tab);
  if (event->button() != Qt::LeftButton) return;
  m_drag->Release();
  m_pressedClose = nullptr;
  if (!tab) return;
  if (CloseRect(tab).contains(m_mouse)) {
    m_pressedClose = tab->page;
    UpdateTab(tab);
    return;
  }
  m_drag->Press(tab->page, m_mouse);
  Q_EMIT Activated(tab->page);
}

void TTabBarView::mouseMoveEvent(QMouseEvent *event) {
  m_mouse = event->position().toPoint();
  m_mouseInside = true;
  UpdateHover();
  if (!event->buttons().testFlag(Qt::LeftButton)) {
    m_drag->Release();
    return;
  }
  LayOut();
  if (QWidget *page = m_drag->TakeOut(event->globalPosition().toPoint(), *parentWidget())) {
    Q_EMIT DragOutWanted(page);
  } else {
    m_drag->Follow(m_mouse);
  }
}

void TTabBarView::mouseReleaseEvent(QMouseEvent *event) {
  m_mouse = event->position().toPoint();
  const TTab *tab = TabAt(m_mouse);
  QWidget *page = PageOf(tab);
  if (event->button() == Qt::MiddleButton) {
    const bool same = page && page == m_pressedMiddle;
    m_pressedMiddle = nullptr;
    if (same) Q_EMIT CloseWanted(page);
    return;
  }
  if (event->button() != Qt::LeftButton) return;
  const bool close = page && page == m_pressedClose && CloseRect(tab).contains(m_mouse);
  if (const TTab *was = m_tabs.Find(m_pressedClose)) UpdateTab(was);
  m_pressedClose = nullptr;
  m_drag->Release();
  if (close) Q_EMIT CloseWanted(page);
}

void TTabBarView::mouseDoubleClickEvent(QMouseEvent *event) {
  if (event->button() == Qt::LeftButton && !TabAt(event->position().toPoint())) {
    Q_EMIT EmptyDoubleClicked();
    return;
  }
  // Closing one tab after the other in the same place, the second press comes as a double click.
  mousePressEvent(event);
}

void TTabBarView::leaveEvent(QEvent *event) {
  m_mouseInside = false;
  SetHover(nullptr, false);
  QWidget::leaveEvent(event);
}

void TTabBarView::UpdateHover() {
  TTab *tab = m_mouseInside && !m_stale ? TabAt(m_mouse) : nullptr;
  SetHover(PageOf(tab), tab && CloseRect(tab).contains(m_mouse));
}

void TTabBarView::SetHover(QWidget *page, bool overClose) {
  if (page == m_hover && overClose == m_overClose) return;
  const TTab *before = m_tabs.Find(m_hover);
  m_hover = page;
  m_overClose = overClose;
  if (before) UpdateTab(before);
  if (const TTab *now = m_tabs.Find(page)) UpdateTab(now);
}

void TTabBarView::wheelEvent(QWheelEvent *event) {
  event->accept();
  const QPoint delta = event->angleDelta();
  if (event->phase() == Qt::ScrollBegin) m_wheelRest = 0;
  if (!m_geometry.multiple && std::abs(delta.x()) > std::abs(delta.y())) {
    ScrollByHand(m_geometry.Offset() - (layoutDirection() == Qt::RightToLeft ? -delta.x() : delta.x()));
    return;
  }
  if (delta.y() == 0) return;
  // Touch pads send many small turns: they add up, and start anew when the direction changes.
  const int turn = std::clamp(delta.y(), -kGreatestWheelWalk * kWheelStep, kGreatestWheelWalk * kWheelStep);
  if ((turn > 0) != (m_wheelRest > 0)) m_wheelRest = 0;
  m_wheelRest += turn;
  const int steps = m_wheelRest / kWheelStep;
  m_wheelRest %= kWheelStep;
  if (steps != 0) WalkByWheel(-steps);
}

// Unlike the keys, the wheel stops at the ends: nobody counts its notches.
void TTabBarView::WalkByWheel(int steps) {
  const TTab *active = m_tabs.Active();
  if (!active) return;
  const int ordinal = m_tabs.Ordinal(active);
  TTab *target = m_tabs.VisibleAt(std::clamp(ordinal + steps, 0, m_tabs.VisibleCount() - 1));
  if (target && target != active) Q_EMIT Activated(target->page);
}

void TTabBarView::contextMenuEvent(QContextMenuEvent *event) {
  // The menu key comes as a key press too, and is answered there.
  if (event->reason() == QContextMenuEvent::Keyboard) return;
  if (const TTab *tab = TabAt(event->pos())) {
    Q_EMIT MenuWanted(tab->page, event->globalPos());
  } else {
    event->ignore();
  }
}

void TTabBarView::ShowTip(const QPoint &position, const QPoint &globalPosition) {
  const TTab *tab = TabAt(position);
  if (!tab) {
    QToolTip::hideText();
    return;
  }
  const QRect close = CloseRect(tab);
  const bool onClose = close.contains(position) && !m_closeText.isEmpty();
  const QString text = onClose ? m_closeText : tab->hint.isEmpty() ? tab->text : tab->hint;
  if (text.isEmpty()) {
    QToolTip::hideText();
    return;
  }
  QToolTip::showText(globalPosition, PlainTip(text), this, onClose ? close : TabRect(tab));
}

void TTabBarView::keyPressEvent(QKeyEvent *event) {
  const TTab *active = m_tabs.Active();
  if (!active) {
    QWidget::keyPressEvent(event);
    return;
  }
  const TTab *target = nullptr;
  switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Home:
    case Qt::Key_End:
      LayOut();
      target = TabTowards(event->key());
      break;
    case Qt::Key_Delete:
      Q_EMIT CloseWanted(active->page);
      return;
    case Qt::Key_F10:
      if (event->modifiers() != Qt::ShiftModifier) {
        QWidget::keyPressEvent(event);
        return;
      }
      [[fallthrough]];
    case Qt::Key_Menu:
      Q_EMIT MenuWanted(active->page, mapToGlobal(TabRect(active).center()));
      return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
    case Qt::Key_Escape:
      Q_EMIT PageFocusWanted();
      return;
    default:
      QWidget::keyPressEvent(event);
      return;
  }
  if (!target || target == active) return;
  // With Ctrl the tab itself goes there: what dragging does for the mouse.
  if (event->modifiers().testFlag(Qt::ControlModifier)) {
    Q_EMIT MoveWanted(m_tabs.Position(active), m_tabs.Position(target));
  } else {
    Q_EMIT Activated(target->page);
  }
}

// Where a key leads from the active tab: round the ends of the strip, and to the tab above or below its middle; nullptr
// above the first and below the last row.
TTab *TTabBarView::TabTowards(int key) const {
  const TTab *active = m_tabs.Active();
  const int last = m_tabs.VisibleCount() - 1;
  switch (key) {
    case Qt::Key_Home:
      return m_tabs.VisibleAt(0);
    case Qt::Key_End:
      return m_tabs.VisibleAt(last);
    case Qt::Key_Left:
    case Qt::Key_Right: {
      const bool on = (key == Qt::Key_Right) == (layoutDirection() == Qt::LeftToRight);
      const int next = m_tabs.Ordinal(active) + (on ? 1 : -1);
      return m_tabs.VisibleAt(next < 0 ? last : next > last ? 0 : next);
    }
    default: {
      int index = m_geometry.IndexInNextRow(active, key == Qt::Key_Down);
      while (index > 0 && !m_tabs.At(index)->visible) --index;
      return m_tabs.At(index);
    }
  }
}

void TTabBarView::focusInEvent(QFocusEvent *event) {
  QWidget::focusInEvent(event);
  const TTab *active = m_tabs.Active();
  if (!active) return;
  LayOut();
  m_scrolledByHand = false;
  Reveal(active);
  UpdateTab(active);
  TTabBarAccessible::AnnounceFocus(*this);
}

void TTabBarView::focusOutEvent(QFocusEvent *event) {
  QWidget::focusOutEvent(event);
  if (const TTab *active = m_tabs.Active()) UpdateTab(active);
}

void TTabBarView::dragEnterEvent(QDragEnterEvent *event) {
  // A tab that has been dragged out and comes back changes nothing.
  if (event->source() != this && !LinksIn(*event->mimeData()).isEmpty()) event->acceptProposedAction();
}

void TTabBarView::dragMoveEvent(QDragMoveEvent *event) {
  SetDropTarget(PageOf(TabAt(event->position().toPoint())));
  event->acceptProposedAction();
}

void TTabBarView::dragLeaveEvent(QDragLeaveEvent *event) {
  SetDropTarget(nullptr);
  QWidget::dragLeaveEvent(event);
}

void TTabBarView::dropEvent(QDropEvent *event) {
  SetDropTarget(nullptr);
  QWidget *page = PageOf(TabAt(event->position().toPoint()));
  QStringList links = LinksIn(*event->mimeData());
  if (links.isEmpty()) return;
  event->acceptProposedAction();
  if (page) links = links.mid(0, 1);  // one tab shows one page
  const QPointer<TTabBarView> alive(this);
  for (const QString &link : std::as_const(links)) {
    if (alive) Q_EMIT LinkDropped(link, page);
  }
}

void TTabBarView::SetDropTarget(QWidget *page) {
  if (page == m_dropTarget) return;
  const TTab *before = m_tabs.Find(m_dropTarget);
  m_dropTarget = page;
  if (before) UpdateTab(before);
  if (const TTab *now = m_tabs.Find(page)) UpdateTab(now);
}

void TTabBarView::Invalidate() {
  m_stale = true;
  if (m_arrangePosted) return;
  m_arrangePosted = true;
  QCoreApplication::postEvent(this, new QEvent(QEvent::LayoutRequest));
}

void TTabBarView::Gather(TTab *tab) {
  tab->changed = true;
  m_tabsChanged = true;
  m_updates.Ask();
}

void TTabBarView::MeasureChanged() {
  if (!std::exchange(m_tabsChanged, false)) return;
  for (int i = 0; i < m_tabs.Count(); ++i) {
    TTab *tab = m_tabs.At(i);
    if (!std::exchange(tab->changed, false)) continue;
    Measure(tab);
    UpdateTab(tab);
  }
}

void TTabBarView::LayOut() {
  MeasureChanged();
  PlaceTabs();
}

void TTabBarView::PlaceTabs() {
  if (!m_stale) return;
  m_stale = false;
  update(m_geometry.LayOut(m_tabs, m_scrollers->BarWidth()));
  m_scrollers->Place(m_geometry);
  ScrollTo(m_geometry.Offset());
  const TTab *active = m_tabs.Active();
  if (active && !m_scrolledByHand) Reveal(active);
  UpdateHover();
}

void TTabBarView::Measure(TTab *tab) {
  const int wish = tab->visible ? m_geometry.metrics.WidthOf(fontMetrics(), tab->text, KeepsImagePlace(tab)) : 0;
  if (std::exchange(tab->wish, wish) != wish) Invalidate();
}

void TTabBarView::MeasureAll() {
  for (int i = 0; i < m_tabs.Count(); ++i) {
    m_tabs.At(i)->elidedWidth = -1;
    Measure(m_tabs.At(i));
  }
  update();
  Invalidate();
}

bool TTabBarView::KeepsImagePlace(const TTab *tab) const {
  return !m_images.isEmpty() || !tab->icon.isNull();
}

bool TTabBarView::ShowsMark(const TTab *tab) const {
  return tab->image >= 0 && tab->image < m_images.size();
}

QRect TTabBarView::CloseRect(const TTab *tab) const {
  const QRect place = m_geometry.PlaceOf(tab);
  return TTabParts(m_geometry.metrics, place, KeepsImagePlace(tab), true, layoutDirection()).close;
}

void TTabBarView::DrawTab(TTabPainter &painter, TTab *tab) {
  TTabLook look;
  look.rect = m_geometry.PlaceOf(tab);
  look.hasImage = KeepsImagePlace(tab);
  look.image = tab->icon;
  if (ShowsMark(tab)) look.mark = m_images[tab->image];
  look.active = tab == m_tabs.Active();
  look.hovered = tab->page == m_hover;
  const bool showsClose = look.active || look.hovered;
  const int room = TTabParts(m_geometry.metrics, look.rect, look.hasImage, showsClose, layoutDirection()).text.width();
  if (tab->elidedWidth != room) {
    tab->elidedWidth = room;
    tab->elided = fontMetrics().elidedText(tab->text, Qt::ElideRight, room);
  }
  look.text = tab->elided;
  look.closeHovered = look.hovered && m_overClose;
  look.closePressed = look.closeHovered && m_pressedClose == tab->page;
  look.keyboardFocus = look.active && hasFocus();
  look.dropTarget = tab->page == m_dropTarget;
  painter.DrawTab(look);
}

void TTabBarView::UpdateTab(const TTab *tab) {
  update(m_geometry.ShownPartOf(tab));
}

void TTabBarView::ScrollTo(int offset) {
  const bool moved = m_geometry.ScrollTo(offset);
  m_scrollers->Show(m_geometry);
  if (!moved) return;
  update();
  UpdateHover();
}

void TTabBarView::ScrollByHand(int offset) {
  m_scrolledByHand = true;
  ScrollTo(offset);
}

void TTabBarView::Reveal(const TTab *tab) {
  ScrollTo(m_geometry.OffsetRevealing(tab));
}
