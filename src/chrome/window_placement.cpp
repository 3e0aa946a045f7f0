#include "chrome/window_placement.h"

#include <algorithm>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include "config/options.h"

namespace WindowPlacement {

namespace {

constexpr QSize Smallest(320, 240);  // pixels
// This much of the window's top edge must lie on a screen, so that it can be taken hold of.
constexpr QSize Handle(100, 20);

bool IsReachable(const QRect &bounds, const QList<QRect> &screens) {
  return std::any_of(screens.begin(), screens.end(), [&](const QRect &screen) {
    const QRect seen = QRect(bounds.topLeft(), QSize(bounds.width(), Handle.height())).intersected(screen);
    return seen.width() >= Handle.width() && seen.height() >= Handle.height();
  });
}

}  // namespace

QRect Stored(TRegistryStore &store) {
  const TZVOptions options(store);
  return {options.Get(Setting::Left), options.Get(Setting::Top), options.Get(Setting::Width),
          options.Get(Setting::Height)};
}

QRect OnScreens(const QRect &bounds, const QList<QRect> &screens) {
  if (screens.isEmpty()) return bounds;
  QRect placed(bounds.topLeft(), bounds.size().expandedTo(Smallest));
  const QRect &home = screens.first();
  if (!IsReachable(placed, screens)) placed.moveTopLeft(home.topLeft());
  const auto biggest = std::max_element(screens.begin(), screens.end(), [&](const QRect &a, const QRect &b) {
    const QSize inA = a.intersected(placed).size();
    const QSize inB = b.intersected(placed).size();
    return qint64(inA.width()) * inA.height() < qint64(inB.width()) * inB.height();
  });
  if (const QSize room = placed.size().boundedTo(biggest->size()); room != placed.size()) {
    // What had to be made smaller was put in place on another screen, or on this one at another scale.
    placed.setSize(room);
    placed.moveLeft(std::clamp(placed.left(), biggest->left(), biggest->left() + biggest->width() - room.width()));
    placed.moveTop(std::clamp(placed.top(), biggest->top(), biggest->top() + biggest->height() - room.height()));
  }
  return placed;
}

void Restore(QWidget *window, TRegistryStore &store) {
  QList<QRect> screens;
  for (const QScreen *screen : QGuiApplication::screens()) screens.append(screen->availableGeometry());
  const QRect placed = OnScreens(Stored(store), screens);
  window->resize(placed.size());
  window->move(placed.topLeft());
}

void Write(const QRect &bounds, TRegistryStore &store) {
  TZVOptions options(store);
  options.Set(Setting::Top, std::max(bounds.top(), 0));
  options.Set(Setting::Height, std::max(bounds.height(), 0));
  options.Set(Setting::Left, std::max(bounds.left(), 0));
  options.Set(Setting::Width, std::max(bounds.width(), 0));
}

}  // namespace WindowPlacement
