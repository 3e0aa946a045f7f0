#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <QPair>
#include <QUrl>

#include "browser/page/permission_requests.h"

class QWebEngineProfile;
class TRegistryStore;

enum class TPermissionDecision {
  Ask,            // nothing decided
  AllowedForNow,  // until the program ends
  Allowed,        // from one run to the next, but for what shows the whole screen
  RefusedForNow,  // until the program ends
  Refused,        // until the user takes it back
};

[[nodiscard]] constexpr bool IsAllowed(TPermissionDecision decision) {
  return decision == TPermissionDecision::AllowedForNow || decision == TPermissionDecision::Allowed;
}

// What the user allowed and refused to sites. All pages of a profile share it.
//
// What lasts is a value for each site and permission in the registry store, below RegistryKey::SitePermissions: the
// name is the site's scheme, host and port, a blank and the permission ("https://example.test:8443 Camera"), the data
// is "allow" or "deny". Windows write only the values that they change, and read them at each question, so that the
// decisions of several come together. Anything else that stands there is passed over.
class TPermissionDecisions final : public QObject {
  Q_OBJECT

 public:
  // The decisions of `profile`; they live as long as it does.
  [[nodiscard]] static TPermissionDecisions &Of(QWebEngineProfile &profile);
  // From now on what lasts is kept in `store`, which must live as long; until then nothing outlives the run.
  void KeepIn(TRegistryStore &store) { m_store = &store; }

  // Whether an allowance may hold from one run to the next.
  [[nodiscard]] static bool CanLast(TPermission permission);
  // Camera and microphone together are decided when both are, and refused when one is.
  [[nodiscard]] TPermissionDecision Find(const QUrl &origin, TPermission permission) const;
  void Remember(const QUrl &origin, TPermission permission, TPermissionDecision decision);
  // Every site is asked about anew, in all windows.
  void ForgetAll();
  struct TDecided {
    QUrl site{};
    TPermission permission{};
    TPermissionDecision decision{};
  };
  // All that holds now, by sites; nothing of what could not be read.
  [[nodiscard]] QList<TDecided> All() const;
  // What was decided for a site, each permission by itself.
  [[nodiscard]] QList<TPermission> Decided(const QUrl &origin) const;

 Q_SIGNALS:
  // One permission of one site is decided anew, or not any more.
  void Changed(const QUrl &site, TPermission permission, TPermissionDecision decision);

 private:
  using QObject::QObject;
  using TKey = QPair<QString, int>;

  [[nodiscard]] TPermissionDecision FindOne(const QString &site, TPermission permission) const;
  void RememberOne(const QString &site, TPermission permission, TPermissionDecision decision);

  TRegistryStore *m_store = nullptr;
  QHash<TKey, TPermissionDecision> m_ofThisRun;
};
