#pragma once

#include <QFlags>
#include <QObject>
#include <QString>
#include <memory>

#include "platform/profile_folder.h"

class QWebEngineProfile;
class TLanguage;
class TRegistryStore;

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
  // The address of the shipped start page.
  [[nodiscard]] static QString StartPageAddress();

  [[nodiscard]] QWebEngineProfile &Profile() const { return *m_profile; }
  [[nodiscard]] const TLanguage &Language() const { return m_language; }
  [[nodiscard]] TRegistryStore &Store() const { return m_store; }

  // Certificate errors of `host` are let through for the rest of this run.
  void AcceptCertificateErrors(const QString &host);
  [[nodiscard]] bool AcceptsCertificateErrors(const QString &host) const;

 private:
  const TLanguage &m_language;
  TRegistryStore &m_store;
  TProfileFolder m_folder;
  std::unique_ptr<QWebEngineProfile> m_profile;
  QStringList m_acceptedHosts;
};
