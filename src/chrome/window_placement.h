#pragma once

#include <QRect>

class QWidget;
class TRegistryStore;

// Where the main window stands: restored at start, never off every screen, and written back at the end.
namespace WindowPlacement {

// The stored bounds: the place of the window's frame and the size of its contents, in desktop coordinates.
[[nodiscard]] QRect Stored(TRegistryStore &store);
// `bounds`, moved and shrunk so that it can be reached on one of `screens` (their available areas). Bounds that lie
// well enough on the screens stay as they are.
[[nodiscard]] QRect OnScreens(const QRect &bounds, const QList<QRect> &screens);
void Restore(QWidget *window, TRegistryStore &store);
// Negative numbers are written as 0.
void Write(const QRect &bounds, TRegistryStore &store);

}  // namespace WindowPlacement
