#pragma once

#include <QString>

#include "security/zone_store.h"

class TLanguage;

// The policies as the program handles them. The platform has other numbers, and more of them.
enum class TZonePolicy { Allow = 0, Query = 1, Disallow = 2 };

// The zones as the window uses them: names, policies and the mappings of sites.
class TIEZoneMgr final {
 public:
  // What the calls that change a mapping answer.
  static constexpr int Done = 0;
  static constexpr int NotAvailable = 1;
  static constexpr int Failed = -1;

  // Both must live longer. Without a store nothing is available, and each call has its answer for that.
  TIEZoneMgr(TZoneStore *zones, const TLanguage &language);

  [[nodiscard]] bool Available() const { return m_zones != nullptr; }
  // -1 when not available, and for what is no address.
  [[nodiscard]] int ZoneOfUrl(const QString &url) const;
  // Empty when not available, and for what is no zone.
  [[nodiscard]] QString ZoneDisplayName(int zone) const;
  // Any value that is neither 0, 1 nor 3 on the platform reads as "allow"; so does what is not available.
  [[nodiscard]] TZonePolicy Policy(int zone, TUrlAction action) const;
  // What is none of the three values is written as "allow". Done, Failed or NotAvailable.
  int SetPolicy(int zone, TUrlAction action, TZonePolicy policy) const;
  // Allow, query or disallow in words; empty for anything else.
  [[nodiscard]] QString PolicyWord(TZonePolicy policy) const;

  // Maps scheme and host of the address to the zone. Failed for what has none.
  int AddSite(const QString &url, int zone);
  // Takes back the mapping of the address itself, not that of its scheme and host alone: that this leaves the site
  // where it is on all pages but its first one is meant.
  int RemoveSite(const QString &url, int zone);

 private:
  TZoneStore *m_zones;
  const TLanguage &m_language;
};
