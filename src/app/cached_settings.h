#pragma once

#include <QString>

// The settings that the main window keeps a copy of, so that handlers need not go back to the store. What tabs obey is
// in TTabSettings; the window reads all of them once at creation and writes them back when it is destroyed.
struct TCachedSettings {
  QString startupMode;
  bool minToTray = false;
  bool addressNewWin = false;
  bool quickSearchNewWin = true;
  bool showGo = false;
  int autoCompleteMode = 2;
  bool hgCloseFirst = false;
  bool usePopupHalvex = true;
  bool popupHalvexNotify = true;
  bool hbAutoExpand = true;
  bool viewHalvexBar = false;
  bool viewLinksBar = true;
  bool disableAltShortcuts = false;
  int halvexBarWidth = 234;   // pixels
  QString searchBar;
  bool fullScreen = false;
  bool maximizedBySettings = false;
};
