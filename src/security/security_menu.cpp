#include "security/security_menu.h"

#include <QMenu>

#include "actions/actions.h"
#include "browser/tabs/browser_tab.h"
#include "browser/tabs/tab_strip.h"
#include "config/language.h"
#include "security/security_dialog.h"
#include "security/zone_images.h"

namespace {

struct TAddItem {
  TCommand command;
  int zone;
};
constexpr TAddItem AddItems[] = {
    {TCommand::SecurityAddTrusted, 2},
    {TCommand::SecurityAddIntra, 1},
    {TCommand::SecurityAddRestricted, 4},
};

// Three commands stand one behind the other, in the order of the policies.
struct TPolicyMenu {
  TMenu menu;
  TUrlAction action;
  TCommand first;
  TTextKey caption;
};
constexpr TPolicyMenu PolicyMenus[] = {
    {TMenu::SecurityCookies, TUrlAction::Cookies, TCommand::SecurityCookiesAllow, {"MAIN", "SecurityCookies"}},
    {TMenu::SecuritySession,
     TUrlAction::SessionCookies,
     TCommand::SecuritySessionAllow,
     {"MAIN", "SecuritySessionCookies"}},
    {TMenu::SecurityScripting, TUrlAction::Scripting, TCommand::SecurityScriptingAllow, {"MAIN", "SecurityScripting"}},
    {TMenu::SecurityActiveX, TUrlAction::ActiveX, TCommand::SecurityActiveXAllow, {"MAIN", "SecurityActiveX"}},
};
constexpr int PolicyCount = 3;

TCommand CommandOf(const TPolicyMenu &menu, int policy) {
  return static_cast<TCommand>(static_cast<int>(menu.first) + policy);
}

}  // namespace

TSecurityMenu::TSecurityMenu(QWidget *window, TActions &actions, TTabStrip &tabs, TZoneStore &store, TIEZoneMgr &zones,
                             const TLanguage &language)
    : m_window(window), m_actions(actions), m_tabs(tabs), m_store(store), m_zones(zones), m_language(language) {
  QMenu *menu = actions.Menu(TMenu::Security);
  menu->setToolTipsVisible(true);
  connect(menu, &QMenu::aboutToShow, this, &TSecurityMenu::Prepare);
  for (const TAddItem &item : AddItems) {
    connect(actions[item.command], &QAction::triggered, this, [this, zone = item.zone] { AddSite(zone); });
  }
  connect(actions[TCommand::SecurityRemove], &QAction::triggered, this, &TSecurityMenu::RemoveSite);
  connect(actions[TCommand::SecuritySettings], &QAction::triggered, this, &TSecurityMenu::ShowSettings);
  for (const TPolicyMenu &one : PolicyMenus) {
    for (int policy = 0; policy < PolicyCount; ++policy) {
      const TCommand command = CommandOf(one, policy);
      connect(actions[command], &QAction::triggered, this, [this, command] { ChangePolicy(command); });
    }
  }
  // So that no item is without a text before the menu opens for the first time.
  Prepare();
}

QString TSecurityMenu::Caption(const TTextKey &key, const QString &part) const {
  return Hint(key, QString(part).replace(u'&', QLatin1String("&&")));
}

QString TSecurityMenu::Hint(const TTextKey &key, const QString &part) const {
  return m_language.Text(key).replace(QLatin1String("%s"), part);
}

void TSecurityMenu::Prepare() {
  TBrowserTab *tab = m_tabs.GetActivePage();
  // Another window may have put the site elsewhere.
  if (tab != nullptr) tab->RefreshZone();
  const int zone = tab != nullptr ? static_cast<int>(tab->SecureZone()) : -1;
  ShowZone(zone);
  const bool isThere = m_zones.Available();
  const QString address = tab != nullptr ? tab->GetLocationUrl() : QString();
  const bool isBlank = address.isEmpty() || address == QLatin1String("about:blank");
  ShowAddItems(isThere && zone == ZoneNumber::Internet && !isBlank);
  QAction *remove = m_actions[TCommand::SecurityRemove];
  remove->setVisible(isThere && zone != ZoneNumber::LocalMachine && zone != ZoneNumber::Internet);
  if (remove->isVisible()) {
    const QString name = m_zones.ZoneDisplayName(zone);
    remove->setText(Caption({"MAIN", "SecurityRemove"}, name));
    remove->setToolTip(Hint({"MAIN", "SecurityRemoveHint"}, name));
    remove->setStatusTip(remove->toolTip());
  }
  // Without a zone manager they stay as they were.
  if (isThere) ShowPolicies(zone == ZoneNumber::Internet);
}

void TSecurityMenu::ShowZone(int zone) {
  QAction *current = m_actions[TCommand::SecurityCurrent];
  const QString name = m_zones.Available() ? m_zones.ZoneDisplayName(zone) : QStringLiteral("???");
  current->setText(Caption({"MAIN", "SecurityCurrentZone"}, name));
  current->setIcon(m_zones.Available() ? ZoneImages::Of(zone) : QIcon());
  current->setVisible(true);
}

void TSecurityMenu::ShowAddItems(bool isOffered) {
  for (const TAddItem &item : AddItems) {
    QAction *action = m_actions[item.command];
    action->setVisible(isOffered);
    if (!isOffered) continue;
    const QString name = m_zones.ZoneDisplayName(item.zone);
    action->setText(Caption({"MAIN", "SecurityAdd"}, name));
    action->setToolTip(Hint({"MAIN", "SecurityAddHint"}, name));
    action->setStatusTip(action->toolTip());
  }
}

void TSecurityMenu::ShowPolicies(bool isOffered) {
  for (const TPolicyMenu &one : PolicyMenus) {
    QAction *entry = m_actions.Menu(one.menu)->menuAction();
    entry->setVisible(isOffered);
    if (!isOffered) continue;
    const TZonePolicy policy = m_zones.Policy(ZoneNumber::Internet, one.action);
    entry->setText(Caption(one.caption, m_zones.PolicyWord(policy)));
    m_actions[CommandOf(one, static_cast<int>(policy))]->setChecked(true);
  }
}

// Nothing else changes: pages that are there stay as they are, and the menu tells it when it opens again.
void TSecurityMenu::ChangePolicy(TCommand clicked) {
  for (const TPolicyMenu &one : PolicyMenus) {
    const int policy = static_cast<int>(clicked) - static_cast<int>(one.first);
    if (policy < 0 || policy >= PolicyCount) continue;
    m_zones.SetPolicy(ZoneNumber::Internet, one.action, static_cast<TZonePolicy>(policy));
    m_tabs.Environment().engine.CheckCookies();
  }
}

void TSecurityMenu::AddSite(int zone) {
  const TBrowserTab *tab = m_tabs.GetActivePage();
  if (tab == nullptr) return;
  m_zones.AddSite(tab->GetLocationUrl(), zone);
  RefreshZones();
}

void TSecurityMenu::RemoveSite() {
  const TBrowserTab *tab = m_tabs.GetActivePage();
  if (tab == nullptr) return;
  m_zones.RemoveSite(tab->GetLocationUrl(), static_cast<int>(tab->SecureZone()));
  RefreshZones();
}

void TSecurityMenu::ShowSettings() {
  if (m_settings == nullptr) {
    m_settings = new TfrmSecurity(m_store, m_zones, m_language, m_window);
    m_settings->setAttribute(Qt::WA_DeleteOnClose);
    connect(m_settings, &TfrmSecurity::SitesChanged, this, &TSecurityMenu::RefreshZones);
    connect(m_settings, &TfrmSecurity::RulesChanged, this, [this] { m_tabs.Environment().engine.CheckCookies(); });
    const TBrowserTab *tab = m_tabs.GetActivePage();
    if (tab != nullptr) m_settings->ShowZone(static_cast<int>(tab->SecureZone()));
  }
  m_settings->show();
  m_settings->activateWindow();
}

void TSecurityMenu::RefreshZones() {
  for (TBrowserTab *tab : m_tabs.Tabs()) tab->RefreshZone();
  m_tabs.Environment().engine.CheckCookies();
}
