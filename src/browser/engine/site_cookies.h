#pragma once

#include <QHash>
#include <QList>
#include <QMutex>
#include <QObject>
#include <QUrl>

#include "browser/engine/policy.h"

class QNetworkCookie;
class QWebEngineCookieStore;
class QWebEngineProfile;
class TPermissionDecisions;

// The cookies of a profile, and the databases and service workers of sites, which are kept where either kind of cookies
// is: the engine does not tell what it asks about. The policy is asked, and where it leaves that to the
// user, what he has decided for the site. Nothing is kept before he has.
class TSiteCookies final : public QObject {
  Q_OBJECT

 public:
  // Must outlive the profile.
  explicit TSiteCookies(TPolicy &policy) : m_policy(&policy) {}

  void Watch(QWebEngineProfile &profile);
  // When the call returns, the one before is not asked any more.
  void SetPolicy(TPolicy &policy);
  // Looks up what the user has decided for the site of `page`; before its first request is best.
  void Learn(const QUrl &page);

 private:
  [[nodiscard]] bool MayKeep(const TCookie &cookie);
  void CheckKept(const QNetworkCookie &cookie);
  [[nodiscard]] bool IsKnown(const QUrl &origin);
  void NoteAsked(const QUrl &origin);
  [[nodiscard]] QUrl OriginOf(const QNetworkCookie &cookie);

  QWebEngineCookieStore *m_store = nullptr;
  TPermissionDecisions *m_decisions = nullptr;
  QMutex m_guard;  // of what follows: the engine asks on two threads
  TPolicy *m_policy;
  QList<QUrl> m_askedOrigins;              // the latest first
  QHash<QString, TCookieKinds> m_allowed;  // by site: what the user has allowed
};
