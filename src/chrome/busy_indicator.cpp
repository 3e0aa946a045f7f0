#include "chrome/busy_indicator.h"

#include <QIcon>
#include <QPainter>

#include "ui/frame_updates.h"
#include "ui/motion.h"

namespace {

constexpr int Edge = 24;       // pixels
constexpr int StepAngle = 40;  // degrees
constexpr int ArcAngle = 100;  // degrees

}  // namespace

TBusyIndicator::TBusyIndicator(TFrameUpdates &updates, QWidget *parent) : QWidget(parent), m_updates(updates) {
  setObjectName(QStringLiteral("imgLogo"));
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  connect(&updates, &TFrameUpdates::Show, this, &TBusyIndicator::Turn);
}

void TBusyIndicator::AskToTurn() {
  if (!Motion::IsReduced()) m_updates.Ask();
}

void TBusyIndicator::Turn() {
  if (!m_isBusy || Motion::IsReduced()) return;
  m_angle = (m_angle + StepAngle) % 360;
  update();
  // A window that nobody sees has nothing to turn; it goes on when it is painted again.
  if (isVisible() && !window()->isMinimized()) AskToTurn();
}

QSize TBusyIndicator::sizeHint() const {
  return {Edge + 4, Edge + 4};
}

void TBusyIndicator::SetBusy(bool busy) {
  if (busy == m_isBusy) return;
  m_isBusy = busy;
  update();
  if (busy) AskToTurn();
}

void TBusyIndicator::paintEvent(QPaintEvent *) {
  if (m_isBusy) AskToTurn();
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRect box((width() - Edge) / 2, (height() - Edge) / 2, Edge, Edge);
  if (!m_isBusy) {
    QIcon(QStringLiteral(":/icons/zarvela.svg")).paint(&painter, box);
    return;
  }
  QPen pen(palette().color(QPalette::Mid), 3);
  pen.setCapStyle(Qt::RoundCap);
  const QRectF ring = QRectF(box).adjusted(3, 3, -3, -3);
  painter.setPen(pen);
  painter.drawEllipse(ring);
  pen.setColor(palette().color(QPalette::Highlight));
  painter.setPen(pen);
  // Qt counts sixteenths of a degree, counter-clockwise.
  painter.drawArc(ring, -m_angle * 16, ArcAngle * 16);
}
