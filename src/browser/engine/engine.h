#pragma once

#include <memory>
#include <QFlags>
#include <QObject>
#include <QString>

#include "browser/engine/certificate_exceptions.h"
#include "browser/engine/site_cookies.h"
#include "platform/profile_folder.h"

class QWebEngineNotification;
class QWebEngineProfile;
class TDesktopNotifications;
class TLanguage;
class TRegistryStore;
class TScriptCalls;
class TSiteZoom;
class TStartPage;
class TViewSupply;

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
  // The policy's answer, with what the user has decided where it leaves something to him. What he has still to be asked
  // about is named in it, and not allowed.
  [[nodiscard]] TPagePermissions PermissionsOf(const QUrl &page) const;

  [[nodiscard]] TCertificateExceptions &Certificates() { return m_certificates; }
  [[nodiscard]] const TCertificateExceptions &Certificates() const { return m_certificates; }

  // All cookies go, and the decisions about what sites may do, both for good.
  // After the policy has changed: cookies of before may not be kept any more.
  void CheckCookies() { m_cookies.CheckAll(); }
  void ForgetCookies();
  void ForgetPermissions();
  // The stored copies of pages and pictures.
  void ForgetCache();
  // That the links to these pages were visited; without any, all of them.
  void ForgetVisited(const QStringList &addresses);

 Q_SIGNALS:
  // A notification of a page of that origin: the user wants to see more of it.
  void NotificationClicked(const QUrl &origin);
  // The desktop shows none. Both are plain text.
  void NotificationNotShown(const QString &title, const QString &text);
  // The policy gives pages other scripts from now on.
  void ScriptsChanged();
  // A script that the policy has given to a page could not go on.
  void ScriptFailed(const QString &id, const QString &reason, int line);

 private:
  void ShowNotification(std::unique_ptr<QWebEngineNotification> notification);

  const TLanguage &m_language;
  TRegistryStore &m_store;
  TProfileFolder m_folder;
  std::unique_ptr<TStartPage> m_startPage;
  TPolicy *m_policy;
  mutable TSiteCookies m_cookies;
  std::unique_ptr<QWebEngineProfile> m_profile;
  std::unique_ptr<TSiteZoom> m_siteZoom;
  std::unique_ptr<TViewSupply> m_views;  // goes before the profile that its view is of
  TScriptCalls *m_scriptCalls = nullptr;
  QString m_ownUserAgent;
  TCertificateExceptions m_certificates;
  TDesktopNotifications *m_notifications = nullptr;  // made with the first one
};
