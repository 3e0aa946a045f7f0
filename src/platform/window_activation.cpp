#include "platform/window_activation.h"

#include <QWindow>

void BringToFront(QWindow &window) {
  // Not show(): it would make a maximised window or one in full screen a normal one.
  window.setVisible(true);
  window.raise();
  window.requestActivate();
}
