#pragma once

#include <functional>
#include <QString>

#include "browser/engine/engine.h"

class TRegistryStore;

// The settings that tabs obey, cached by the main window so that handlers need not go back to the store.
struct TTabSettings {
  bool openNewAtEnd = false;
  bool openNewInForeground = false;
  int newAction = 2;          // 0 blank page, 1 the current page's address, 2 the home page
  int limitTitleLength = 35;  // characters; 0 leaves only the fixed cut
  bool focusPage = true;      // A tab that becomes active gives its page the keyboard.
  TDownloadControlOptionSet downloadControl = AllDownloadControlOptions;
  QString userAgent;
};

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
  TTabSettings settings;
  TTabHooks hooks;
};
