#include "chrome/main_toolbars.h"

#include <QMainWindow>
#include <QToolBar>
#include <QToolButton>

#include "actions/actions.h"
#include "chrome/busy_indicator.h"
#include "chrome/toolbar/toolbar_panel.h"
#include "config/settings.h"
#include "config/system_browser.h"
#include "search/address_bar.h"
#include "search/address_label.h"

namespace {

constexpr int LabelMargin = 4;  // pixels

QToolBar *MakeBar(QMainWindow *window, const char *name, const char *title) {
  auto *bar = new QToolBar(QString::fromLatin1(title), window);
  bar->setObjectName(QString::fromLatin1(name));
  bar->setMovable(false);
  bar->setFloatable(false);
  // The menu of the bands is the affair of the band bar.
  bar->setContextMenuPolicy(Qt::NoContextMenu);
  // What a narrow window has no room for is behind this button, which the toolkit leaves without a name.
  if (auto *more = bar->findChild<QToolButton *>(QStringLiteral("qt_toolbar_ext_button"))) {
    more->setAccessibleName(QStringLiteral("__ToolbarMore"));
    more->setToolTip(QStringLiteral("__ToolbarMore"));
  }
  return bar;
}

}  // namespace

TMainToolbars::TMainToolbars(QMainWindow *window, const TActions &actions, TAddressBar *address, TFrameUpdates &updates,
                             const TLanguage &language, TSettings &settings)
    : m_settings(settings),
      m_addressBand(MakeBar(window, "pnlAddress", "__AddressBarName")),
      m_addressLabel(new TAddressLabel(QStringLiteral("__AddressLabel"), m_addressBand)),
      m_busy(new TBusyIndicator(updates, window)),
      m_panel(new TToolbarPanel(actions, language, SystemBrowser::HasSearch(settings.Store()), m_busy, window)) {
  m_busy->setAccessibleName(QStringLiteral("__BusyName"));
  FillAddressBand(actions, address);
  QAction *go = actions[TCommand::Go];
  settings.Apply(Setting::ShowGo, m_addressBand, [&settings, go] { go->setVisible(settings.Get(Setting::ShowGo)); });
}

void TMainToolbars::FillAddressBand(const TActions &actions, TAddressBar *address) {
  m_addressLabel->setContentsMargins(LabelMargin, 0, LabelMargin, 0);
  m_addressLabel->setBuddy(address);
  m_addressBand->addWidget(m_addressLabel);
  m_addressBand->addWidget(address);
  actions.AddTo(m_addressBand, TCommand::Go);
}

void TMainToolbars::Save() {
  m_settings.Keep(Setting::ShowGo);
}
