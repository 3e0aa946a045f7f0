#pragma once

#include <functional>
#include <QPointer>
#include <QStringList>

#include "browser/engine/engine.h"
#include "browser/engine/policy.h"

// A policy whose answers a test sets; what it does not set is allowed.
class TAnsweringPolicy final : public TPolicy {
 public:
  ~TAnsweringPolicy() override {
    if (m_engine) m_engine->SetPolicy(nullptr);
  }
  void AnswerFor(TEngine &engine) {
    m_engine = &engine;
    engine.SetPolicy(this);
  }

  TPagePermissions PermissionsOf(const QUrl &page) const override {
    return page.path() == restrictedPath ? permissions : TPagePermissions();
  }
  bool MayKeepCookie(const TCookie &cookie) const override {
    return cookie.lifetime == TCookie::TLifetime::NotTold ? cookies : cookie.lifetime != refused;
  }
  TSecurityZone ZoneOf(const QString &address) const override {
    return QUrl(address).path() == restrictedPath ? TSecurityZone::Restricted : TSecurityZone::Internet;
  }
  bool IsPopup(const QString &address) override {
    tested.append(address);
    return isPopup && isPopup(address);
  }
  TWordSearch SearchFor(const QString &words) const override { return searchFor ? searchFor(words) : TWordSearch(); }
  QString UserAgentToken() const override { return token; }

  QString restrictedPath;  // the page that `permissions` are for
  TPagePermissions permissions;
  bool cookies = true;
  TCookie::TLifetime refused = TCookie::TLifetime::NotTold;
  QString token;
  std::function<bool(const QString &)> isPopup;
  QStringList tested;  // for pop-ups
  std::function<TWordSearch(const QString &)> searchFor;

 private:
  QPointer<TEngine> m_engine;
};
