// What the mouse, the wheel, the keyboard and dropped links do in the strip.

#include <algorithm>
#include <cstdlib>
#include <QAccessible>
#include <QApplication>
#include <QContextMenuEvent>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPointer>
#include <QStyle>
#include <QStyleHints>
#include <QTimerEvent>
#include <QToolTip>
#include <QWheelEvent>
#include "browser/strip/link_mime.h"
#include "browser/strip/tab_bar_view.h"
#include "ui/shown_text.h"

namespace {
constexpr int kWheelStep = 120;           // eighths of a degree: one notch
constexpr int kGreatestWheelWalk = 3;     // tabs per wheel event, however wild the wheel
constexpr int kDragScrollInterval = 150;  // ms between steps while a tab is held beyond the end of the strip

QWidget *PageOf(const TTab *tab) {
  return tab ? tab->page : nullptr;
}
}  // namespace

void TTabBarView::mousePressEvent(QMouseEvent *event) {
  m_mouse = event->position().toPoint();
  m_mouseInside = true;
  TTab *tab = TabAt(m_mouse);
  UpdateHover();
  if (event->button() == Qt::MiddleButton) m_pressedMiddle = PageOf(tab);
  if (event->button() != Qt::LeftButton) return;
  StopDragging();
  m_pressed = nullptr;
  m_pressedClose = nullptr;
  if (!tab) return;
  if (CloseRect(tab).contains(m_mouse)) {
    m_pressedClose = tab->page;
    UpdateTab(tab);
    return;
  }
  m_pressed = tab->page;
  m_pressedAt = m_mouse;
  Q_EMIT Activated(tab->page);
}

void TTabBarView::mouseMoveEvent(QMouseEvent *event) {
  m_mouse = event->position().toPoint();
  m_mouseInside = true;
  UpdateHover();
  if (!m_pressed || !event->buttons().testFlag(Qt::LeftButton)) {
    m_pressed = nullptr;
    StopDragging();
    return;
  }
  const int distance = QGuiApplication::styleHints()->startDragDistance();
  if (!m_dragging && (m_mouse - m_pressedAt).manhattanLength() < distance) return;
  m_dragging = true;
  DragTo(m_mouse);
  // Held beyond the end of the row, the tab goes on without the mouse moving.
  if (!m_layout.Overflows() || Mirrored(Area()).contains(m_mouse)) {
    m_dragScroll.stop();
  } else if (!m_dragScroll.isActive()) {
    m_dragScroll.start(kDragScrollInterval, this);
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
  m_pressed = nullptr;
  StopDragging();
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

void TTabBarView::timerEvent(QTimerEvent *event) {
  if (event->timerId() != m_dragScroll.timerId()) {
    QWidget::timerEvent(event);
    return;
  }
  const QRect area = Area();
  const QPoint point = Mirrored(m_mouse);
  const int beyond = m_multiple ? (point.y() > area.bottom()) - (point.y() < area.top())
                                : (point.x() > area.right()) - (point.x() < area.left());
  m_scrolledByHand = true;
  ScrollTo(m_offset + beyond * (m_multiple ? 1 : m_metrics.narrowest));
  DragTo(m_mouse);
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

// The tab goes before or behind the tab under the mouse, by its half: so it never jumps back and forth between two
// tabs of different width while the mouse stands still.
void TTabBarView::DragTo(const QPoint &position) {
  LayOut();
  const TTab *dragged = m_tabs.Find(m_pressed);
  if (!dragged || !dragged->visible) {
    StopDragging();
    return;
  }
  const QRect area = Area();
  QPoint point = Mirrored(position);
  point.setX(std::clamp(point.x(), area.left(), area.right()));
  point.setY(std::clamp(point.y(), area.top(), area.bottom()));
  const int row = m_multiple ? m_offset + (point.y() - area.y()) / m_metrics.rowHeight : 0;
  const int x = m_multiple ? point.x() : point.x() + m_offset;
  const int under = m_layout.IndexAt(row, x);
  int gap = m_tabs.VisibleCount();  // ordinal of the tab that it would come before
  if (under >= 0) {
    const TTabLayout::TPlace &place = m_layout.Place(under);
    gap = m_tabs.Ordinal(m_tabs.At(under)) + (x >= place.x + place.width / 2 ? 1 : 0);
  } else if (const int next = m_layout.FirstEndingAfter(row + 1, 0); next < m_layout.Count()) {
    gap = m_tabs.Ordinal(m_tabs.At(next));
  }
  const int from = m_tabs.Ordinal(dragged);
  const int to = gap > from ? gap - 1 : gap;
  if (to == from) return;
  Q_EMIT MoveWanted(m_tabs.Position(dragged), m_tabs.Position(m_tabs.VisibleAt(to)));
}

void TTabBarView::StopDragging() {
  m_dragging = false;
  m_dragScroll.stop();
}

void TTabBarView::wheelEvent(QWheelEvent *event) {
  event->accept();
  const QPoint delta = event->angleDelta();
  if (event->phase() == Qt::ScrollBegin) m_wheelRest = 0;
  if (!m_multiple && std::abs(delta.x()) > std::abs(delta.y())) {
    m_scrolledByHand = true;
    ScrollTo(m_offset - (layoutDirection() == Qt::RightToLeft ? -delta.x() : delta.x()));
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
  const int ordinal = m_tabs.Ordinal(active);
  const int last = m_tabs.VisibleCount() - 1;
  const int right = layoutDirection() == Qt::RightToLeft ? -1 : 1;
  const TTab *target = nullptr;
  switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right: {
      const int next = ordinal + (event->key() == Qt::Key_Right ? right : -right);
      target = m_tabs.VisibleAt(next < 0 ? last : next > last ? 0 : next);
      break;
    }
    case Qt::Key_Up:
    case Qt::Key_Down:
      target = TabInNextRow(event->key() == Qt::Key_Down);
      break;
    case Qt::Key_Home:
      target = m_tabs.VisibleAt(0);
      break;
    case Qt::Key_End:
      target = m_tabs.VisibleAt(last);
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

// The tab above or below the middle of the active one; nullptr at the first and the last row.
TTab *TTabBarView::TabInNextRow(bool down) const {
  if (m_stale) return nullptr;
  const TTabLayout::TPlace &place = m_tabs.Active()->place;
  const int row = place.row + (down ? 1 : -1);
  if (row < 0 || row >= m_layout.RowCount()) return nullptr;
  int index = m_layout.IndexAt(row, place.x + place.width / 2);
  if (index < 0) index = m_layout.FirstEndingAfter(row + 1, 0) - 1;  // right of the row's last tab
  while (index > 0 && !m_tabs.At(index)->visible) --index;
  return m_tabs.At(index);
}

void TTabBarView::focusInEvent(QFocusEvent *event) {
  QWidget::focusInEvent(event);
  const TTab *active = m_tabs.Active();
  if (!active) return;
  LayOut();
  m_scrolledByHand = false;
  Reveal(active);
  UpdateTab(active);
  Announce(QAccessible::Focus, active);
}

void TTabBarView::focusOutEvent(QFocusEvent *event) {
  QWidget::focusOutEvent(event);
  if (const TTab *active = m_tabs.Active()) UpdateTab(active);
}

void TTabBarView::dragEnterEvent(QDragEnterEvent *event) {
  if (!LinksIn(*event->mimeData()).isEmpty()) event->acceptProposedAction();
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
