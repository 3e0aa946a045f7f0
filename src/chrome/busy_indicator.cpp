#include "chrome/busy_indicator.h"

#include <QIcon>
#include <QPainter>

namespace {

constexpr int Edge = 24;       // pixels
constexpr int StepTime = 60;   // milliseconds
constexpr int StepAngle = 24;  // degrees
constexpr int ArcAngle = 100;  // degrees

}  // namespace

TBusyIndicator::TBusyIndicator(QWidget *parent) : QWidget(parent) {
  setObjectName(QStringLiteral("imgLogo"));
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  m_timer.setInterval(StepTime);
  connect(&m_timer, &QTimer::timeout, this, [this] {
    m_angle = (m_angle + StepAngle) % 360;
    update();
  });
}

QSize TBusyIndicator::sizeHint() const {
  return {Edge + 4, Edge + 4};
}

void TBusyIndicator::SetBusy(bool busy) {
  if (busy == m_timer.isActive()) return;
  busy ? m_timer.start() : m_timer.stop();
  update();
}

void TBusyIndicator::paintEvent(QPaintEvent *) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRect box((width() - Edge) / 2, (height() - Edge) / 2, Edge, Edge);
  if (!m_timer.isActive()) {
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
