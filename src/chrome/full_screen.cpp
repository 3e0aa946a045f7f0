#include "chrome/full_screen.h"

#include <QEvent>
#include <QMainWindow>

#include "actions/actions.h"
#include "browser/tabs/browser_tab.h"
#include "browser/tabs/tab_strip.h"
#include "config/settings.h"

TFullScreen::TFullScreen(QMainWindow *window, TActions &actions, TTabStrip &tabs, TSettings &settings)
    : m_window(window), m_actions(actions), m_tabs(tabs), m_settings(settings) {
  window->installEventFilter(this);
  connect(actions[TCommand::FullScreen], &QAction::toggled, this, [this](bool on) { on ? Enter() : Leave(); });
  connect(&tabs, &TTabStrip::PageFullScreenRequested, this, &TFullScreen::ShowPageOnly);
  // A page cannot stay alone on the screen when another tab comes to the front.
  connect(&tabs, &TTabStrip::ActiveTabChanged, this, &TFullScreen::LeavePage);
}

void TFullScreen::GoFull() {
  if (m_window->isFullScreen()) return;
  m_window->setWindowState(m_window->windowState() | Qt::WindowFullScreen);
}

void TFullScreen::GoBack() {
  if (m_on || m_page) return;
  m_window->setWindowState(m_window->windowState() & ~Qt::WindowFullScreen);
}

void TFullScreen::Enter() {
  if (m_on) return;
  GoFull();
  m_on = true;
  m_settings.Set(Setting::FullScreen, true);
  m_actions[TCommand::FullScreen]->setChecked(true);
  Q_EMIT BarsChanged();
}

void TFullScreen::Leave() {
  if (!m_on) return;
  m_on = false;
  m_settings.Set(Setting::FullScreen, false);
  m_actions[TCommand::FullScreen]->setChecked(false);
  GoBack();
  Q_EMIT BarsChanged();
}

void TFullScreen::LeavePage() {
  if (!m_page) return;
  for (TBrowserTab *tab : m_tabs.Tabs()) {
    if (tab->Browser() != nullptr && tab->Browser()->HasPageFullScreen()) tab->Browser()->LeavePageFullScreen();
  }
  // Not left to the page's answer: it may be late, or its tab may be gone.
  ShowPageOnly(nullptr, false);
}

bool TFullScreen::eventFilter(QObject *watched, QEvent *event) {
  // A hidden window has left all states, and comes back in those that it had.
  const bool isChange = watched == m_window && event->type() == QEvent::WindowStateChange && m_window->isVisible();
  if (isChange && !m_window->isFullScreen()) {
    LeavePage();
    Leave();
  }
  return QObject::eventFilter(watched, event);
}

void TFullScreen::Restore() {
  if (m_settings.Get(Setting::FullScreen)) Enter();
}

void TFullScreen::Save() {
  m_settings.Keep(Setting::FullScreen);
}

void TFullScreen::ShowPageOnly(TBrowserTab *tab, bool on) {
  if (on == m_page || (on && tab != m_tabs.GetActivePage())) return;
  if (on) GoFull();
  m_page = on;
  if (!on) GoBack();
  Q_EMIT BarsChanged();
}
