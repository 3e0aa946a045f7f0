#include "chrome/main_toolbars.h"

#include <QMainWindow>
#include <QToolBar>
#include <QToolButton>

#include "actions/actions.h"
#include "chrome/busy_indicator.h"
#include "config/settings.h"
#include "search/address_bar.h"
#include "search/address_label.h"

namespace {

constexpr int LabelMargin = 4;  // pixels

QToolBar *MakeBar(QMainWindow *window, const char *name, const char *title) {
  auto *bar = new QToolBar(QString::fromLatin1(title), window);
  bar->setObjectName(QString::fromLatin1(name));
  bar->setMovable(false);
  bar->setFloatable(false);
  bar->setContextMenuPolicy(Qt::PreventContextMenu);
  // What a narrow window has no room for is behind this button, which the toolkit leaves without a name.
  if (auto *more = bar->findChild<QToolButton *>(QStringLiteral("qt_toolbar_ext_button"))) {
    more->setAccessibleName(QStringLiteral("__ToolbarMore"));
    more->setToolTip(QStringLiteral("__ToolbarMore"));
  }
  return bar;
}

}  // namespace

TMainToolbars::TMainToolbars(QMainWindow *window, const TActions &actions, TAddressBar *address, TFrameUpdates &updates,
                             TSettings &settings)
    : m_settings(settings),
      m_toolbar(MakeBar(window, "ToolBar", "__ToolbarName")),
      m_addressBand(MakeBar(window, "pnlAddress", "__AddressBarName")),
      m_busy(new TBusyIndicator(updates, m_toolbar)) {
  m_busy->setAccessibleName(QStringLiteral("__BusyName"));
  FillToolbar(actions);
  FillAddressBand(actions, address);
  QAction *go = actions[TCommand::Go];
  settings.Apply(Setting::ShowGo, m_addressBand, [&settings, go] { go->setVisible(settings.Get(Setting::ShowGo)); });
}

void TMainToolbars::FillToolbar(const TActions &actions) {
  static constexpr TCommand Separator = TCommand::Count;
  static constexpr TCommand Buttons[] = {
      TCommand::Back,
      TCommand::Forward,
      TCommand::Stop,
      TCommand::Refresh,
      TCommand::Home,
      Separator,
      TCommand::NewBlank,
      TCommand::TabListButton,
      TCommand::CloseTab,
      TCommand::GroupsButton,
      Separator,
      TCommand::Find,
      TCommand::Print,
      TCommand::Downloads,
      TCommand::FullScreen,
      TCommand::FontButton,
  };
  for (const TCommand command : Buttons) {
    if (command == Separator) {
      m_toolbar->addSeparator();
    } else {
      actions.AddTo(m_toolbar, command);
    }
  }
  auto *space = new QWidget(m_toolbar);
  space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  m_toolbar->addWidget(space);
  m_toolbar->addWidget(m_busy);
}

void TMainToolbars::FillAddressBand(const TActions &actions, TAddressBar *address) {
  auto *label = new TAddressLabel(QStringLiteral("__AddressLabel"), m_addressBand);
  label->setContentsMargins(LabelMargin, 0, LabelMargin, 0);
  label->setBuddy(address);
  m_addressBand->addWidget(label);
  m_addressBand->addWidget(address);
  actions.AddTo(m_addressBand, TCommand::Go);
}

void TMainToolbars::Save() {
  m_settings.Keep(Setting::ShowGo);
}
