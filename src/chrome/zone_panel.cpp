#include "chrome/zone_panel.h"

#include <algorithm>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>

namespace {

constexpr int IconSize = 16;
constexpr int TextLeft = 19;
constexpr int TextTop = 1;
constexpr int RightMargin = 4;

}  // namespace

TZonePanel::TZonePanel(QWidget *parent) : QWidget(parent) {
  setObjectName(QStringLiteral("pnlZone"));
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
  hide();
}

void TZonePanel::Show(const QIcon &icon, const QString &text) {
  if (m_text == text && m_icon.cacheKey() == icon.cacheKey()) return;
  m_icon = icon;
  m_text = text;
  setVisible(!text.isEmpty());
  setAccessibleName(text);
  setToolTip(text);
  updateGeometry();
  update();
}

QSize TZonePanel::sizeHint() const {
  return {TextLeft + fontMetrics().horizontalAdvance(m_text) + RightMargin,
          std::max(IconSize, fontMetrics().height() + TextTop)};
}

void TZonePanel::paintEvent(QPaintEvent * /*event*/) {
  QPainter painter(this);
  const QRect icon(0, 0, IconSize, IconSize);
  const QRect text(TextLeft, TextTop, width() - TextLeft, height() - TextTop);
  m_icon.paint(&painter, QStyle::visualRect(layoutDirection(), rect(), icon));
  painter.setPen(palette().color(QPalette::WindowText));
  painter.drawText(QStyle::visualRect(layoutDirection(), rect(), text),
                   QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft | Qt::AlignTop), m_text);
}

void TZonePanel::mouseDoubleClickEvent(QMouseEvent *event) {
  if (event->button() == Qt::LeftButton) Q_EMIT DoubleClicked();
}
