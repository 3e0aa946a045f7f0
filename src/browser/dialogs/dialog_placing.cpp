#include "browser/dialogs/dialog_placing.h"

#include <QScreen>
#include <QWidget>

void CentreOnScreen(QWidget &window) {
  const QScreen *screen = window.parentWidget() != nullptr ? window.parentWidget()->screen() : window.screen();
  if (screen == nullptr) return;
  QRect frame(QPoint(), window.size());
  frame.moveCenter(screen->availableGeometry().center());
  window.move(frame.topLeft());
}
