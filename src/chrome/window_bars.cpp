#include "chrome/window_bars.h"

#include <QMainWindow>
#include <QMenuBar>
#include <QShortcut>
#include <QToolBar>

#include "actions/commands.h"
#include "chrome/full_screen.h"
#include "chrome/main_status_bar.h"
#include "chrome/main_toolbars.h"
#include "config/options.h"

TWindowBars::TWindowBars(QMainWindow *window, TCommands &commands, TMainToolbars &toolbars, TMainStatusBar &status,
                         TFullScreen &fullScreen, TRegistryStore &store)
    : QObject(window),
      m_window(window),
      m_commands(commands),
      m_toolbars(toolbars),
      m_status(status),
      m_fullScreen(fullScreen),
      m_store(store) {
  connect(commands[TCommand::ViewToolbar], &QAction::triggered, this, &TWindowBars::Apply);
  connect(commands[TCommand::ViewAddressBar], &QAction::triggered, this, &TWindowBars::Apply);
  connect(commands[TCommand::ViewStatusBar], &QAction::triggered, this, &TWindowBars::ToggleStatusBar);
  connect(commands[TCommand::ViewMenuBar], &QAction::triggered, this, &TWindowBars::ToggleMenuBar);
  connect(&fullScreen, &TFullScreen::BarsChanged, this, &TWindowBars::Apply);
  connect(new QShortcut(Qt::Key_F10, window), &QShortcut::activated, this, [this] {
    const QMenuBar *bar = m_window->menuBar();
    if (bar->isVisible()) m_window->menuBar()->setActiveAction(bar->actions().value(0));
  });
}

void TWindowBars::Restore() {
  const TZVOptions options(m_store);
  m_commands[TCommand::ViewToolbar]->setChecked(options.Get(Setting::ViewToolbar));
  m_commands[TCommand::ViewAddressBar]->setChecked(options.Get(Setting::ViewAddressBar));
  m_statusBar = options.Get(Setting::ViewStatusBar);
  m_fullScreenMenuBar = options.Get(Setting::FullscreenMenuBar);
  m_fullScreenStatusBar = options.Get(Setting::FullscreenStatusBar);
  Apply();
}

void TWindowBars::Write(bool linksBar) const {
  TZVOptions options(m_store);
  options.Set(Setting::ViewToolbar, m_commands[TCommand::ViewToolbar]->isChecked());
  options.Set(Setting::ViewAddressBar, m_commands[TCommand::ViewAddressBar]->isChecked());
  options.Set(Setting::ViewLinksBar, linksBar);
  // Full screen hides the status bar without changing the choice.
  if (!m_fullScreen.IsOn()) options.Set(Setting::ViewStatusBar, m_statusBar);
}

void TWindowBars::Apply() {
  const bool full = m_fullScreen.IsOn();
  const bool pageOnly = m_fullScreen.IsPageFullScreen();
  const bool menuBar = !full || m_fullScreenMenuBar;
  const bool statusBar = full ? m_fullScreenStatusBar : m_statusBar;
  m_commands[TCommand::ViewStatusBar]->setChecked(statusBar);
  m_commands[TCommand::ViewMenuBar]->setChecked(menuBar);
  m_commands[TCommand::ViewMenuBar]->setVisible(full);
  m_window->menuBar()->setVisible(menuBar && !pageOnly);
  m_status.setVisible(statusBar && !pageOnly);
  m_toolbars.Toolbar()->setVisible(m_commands[TCommand::ViewToolbar]->isChecked() && !pageOnly);
  m_toolbars.AddressBand()->setVisible(m_commands[TCommand::ViewAddressBar]->isChecked() && !pageOnly);
  Q_EMIT Applied(pageOnly);
}

void TWindowBars::ToggleStatusBar(bool on) {
  if (m_fullScreen.IsOn()) {
    m_fullScreenStatusBar = on;
    TZVOptions(m_store).Set(Setting::FullscreenStatusBar, on);
  } else {
    m_statusBar = on;
  }
  Apply();
}

void TWindowBars::ToggleMenuBar(bool on) {
  m_fullScreenMenuBar = on;
  TZVOptions(m_store).Set(Setting::FullscreenMenuBar, on);
  Apply();
}
