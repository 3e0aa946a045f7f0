#include "app/browsing_policy.h"

#include "browser/engine/engine.h"
#include "config/user_agent_token.h"
#include "content/content_switches.h"
#include "popups/popup_blocker.h"
#include "search/quick_search.h"
#include "search/search_lists.h"
#include "user_scripts/user_scripts.h"

TBrowsingPolicy::TBrowsingPolicy(TEngine &engine, TPopupBlocker &popups, const TSearchLists &searches,
                                 const TIEZoneMgr &zones, TContentSwitches &content, const TUserScripts &scripts)
    : m_engine(engine), m_popups(popups), m_searches(searches), m_zones(zones), m_content(content), m_scripts(scripts) {
  m_engine.SetPolicy(this);
}

TBrowsingPolicy::~TBrowsingPolicy() {
  m_engine.SetPolicy(nullptr);
}

TPagePermissions TBrowsingPolicy::PermissionsOf(const QUrl &page) const {
  TPagePermissions may = m_zones.PermissionsOf(page);
  may.images = m_content.IsOn(TContentSwitch::Images);
  may.videos = m_content.IsOn(TContentSwitch::Videos);
  may.sounds = m_content.IsOn(TContentSwitch::Sounds);
  may.animations = m_content.IsOn(TContentSwitch::Animations);
  return may;
}

bool TBrowsingPolicy::MayKeepCookie(const TCookie &cookie) const {
  return m_zones.MayKeepCookie(cookie);
}

TCookieKinds TBrowsingPolicy::CookiesToAskAbout(const QUrl &origin) const {
  return m_zones.CookiesToAskAbout(origin);
}

QList<TPageScript> TBrowsingPolicy::Scripts() const {
  return m_scripts.Loaded();
}

bool TBrowsingPolicy::MayRun(const QString &script, const QUrl &document, const QUrl &page) const {
  const auto zone = [this](const QUrl &url) { return ZoneOf(url.toString(QUrl::FullyEncoded)); };
  return TUserScripts::MayRunIn(zone(page)) && m_scripts.MayRun(script, document, zone(document));
}

TSecurityZone TBrowsingPolicy::ZoneOf(const QString &address) const {
  return m_zones.ZoneOf(address);
}

bool TBrowsingPolicy::IsPopup(const QString &address) {
  return m_popups.IsPopupBlocked(address);
}

TWordSearch TBrowsingPolicy::SearchFor(const QString &words) const {
  for (const TNamedAddress &search : m_searches.QuickSearches()) {
    const TQuickSearch found = TQuickSearch::Of(search.name + u' ' + words.trimmed(), {search});
    if (found.kind == TQuickSearch::TKind::Address) return {search.name, found.address};
  }
  return {};
}

QString TBrowsingPolicy::UserAgentToken() const {
  return ::UserAgentToken::Registered(m_engine.Store());
}
