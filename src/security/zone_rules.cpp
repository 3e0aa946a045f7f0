#include "security/zone_rules.h"

TSecurityZone TZoneRules::ZoneOf(const QString &address) const {
  return static_cast<TSecurityZone>(m_zones.ZoneOfUrl(address));
}

TZonePolicy TZoneRules::PolicyOf(const QUrl &url, TUrlAction action) const {
  const int zone = m_zones.ZoneOfUrl(url.toString(QUrl::FullyEncoded));
  return m_zones.Policy(IsZone(zone) ? zone : ZoneNumber::Internet, action);
}

TPagePermissions TZoneRules::PermissionsOf(const QUrl &page) const {
  TPagePermissions may;
  const auto rule = [&](TUrlAction action, bool &isAllowed, bool &isAsked) {
    const TZonePolicy policy = PolicyOf(page, action);
    isAllowed = policy == TZonePolicy::Allow;
    isAsked = policy == TZonePolicy::Query;
  };
  rule(TUrlAction::Scripting, may.scripts, may.toAsk.scripts);
  rule(TUrlAction::ActiveX, may.plugIns, may.toAsk.plugIns);
  rule(TUrlAction::Cookies, may.storage, may.toAsk.cookies.stored);
  may.toAsk.cookies.session = PolicyOf(page, TUrlAction::SessionCookies) == TZonePolicy::Query;
  return may;
}

// A site's worker that answers for its pages is asked about like a cookie of the site's root, on behalf of the page; of
// the root page itself it cannot be told apart.
bool TZoneRules::IsWorkerWithoutScripts(const TCookie &cookie) const {
  const bool isRoot = cookie.origin.path() == QLatin1String("/") && !cookie.origin.hasQuery();
  return cookie.lifetime == TCookie::TLifetime::NotTold && isRoot && cookie.origin != cookie.firstParty &&
         cookie.origin.host() == cookie.firstParty.host() &&
         PolicyOf(cookie.origin, TUrlAction::Scripting) == TZonePolicy::Disallow;
}

bool TZoneRules::MayKeepCookie(const TCookie &cookie) const {
  if (IsWorkerWithoutScripts(cookie)) return false;
  const auto may = [&](TUrlAction action) { return PolicyOf(cookie.origin, action) == TZonePolicy::Allow; };
  switch (cookie.lifetime) {
    case TCookie::TLifetime::Session:
      return may(TUrlAction::SessionCookies);
    case TCookie::TLifetime::Stored:
      return may(TUrlAction::Cookies);
    case TCookie::TLifetime::NotTold:
      break;
  }
  return may(TUrlAction::Cookies) || may(TUrlAction::SessionCookies);
}

TCookieKinds TZoneRules::CookiesToAskAbout(const QUrl &origin) const {
  return {.stored = PolicyOf(origin, TUrlAction::Cookies) == TZonePolicy::Query,
          .session = PolicyOf(origin, TUrlAction::SessionCookies) == TZonePolicy::Query};
}
