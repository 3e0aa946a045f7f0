#include "ui/escape_watch.h"

#include <QCoreApplication>
#include <QKeyEvent>

void TEscapeWatch::Start() {
  qApp->installEventFilter(this);
}

void TEscapeWatch::Stop() {
  qApp->removeEventFilter(this);
}

bool TEscapeWatch::eventFilter(QObject *watched, QEvent *event) {
  const bool isKey = event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress;
  if (!isKey || static_cast<QKeyEvent *>(event)->key() != Qt::Key_Escape) return QObject::eventFilter(watched, event);
  event->accept();
  if (event->type() == QEvent::KeyPress) m_escaped();
  return true;
}
