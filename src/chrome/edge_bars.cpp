#include "chrome/edge_bars.h"

#include <QApplication>
#include <QLayout>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QStatusBar>
#include <QWindow>

#include "chrome/full_screen.h"

namespace {

constexpr int EdgeHeight = 2;     // pixels
constexpr int RestingTime = 200;  // milliseconds; who clicks a tab at the edge does not want the bar
constexpr QPoint Nowhere(-1, -1);

}  // namespace

TEdgeBars::TEdgeBars(QMainWindow *window, QMenuBar *menus, TFullScreen &fullScreen)
    : m_window(window), m_menus(menus), m_fullScreen(fullScreen), m_mouse(Nowhere) {
  window->installEventFilter(this);
  m_rest.setSingleShot(true);
  m_rest.setInterval(RestingTime);
  connect(&m_rest, &QTimer::timeout, this, [this] { Show(EdgeAt(m_mouse)); });
  connect(&fullScreen, &TFullScreen::BarsChanged, this, [this] {
    m_rest.stop();
    if (!MayShow()) m_edge = TEdge::None;
  });
}

bool TEdgeBars::MayShow() const {
  return m_fullScreen.IsOn() && !m_fullScreen.IsPageFullScreen();
}

TEdgeBars::TEdge TEdgeBars::EdgeAt(const QPoint &mouse) const {
  if (!MayShow() || !m_window->rect().contains(mouse)) return TEdge::None;
  if (mouse.y() < EdgeHeight) return TEdge::Top;
  return mouse.y() >= m_window->height() - EdgeHeight ? TEdge::Bottom : TEdge::None;
}

bool TEdgeBars::IsInUse() const {
  if (QApplication::activePopupWidget() != nullptr) return true;
  const QWidget *bar = m_menus;
  if (m_edge == TEdge::Bottom) bar = m_window->findChild<QStatusBar *>();
  const QWidget *focused = QApplication::focusWidget();
  if (bar == nullptr) return false;
  if (focused != nullptr && (focused == bar || bar->isAncestorOf(focused))) return true;
  if (!m_window->rect().contains(m_mouse)) return false;
  // The way to it from its edge as well: the menu bar may stand below other bands.
  const int top = bar->mapTo(m_window, QPoint()).y();
  return m_edge == TEdge::Bottom ? m_mouse.y() >= top : m_mouse.y() < top + bar->height();
}

void TEdgeBars::Show(TEdge edge) {
  if (edge == m_edge) return;
  m_edge = edge;
  if (edge == TEdge::Top) WatchMenus();
  Q_EMIT Changed();
}

void TEdgeBars::OpenMenus() {
  if (!m_menus->isVisible() && MayShow()) {
    m_mouse = Nowhere;
    Show(TEdge::Top);
    // The menu opens below the bar's place, which is not there yet.
    m_window->layout()->activate();
  }
  if (m_menus->isVisible()) m_menus->setActiveAction(m_menus->actions().value(0));
}

void TEdgeBars::WatchWindow() {
  if (m_watched == m_window->windowHandle()) return;
  if (m_watched) m_watched->removeEventFilter(this);
  m_watched = m_window->windowHandle();
  if (m_watched) m_watched->installEventFilter(this);
}

void TEdgeBars::WatchMenus() {
  m_menus->installEventFilter(this);
  for (const QAction *action : m_menus->actions()) {
    // One may open because another one closes.
    const auto kind = Qt::ConnectionType(Qt::QueuedConnection | Qt::UniqueConnection);
    if (action->menu() != nullptr) connect(action->menu(), &QMenu::aboutToHide, this, &TEdgeBars::Settle, kind);
  }
}

void TEdgeBars::FollowMouse(const QPoint &mouse) {
  m_mouse = mouse;
  const TEdge edge = EdgeAt(mouse);
  if (edge == TEdge::None || edge == m_edge || QApplication::mouseButtons() != Qt::NoButton) {
    m_rest.stop();
  } else if (!m_rest.isActive()) {
    m_rest.start();
  }
  Settle();
}

void TEdgeBars::Settle() {
  if (m_edge != TEdge::None && !IsInUse()) Show(TEdge::None);
}

// The window's own events: most of what lies in it hears of the mouse only while a button is held.
bool TEdgeBars::eventFilter(QObject *watched, QEvent *event) {
  if (watched == m_window) {
    if (event->type() == QEvent::Show || event->type() == QEvent::WinIdChange) WatchWindow();
  } else if (watched == m_watched) {
    if (event->type() == QEvent::MouseMove && (MayShow() || m_edge != TEdge::None)) {
      FollowMouse(static_cast<QMouseEvent *>(event)->position().toPoint());
    } else if (event->type() == QEvent::Leave) {
      FollowMouse(Nowhere);
    } else if (event->type() == QEvent::MouseButtonPress) {
      m_rest.stop();
    }
  } else if (event->type() == QEvent::FocusOut) {
    QMetaObject::invokeMethod(this, &TEdgeBars::Settle, Qt::QueuedConnection);
  }
  return QObject::eventFilter(watched, event);
}
