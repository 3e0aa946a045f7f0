#pragma once

#include <memory>
#include <QMainWindow>
#include <QTimer>

#include "app/cached_settings.h"
#include "browser/tabs/close_all_tabs.h"
#include "browser/tabs/tab_environment.h"
#include "browser/tabs/tab_strip.h"
#include "config/language.h"
#include "config/options.h"
#include "platform/product_info.h"

class TAddressSearch;
class TAutoRefresh;
class TCommands;
class TDownloadList;
class TDownloadWindow;
class TFullScreen;
class THistoryStore;
class TLastOpenSites;
class TLoadQueue;
class TMainStatusBar;
class TMainToolbars;
class TPageCommands;
class TPageGroups;
class TPopupBlocker;
class TSearchLists;
class TStartupModes;
class TTabCommands;
class TTabMenu;
class TWindowBars;

// The main window. It makes the modules in their order, hands each one what it needs and joins their signals; what a
// command does is the module's own affair.
class TfrmMain final : public QMainWindow {
  Q_OBJECT

 public:
  // `store` must live longer than the window. `argument` is opened at start, whatever the setting CommandLine holds.
  explicit TfrmMain(TRegistryStore &store, const QString &argument = {});
  ~TfrmMain() override;

  [[nodiscard]] TTabStrip &Tabs() const { return *m_tabs; }
  [[nodiscard]] TCommands &Commands() const { return *m_commands; }
  [[nodiscard]] const TLanguage &Language() const { return m_language; }
  // Closes the window without the shutdown question, with everything written as always.
  void CloseWithoutAsking();
  // What a later start was given, from the instance channel: the window comes to the front and opens it, a page-group
  // file as a group, anything else as an address in a new tab. An empty text only brings the window to the front.
  void wmCopyDataDataReceived(const QString &text);

 Q_SIGNALS:
  // The window goes for good; what comes now would be lost.
  void Closing();

 protected:
  void closeEvent(QCloseEvent *event) override;
  void changeEvent(QEvent *event) override;
  void resizeEvent(QResizeEvent *event) override;
  void moveEvent(QMoveEvent *event) override;

 private:
  // Creation, in order.
  void FormCreate();
  void MakeModules();
  void MakeFirstTab();
  void RestoreView();
  void RestorePlacement();
  void ConnectTabs();
  void ConnectCommands();
  void tmrLoadCoolbarTimer();

  [[nodiscard]] bool FormCloseQuery();
  void FormDestroy();
  void WriteSettings();

  void ShowIndicators(TBrowserTab *tab);
  void ShowActiveTab(TBrowserTab *tab);
  void ShowStoppedPopups();
  void OpenDownloads();
  void RememberBounds();
  void TellAboutStore();

  TRegistryStore &m_store;
  TZVOptions m_options;
  TProductInfo m_product;
  TLanguage m_language;
  TCachedSettings m_settings;
  QString m_argument;
  std::unique_ptr<TEngine> m_engine;
  std::unique_ptr<TTabEnvironment> m_environment;
  std::unique_ptr<TDownloadList> m_downloads;
  std::unique_ptr<THistoryStore> m_history;
  std::unique_ptr<TTabStrip> m_tabs;
  std::unique_ptr<TCloseAllTabs> m_closeAll;
  std::unique_ptr<TDownloadWindow> m_downloadWindow;

  // Children of the window.
  TCommands *m_commands = nullptr;
  TMainToolbars *m_toolbars = nullptr;
  TMainStatusBar *m_status = nullptr;
  TZVPageControl *m_pages = nullptr;  // pcPage
  TFullScreen *m_fullScreen = nullptr;
  TWindowBars *m_bars = nullptr;
  TTabMenu *m_tabMenu = nullptr;
  TAutoRefresh *m_autoRefresh = nullptr;
  TPageCommands *m_pageCommands = nullptr;
  TTabCommands *m_tabCommands = nullptr;
  TLoadQueue *m_loadQueue = nullptr;
  TPageGroups *m_groups = nullptr;
  TPopupBlocker *m_popups = nullptr;
  TSearchLists *m_searchLists = nullptr;
  TAddressSearch *m_search = nullptr;
  TLastOpenSites *m_lastSites = nullptr;
  TStartupModes *m_startupModes = nullptr;
  QTimer m_loadCoolbar{this};  // tmrLoadCoolbar
  QRect m_normalBounds;        // of the window when it was last neither maximised nor full screen
  bool m_closeConfirmed = false;
};
