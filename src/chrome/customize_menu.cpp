#include "chrome/customize_menu.h"

#include <QMenu>

#include "actions/actions.h"
#include "chrome/full_screen.h"
#include "config/settings.h"

TCustomizeMenu::TCustomizeMenu(TActions &actions, TFullScreen &fullScreen, TSettings &settings)
    : m_actions(actions), m_fullScreen(fullScreen), m_settings(settings) {
  connect(actions.Menu(TMenu::Customize), &QMenu::aboutToShow, this, &TCustomizeMenu::Update);
  connect(actions[TCommand::CustomizeViewMenuBar], &QAction::triggered, this,
          [this](bool on) { m_settings.Set(Setting::FullscreenMenuBar, on); });
}

void TCustomizeMenu::OfferOn(QWidget *bar) {
  bar->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(bar, &QWidget::customContextMenuRequested, this,
          [this, bar](const QPoint &at) { m_actions.Menu(TMenu::Customize)->popup(bar->mapToGlobal(at)); });
}

// Outside full screen the menu bar cannot be hidden, and in it the tool bar stays: both are meant.
void TCustomizeMenu::Update() {
  const bool isFull = m_fullScreen.IsOn();
  m_actions[TCommand::CustomizeViewMenuBar]->setVisible(isFull);
  m_actions[TCommand::CustomizeViewMenuBar]->setChecked(m_settings.Get(Setting::FullscreenMenuBar));
  m_actions[TCommand::CustomizeViewToolbar]->setVisible(!isFull);
}
