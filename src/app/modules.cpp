#include "app/modules.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QFileInfo>
#include <QMainWindow>

#include "annotations/internet_page.h"
#include "app/delayed_start.h"
#include "browser/engine/view_supply.h"
#include "browser/tabs/browser_tab.h"
#include "chrome/bands/menu_extender.h"
#include "chrome/save_group_dialog.h"
#include "chrome/tab_drag_out.h"
#include "chrome/toolbar/toolbar_panel.h"
#include "chrome/toolbar/zv_tool_bar.h"
#include "platform/program_folders.h"
#include "search/address_label.h"
#include "ui/shown_text.h"

namespace {

const QString HistoryFile = QStringLiteral("/history.sqlite");

TZVPageControl *MakePages(QMainWindow *window, TFrameUpdates &updates) {
  auto *pages = new TZVPageControl(window, &updates);
  pages->setObjectName(QStringLiteral("pcPage"));
  return pages;
}

QString ManualFile() {
  return ProgramFolders::Find(QStringLiteral("manual"), QStringLiteral("using.html"));
}

}  // namespace

TModules::TModules(QMainWindow *window, TSettings &liveSettings, TLanguage &language)
    : settings(liveSettings),
      product(TProductInfo::Load()),
      engine(language, settings.Store()),
      environment{engine, language, settings.Store(), settings, product},
      actions(window, language, settings),
      framePacer(new TFramePacer(window)),
      frameUpdates(new TFrameUpdates(window)),
      history(ProgramFolders::UserData() + HistoryFile),
      historyKeeper(history),
      bands(new TCoolBar(language, window)),
      bandStore(settings.Store()),
      menuBar(new TMainMenuBar(actions, language, bands)),
      address(new TAddressBar(language, settings, history)),
      toolbars(window, actions, address, *frameUpdates, language, settings),
      toolbarCustomizing(window, actions, language, settings, toolbars.ToolbarPanel().Bar()),
      status(new TMainStatusBar(language, *frameUpdates, window)),
      pages(MakePages(window, *frameUpdates)),
      tabs(window, pages, environment),
      loadQueue(tabs),
      closedTabs(actions, tabs, loadQueue),
      closeAll(window, tabs, closedTabs),
      tabMenu(actions, tabs, closeAll),
      tabListMenu(actions.Menu(TMenu::TabList), tabs),
      autoRefresh(actions, tabs, settings),
      sleepingTabs(tabs, settings, autoRefresh),
      stripSettings(actions, *pages, settings),
      tabCommands(actions, tabs, closeAll, settings),
      pageCommands(actions, tabs),
      desktopCommands(actions, tabs, desktop),
      downloads(engine.Profile(), language, settings.Store()),
      searchLists(language, settings.Store(), actions, window),
      search(window, actions, *address, tabs, searchLists, history),
      groups(window, actions, tabs, tabMenu, closeAll, loadQueue),
      openCommand(window, actions, *address, search, groups, language),
      favorites(window, actions, tabs, tabMenu, loadQueue),
      popups(window, tabs, tabMenu),
      zoneStore(settings.Store()),
      zones(&zoneStore, language),
      content(window, actions, tabs, settings.Store()),
      annotations(actions, tabs, *status->AnnotationButton()),
      userScripts(settings),
      policy(engine, popups, searchLists, zones, content, userScripts),
      securityMenu(window, actions, tabs, zoneStore, zones, language),
      fullScreen(window, actions, tabs, settings),
      edges(window, menuBar->Bar(), fullScreen),
      bars(actions, *bands, *menuBar, *status, *pages, fullScreen, edges, settings),
      customizeMenu(actions, fullScreen, settings),
      placement(window, fullScreen, settings),
      sideBar(window, pages, actions, tabs, fullScreen, language, settings),
      sideBarPages({window, sideBar, actions, tabs, pageCommands, *status, favorites, groups, searchLists, history,
                    *address, engine, settings, language}),
      activeTab(window, tabs, pageCommands, *address, *status, toolbars.Busy(), popups.Stopped(), zones, *frameUpdates),
      downloadsView(actions, *status, downloads, language),
      tray(window, actions, tabs, language, settings),
      languageMenu(*actions.Menu(TMenu::Languages), language, settings),
      options(window, actions, settings, desktopDefaults, engine, history, autoRefresh, content, userScripts, language,
              {.tray = true,
               .versionCheck = TVersionCheck::HasServer(product.updateServer),
               .scripts = true,
               .annotations = !product.annotationService.isEmpty()}),
      lastSites(tabs, settings.Store(), engine.ProcessNumber(), nullptr),
      startupModes(actions, groups, lastSites, settings),
      handedOver(window, tabs, groups),
      defaultBrowser(window, tabs, language, settings, desktopDefaults),
      versionCheck(window, tabs, settings, language, product.updateServer) {
  new TStripCorner(actions, *pages);
  new TTabDragOut(tabs);
  engine.Views().KeepReady(window);
  Join();
}

// What one module tells another that does not know it.
void TModules::Join() {
  QObject::connect(actions[TCommand::MakeDefaultBrowser], &QAction::triggered, &defaultBrowser,
                   &TDefaultBrowserQuestion::MakeDefault);
  customizeMenu.OfferOn(bands);
  QObject::connect(&options, &TOptionsCommand::PopupListWritten, &popups, &TPopupBlocker::Reload);
  QObject::connect(&options, &TOptionsCommand::SearchesWritten, &searchLists, &TSearchLists::ReloadQuickSearches);
  QObject::connect(&options, &TOptionsCommand::LinksBarWanted, favorites.Links(), &TLinksBar::MakeFolder);
  address->SetIcons(favorites.Icons().Pages());
  settings.Apply(Setting::HistoryDays, &historyKeeper,
                 [this] { historyKeeper.SetDays(settings.Get(Setting::HistoryDays)); });
  QObject::connect(&tabs, &TTabStrip::PageSetsOut, framePacer, &TFramePacer::GiveWay);
  bars.SetHasLinks([links = favorites.Links()] { return links->IsThere(); });
  QObject::connect(&bars, &TWindowBars::LinksWanted, favorites.Links(), &TLinksBar::MakeFolder);
  QObject::connect(favorites.Links(), &TLinksBar::ThereChanged, &bars, &TWindowBars::Apply);
  favorites.SetPopupButton([this] { return toolbars.ToolbarPanel().Bar().PlaceOf(QStringLiteral("tbFavorites")); });
  QObject::connect(&loadQueue, &TLoadQueue::ToComeChanged, frameUpdates, &TFrameUpdates::SetPagesToCome);
  QObject::connect(&tabCommands, &TTabCommands::AddressWanted, address, [this] {
    if (address->isVisible()) address->FocusAll();
  });
  QObject::connect(&tabCommands, &TTabCommands::TextToOpen, &search,
                   [this](const QString &text) { search.Open(text, true); });
  QObject::connect(&toolbars.AddressLabel(), &TAddressLabel::DoubleClicked, bands,
                   [this] { bands->ToggleSize(TBand::Address); });
  QObject::connect(&fullScreen, &TFullScreen::BarsChanged, &pageCommands,
                   [this] { pageCommands.UpdateFor(tabs.GetActivePage()); });
  QObject::connect(&loadQueue, &TLoadQueue::ToComeChanged, status, &TMainStatusBar::ShowPagesToCome);
  QObject::connect(status, &TMainStatusBar::StopPagesClicked, &loadQueue, &TLoadQueue::Stop);
  QObject::connect(actions[TCommand::StopAll], &QAction::triggered, &loadQueue, &TLoadQueue::Stop);
  QObject::connect(&desktopCommands, &TDesktopCommands::Note, status,
                   qOverload<const QString &>(&TMainStatusBar::ShowNote));
  QObject::connect(&userScripts, &TUserScripts::Changed, &engine, &TEngine::ScriptsChanged);
  QObject::connect(&engine, &TEngine::ScriptFailed, &userScripts, &TUserScripts::NoteFailure);
  // A site that the user has put into another zone is none of the service's business, and no private network is.
  annotations.SetMayAsk([this](const QString &address) {
    return zones.ZoneOfUrl(address) == int(TSecurityZone::Internet) && IsInternetPage(address);
  });
  QObject::connect(&annotations, &TAnnotationBand::Note, status, qOverload<const QString &>(&TMainStatusBar::ShowNote));
  groups.SetNewFileQuestion([this](QWidget *window, const TPageGroups::TBrowse &browse) {
    return TfrmSaveGroup::Ask(window, environment.language, browse);
  });
  QObject::connect(&groups, &TPageGroups::Done, status, [this](const QString &text, const std::function<void()> &undo) {
    status->ShowNote(text, environment.language.Text("HalvexGroups", "UndoNote"), undo);
  });
  QObject::connect(actions[TCommand::Manual], &QAction::triggered, &tabs,
                   [this] { tabs.NewTab()->Navigate(ManualFile()); });
  downloads.SetOpener([this](const QUrl &address) { return desktop.Open(address); });
  QObject::connect(status, &TMainStatusBar::SecurityClicked, actions[TCommand::Properties], &QAction::trigger);
  QObject::connect(status, &TMainStatusBar::ZoneDoubleClicked, actions[TCommand::SecuritySettings], &QAction::trigger);
  QObject::connect(address, &TAddressBar::ConnectionClicked, actions[TCommand::Properties], &QAction::trigger);
  QObject::connect(&menuBar->Extender(), &TMenuExtender::BorrowerMade, &favorites, [this](TMenu menu, QMenu *borrower) {
    if (menu == TMenu::Favorites) favorites.Serve(borrower);
    if (menu == TMenu::Groups) groups.Serve(borrower);
  });
  QObject::connect(&tray, &TTrayIcon::Note, status, qOverload<const QString &>(&TMainStatusBar::ShowNote));
  // What the window would show or say comes to it behind its icon.
  QObject::connect(&handedOver, &THandedOverText::WindowWanted, &tray, &TTrayIcon::BringBack);
  QObject::connect(&tabs, &TTabStrip::FrontWanted, &tray, &TTrayIcon::BringBack);
  QObject::connect(&engine, &TEngine::NotificationClicked, &tray, &TTrayIcon::Restore);
  QObject::connect(&engine, &TEngine::NotificationNotShown, &tray, &TTrayIcon::Say);
  QObject::connect(&versionCheck, &TVersionCheck::PageOpened, &tray, &TTrayIcon::BringBack);
  QObject::connect(&downloads, &TDownloadList::Finished, &tray, [this](const QString &path) {
    const QString text = environment.language.Text("MAIN", "TrayDownloaded");
    tray.Say(QApplication::applicationDisplayName(), text.arg(OneLine(QFileInfo(path).fileName())));
  });
  QObject::connect(address, &TAddressBar::DragWanted, &favorites, [this] { favorites.DragPage(address); });
}

void TModules::OpenFirstPages(const QString &argument) {
  TDelayedStart(tabs, groups, loadQueue, lastSites, settings, product, argument).Run();
  startupModes.FollowPages();
  activeTab.Show();
  handedOver.Begin();
  defaultBrowser.Begin();
  favorites.Begin();
  sideBar.Begin();
  if (engine.KeepsData()) downloads.Keep(engine.ProcessNumber(), &TProfileFolder::IsInUse);
}

bool TModules::PagesMayGo() {
  const QList<TBrowserTab *> all = tabs.Tabs();
  return tabs.Leaving().AllMayGo({all.begin(), all.end()});
}

void TModules::Save() {
  lastSites.StopFollowing();
  closedTabs.StopFollowing();
  autoRefresh.Save();
  Write();
  downloads.CancelAll();
}

void TModules::Write() {
  settings.Store().InTransaction([this] {
    startupModes.Save();
    actions.Save();
    search.Save();
    toolbars.Save();
    tabCommands.Save();
    fullScreen.Save();
    placement.Save();
    bandStore.Save(bands->Arrangement());
    bars.Save();
    sideBar.Save();
    sideBarPages.Save();
    tray.Save();
    return true;
  });
  popups.Save();
  address->SaveTypedAddresses();
}

QStringList TModules::Unwritten(int milliseconds) {
  const QDeadlineTimer deadline(milliseconds);
  QStringList unwritten;
  // The history's own thread goes on meanwhile.
  if (!settings.Store().Flush(milliseconds)) unwritten << environment.language.Text("MAIN", "UnwrittenSettings");
  if (!history.Flush(int(deadline.remainingTime()))) unwritten << environment.language.Text("MAIN", "UnwrittenHistory");
  return unwritten;
}
