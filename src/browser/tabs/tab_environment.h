#pragma once

#include <functional>
#include <QString>

#include "browser/engine/engine.h"

class TRegistryStore;
class TSettings;

// What tabs need of the floors above. An empty function has a defined answer: allow, zone 0, no home page.
struct TTabHooks {
  std::function<bool(const QString &address)> isPopupBlocked;
  std::function<int(const QString &address)> securityZone;
  std::function<QString()> homePage;
};

// Everything that a tab is handed; it lives as long as the main window.
struct TTabEnvironment {
  TEngine &engine;
  const TLanguage &language;
  TRegistryStore &store;
  TSettings &settings;
  TTabHooks hooks{};
  bool focusPage = true;  // A tab that becomes active gives its page the keyboard.
  TDownloadControlOptionSet downloadControl = AllDownloadControlOptions;
  QString userAgent{};
};
