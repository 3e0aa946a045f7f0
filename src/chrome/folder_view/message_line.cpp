#include "chrome/folder_view/message_line.h"

#include <QAccessible>

TMessageLine::TMessageLine(QWidget *parent) : QLabel(parent) {
  setObjectName(QStringLiteral("lblMessage"));
  setTextFormat(Qt::PlainText);
  setWordWrap(true);
  setMargin(fontMetrics().averageCharWidth() / 2);
  hide();
}

void TMessageLine::Show(const QString &text) {
  setText(text);
  setVisible(!text.isEmpty());
  if (text.isEmpty()) return;
  QAccessibleEvent event(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&event);
}
