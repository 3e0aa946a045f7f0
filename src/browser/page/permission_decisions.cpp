#include "browser/page/permission_decisions.h"

#include <algorithm>
#include <array>
#include <QSet>
#include <QWebEngineProfile>

#include "config/registry_paths.h"
#include "store/registry_store.h"

namespace {

constexpr TRegistryHive Hive = TRegistryHive::CurrentUser;
const QString Key = QString::fromLatin1(RegistryKey::SitePermissions);
const QString AllowText = QStringLiteral("allow");
const QString DenyText = QStringLiteral("deny");

// Each permission that is decided by itself, by its name in the store.
struct TName {
  TPermission permission;
  const char *name;
  bool canLast = true;  // an allowance holds in the next run, too
};
constexpr std::array Names{
    TName{TPermission::Notifications, "Notifications"},
    TName{TPermission::Location, "Location"},
    TName{TPermission::Microphone, "Microphone"},
    TName{TPermission::Camera, "Camera"},
    TName{TPermission::Clipboard, "Clipboard"},
    TName{TPermission::MouseLock, "MouseLock"},
    TName{TPermission::Scripts, "Scripts"},
    TName{TPermission::PlugIns, "PlugIns"},
    TName{TPermission::StoredCookies, "StoredCookies"},
    TName{TPermission::SessionCookies, "SessionCookies"},
    // The engine shows all of the screen without letting the user choose.
    TName{TPermission::Screen, "Screen", false},
    TName{TPermission::ScreenAndSound, "ScreenAndSound", false},
};

const TName &NameOf(TPermission permission) {
  return *std::ranges::find(Names, permission, &TName::permission);
}

QList<TPermission> PartsOf(TPermission permission) {
  if (permission == TPermission::CameraAndMicrophone) return {TPermission::Camera, TPermission::Microphone};
  return {permission};
}

QString SiteOf(const QUrl &origin) {
  const QUrl site = origin.adjusted(QUrl::RemoveUserInfo | QUrl::RemovePath | QUrl::RemoveQuery | QUrl::RemoveFragment);
  return site.toString(QUrl::FullyEncoded);
}

// Files of the disk are one site for the engine, and pages without any are nobody's: what holds for all of them is not
// kept.
bool SiteCanLast(const QString &site) {
  return site.startsWith(QLatin1String("https://")) || site.startsWith(QLatin1String("http://"));
}

QString ValueNameOf(const QString &site, TPermission permission) {
  return site + u' ' + QLatin1String(NameOf(permission).name);
}

}  // namespace

TPermissionDecisions &TPermissionDecisions::Of(QWebEngineProfile &profile) {
  auto *decisions = profile.findChild<TPermissionDecisions *>(QString(), Qt::FindDirectChildrenOnly);
  if (decisions == nullptr) decisions = new TPermissionDecisions(&profile);
  return *decisions;
}

bool TPermissionDecisions::CanLast(TPermission permission) {
  return std::ranges::all_of(PartsOf(permission), [](TPermission part) { return NameOf(part).canLast; });
}

TPermissionDecision TPermissionDecisions::Find(const QUrl &origin, TPermission permission) const {
  TPermissionDecision all = TPermissionDecision::Allowed;
  for (const TPermission part : PartsOf(permission)) {
    const TPermissionDecision one = FindOne(SiteOf(origin), part);
    if (one == TPermissionDecision::Refused || one == TPermissionDecision::RefusedForNow) return one;
    if (one == TPermissionDecision::Ask) all = one;
  }
  return all;
}

void TPermissionDecisions::Remember(const QUrl &origin, TPermission permission, TPermissionDecision decision) {
  const QList<TPermission> parts = PartsOf(permission);
  for (const TPermission part : parts) RememberOne(SiteOf(origin), part, decision);
  for (const TPermission part : parts) Q_EMIT Changed(QUrl(SiteOf(origin)), part, decision);
}

void TPermissionDecisions::ForgetAll() {
  const QList<TDecided> all = All();
  m_ofThisRun.clear();
  if (m_store != nullptr) m_store->DeleteKey(Hive, Key);
  for (const TDecided &one : all) Q_EMIT Changed(one.site, one.permission, TPermissionDecision::Ask);
}

QList<TPermissionDecisions::TDecided> TPermissionDecisions::All() const {
  QSet<QString> sites;
  for (auto one = m_ofThisRun.keyBegin(); one != m_ofThisRun.keyEnd(); ++one) sites.insert(one->first);
  const QList<TRegistryValue> stored = m_store != nullptr ? m_store->Values(Hive, Key) : QList<TRegistryValue>();
  for (const TRegistryValue &value : stored) sites.insert(value.name.section(u' ', 0, 0));
  QStringList sorted(sites.begin(), sites.end());
  sorted.sort();
  QList<TDecided> all;
  for (const QString &site : std::as_const(sorted)) {
    for (const TName &name : Names) {
      const TPermissionDecision decision = FindOne(site, name.permission);
      if (decision != TPermissionDecision::Ask) all.append({QUrl(site), name.permission, decision});
    }
  }
  return all;
}

QList<TPermission> TPermissionDecisions::Decided(const QUrl &origin) const {
  QList<TPermission> decided;
  for (const TName &name : Names) {
    if (FindOne(SiteOf(origin), name.permission) != TPermissionDecision::Ask) decided.append(name.permission);
  }
  return decided;
}

TPermissionDecision TPermissionDecisions::FindOne(const QString &site, TPermission permission) const {
  // The newest word of this run comes before what any window has stored.
  const auto found = m_ofThisRun.constFind({site, int(permission)});
  if (found != m_ofThisRun.constEnd()) return found.value();
  if (m_store == nullptr || !SiteCanLast(site)) return TPermissionDecision::Ask;
  const QString stored = m_store->Read(Hive, Key, ValueNameOf(site, permission)).value_or(QString());
  if (stored == AllowText && NameOf(permission).canLast) return TPermissionDecision::Allowed;
  return stored == DenyText ? TPermissionDecision::Refused : TPermissionDecision::Ask;
}

void TPermissionDecisions::RememberOne(const QString &site, TPermission permission, TPermissionDecision decision) {
  m_ofThisRun.remove({site, int(permission)});
  if (m_store != nullptr && SiteCanLast(site)) {
    const QString name = ValueNameOf(site, permission);
    const bool lasts = decision == TPermissionDecision::Refused ||
                       (decision == TPermissionDecision::Allowed && NameOf(permission).canLast);
    if (lasts) {
      if (m_store->Write(Hive, Key, name, decision == TPermissionDecision::Allowed ? AllowText : DenyText)) return;
    } else if (m_store->Read(Hive, Key, name)) {
      m_store->DeleteValue(Hive, Key, name);
    }
  }
  if (decision != TPermissionDecision::Ask) m_ofThisRun.insert({site, int(permission)}, decision);
}
