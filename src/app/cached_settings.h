#pragma once

#include <QString>

class TRegistryStore;
struct TTabSettings;

// The settings that the main window keeps a copy of, so that handlers need not go back to the store. They are read once
// when the window is created and written back when it is destroyed. What tabs obey is in TTabSettings; page groups,
// the pop-up blocker and the address bar keep theirs.
struct TCachedSettings {
  bool minToTray = false;
  bool showGo = false;
  bool hbAutoExpand = true;
  bool viewHalvexBar = false;
  bool viewLinksBar = true;
  bool disableAltShortcuts = false;
  int halvexBarWidth = 234;  // pixels
  QString searchBar;

  void Read(TRegistryStore &store, TTabSettings &tabs);
  // In the order in which the window writes them before its placement.
  void Write(TRegistryStore &store, const TTabSettings &tabs, bool fullScreen) const;
};
