#include "platform/window_activation.h"

#include <QWindow>

void BringToFront(QWindow &window) {
  window.setWindowStates(window.windowStates() & ~Qt::WindowMinimized);
  window.show();
  window.raise();
  window.requestActivate();
}
