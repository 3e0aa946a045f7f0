#pragma once

#include <QStringList>

#include "actions/actions.h"
#include "annotations/annotation_band.h"
#include "app/browsing_policy.h"
#include "app/default_browser_question.h"
#include "app/handed_over_text.h"
#include "app/last_open_sites.h"
#include "app/startup_modes.h"
#include "browser/downloads/download_list.h"
#include "browser/engine/engine.h"
#include "browser/tabs/auto_refresh.h"
#include "browser/tabs/close_all_tabs.h"
#include "browser/tabs/closed_tabs.h"
#include "browser/tabs/desktop_commands.h"
#include "browser/tabs/load_queue.h"
#include "browser/tabs/page_commands.h"
#include "browser/tabs/sleeping_tabs.h"
#include "browser/tabs/strip_settings.h"
#include "browser/tabs/tab_commands.h"
#include "browser/tabs/tab_environment.h"
#include "browser/tabs/tab_list_menu.h"
#include "browser/tabs/tab_menu.h"
#include "browser/tabs/tab_strip.h"
#include "chrome/active_tab_view.h"
#include "chrome/bands/band_store.h"
#include "chrome/bands/cool_bar.h"
#include "chrome/bands/main_menu_bar.h"
#include "chrome/customize_menu.h"
#include "chrome/downloads_view.h"
#include "chrome/edge_bars.h"
#include "chrome/favorites/favorites_view.h"
#include "chrome/full_screen.h"
#include "chrome/language_menu.h"
#include "chrome/main_status_bar.h"
#include "chrome/main_toolbars.h"
#include "chrome/open_command.h"
#include "chrome/options/options_command.h"
#include "chrome/side_bar_pages.h"
#include "chrome/side_bar_view.h"
#include "chrome/strip_corner.h"
#include "chrome/toolbar/toolbar_customizing.h"
#include "chrome/window_bars.h"
#include "chrome/window_placement.h"
#include "config/language.h"
#include "config/settings.h"
#include "content/content_switches.h"
#include "groups/page_groups.h"
#include "history/history_keeper.h"
#include "history/history_store.h"
#include "platform/desktop_defaults.h"
#include "platform/desktop_services.h"
#include "platform/product_info.h"
#include "popups/popup_blocker.h"
#include "search/address_bar.h"
#include "search/address_search.h"
#include "search/search_lists.h"
#include "security/ie_zone_mgr.h"
#include "security/security_menu.h"
#include "security/zone_store.h"
#include "services/tray_icon.h"
#include "services/version_check.h"
#include "ui/frame_pacer.h"
#include "ui/frame_updates.h"
#include "user_scripts/user_scripts.h"

class QMainWindow;

// Everything that a main window is made of. The members stand in the order in which they are made, each after what it
// uses, and go in the opposite one. Widgets among them belong to the window, which places them.
class TModules final {
 public:
  // `language` is loaded already; all must outlive this object.
  TModules(QMainWindow *window, TSettings &settings, TLanguage &language);

  // Asks all pages whether they may be closed; false when one stays.
  [[nodiscard]] bool PagesMayGo();
  // Writes what lasts beyond the window, in one piece.
  void Write();
  // The same as the last thing, and ends what runs on its own.
  void Save();
  // What of that is not on the disk after so many milliseconds, told in the user's language; empty when all is.
  [[nodiscard]] QStringList Unwritten(int milliseconds);
  // Opens the first pages; once, a moment after the window is up. `argument` is this process's own.
  void OpenFirstPages(const QString &argument);

 private:
  void Join();

 public:
  TSettings &settings;
  TProductInfo product;
  TEngine engine;
  TTabEnvironment environment;
  TActions actions;
  TFramePacer *framePacer;
  TFrameUpdates *frameUpdates;
  THistoryStore history;
  THistoryKeeper historyKeeper;
  TCoolBar *bands;  // cbCoolbar
  TBandStore bandStore;
  TMainMenuBar *menuBar;
  TAddressBar *address;
  TMainToolbars toolbars;
  TToolbarCustomizing toolbarCustomizing;
  TMainStatusBar *status;
  TZVPageControl *pages;  // pcPage
  TTabStrip tabs;
  TLoadQueue loadQueue;
  TClosedTabs closedTabs;
  TCloseAllTabs closeAll;
  TTabMenu tabMenu;
  TTabListMenu tabListMenu;
  TAutoRefresh autoRefresh;
  TSleepingTabs sleepingTabs;
  TStripSettings stripSettings;
  TTabCommands tabCommands;
  TPageCommands pageCommands;
  TDesktopServices desktop;
  TDesktopDefaults desktopDefaults;
  TDesktopCommands desktopCommands;
  TDownloadList downloads;
  TSearchLists searchLists;
  TAddressSearch search;
  TPageGroups groups;
  TOpenCommand openCommand;
  TFavoritesView favorites;
  TPopupBlocker popups;
  TZoneStore zoneStore;
  TIEZoneMgr zones;
  TContentSwitches content;
  TAnnotationBand annotations;
  TUserScripts userScripts;
  TBrowsingPolicy policy;
  TSecurityMenu securityMenu;
  TFullScreen fullScreen;
  TEdgeBars edges;
  TWindowBars bars;
  TCustomizeMenu customizeMenu;
  TWindowPlacement placement;
  TSideBarView sideBar;
  TSideBarPages sideBarPages;
  TActiveTabView activeTab;
  TDownloadsView downloadsView;
  TTrayIcon tray;  // pgTray
  TLanguageMenu languageMenu;
  TOptionsCommand options;
  TLastOpenSites lastSites;
  TStartupModes startupModes;
  THandedOverText handedOver;
  TDefaultBrowserQuestion defaultBrowser;
  TVersionCheck versionCheck;
};
