#include "chrome/bands/band_grip.h"

#include <algorithm>
#include <QAccessibleWidget>
#include <QApplication>
#include <QKeyEvent>
#include <QStyleOption>
#include <QStylePainter>
#include <utility>

namespace {

constexpr int SmallestHandle = 8;  // pixels
constexpr int CaptionMargin = 3;   // pixels, at either side of the caption

QAccessibleInterface *MakeAccessible(const QString &, QObject *object) {
  auto *grip = qobject_cast<TBandGrip *>(object);
  return grip != nullptr ? new QAccessibleWidget(grip, QAccessible::Grip) : nullptr;
}

}  // namespace

TBandGrip::TBandGrip(TBand band, QWidget *parent) : QWidget(parent), m_band(band) {
  static const bool isInstalled = (QAccessible::installFactory(MakeAccessible), true);
  Q_UNUSED(isInstalled)
  setCursor(Qt::SizeAllCursor);
  // A click leaves the keyboard where it is.
  setFocusPolicy(Qt::TabFocus);
}

void TBandGrip::SetCaption(const QString &caption) {
  if (caption == m_caption) return;
  m_caption = caption;
  updateGeometry();
  update();
}

int TBandGrip::HandleWidth() const {
  return std::max(style()->pixelMetric(QStyle::PM_ToolBarHandleExtent, nullptr, this), SmallestHandle);
}

QSize TBandGrip::sizeHint() const {
  const QSize text = m_caption.isEmpty() ? QSize(0, 0) : fontMetrics().size(Qt::TextSingleLine, m_caption);
  return {HandleWidth() + (text.isEmpty() ? 0 : text.width() + 2 * CaptionMargin), text.height()};
}

void TBandGrip::CancelDrag() {
  EndDrag(false);
}

void TBandGrip::EndDrag(bool drop) {
  const TDrag drag = std::exchange(m_drag, TDrag::None);
  if (drag != TDrag::Moving) return;
  m_escape.Stop();
  Q_EMIT DragEnded(drop);
}

bool TBandGrip::event(QEvent *event) {
  if (event->type() == QEvent::UngrabMouse) CancelDrag();
  return QWidget::event(event);
}

void TBandGrip::changeEvent(QEvent *event) {
  if (event->type() == QEvent::StyleChange || event->type() == QEvent::FontChange) updateGeometry();
  QWidget::changeEvent(event);
}

void TBandGrip::hideEvent(QHideEvent *event) {
  CancelDrag();
  QWidget::hideEvent(event);
}

void TBandGrip::keyPressEvent(QKeyEvent *event) {
  const bool isMirrored = layoutDirection() == Qt::RightToLeft;
  const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
  const bool isSideways = event->key() == Qt::Key_Left || event->key() == Qt::Key_Right;
  const bool isForth = (event->key() == Qt::Key_Right) != isMirrored;
  if (modifiers == Qt::ControlModifier && isSideways) {
    Q_EMIT ResizeWanted(isForth);
  } else if (modifiers == Qt::NoModifier && isSideways) {
    Q_EMIT StepWanted(isForth ? TBandStep::Forth : TBandStep::Back);
  } else if (modifiers == Qt::NoModifier && (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down)) {
    Q_EMIT StepWanted(event->key() == Qt::Key_Up ? TBandStep::Up : TBandStep::Down);
  } else if (modifiers == Qt::NoModifier && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
    Q_EMIT BreakWanted();
  } else {
    QWidget::keyPressEvent(event);
  }
}

void TBandGrip::mousePressEvent(QMouseEvent *event) {
  if (event->button() != Qt::LeftButton) {
    event->ignore();
    return;
  }
  m_drag = TDrag::Pressed;
  m_from = mapToParent(event->position().toPoint());
}

void TBandGrip::mouseMoveEvent(QMouseEvent *event) {
  if (m_drag == TDrag::None) return;
  if ((event->buttons() & Qt::LeftButton) == 0) {
    // The release went somewhere else.
    CancelDrag();
    return;
  }
  const QPoint to = mapToParent(event->position().toPoint());
  if (m_drag == TDrag::Pressed && (to - m_from).manhattanLength() < QApplication::startDragDistance()) return;
  if (std::exchange(m_drag, TDrag::Moving) == TDrag::Pressed) m_escape.Start();
  Q_EMIT Dragged(m_from, to);
}

void TBandGrip::mouseReleaseEvent(QMouseEvent *event) {
  if (event->button() == Qt::LeftButton) EndDrag(true);
}

void TBandGrip::paintEvent(QPaintEvent *) {
  QStylePainter painter(this);
  QStyleOption option;
  option.initFrom(this);
  option.state |= QStyle::State_Horizontal;
  option.rect = QStyle::visualRect(layoutDirection(), rect(), QRect(0, 0, HandleWidth(), height()));
  painter.drawPrimitive(QStyle::PE_IndicatorToolBarHandle, option);
  if (!m_caption.isEmpty()) {
    const QRect text = rect().adjusted(HandleWidth() + CaptionMargin, 0, 0, 0);
    painter.drawItemText(QStyle::visualRect(layoutDirection(), rect(), text),
                         int(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft)) | Qt::AlignVCenter, palette(),
                         isEnabled(), m_caption, foregroundRole());
  }
  if (hasFocus()) {
    QStyleOptionFocusRect focus;
    focus.initFrom(this);
    // It came by keyboard, however the style knows of that.
    focus.state |= QStyle::State_KeyboardFocusChange;
    focus.backgroundColor = palette().color(backgroundRole());
    painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
  }
}
