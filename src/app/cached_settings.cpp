#include "app/cached_settings.h"

#include <algorithm>

#include "browser/tabs/tab_environment.h"
#include "config/options.h"

void TCachedSettings::Read(TRegistryStore &store, TTabSettings &tabs) {
  const TZVOptions options(store);
  showGo = options.Get(Setting::ShowGo);
  disableAltShortcuts = options.Get(Setting::DisableALTShortcuts);
  tabs.openNewAtEnd = options.Get(Setting::OpenNewAtEnd);
  searchBar = options.Get(Setting::SearchBar);
  minToTray = options.Get(Setting::MinToTray);
  halvexBarWidth = options.Get(Setting::HalvexBarWidth);
  tabs.limitTitleLength = options.Get(Setting::LimitTitleLength);
  tabs.newAction = std::max(options.Get(Setting::NewAction), 0);
  hbAutoExpand = options.Get(Setting::HBAutoExpand);
  tabs.openNewInForeground = options.Get(Setting::OpenNewInForeground);
  viewLinksBar = options.Get(Setting::ViewLinksBar);
  viewHalvexBar = options.Get(Setting::ViewHalvexBar);
}

void TCachedSettings::Write(TRegistryStore &store, const TTabSettings &tabs, bool fullScreen) const {
  TZVOptions options(store);
  options.Set(Setting::DisableALTShortcuts, disableAltShortcuts);
  options.Set(Setting::OpenNewInForeground, tabs.openNewInForeground);
  options.Set(Setting::MinToTray, minToTray);
  options.Set(Setting::ShowGo, showGo);
  options.Set(Setting::HBAutoExpand, hbAutoExpand);
  options.Set(Setting::OpenNewAtEnd, tabs.openNewAtEnd);
  options.Set(Setting::HalvexBarWidth, halvexBarWidth);
  options.Set(Setting::LimitTitleLength, tabs.limitTitleLength);
  options.Set(Setting::SearchBar, searchBar);
  options.Set(Setting::FullScreen, fullScreen);
}
