#include "ui/click_guard.h"

#include <QAbstractButton>
#include <QEvent>

namespace {

constexpr int WakeDelay = 500;  // ms until the buttons take clicks

}  // namespace

TClickGuard::TClickGuard(QWidget *panel, const QList<QAbstractButton *> &buttons)
    : QObject(panel), m_panel(panel), m_buttons(buttons) {
  panel->installEventFilter(this);
  for (QAbstractButton *button : buttons) button->installEventFilter(this);
  m_wake.setSingleShot(true);
  m_wake.setInterval(WakeDelay);
  connect(&m_wake, &QTimer::timeout, this, [this] { SetEnabled(true); });
}

void TClickGuard::Sleep() {
  SetEnabled(false);
  m_wake.start();
}

void TClickGuard::SetEnabled(bool enabled) {
  for (QAbstractButton *button : m_buttons) button->setEnabled(enabled);
}

bool TClickGuard::eventFilter(QObject *watched, QEvent *event) {
  const bool comesUp = event->type() == QEvent::Show || event->type() == QEvent::WindowActivate;
  if (watched == m_panel && comesUp) Sleep();
  return watched != m_panel && event->type() == QEvent::MouseButtonDblClick;
}
