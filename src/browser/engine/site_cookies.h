#pragma once

#include <optional>
#include <QHash>
#include <QList>
#include <QMutex>
#include <QNetworkCookie>
#include <QObject>
#include <QUrl>

#include "browser/engine/policy.h"

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
  // The rules are others: what was kept before and may not be kept any more goes, or ends with the program. The engine
  // tells nothing of what was kept before this run.
  void CheckAll();

 private:
  [[nodiscard]] bool MayKeep(const TCookie &cookie);
  void CheckKept(const QNetworkCookie &cookie);
  [[nodiscard]] bool IsKnown(const QUrl &origin);
  void NoteAsked(const QUrl &origin);
  // The site that was asked about last of those which may have set it.
  [[nodiscard]] std::optional<QUrl> OriginOf(const QNetworkCookie &cookie);
  [[nodiscard]] bool IsRefused(const QString &host, TCookie::TLifetime lifetime);

  QWebEngineCookieStore *m_store = nullptr;
  TPermissionDecisions *m_decisions = nullptr;
  QHash<QByteArray, QNetworkCookie> m_kept;  // in this run
  QMutex m_guard;                            // of what follows: the engine asks on two threads
  TPolicy *m_policy;
  QList<QUrl> m_askedOrigins;              // the latest first
  QHash<QString, TCookieKinds> m_allowed;  // by site: what the user has allowed
};
