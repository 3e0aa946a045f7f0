#include "ui/close_button.h"

#include <QKeyEvent>
#include <QPainter>

namespace {

constexpr qreal CrossShare = 0.36;  // of the icon's size
constexpr qreal LineShare = 0.11;

}  // namespace

TCloseButton::TCloseButton(const QString &text, QWidget *parent) : QToolButton(parent) {
  setObjectName("cmdClose");
  setToolTip(text);
  setAccessibleName(text);
  setAutoRaise(true);
  setFocusPolicy(Qt::TabFocus);
}

void TCloseButton::paintEvent(QPaintEvent *event) {
  QToolButton::paintEvent(event);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const qreal size = qMin(iconSize().width(), iconSize().height());
  painter.setPen(QPen(palette().color(foregroundRole()), size * LineShare, Qt::SolidLine, Qt::RoundCap));
  painter.translate(QRectF(rect()).center());
  const qreal reach = size * CrossShare;
  painter.drawLine(QPointF(-reach, -reach), QPointF(reach, reach));
  painter.drawLine(QPointF(-reach, reach), QPointF(reach, -reach));
}

bool ClaimEscape(QEvent &event) {
  if (event.type() != QEvent::ShortcutOverride || static_cast<QKeyEvent &>(event).key() != Qt::Key_Escape) return false;
  event.accept();
  return true;
}
