#include "app/modules.h"

#include <QDeadlineTimer>
#include <QMainWindow>

#include "app/delayed_start.h"
#include "browser/engine/view_supply.h"
#include "browser/tabs/browser_tab.h"
#include "chrome/bands/menu_extender.h"
#include "chrome/toolbar/toolbar_panel.h"
#include "chrome/toolbar/zv_tool_bar.h"
#include "platform/program_folders.h"
#include "search/address_label.h"

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
      policy(engine, popups, searchLists),
      fullScreen(window, actions, tabs, settings),
      edges(window, menuBar->Bar(), fullScreen),
      bars(actions, *bands, *menuBar, *status, *pages, fullScreen, edges, settings),
      customizeMenu(actions, fullScreen, settings),
      placement(window, fullScreen, settings),
      activeTab(window, tabs, pageCommands, *address, *status, toolbars.Busy(), popups.Stopped(), *frameUpdates),
      downloadsView(actions, *status, downloads, language),
      languageMenu(*actions.Menu(TMenu::Languages), language, settings),
      lastSites(tabs, settings.Store(), engine.ProcessNumber(), nullptr),
      startupModes(actions, groups, lastSites, settings),
      handedOver(window, tabs, groups),
      defaultBrowser(window, tabs, language, settings, desktopDefaults) {
  new TStripCorner(actions, *pages);
  engine.Views().KeepReady(window);
  Join();
}

// What one module tells another that does not know it.
void TModules::Join() {
  QObject::connect(actions[TCommand::MakeDefaultBrowser], &QAction::triggered, &defaultBrowser,
                   &TDefaultBrowserQuestion::MakeDefault);
  customizeMenu.OfferOn(bands);
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
  QObject::connect(&desktopCommands, &TDesktopCommands::Note, status, &TMainStatusBar::ShowNote);
  QObject::connect(actions[TCommand::Manual], &QAction::triggered, &tabs,
                   [this] { tabs.NewTab()->Navigate(ManualFile()); });
  downloads.SetOpener([this](const QUrl &address) { return desktop.Open(address); });
  QObject::connect(status, &TMainStatusBar::SecurityClicked, actions[TCommand::Properties], &QAction::trigger);
  QObject::connect(address, &TAddressBar::ConnectionClicked, actions[TCommand::Properties], &QAction::trigger);
  QObject::connect(&menuBar->Extender(), &TMenuExtender::BorrowerMade, &favorites, [this](TMenu menu, QMenu *borrower) {
    if (menu == TMenu::Favorites) favorites.Serve(borrower);
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
