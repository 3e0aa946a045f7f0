#include "chrome/zone_panel.h"

#include <QMouseEvent>

#include "chrome/status_panel_face.h"

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
  return StatusPanelFace::Size(*this, m_text);
}

void TZonePanel::paintEvent(QPaintEvent * /*event*/) {
  StatusPanelFace::Paint(*this, m_icon, m_text);
}

void TZonePanel::mouseDoubleClickEvent(QMouseEvent *event) {
  if (event->button() == Qt::LeftButton) Q_EMIT DoubleClicked();
}
