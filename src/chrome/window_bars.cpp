#include "chrome/window_bars.h"

#include "actions/actions.h"
#include "browser/strip/page_control.h"
#include "chrome/bands/cool_bar.h"
#include "chrome/bands/main_menu_bar.h"
#include "chrome/edge_bars.h"
#include "chrome/full_screen.h"
#include "chrome/main_status_bar.h"
#include "config/settings.h"

TWindowBars::TWindowBars(TActions &actions, TCoolBar &bands, const TMainMenuBar &menuBar, TMainStatusBar &status,
                         TZVPageControl &pages, TFullScreen &fullScreen, TEdgeBars &edges, TSettings &settings)
    : m_actions(actions),
      m_bands(bands),
      m_menuBar(menuBar),
      m_status(status),
      m_pages(pages),
      m_fullScreen(fullScreen),
      m_edges(edges),
      m_settings(settings) {
  for (const TFlagSetting *setting :
       {&Setting::ViewToolbar, &Setting::ViewAddressBar, &Setting::ViewLinksBar, &Setting::ViewStatusBar,
        &Setting::FullscreenStatusBar, &Setting::FullscreenMenuBar}) {
    settings.Follow(*setting, this, [this] { Apply(); });
  }
  // Full screen has a choice of its own, and the one for the normal window stays as it is.
  connect(actions[TCommand::ViewStatusBar], &QAction::triggered, this, [this](bool on) {
    m_settings.Set(m_fullScreen.IsOn() ? Setting::FullscreenStatusBar : Setting::ViewStatusBar, on);
  });
  connect(actions[TCommand::ViewMenuBar], &QAction::triggered, this,
          [this](bool on) { m_settings.Set(Setting::FullscreenMenuBar, on); });
  for (const TCommand command : {TCommand::ViewLinksBar, TCommand::CustomizeViewLinksBar}) {
    connect(actions[command], &QAction::triggered, this, [this](bool on) {
      if (on && m_hasLinks && !m_hasLinks()) Q_EMIT LinksWanted();
      m_settings.Set(Setting::ViewLinksBar, on);
      Apply();
    });
  }
  connect(&fullScreen, &TFullScreen::BarsChanged, this, &TWindowBars::Apply);
  connect(&edges, &TEdgeBars::Changed, this, &TWindowBars::Apply);
  connect(actions[TCommand::FocusMenuBar], &QAction::triggered, &edges, &TEdgeBars::OpenMenus);
}

bool TWindowBars::ShowsStatusBar() const {
  return m_settings.Get(m_fullScreen.IsOn() ? Setting::FullscreenStatusBar : Setting::ViewStatusBar);
}

bool TWindowBars::ShowsMenuBar() const {
  return !m_fullScreen.IsOn() || m_settings.Get(Setting::FullscreenMenuBar);
}

void TWindowBars::Apply() {
  const bool pageOnly = m_fullScreen.IsPageFullScreen();
  m_actions[TCommand::ViewStatusBar]->setChecked(ShowsStatusBar());
  m_actions[TCommand::ViewMenuBar]->setChecked(ShowsMenuBar());
  m_actions[TCommand::ViewMenuBar]->setVisible(m_fullScreen.IsOn());
  const bool hasLinks = m_bands.HasContent(TBand::Links) && (!m_hasLinks || m_hasLinks());
  const bool showsLinks = hasLinks && m_settings.Get(Setting::ViewLinksBar);
  m_actions[TCommand::ViewLinksBar]->setChecked(showsLinks);
  m_actions[TCommand::CustomizeViewLinksBar]->setChecked(showsLinks);
  m_bands.ShowBands({
      {TBand::Menu, (ShowsMenuBar() || m_edges.ShowsMenuBar()) && !pageOnly && !m_menuBar.IsElsewhere()},
      {TBand::Tool, m_settings.Get(Setting::ViewToolbar) && !pageOnly},
      {TBand::Address, m_settings.Get(Setting::ViewAddressBar) && !pageOnly},
      {TBand::Links, showsLinks && !pageOnly},
  });
  m_status.setVisible((ShowsStatusBar() || m_edges.ShowsStatusBar()) && !pageOnly);
  m_pages.SetStripVisible(!pageOnly);
  // A page that has the screen to itself has its keys as well, and nothing is shown beside it.
  m_actions[TCommand::EditAddress]->setEnabled(!pageOnly);
}

void TWindowBars::Save() {
  // Full screen hides the status bar without changing the choice for the normal window.
  if (!m_fullScreen.IsOn()) m_settings.Keep(Setting::ViewStatusBar);
}
