#include "ui/window_hiding.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>
#include <utility>

namespace {

constexpr int SettleTime = 1000;  // milliseconds
constexpr Qt::WindowStates Own = Qt::WindowMaximized | Qt::WindowFullScreen;

bool BelongsTo(const QWidget *widget, const QWidget *window) {
  while (widget != nullptr && widget != window) widget = widget->parentWidget();
  return widget == window;
}

QList<QPointer<QWidget>> OtherWindowsOf(const QWidget *window) {
  QList<QPointer<QWidget>> others;
  for (QWidget *one : QApplication::topLevelWidgets()) {
    const bool isPassing = one->windowType() == Qt::Popup || one->windowType() == Qt::ToolTip;
    if (one != window && one->isVisible() && !isPassing && BelongsTo(one, window)) others.append(one);
  }
  return others;
}

}  // namespace

TWindowHiding::TWindowHiding(QWidget *window) : m_window(window) {
  window->installEventFilter(this);
}

TWindowHiding::~TWindowHiding() {
  if (m_isAway) QApplication::setQuitOnLastWindowClosed(true);
}

// The desktop takes all states from a window that goes out of sight; from 6.8 on the toolkit hears of that, then or
// only when the window has come back.
bool TWindowHiding::HasLostStates() const {
  if ((m_window->windowState() & Own) == m_states) return false;
  if (!m_window->isVisible()) return m_wasAway;
  // Later it is the user.
  return !m_settles.hasExpired();
}

bool TWindowHiding::eventFilter(QObject *watched, QEvent *event) {
  if (watched == m_window && event->type() == QEvent::WindowStateChange && HasLostStates()) {
    m_window->setWindowState((m_window->windowState() & ~Own) | m_states);
    return true;
  }
  if (watched == m_window && event->type() == QEvent::Show && m_isAway) Return();
  return QObject::eventFilter(watched, event);
}

void TWindowHiding::Hide() {
  if (m_isAway) return;
  m_isAway = m_wasAway = true;
  m_states = m_window->windowState() & Own;
  m_place = m_window->pos();
  m_along += OtherWindowsOf(m_window);
  // A dialog that closes now would be the last window to be seen.
  QApplication::setQuitOnLastWindowClosed(false);
  for (const QPointer<QWidget> &other : std::as_const(m_along)) other->hide();
  m_window->hide();
}

void TWindowHiding::Return() {
  m_isAway = false;
  QApplication::setQuitOnLastWindowClosed(true);
  Q_EMIT Returned();
  // Above the window, so not before it is shown.
  QMetaObject::invokeMethod(this, &TWindowHiding::ShowOthers, Qt::QueuedConnection);
}

void TWindowHiding::ShowOthers() {
  if (m_isAway) return;
  for (const QPointer<QWidget> &other : std::exchange(m_along, {})) {
    if (other) other->show();
  }
}

void TWindowHiding::Show() {
  if (!m_isAway) return;
  m_window->setWindowState((m_window->windowState() & ~(Own | Qt::WindowMinimized)) | m_states);
  if (m_states == Qt::WindowNoState) m_window->move(m_place);
  m_settles.setRemainingTime(m_states == Qt::WindowNoState ? 0 : SettleTime);
  m_window->show();
}
