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

bool TPolicy::IsNobodys(const QUrl &url) {
  const bool isBlank = url.scheme() == QLatin1String("about") && url.path() == QLatin1String("blank");
  // A frame that may do nothing has no site, and what it makes has none either.
  const bool isOfNobody = url.scheme() == QLatin1String("blob") && url.path().startsWith(QLatin1String("null"));
  return url.isEmpty() || isBlank || isOfNobody || url.scheme() == QLatin1String("data");
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
