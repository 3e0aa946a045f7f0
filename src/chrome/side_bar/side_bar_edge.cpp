#include "chrome/side_bar/side_bar_edge.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <utility>

#include "chrome/side_bar/drag_rest.h"

namespace {

constexpr int OpenExtent = 5;  // pixels
constexpr int ClosedExtent = 4;

QAccessibleInterface *MakeAccessible(const QString &, QObject *object) {
  auto *edge = qobject_cast<TSideBarEdge *>(object);
  return edge != nullptr ? new QAccessibleWidget(edge, QAccessible::Grip) : nullptr;
}

}  // namespace

TSideBarEdge::TSideBarEdge(QWidget *parent) : QWidget(parent) {
  static const bool isInstalled = (QAccessible::installFactory(MakeAccessible), true);
  Q_UNUSED(isInstalled)
  setObjectName(QStringLiteral("splHalvexBar"));
  setAcceptDrops(true);
  WhenDragRests(this, [this] {
    if (!m_isOpen) Q_EMIT OpenWanted();
  });
  SetOpen(false);
}

void TSideBarEdge::SetOpen(bool open) {
  if (open == m_isOpen) return;
  EndDrag(false);
  m_isOpen = open;
  setCursor(open ? Qt::SplitHCursor : Qt::PointingHandCursor);
  // Closed, it has nothing for the keyboard that the command has not.
  setFocusPolicy(open ? Qt::TabFocus : Qt::NoFocus);
  update();
}

int TSideBarEdge::Extent() const {
  return m_isOpen ? OpenExtent : ClosedExtent;
}

void TSideBarEdge::EndDrag(bool kept) {
  m_isPressed = false;
  if (!std::exchange(m_isDragging, false)) return;
  m_escape.Stop();
  Q_EMIT DragEnded(kept);
}

void TSideBarEdge::enterEvent(QEnterEvent *event) {
  QWidget::enterEvent(event);
  update();
}

void TSideBarEdge::leaveEvent(QEvent *event) {
  QWidget::leaveEvent(event);
  update();
}

void TSideBarEdge::hideEvent(QHideEvent *event) {
  EndDrag(false);
  QWidget::hideEvent(event);
}

void TSideBarEdge::keyPressEvent(QKeyEvent *event) {
  const bool isSideways = event->key() == Qt::Key_Left || event->key() == Qt::Key_Right;
  if (isSideways) {
    Q_EMIT StepWanted((event->key() == Qt::Key_Right) != isRightToLeft());
  } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    Q_EMIT CloseWanted();
  } else {
    QWidget::keyPressEvent(event);
  }
}

void TSideBarEdge::mousePressEvent(QMouseEvent *event) {
  if (event->button() != Qt::LeftButton) {
    event->ignore();
    return;
  }
  m_isPressed = true;
  m_from = event->globalPosition().toPoint().x();
}

void TSideBarEdge::mouseMoveEvent(QMouseEvent *event) {
  if (!m_isPressed || !m_isOpen) return;
  const int moved = event->globalPosition().toPoint().x() - m_from;
  if (!m_isDragging && qAbs(moved) < QApplication::startDragDistance()) return;
  if (!std::exchange(m_isDragging, true)) m_escape.Start();
  Q_EMIT Dragged(isRightToLeft() ? -moved : moved);
}

void TSideBarEdge::mouseReleaseEvent(QMouseEvent *event) {
  if (event->button() != Qt::LeftButton) return;
  const bool isClick =
      std::exchange(m_isPressed, false) && !m_isDragging && rect().contains(event->position().toPoint());
  EndDrag(true);
  if (isClick && !m_isOpen) Q_EMIT OpenWanted();
}

void TSideBarEdge::mouseDoubleClickEvent(QMouseEvent *event) {
  if (event->button() == Qt::LeftButton && m_isOpen) Q_EMIT CloseWanted();
}

void TSideBarEdge::paintEvent(QPaintEvent *) {
  QPainter painter(this);
  const QPalette &colors = palette();
  if (underMouse() || hasFocus() || m_isDragging) {
    painter.fillRect(rect(), colors.color(QPalette::Highlight));
    return;
  }
  painter.fillRect(rect(), colors.color(QPalette::Window));
  // A hairline at the pages' side.
  QColor line = colors.color(QPalette::WindowText);
  line.setAlphaF(0.2F);
  painter.fillRect(isRightToLeft() ? 0 : width() - 1, 0, 1, height(), line);
}
