#pragma once

#include "security/zone_rules.h"

class TContentSwitches;
class TEngine;
class TIEZoneMgr;
class TPopupBlocker;
class TSearchLists;
class TUserScripts;

// What the program's modules answer to pages; it holds for every page of `engine` for as long as it lives.
class TBrowsingPolicy final : public TPolicy {
 public:
  // All must live longer.
  TBrowsingPolicy(TEngine &engine, TPopupBlocker &popups, const TSearchLists &searches, const TIEZoneMgr &zones,
                  TContentSwitches &content, const TUserScripts &scripts);
  ~TBrowsingPolicy() override;

  [[nodiscard]] TPagePermissions PermissionsOf(const QUrl &page) const override;
  [[nodiscard]] bool MayKeepCookie(const TCookie &cookie) const override;
  [[nodiscard]] TCookieKinds CookiesToAskAbout(const QUrl &origin) const override;
  [[nodiscard]] QList<TPageScript> Scripts() const override;
  // By the zone of the page, too.
  [[nodiscard]] bool MayRun(const QString &script, const QUrl &document, const QUrl &page) const override;
  [[nodiscard]] TSecurityZone ZoneOf(const QString &address) const override;
  [[nodiscard]] bool IsPopup(const QString &address) override;
  // By the first of the user's quick searches, as if its keyword had been typed.
  [[nodiscard]] TWordSearch SearchFor(const QString &words) const override;
  // The program's own, while it is registered.
  [[nodiscard]] QString UserAgentToken() const override;

 private:
  TEngine &m_engine;
  TPopupBlocker &m_popups;
  const TSearchLists &m_searches;
  TZoneRules m_zones;
  TContentSwitches &m_content;
  const TUserScripts &m_scripts;
};
