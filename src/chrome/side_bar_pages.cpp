#include "chrome/side_bar_pages.h"

#include <QMenu>
#include <vector>

#include "actions/actions.h"
#include "browser/engine/engine.h"
#include "browser/tabs/browser_tab.h"
#include "browser/tabs/page_commands.h"
#include "browser/tabs/tab_strip.h"
#include "chrome/favorites/favorites_view.h"
#include "chrome/main_status_bar.h"
#include "chrome/side_bar/favorites_page.h"
#include "chrome/side_bar/groups_page.h"
#include "chrome/side_bar/history_days_menu.h"
#include "chrome/side_bar/history_page.h"
#include "chrome/side_bar_view.h"
#include "config/settings.h"
#include "search/address_bar.h"
#include "search/side_search.h"

namespace {

// The pages' numbers in the store.
enum TNumber { Favorites, History, Search, Groups };

}  // namespace

TSideBarPages::TSideBarPages(const TParts &parts)
    : m_parts(parts), m_historyDays(new THistoryDaysMenu(parts.language, parts.settings, parts.history, parts.window)) {
  // The items of a page's own menu of options.
  const auto offers = [&actions = parts.actions](std::initializer_list<TCommand> commands) {
    return [&actions, all = std::vector(commands)](QMenu &menu) {
      for (const TCommand command : all) menu.addAction(actions[command]);
    };
  };
  const TLanguage &language = parts.language;
  parts.bar.AddPage(
      {.number = Favorites,
       .command = parts.actions[TCommand::SideBarFavorites],
       .name = language.Text("SIDE_BAR", "Favorites"),
       .make = [this] { return MakeFavorites(); },
       .fillOptions = offers({TCommand::FavoritesInNewTab, TCommand::ShowPageIcons, TCommand::SideBarAutoExpand})});
  parts.bar.AddPage({.number = History,
                     .command = parts.actions[TCommand::SideBarHistory],
                     .name = language.Text("SIDE_BAR", "History"),
                     .make = [this] { return MakeHistory(); },
                     .fillOptions =
                         [this, fill = offers({TCommand::HistoryInNewTab, TCommand::SideBarAutoExpand})](QMenu &menu) {
                           fill(menu);
                           menu.addMenu(m_historyDays);
                         }});
  const bool canSearch = TSideSearch::IsAvailable(parts.settings.Store());
  parts.actions[TCommand::SideBarSearch]->setVisible(canSearch);
  if (canSearch) {
    parts.bar.AddPage({.number = Search,
                       .command = parts.actions[TCommand::SideBarSearch],
                       .name = language.Text("SIDE_BAR", "Search"),
                       .make = [this] { return MakeSearch(); },
                       .fillOptions = offers({TCommand::SearchInNewTab})});
  }
  parts.bar.AddPage(
      {.number = Groups,
       .command = parts.actions[TCommand::SideBarGroups],
       .name = language.Text("SIDE_BAR", "Groups"),
       .make = [this] { return MakeGroups(); },
       .fillOptions = offers({TCommand::CloseTabsFirst, TCommand::FavoritesInNewTab, TCommand::SideBarAutoExpand})});
  parts.pageCommands.SetFocusedBrowser([this] { return m_search != nullptr ? m_search->FocusedBrowser() : nullptr; });
}

TSideBarPages::~TSideBarPages() {
  m_parts.pageCommands.SetFocusedBrowser({});
}

void TSideBarPages::Save() {
  if (m_search != nullptr) m_search->Save();
}

TFavoritesPage *TSideBarPages::MakeFavorites() {
  TFavoritesView &favorites = m_parts.favorites;
  auto *page = new TFavoritesPage(m_parts.language, m_parts.settings, favorites.Launcher(), favorites.Icons());
  connect(page, &TFavoritesPage::Changed, &favorites, &TFavoritesView::Refresh);
  connect(&favorites, &TFavoritesView::Changed, page, &TFavoritesPage::Refresh);
  connect(page, &TFavoritesPage::OrganizeWanted, &favorites, &TFavoritesView::Organize);
  return page;
}

TSideSearch *TSideBarPages::MakeSearch() {
  m_search = new TSideSearch(m_parts.window, m_parts.tabs, m_parts.searchLists);
  connect(m_search, &TSideSearch::StatusTextChanged, &m_parts.status, &TMainStatusBar::ShowStatusText);
  connect(m_search, &TSideSearch::ShowWanted, m_parts.actions[TCommand::SideBarSearch], &QAction::trigger);
  return m_search;
}

TGroupsPage *TSideBarPages::MakeGroups() {
  return new TGroupsPage(m_parts.language, m_parts.groups, m_parts.tabs);
}

THistoryPage *TSideBarPages::MakeHistory() {
  const TFavoriteIcons &icons = m_parts.favorites.Icons();
  auto *page = new THistoryPage(m_parts.language, m_parts.settings, m_parts.history,
                                [&icons](const QString &address) { return icons.KnownOf(address); });
  connect(page, &THistoryPage::OpenInCurrentTab, this, [this](const QString &address) {
    TBrowserTab *tab = m_parts.tabs.GetActivePage();
    if (tab == nullptr) tab = m_parts.tabs.NewTab();
    tab->Navigate(TAddress::OfEngine(address));
  });
  connect(page, &THistoryPage::OpenInNewTab, this,
          [this](const QString &address) { m_parts.tabs.NewTab()->Navigate(TAddress::OfEngine(address)); });
  connect(page, &THistoryPage::OpenInBackgroundTab, this,
          [this](const QString &address) { m_parts.tabs.NewBackgroundTab()->Navigate(TAddress::OfEngine(address)); });
  connect(page, &THistoryPage::ForgetAlong, this, &TSideBarPages::ForgetAlong);
  connect(page, &THistoryPage::Forgotten, this, [this](const QStringList &addresses) {
    m_parts.favorites.ForgetIcons(addresses);
    m_parts.engine.ForgetVisited(addresses);
  });
  connect(&icons.Pages(), &TPageIcons::Changed, page, &THistoryPage::ForgetIcons);
  connect(&icons, &TFavoriteIcons::Came, page, &THistoryPage::ForgetIcons);
  return page;
}

void TSideBarPages::ForgetAlong(const TForgetting &what) {
  if (what.typedAddresses) m_parts.address.ForgetTypedAddresses();
  if (what.cookies) m_parts.engine.ForgetCookies();
  if (what.cache) {
    m_parts.engine.ForgetCache();
    m_parts.favorites.ForgetIcons();
  }
  if (what.permissions) m_parts.engine.ForgetPermissions();
}
