#include "chrome/window_placement.h"

#include <algorithm>
#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include "chrome/full_screen.h"
#include "config/settings.h"

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

TWindowPlacement::TWindowPlacement(QWidget *window, const TFullScreen &fullScreen, TSettings &settings)
    : m_window(window), m_fullScreen(fullScreen), m_settings(settings) {
  window->installEventFilter(this);
}

QRect TWindowPlacement::Stored(const TSettings &settings) {
  return {settings.Get(Setting::Left), settings.Get(Setting::Top), settings.Get(Setting::Width),
          settings.Get(Setting::Height)};
}

QRect TWindowPlacement::OnScreens(const QRect &bounds, const QList<QRect> &screens) {
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

void TWindowPlacement::Restore() {
  QList<QRect> screens;
  for (const QScreen *screen : QGuiApplication::screens()) screens.append(screen->availableGeometry());
  const QRect placed = OnScreens(Stored(m_settings), screens);
  m_window->resize(placed.size());
  m_window->move(placed.topLeft());
  m_normalBounds = QRect(m_window->pos(), m_window->size());
  m_restoredBounds = m_normalBounds;
  m_restoredMaximized = m_settings.Get(Setting::Maximized);
  if (m_restoredMaximized) m_window->setWindowState(m_window->windowState() | Qt::WindowMaximized);
}

void TWindowPlacement::Write(const QRect &bounds, TSettings &settings, bool changed) {
  settings.Leave(Setting::Top, std::max(bounds.top(), 0), changed);
  settings.Leave(Setting::Height, std::max(bounds.height(), 0), changed);
  settings.Leave(Setting::Left, std::max(bounds.left(), 0), changed);
  settings.Leave(Setting::Width, std::max(bounds.width(), 0), changed);
}

void TWindowPlacement::Save() {
  const bool maximized = !m_fullScreen.IsOn() && m_window->isMaximized();
  m_settings.Leave(Setting::Maximized, maximized, maximized != m_restoredMaximized);
  if (!maximized) Write(m_normalBounds, m_settings, m_normalBounds != m_restoredBounds);
}

bool TWindowPlacement::eventFilter(QObject *watched, QEvent *event) {
  const bool isPlaced = event->type() == QEvent::Resize || event->type() == QEvent::Move;
  if (watched == m_window && isPlaced && m_window->isVisible() &&
      !(m_window->windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen | Qt::WindowMinimized))) {
    m_normalBounds = QRect(m_window->pos(), m_window->size());
  }
  return QObject::eventFilter(watched, event);
}
