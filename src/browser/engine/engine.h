#pragma once

#include <memory>
#include <QFlags>
#include <QMutex>
#include <QObject>
#include <QSet>
#include <QString>

#include "platform/profile_folder.h"

class QWebEngineNotification;
class QWebEngineProfile;
class TDesktopNotifications;
class TLanguage;
class TPolicy;
class TRegistryStore;
class TScriptCalls;
class TSiteZoom;
class TStartPage;
class TViewSupply;
struct TCookie;

// Which kinds of content a browser may fetch besides the page itself.
enum class TDownloadControlOption { Images = 1, Videos = 2, BackgroundSounds = 4 };
Q_DECLARE_FLAGS(TDownloadControlOptionSet, TDownloadControlOption)
Q_DECLARE_OPERATORS_FOR_FLAGS(TDownloadControlOptionSet)
inline constexpr TDownloadControlOptionSet AllDownloadControlOptions =
    TDownloadControlOptionSet(int(TDownloadControlOption::Images) | int(TDownloadControlOption::Videos) |
                              int(TDownloadControlOption::BackgroundSounds));

// The engine as the whole program shares it: the profile on disk, its settings, and what was decided for this run
// (certificate errors that the user accepted, permissions that were granted).
class TEngine final : public QObject {
  Q_OBJECT

 public:
  TEngine(const TLanguage &language, TRegistryStore &store, QObject *parent = nullptr);
  ~TEngine() override;

  // Makes the program's own addresses known; must run before the application object exists.
  static void RegisterSchemes();
  // The versions that the engine tells: its own, and that of the newest security fixes in it.
  [[nodiscard]] static QString Version();
  [[nodiscard]] static QString SecurityPatchVersion();
  // The address of the shipped start page.
  [[nodiscard]] static QString StartPageAddress();

  [[nodiscard]] QWebEngineProfile &Profile() const { return *m_profile; }
  [[nodiscard]] TViewSupply &Views() const { return *m_views; }
  [[nodiscard]] TScriptCalls &ScriptCalls() const { return *m_scriptCalls; }
  [[nodiscard]] TSiteZoom &SiteZoom() const { return *m_siteZoom; }
  [[nodiscard]] const TLanguage &Language() const { return m_language; }
  [[nodiscard]] TRegistryStore &Store() const { return m_store; }
  // False where nothing may be left of what is done here: no folder could be taken for it.
  [[nodiscard]] bool KeepsData() const { return m_folder.IsHeld(); }
  // A number that no other running process has, from 1; the lowest that is free.
  [[nodiscard]] int ProcessNumber() const { return m_folder.Number(); }

  // Who answers for all pages from now on, until the next call; nullptr for nobody, which allows everything. When the
  // call returns, the one before is not asked any more. The user agent is asked for here and only here: changing it
  // makes the engine drop the navigations that are under way.
  void SetPolicy(TPolicy *policy);
  [[nodiscard]] TPolicy &Policy() const { return *m_policy; }

  // Certificate errors of `host` are let through for the rest of this run.
  void AcceptCertificateErrors(const QString &host);
  [[nodiscard]] bool AcceptsCertificateErrors(const QString &host) const;

 private:
  void WatchCookies();
  [[nodiscard]] bool MayKeep(const TCookie &cookie) const;
  void ShowNotification(std::unique_ptr<QWebEngineNotification> notification);

  const TLanguage &m_language;
  TRegistryStore &m_store;
  TProfileFolder m_folder;
  std::unique_ptr<TStartPage> m_startPage;
  TPolicy *m_policy;
  mutable QMutex m_policyGuard;  // cookies are asked about on two threads
  std::unique_ptr<QWebEngineProfile> m_profile;
  std::unique_ptr<TSiteZoom> m_siteZoom;
  std::unique_ptr<TViewSupply> m_views;  // goes before the profile that its view is of
  TScriptCalls *m_scriptCalls = nullptr;
  QString m_ownUserAgent;
  QSet<QString> m_acceptedHosts;
  TDesktopNotifications *m_notifications = nullptr;  // made with the first one
};
