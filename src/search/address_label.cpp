#include "search/address_label.h"

#include <QMouseEvent>

namespace {

constexpr int WideBand = 100;  // pixels

}  // namespace

TAddressLabel::TAddressLabel(const QString &text, QWidget *band) : QLabel(text, band), m_band(band) {
  setObjectName(QStringLiteral("lblAddress"));
}

void TAddressLabel::mouseDoubleClickEvent(QMouseEvent *event) {
  if (event->button() != Qt::LeftButton) return;
  // Never wider than what counts as narrow, or the next double click could not undo it.
  const int narrow = qMin(sizeHint().width() + 2 * mapTo(m_band, QPoint()).x(), WideBand - 1);
  m_band->setMaximumWidth(m_band->width() >= WideBand ? narrow : QWIDGETSIZE_MAX);
}
