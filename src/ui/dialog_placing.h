#pragma once

class QDialog;
class QSize;
class QWidget;

// Makes a window that is not yet shown as large as `wanted`, in pixels, or as the screen that it will open on has room
// for with a frame around it.
void ResizeOnScreen(QWidget &window, const QSize &wanted);

// Puts a window that is not yet shown in the middle of the screen that its parent is on. Desktops that place windows
// themselves ignore this.
void CentreOnScreen(QWidget &window);

// Shows a part of the dialog that was hidden, and makes the dialog as much higher as the screen has room for. Gives the
// pixels that it has grown by, which HidePart takes back; 0 when the part is there already.
[[nodiscard]] int ShowPart(QDialog &dialog, QWidget &part);
void HidePart(QDialog &dialog, QWidget &part, int grown);
