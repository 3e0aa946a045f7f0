#include "browser/engine/policy.h"

TPagePermissions TPolicy::PermissionsOf(const QUrl & /*page*/) const {
  return {};
}

bool TPolicy::MayKeepCookie(const TCookie & /*cookie*/) const {
  return true;
}

TSecurityZone TPolicy::ZoneOf(const QString & /*address*/) const {
  return TSecurityZone::LocalMachine;
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
