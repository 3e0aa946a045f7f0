#pragma once

#include "browser/engine/policy.h"
#include "security/ie_zone_mgr.h"

// What the zones mean for pages. Scripts and plug-ins go by the zone of the page, for it and all that is in it; cookies
// by the zone of the site whose they are. What is no address counts as the Internet.
class TZoneRules final {
 public:
  // Must live longer.
  explicit TZoneRules(const TIEZoneMgr &zones) : m_zones(zones) {}

  [[nodiscard]] TPagePermissions PermissionsOf(const QUrl &page) const;
  // On any thread. A cookie whose lifetime is not told is kept where either kind is.
  [[nodiscard]] bool MayKeepCookie(const TCookie &cookie) const;
  [[nodiscard]] TCookieKinds CookiesToAskAbout(const QUrl &origin) const;
  [[nodiscard]] TSecurityZone ZoneOf(const QString &address) const;

 private:
  [[nodiscard]] bool IsWorkerWithoutScripts(const TCookie &cookie) const;
  [[nodiscard]] TZonePolicy PolicyOf(const QUrl &url, TUrlAction action) const;

  const TIEZoneMgr &m_zones;
};
