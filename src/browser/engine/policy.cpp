#include "browser/engine/policy.h"

TPagePermissions TPolicy::PermissionsOf(const QUrl & /*page*/) const {
  return {};
}

bool TPolicy::MayKeepCookie(const TCookie & /*cookie*/) const {
  return true;
}

TCookieKinds TPolicy::CookiesToAskAbout(const QUrl & /*origin*/) const {
  return {};
}

QList<TPageScript> TPolicy::Scripts() const {
  return {};
}

bool TPolicy::MayRun(const QString & /*script*/, const QUrl & /*document*/, const QUrl & /*page*/) const {
  return true;
}

TSecurityZone TPolicy::ZoneOf(const QString & /*address*/) const {
  return TSecurityZone::LocalMachine;
}

TSecurityZone TPolicy::ZoneOfPage(const QString &address, std::optional<TSecurityZone> maker) const {
  const bool isBlank = address.isEmpty() || address == QLatin1String("about:blank");
  if (!maker || !(isBlank || address.startsWith(QLatin1String("data:")))) {
    return ZoneOf(isBlank ? QStringLiteral("about:blank") : address);
  }
  return *maker <= TSecurityZone::LocalMachine ? TSecurityZone::Internet : *maker;
}

bool TPolicy::IsPopup(const QString & /*address*/) {
  return false;
}

TWordSearch TPolicy::SearchFor(const QString & /*words*/) const {
  return {};
}

QString TPolicy::UserAgentToken() const {
  return {};
}
