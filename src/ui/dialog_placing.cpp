#include "ui/dialog_placing.h"

#include <QDialog>
#include <QLayout>
#include <QScreen>

void CentreOnScreen(QWidget &window) {
  const QScreen *screen = window.parentWidget() != nullptr ? window.parentWidget()->screen() : window.screen();
  if (screen == nullptr) return;
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
