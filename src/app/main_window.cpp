#include "app/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFileInfo>
#include <QMenu>
#include <QMenuBar>
#include <QWindow>

#include "app/about_dialog.h"
#include "chrome/busy_indicator.h"
#include "actions/commands.h"
#include "app/delayed_start.h"
#include "chrome/full_screen.h"
#include "app/home_page.h"
#include "app/last_open_sites.h"
#include "chrome/main_status_bar.h"
#include "chrome/main_toolbars.h"
#include "app/page_commands.h"
#include "app/startup_modes.h"
#include "browser/tabs/tab_colors.h"
#include "app/tab_commands.h"
#include "chrome/window_bars.h"
#include "chrome/window_placement.h"
#include "ui/confirm_dialog.h"
#include "ui/warning_box.h"
#include "browser/downloads/download_list.h"
#include "browser/downloads/download_window.h"
#include "browser/tabs/auto_refresh.h"
#include "browser/tabs/browser_tab.h"
#include "browser/tabs/load_queue.h"
#include "browser/tabs/tab_menu.h"
#include "chrome/language_menu.h"
#include "groups/page_groups.h"
#include "popups/popup_blocker.h"
#include "history/history_store.h"
#include "platform/program_folders.h"
#include "platform/window_activation.h"
#include "search/address_bar.h"
#include "search/address_search.h"
#include "search/search_lists.h"

namespace {

constexpr int DelayedStartInterval = 1;  // milliseconds
constexpr QSize SmallestSize(320, 240);  // pixels
const QString HistoryFile = QStringLiteral("/history.sqlite");

}  // namespace

TfrmMain::TfrmMain(TRegistryStore &store, const QString &argument)
    : m_store(store), m_options(store), m_argument(argument) {
  FormCreate();
}

TfrmMain::~TfrmMain() {
  FormDestroy();
}

void TfrmMain::FormCreate() {
  setObjectName(QStringLiteral("frmMain"));
  // The bars are shown and hidden in the View menu, which remembers it.
  setContextMenuPolicy(Qt::NoContextMenu);
  setMinimumSize(SmallestSize);
  m_options.RemoveZvid();
  m_language.Load(m_options);
  m_language.InstallToolkitTranslations(qApp);
  if (const QString locale = m_language.LocaleName(); !locale.isEmpty()) QLocale::setDefault(QLocale(locale));
  m_product = TProductInfo::Load();
  MakeModules();
  MakeFirstTab();
  RestoreView();
  RestorePlacement();
  m_environment->settings.openNewAtEnd = m_options.Get(Setting::OpenNewAtEnd);
  m_commands->operator[](TCommand::OpenNewAtEnd)->setChecked(m_environment->settings.openNewAtEnd);
  m_loadCoolbar.start();
}

void TfrmMain::MakeModules() {
  m_engine = std::make_unique<TEngine>(m_language, m_store);
  m_environment.reset(new TTabEnvironment{*m_engine, m_language, m_store, {}, {}});
  m_environment->hooks.homePage = [this] { return HomePage::Address(m_store, m_product); };
  m_settings.Read(m_store, m_environment->settings);
  // Until the window is made every tab goes to the end of the strip.
  m_environment->settings.openNewAtEnd = true;

  m_commands = new TCommands(this);
  m_commands->BuildMenus(menuBar());
  m_history = std::make_unique<THistoryStore>(ProgramFolders::UserData() + HistoryFile);
  m_toolbars = new TMainToolbars(this, *m_commands, new TAddressBar(m_language, m_store, *m_history));
  m_status = new TMainStatusBar(m_language, this);
  setStatusBar(m_status);
  m_pages = new TZVPageControl(this);
  m_pages->setObjectName(QStringLiteral("pcPage"));
  setCentralWidget(m_pages);
  m_language.TranslateForm(this, "MAIN");
  m_commands->FinishTexts(m_language, m_settings.disableAltShortcuts);

  m_tabs = std::make_unique<TTabStrip>(this, m_pages, *m_environment);
  m_closeAll = std::make_unique<TCloseAllTabs>(this, *m_tabs);
  m_tabMenu = new TTabMenu(this, *m_tabs, *m_closeAll);
  m_autoRefresh = new TAutoRefresh(m_language, m_store, this);
  m_downloads = std::make_unique<TDownloadList>(m_engine->Profile(), m_language, m_store);
  m_fullScreen = new TFullScreen(this, *m_commands, *m_tabs);
  m_bars = new TWindowBars(this, *m_commands, *m_toolbars, *m_status, *m_fullScreen, m_store);
  m_pageCommands = new TPageCommands(this, *m_commands, *m_tabs, *m_status);
  m_searchLists = new TSearchLists(m_language, m_store, this);
  m_searchLists->FillMenu(m_commands->Menu(TMenu::SearchEngines));
  m_search = new TAddressSearch(this, m_language, m_toolbars->Address(), *m_tabs, *m_searchLists, *m_history);
  m_loadQueue = new TLoadQueue(*m_tabs, this);
  m_groups = new TPageGroups(this, *m_tabs, *m_closeAll, *m_loadQueue, m_language, m_store);
  m_groups->FillMenu(m_commands->Menu(TMenu::Groups));
  m_groups->ExtendTabMenu(*m_tabMenu);
  m_popups = new TPopupBlocker(this, *m_tabs);
  m_environment->hooks.isPopupBlocked = [this](const QString &address) { return m_popups->IsPopupBlocked(address); };
  m_tabMenu->AddItem("pmAddToPopupHalvex", m_language.Global("PopupHalvex") + QStringLiteral("…"),
                     ":/icons/popup_blocked.svg", Qt::Key_F8,
                     [this](TBrowserTab *tab) { m_popups->AddToPopupList(tab); });
  m_tabCommands = new TTabCommands(this, *m_commands, *m_tabs, *m_closeAll, *m_tabMenu, *m_autoRefresh,
                                   m_toolbars->Address(), *m_search);
  new TLanguageMenu(*m_commands->Menu(TMenu::Languages), m_language, m_store);
  m_lastSites = new TLastOpenSites(*m_tabs, m_store, this);
  m_startupModes = new TStartupModes(*m_commands, *m_groups, *m_lastSites, m_store, this);
  ConnectTabs();
  ConnectCommands();

  m_loadCoolbar.setObjectName(QStringLiteral("tmrLoadCoolbar"));
  m_loadCoolbar.setSingleShot(true);
  m_loadCoolbar.setInterval(DelayedStartInterval);
  connect(&m_loadCoolbar, &QTimer::timeout, this, &TfrmMain::tmrLoadCoolbarTimer);
}

void TfrmMain::MakeFirstTab() {
  m_tabs->NewTab();
  m_toolbars->ShowGo(m_settings.showGo);
}

void TfrmMain::RestoreView() {
  m_pages->SetMultipleLines(m_options.Get(Setting::MultipleLines));
  ApplyTabColors(*m_pages, m_options);
  m_pages->SetTabsDown(m_options.Get(Setting::TabsDown));
  m_tabCommands->ArrangePositionItems();
  m_bars->Restore();
}

void TfrmMain::RestorePlacement() {
  WindowPlacement::Restore(this, m_store);
  m_normalBounds = QRect(pos(), size());
  if (m_options.Get(Setting::FullScreen)) m_fullScreen->Enter();
  if (m_options.Get(Setting::Maximized)) setWindowState(windowState() | Qt::WindowMaximized);
}

void TfrmMain::ConnectTabs() {
  TTabStrip *tabs = m_tabs.get();
  connect(tabs, &TTabStrip::ActiveTabChanged, this, &TfrmMain::ShowActiveTab);
  connect(tabs, &TTabStrip::IndicatorsChanged, this, &TfrmMain::ShowIndicators);
  connect(tabs, &TTabStrip::StatusTextChanged, m_status, &TMainStatusBar::ShowStatusText);
  connect(tabs, &TTabStrip::ProgressChanged, m_status, &TMainStatusBar::ShowProgress);
  connect(tabs, &TTabStrip::CommandStateChanged, this, [this] { m_pageCommands->UpdateFor(m_tabs->GetActivePage()); });
  connect(tabs, &TTabStrip::AddressChanged, &m_toolbars->Address(), &TAddressBar::ShowAddress);
  connect(tabs, &TTabStrip::ActiveTitleChanged, this, [this](const QString &title) {
    setWindowTitle(QStringLiteral("%1 — %2").arg(title, QApplication::applicationDisplayName()));
  });
  connect(m_pages, &TZVPageControl::TabMenuRequested, this, [this](QWidget *page, const QPoint &position) {
    m_tabMenu->Open(static_cast<TBrowserTab *>(page), position);
  });
  connect(m_bars, &TWindowBars::Applied, this, [this](bool pageOnly) {
    m_pages->SetStripVisible(!pageOnly);
    m_pageCommands->UpdateFor(m_tabs->GetActivePage());
  });
}

void TfrmMain::ConnectCommands() {
  const auto on = [this](TCommand command, auto &&work) {
    connect((*m_commands)[command], &QAction::triggered, this, work);
  };
  connect(&m_toolbars->Address(), &TAddressBar::Left, this, [this] {
    if (TBrowserTab *tab = m_tabs->GetActivePage()) tab->setFocus();
  });
  on(TCommand::EditAddress, [this] {
    if (m_toolbars->Address().isVisible()) m_toolbars->Address().FocusAll();
  });
  on(TCommand::Downloads, [this] { OpenDownloads(); });
  connect(m_status, &TMainStatusBar::DownloadsClicked, this, &TfrmMain::OpenDownloads);
  connect(m_status, &TMainStatusBar::SecurityClicked, (*m_commands)[TCommand::Properties], &QAction::trigger);
  connect(m_downloads.get(), &TDownloadList::ActiveChanged, m_status, &TMainStatusBar::ShowDownloads);
  on(TCommand::SetHomePage, [this] {
    if (TBrowserTab *tab = m_tabs->GetActivePage()) HomePage::Choose(m_store, tab->GetLocationUrl());
  });
  on(TCommand::OrganizeQuickSearch, [this] { m_searchLists->Organize(TSearchList::QuickSearch); });
  on(TCommand::ClearAddresses, [this] { m_toolbars->Address().ClearAddressHistory(); });
  (*m_commands)[TCommand::CloseTabsFirst]->setChecked(m_groups->CloseFirst());
  connect((*m_commands)[TCommand::CloseTabsFirst], &QAction::toggled, this, [this](bool first) {
    m_groups->SetCloseFirst(first);
    m_options.Set(Setting::HGCloseFirst, first);
  });
  (*m_commands)[TCommand::UsePopupBlocker]->setChecked(m_popups->Enabled());
  connect((*m_commands)[TCommand::UsePopupBlocker], &QAction::toggled, m_popups, &TPopupBlocker::SetEnabled);
  connect(&m_popups->Stopped(), &TStoppedPopups::Changed, this, &TfrmMain::ShowStoppedPopups);
  connect(m_status->StoppedMenu(), &QMenu::aboutToShow, this,
          [this] { m_popups->Stopped().FillMenu(m_status->StoppedMenu(), m_tabs->GetActivePage()); });
  connect(m_loadQueue, &TLoadQueue::ToComeChanged, m_status, &TMainStatusBar::ShowPagesToCome);
  connect(m_status, &TMainStatusBar::StopPagesClicked, m_loadQueue, &TLoadQueue::Stop);
  on(TCommand::StopAll, [this] { m_loadQueue->Stop(); });
  on(TCommand::About, [this] { ShowAboutDialog(m_language, this); });
  on(TCommand::Exit, [this] { close(); });
}

void TfrmMain::tmrLoadCoolbarTimer() {
  TDelayedStart(*m_tabs, *m_groups, *m_loadQueue, m_store, m_product, m_argument).Run();
  m_startupModes->FollowPages();
  ShowActiveTab(m_tabs->GetActivePage());
  TellAboutStore();
  m_store.SetTroubleHandler(
      [this] { QMetaObject::invokeMethod(this, &TfrmMain::TellAboutStore, Qt::QueuedConnection); });
}

void TfrmMain::TellAboutStore() {
  if (!m_store.SetAsideFile().isEmpty()) {
    const QString name = QFileInfo(m_store.SetAsideFile()).fileName();
    ShowWarning(this, m_language, m_language.Text("MAIN", "StoreSetAside").arg(name));
  } else if (!m_store.IsWritable() || m_store.IsInMemory()) {
    ShowWarning(this, m_language, m_language.Text("MAIN", "StoreNotKept"));
  }
}

void TfrmMain::ShowActiveTab(TBrowserTab *tab) {
  if (tab == nullptr) return;
  m_toolbars->Address().ShowAddress(tab->AddressToSave());
  setWindowTitle(QStringLiteral("%1 — %2").arg(tab->ListCaption(), QApplication::applicationDisplayName()));
  m_status->ShowNote(QString());
  m_status->ShowStatusText(QString());
  m_status->ShowProgress(tab->Progress());
  ShowStoppedPopups();
  ShowIndicators(tab);
}

void TfrmMain::ShowStoppedPopups() {
  m_status->ShowStopped(m_popups->Stopped().CounterText(m_tabs->GetActivePage()));
}

void TfrmMain::ShowIndicators(TBrowserTab *tab) {
  m_status->ShowSecurity(tab->Secure(), tab->SecureLock());
  m_toolbars->Busy().SetBusy(tab->Busy());
  if (!tab->Busy()) m_status->ShowProgress(100);
  m_pageCommands->UpdateFor(tab);
}

void TfrmMain::OpenDownloads() {
  if (!m_downloadWindow) m_downloadWindow = std::make_unique<TDownloadWindow>(*m_downloads, m_language);
  m_downloadWindow->show();
  m_downloadWindow->raise();
  m_downloadWindow->activateWindow();
}

void TfrmMain::wmCopyDataDataReceived(const QString &text) {
  if (m_loadCoolbar.isActive()) {
    // The pages of the start come first: they take the tab that is there.
    connect(&m_loadCoolbar, &QTimer::timeout, this, [this, text] { wmCopyDataDataReceived(text); });
    return;
  }
  QWidget *dialog = QApplication::activeModalWidget();
  // The window first, out of the task bar if it must, then the dialog that stands before it.
  for (QWidget *widget : {static_cast<QWidget *>(this), dialog}) {
    if (widget == nullptr || widget->testAttribute(Qt::WA_DontShowOnScreen)) continue;
    widget->setWindowState(widget->windowState() & ~Qt::WindowMinimized);
    if (QWindow *handle = widget->windowHandle()) BringToFront(*handle);
  }
  // That a text is dropped while a dialog waits for its answer is meant.
  if (dialog != nullptr || text.isEmpty()) return;
  if (TPageGroups::IsHandedOverGroup(text)) {
    m_groups->HalvexGroupClick(text);
  } else {
    m_tabs->NewTab()->Navigate(text);
  }
}

void TfrmMain::CloseWithoutAsking() {
  m_closeConfirmed = true;
  // A question that is open is answered with no: it stands in the way of the end, and its answer does not matter any
  // more.
  constexpr int MostDialogs = 20;
  for (int i = 0; i < MostDialogs; ++i) {
    auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
    if (dialog == nullptr) break;
    dialog->reject();
  }
  QMetaObject::invokeMethod(
      this, [this] { close(); }, Qt::QueuedConnection);
}

bool TfrmMain::FormCloseQuery() {
  const bool downloading = m_downloads->ActiveCount() > 0;
  const bool ask = m_options.Get(Setting::ConfirmShutdown);
  if (!ask && !downloading) return true;
  bool dontAsk = false;
  const QString prompt = downloading ? m_language.Text("MAIN", "DownloadsRunning").arg(m_downloads->ActiveCount())
                                     : m_language.Text("CONFIRM", "ShutDownPrompt");
  // Running downloads are asked about even where the question is switched off, so then there is nothing to switch off.
  const bool canClose = ShowConfirm(this, font(), m_language.Text("CONFIRM", "ShutDown"), false, &dontAsk,
                                    ask ? m_language.Text("CONFIRM", "DontAsk") : QString(), m_language.Global("No"),
                                    m_language.Global("Yes"), m_language.Text("CONFIRM", "Proceed"), prompt);
  // Whichever button was pressed.
  if (dontAsk) m_options.Set(Setting::ConfirmShutdown, false);
  return canClose;
}

void TfrmMain::closeEvent(QCloseEvent *event) {
  if (!m_closeConfirmed && !FormCloseQuery() && !m_closeConfirmed) {
    event->ignore();
    return;
  }
  m_closeConfirmed = true;
  if (m_downloadWindow) m_downloadWindow->close();
  event->accept();
  Q_EMIT Closing();
}

void TfrmMain::FormDestroy() {
  m_store.SetTroubleHandler(nullptr);
  m_loadCoolbar.stop();
  m_lastSites->StopFollowing();
  m_tabs->disconnect(this);
  // The interval is written and then, by switching off, 0: every start begins without auto-refresh, which is meant.
  m_options.Set(Setting::AutoRefresh, m_autoRefresh->Interval());
  m_autoRefresh->ChangeAutoRefresh(0);
  m_store.InTransaction([this] {
    if (TStartupModes::IsLast(m_store)) {
      m_lastSites->Write(true);
    } else {
      TLastOpenSites::Clear(m_store);
    }
    WriteSettings();
    return true;
  });
  m_popups->Save();
  m_toolbars->Address().SaveTypedAddresses();
  m_downloads->CancelAll();
  m_downloadWindow.reset();
  delete m_search;
  delete m_startupModes;
  delete m_groups;
  m_environment->hooks.isPopupBlocked = nullptr;
  delete m_popups;
  delete m_loadQueue;
  m_closeAll.reset();
  m_tabs.reset();
  // Closed tabs wait for the event loop to be deleted; their pages must be gone before the engine's profile.
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void TfrmMain::WriteSettings() {
  const bool fullScreen = m_fullScreen->IsOn();
  m_settings.Write(m_store, m_environment->settings, fullScreen);
  m_search->WriteSettings();
  const bool maximized = !fullScreen && isMaximized();
  m_options.Set(Setting::Maximized, maximized);
  if (!maximized) WindowPlacement::Write(m_normalBounds, m_store);
  m_options.Set(Setting::UsePopupHalvex, m_popups->Enabled());
  m_options.Set(Setting::ViewHalvexBar, m_settings.viewHalvexBar);
  m_bars->Write(m_settings.viewLinksBar);
  m_options.Set(Setting::HGCloseFirst, m_groups->CloseFirst());
}

void TfrmMain::RememberBounds() {
  if (isVisible() && !(windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen | Qt::WindowMinimized))) {
    m_normalBounds = QRect(pos(), size());
  }
}

void TfrmMain::changeEvent(QEvent *event) {
  QMainWindow::changeEvent(event);
  if (event->type() == QEvent::WindowStateChange && !isFullScreen() && m_fullScreen != nullptr)
    m_fullScreen->LeaveAll();
}

void TfrmMain::resizeEvent(QResizeEvent *event) {
  QMainWindow::resizeEvent(event);
  RememberBounds();
}

void TfrmMain::moveEvent(QMoveEvent *event) {
  QMainWindow::moveEvent(event);
  RememberBounds();
}
