#include "ui/dialog_placing.h"

#include <QDialog>
#include <QLayout>
#include <QScreen>

namespace {

// What a window manager puts around a window.
constexpr QSize FrameRoom(20, 60);

// Of its own a window that is not yet shown has none.
const QScreen *ScreenOf(const QWidget &window) {
  return window.parentWidget() != nullptr ? window.parentWidget()->screen() : window.screen();
}

}  // namespace

void ResizeOnScreen(QWidget &window, const QSize &wanted) {
  const QScreen *screen = ScreenOf(window);
  window.resize(screen == nullptr ? wanted : wanted.boundedTo(screen->availableSize() - FrameRoom));
}

void CentreOnScreen(QWidget &window) {
  const QScreen *screen = ScreenOf(window);
  if (screen == nullptr) return;
  // One that nobody gave a size gets it only when it is shown.
  if (!window.testAttribute(Qt::WA_Resized)) window.adjustSize();
  QRect frame(QPoint(), window.size());
  frame.moveCenter(screen->availableGeometry().center());
  window.move(frame.topLeft());
}

int ShowPart(QDialog &dialog, QWidget &part) {
  if (!part.isHidden()) return 0;
  const int before = dialog.height();
  part.show();
  dialog.layout()->activate();
  const int wanted = before + part.sizeHint().height() + dialog.layout()->spacing();
  dialog.resize(dialog.width(), qMin(wanted, dialog.screen()->availableSize().height()));
  return dialog.height() - before;
}

void HidePart(QDialog &dialog, QWidget &part, int grown) {
  part.hide();
  dialog.layout()->activate();  // The room that the part took is free from here on.
  dialog.resize(dialog.width(), dialog.height() - grown);
}
