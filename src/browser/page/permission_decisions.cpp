#include "browser/page/permission_decisions.h"

#include <QWebEngineProfile>

namespace {

QPair<QString, int> KeyOf(const QUrl &origin, TPermission permission) {
  const QUrl site = origin.adjusted(QUrl::RemoveUserInfo | QUrl::RemovePath | QUrl::RemoveQuery | QUrl::RemoveFragment);
  return {site.toString(QUrl::FullyEncoded), int(permission)};
}

}  // namespace

TPermissionDecisions &TPermissionDecisions::Of(QWebEngineProfile &profile) {
  auto *decisions = profile.findChild<TPermissionDecisions *>(QString(), Qt::FindDirectChildrenOnly);
  if (decisions == nullptr) decisions = new TPermissionDecisions(&profile);
  return *decisions;
}

std::optional<bool> TPermissionDecisions::Find(const QUrl &origin, TPermission permission) const {
  const auto found = m_decisions.constFind(KeyOf(origin, permission));
  return found == m_decisions.constEnd() ? std::nullopt : std::optional<bool>(found.value());
}

void TPermissionDecisions::Remember(const QUrl &origin, TPermission permission, bool allow) {
  m_decisions.insert(KeyOf(origin, permission), allow);
}
