#include "search/address_label.h"

#include <QMouseEvent>

TAddressLabel::TAddressLabel(const QString &text, QWidget *parent) : QLabel(text, parent) {
  setObjectName(QStringLiteral("lblAddress"));
}

void TAddressLabel::mouseDoubleClickEvent(QMouseEvent *event) {
  if (event->button() == Qt::LeftButton) Q_EMIT DoubleClicked();
}
