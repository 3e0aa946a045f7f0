#include "chrome/active_tab_view.h"

#include <QApplication>
#include <QMainWindow>
#include <QMenu>
#include <utility>

#include "browser/tabs/browser_tab.h"
#include "browser/tabs/page_commands.h"
#include "browser/tabs/tab_strip.h"
#include "chrome/busy_indicator.h"
#include "chrome/main_status_bar.h"
#include "popups/stopped_popups.h"
#include "search/address_bar.h"
#include "security/ie_zone_mgr.h"
#include "security/zone_images.h"
#include "ui/frame_updates.h"

TActiveTabView::TActiveTabView(QMainWindow *window, TTabStrip &tabs, TPageCommands &commands, TAddressBar &address,
                               TMainStatusBar &status, TBusyIndicator &busy, TStoppedPopups &stopped,
                               const TIEZoneMgr &zones, TFrameUpdates &updates)
    : m_window(window),
      m_tabs(tabs),
      m_commands(commands),
      m_address(address),
      m_status(status),
      m_busy(busy),
      m_stopped(stopped),
      m_zones(zones),
      m_updates(updates) {
  connect(&tabs, &TTabStrip::ActiveTabChanged, this, &TActiveTabView::Show);
  connect(&tabs, &TTabStrip::IndicatorsChanged, this, &TActiveTabView::GatherIndicators);
  connect(&updates, &TFrameUpdates::Show, this, [this] {
    TBrowserTab *tab = m_tabs.GetActivePage();
    if (std::exchange(m_indicatorsChanged, false) && tab != nullptr) ShowIndicators(tab);
  });
  connect(&tabs, &TTabStrip::StatusTextChanged, &status, &TMainStatusBar::ShowStatusText);
  connect(&tabs, &TTabStrip::ProgressChanged, &status, &TMainStatusBar::ShowProgress);
  connect(&tabs, &TTabStrip::CommandStateChanged, this, &TActiveTabView::GatherIndicators);
  connect(&tabs, &TTabStrip::AddressChanged, &address, &TAddressBar::ShowAddress);
  connect(&tabs, &TTabStrip::ActiveTitleChanged, this, &TActiveTabView::ShowTitle);
  connect(&stopped, &TStoppedPopups::Changed, this, &TActiveTabView::ShowStoppedPopups);
  connect(status.StoppedMenu(), &QMenu::aboutToShow, this,
          [this] { m_stopped.FillMenu(m_status.StoppedMenu(), m_tabs.GetActivePage()); });
  connect(&status, &TMainStatusBar::ZoomClicked, this, [this] {
    const TBrowserTab *tab = m_tabs.GetActivePage();
    if (tab != nullptr && tab->Browser() != nullptr) tab->Browser()->ResetZoom();
  });
}

void TActiveTabView::Show() {
  TBrowserTab *tab = m_tabs.GetActivePage();
  if (tab == nullptr) return;
  m_address.ShowAddress(tab->AddressToSave());
  ShowTitle(tab->ListCaption());
  m_status.ShowNote(QString());
  m_status.ShowStatusText(QString());
  m_status.ShowProgress(tab->Progress());
  ShowStoppedPopups();
  ShowIndicators(tab);
  // The user looks at another page: nothing that it has to show waits.
  m_updates.Hurry();
}

void TActiveTabView::GatherIndicators() {
  m_indicatorsChanged = true;
  // What a key does must be right at once; the buttons that show it are painted then, and the rest with them.
  if (m_commands.UpdateFor(m_tabs.GetActivePage())) {
    m_updates.Hurry();
  } else {
    m_updates.Ask();
  }
}

void TActiveTabView::ShowTitle(const QString &title) {
  m_window->setWindowTitle(QStringLiteral("%1 — %2").arg(title, QApplication::applicationDisplayName()));
}

void TActiveTabView::ShowStoppedPopups() {
  m_status.ShowStopped(m_stopped.CounterText(m_tabs.GetActivePage()));
}

void TActiveTabView::ShowIndicators(TBrowserTab *tab) {
  m_status.ShowSecurity(tab->Secure(), tab->SecureLock());
  const int zone = static_cast<int>(tab->SecureZone());
  m_status.ShowZone(ZoneImages::Of(zone), m_zones.ZoneDisplayName(zone));
  m_address.ShowConnection(tab->Secure(), tab->SecureLock());
  if (tab->Browser() != nullptr) m_status.ShowZoom(tab->Browser()->ZoomPercent());
  m_busy.SetBusy(tab->Busy());
  if (!tab->Busy()) m_status.ShowProgress(100);
  m_commands.UpdateFor(tab);
}
