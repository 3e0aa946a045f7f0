#include "security/ie_zone_mgr.h"

#include <QUrl>

#include "browser/page/zone_name.h"
#include "config/language.h"

namespace {

constexpr qsizetype LongestName = 260;
constexpr qsizetype LongestPart = 2047;  // of an address: the platform's buffers without their closing zero

}  // namespace

TIEZoneMgr::TIEZoneMgr(TZoneStore *zones, const TLanguage &language) : m_zones(zones), m_language(language) {}

int TIEZoneMgr::ZoneOfUrl(const QString &url) const {
  return Available() ? m_zones->ZoneOf(url) : -1;
}

QString TIEZoneMgr::ZoneDisplayName(int zone) const {
  if (!Available() || !IsZone(zone)) return {};
  return ZoneName(zone, m_language).left(LongestName).trimmed();
}

TZonePolicy TIEZoneMgr::Policy(int zone, TUrlAction action) const {
  if (!Available()) return TZonePolicy::Allow;
  switch (m_zones->Policy(zone, action)) {
    case TZoneStore::Query:
      return TZonePolicy::Query;
    case TZoneStore::Disallow:
      return TZonePolicy::Disallow;
    default:
      return TZonePolicy::Allow;
  }
}

int TIEZoneMgr::SetPolicy(int zone, TUrlAction action, TZonePolicy policy) const {
  if (!Available()) return NotAvailable;
  unsigned value = TZoneStore::Allow;
  if (policy == TZonePolicy::Query) value = TZoneStore::Query;
  if (policy == TZonePolicy::Disallow) value = TZoneStore::Disallow;
  return m_zones->SetPolicy(zone, action, value) ? Done : Failed;
}

QString TIEZoneMgr::PolicyWord(TZonePolicy policy) const {
  switch (policy) {
    case TZonePolicy::Allow:
      return m_language.Text("MAIN", "SecurityAllow");
    case TZonePolicy::Query:
      return m_language.Text("MAIN", "SecurityQuery");
    case TZonePolicy::Disallow:
      return m_language.Text("MAIN", "SecurityDisallow");
  }
  return {};
}

int TIEZoneMgr::AddSite(const QString &address, int zone) {
  if (!Available()) return NotAvailable;
  const QUrl url(TZoneMap::PageOf(address));
  const QString host = url.host(QUrl::FullyEncoded);
  if (!url.isValid() || url.scheme().isEmpty() || host.isEmpty()) return Failed;
  if (url.scheme().size() > LongestPart || host.size() > LongestPart) return Failed;
  const QString pattern = url.scheme() + QLatin1String("://") + (host.contains(u':') ? u'[' + host + u']' : host);
  return m_zones->AddMapping(pattern, zone) ? Done : Failed;
}

int TIEZoneMgr::RemoveSite(const QString &url, int zone) {
  Q_UNUSED(zone)
  if (!Available()) return NotAvailable;
  return m_zones->RemoveMapping(url) ? Done : Failed;
}
