#include "app/delayed_start.h"

#include <QFileInfo>
#include <QNetworkInformation>
#include <QUrl>

#include "app/last_open_sites.h"
#include "app/later_home_page.h"
#include "browser/tabs/browser_tab.h"
#include "browser/tabs/home_page.h"
#include "browser/tabs/load_queue.h"
#include "browser/tabs/tab_strip.h"
#include "config/settings.h"
#include "config/startup_mode.h"
#include "groups/page_groups.h"
#include "platform/product_info.h"

namespace {

bool IsLocalFile(const QString &address) {
  return QFileInfo(address).isFile() || QFileInfo(QUrl(address).toLocalFile()).isFile();
}

bool IsOffline() {
  return QNetworkInformation::loadDefaultBackend() &&
         QNetworkInformation::instance()->reachability() == QNetworkInformation::Reachability::Disconnected;
}

}  // namespace

void TDelayedStart::Run() {
  // Every tab is active for a moment when it is made; only the one that stays so is worth showing.
  const TPresentationPause pause(m_tabs.Pages());
  OpenStartupPage();
  OpenMode();
  OpenCommandLine();
  OpenMakersPage();
  // The others wait until the user turns to them.
  m_queue.Wake(m_tabs.GetActivePage());
}

TBrowserTab *TDelayedStart::TakeTab() {
  m_tab = m_tab == nullptr ? m_tabs.GetActivePage() : m_tabs.NewTab();
  return m_tab;
}

void TDelayedStart::OpenStartupPage() {
  const QString page = m_settings.Get(Setting::StartupPage);
  if (page.isEmpty()) return;
  m_opened = true;
  TakeTab()->Navigate(page);
  m_settings.Set(Setting::StartupPage, QString());
}

void TDelayedStart::OpenMode() {
  switch (StartupModeOf(m_settings.Get(Setting::StartupMode))) {
    case TStartupMode::Home:
      OpenHome();
      break;
    case TStartupMode::Blank:
      TakeTab()->MakeBlank();
      break;
    case TStartupMode::Last:
      OpenLastSites();
      break;
    case TStartupMode::Group:
      OpenStartupGroup();
      break;
  }
}

void TDelayedStart::OpenStartupGroup() {
  const QString group = m_settings.Get(Setting::StartupHalvexGroup);
  if (group.isEmpty()) return;
  m_opened = true;
  m_groups.OpenHalvexGroup(group, m_tab == nullptr);
  // A group that is gone or empty has taken no tab.
  if (TBrowserTab *active = m_tabs.GetActivePage(); !active->Url().isEmpty()) m_tab = active;
}

void TDelayedStart::OpenHome() {
  TBrowserTab *tab = TakeTab();
  if (HasArgument()) {
    new TLaterHomePage(m_tabs, tab);
  } else {
    tab->GoHome();
  }
  const QString chosen = HomePage::Chosen(m_settings.Store());
  if (chosen != HomePage::Default(m_product) && chosen != QLatin1String("about:blank") && !IsLocalFile(chosen)) {
    m_opened = true;
  }
}

void TDelayedStart::OpenLastSites() {
  m_opened = true;
  bool defaultSeen = false;
  TBrowserTab *front = nullptr;
  for (const TKeptTabs::TKeptTab &kept : m_lastSites.Take()) {
    TBrowserTab *tab = TakeTab();
    tab->SetRestored(true);
    if (kept.record) {
      m_queue.Wait(tab, *kept.record);
      if (kept.inFront && front == nullptr) front = tab;
    } else {
      m_queue.Navigate(tab, kept.address);
    }
    // Once the default home page was among them this stays so, whatever the other pages are.
    defaultSeen = defaultSeen || kept.address == HomePage::Default(m_product);
  }
  if (front != nullptr) m_tabs.Activate(front);
  if (defaultSeen) m_opened = false;
}

bool TDelayedStart::HasArgument() const {
  return !m_argument.isEmpty() || !m_settings.Get(Setting::CommandLine).isEmpty();
}

void TDelayedStart::OpenCommandLine() {
  // Two instances that start together share the setting, so this one's own argument comes first.
  const QString argument = m_argument.isEmpty() ? m_settings.Get(Setting::CommandLine) : m_argument;
  if (argument.isEmpty()) return;
  m_settings.Set(Setting::CommandLine, QString());
  m_opened = true;
  if (TPageGroups::IsGroupFile(argument)) {
    m_groups.OpenHalvexGroup(argument, true, true);
  } else {
    TakeTab()->Navigate(argument);
  }
}

void TDelayedStart::OpenMakersPage() {
  if (!m_opened || m_product.startupPage.isEmpty() || IsOffline()) return;
  QString address = m_product.startupPage;
  if (const qsizetype place = address.indexOf(QLatin1String("%s")); place >= 0) {
    address.replace(place, 2, QStringLiteral("ext"));
  }
  TBrowserTab *previous = m_tabs.GetActivePage();
  m_tabs.NewBackgroundTab()->Navigate(address);
  m_tabs.Activate(previous);
}
