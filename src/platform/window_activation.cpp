#include "platform/window_activation.h"

#include <QWindow>

void BringToFront(QWindow &window) {
  window.setWindowStates(window.windowStates() & ~Qt::WindowMinimized);
  // Not show(): it would make a maximised window or one in full screen a normal one.
  window.setVisible(true);
  window.raise();
  window.requestActivate();
}
