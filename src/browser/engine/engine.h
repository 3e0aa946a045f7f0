#pragma once

#include <functional>
#include <memory>
#include <QFlags>
#include <QObject>
#include <QSet>
#include <QString>

#include "platform/profile_folder.h"

class QWebEngineNotification;
class QWebEngineProfile;
class TDesktopNotifications;
class QWebEngineUrlRequestInfo;
class TLanguage;
class TRegistryStore;
class TStartPage;

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
  // True to block the request. Asked on the GUI thread for every request of every page, so it must be quick.
  using TRequestFilter = std::function<bool(QWebEngineUrlRequestInfo &)>;

  TEngine(const TLanguage &language, TRegistryStore &store, QObject *parent = nullptr);
  ~TEngine() override;

  // Makes the program's own addresses known; must run before the application object exists.
  static void RegisterSchemes();
  // The address of the shipped start page.
  [[nodiscard]] static QString StartPageAddress();

  [[nodiscard]] QWebEngineProfile &Profile() const { return *m_profile; }
  [[nodiscard]] const TLanguage &Language() const { return m_language; }
  [[nodiscard]] TRegistryStore &Store() const { return m_store; }

  // What the content switches and the security zones bind to; an empty function lets everything through.
  void SetRequestFilter(TRequestFilter filter);
  // Puts `token` behind the engine's own user agent, for the whole profile; an empty one takes it away again.
  void SetUserAgentToken(const QString &token);

  // Certificate errors of `host` are let through for the rest of this run.
  void AcceptCertificateErrors(const QString &host);
  [[nodiscard]] bool AcceptsCertificateErrors(const QString &host) const;

 private:
  class TRequestGate;

  void ShowNotification(std::unique_ptr<QWebEngineNotification> notification);

  const TLanguage &m_language;
  TRegistryStore &m_store;
  TProfileFolder m_folder;
  std::unique_ptr<TStartPage> m_startPage;
  std::unique_ptr<TRequestGate> m_gate;
  std::unique_ptr<QWebEngineProfile> m_profile;
  QString m_ownUserAgent;
  QSet<QString> m_acceptedHosts;
  TDesktopNotifications *m_notifications = nullptr;  // made with the first one
};
