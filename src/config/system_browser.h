#pragma once

class TRegistryStore;

// The system's own browser, as the registry tells of it.
namespace SystemBrowser {

// One of major version 4 has neither the menu of search engines nor the search panel.
[[nodiscard]] bool HasSearch(const TRegistryStore &store);

}  // namespace SystemBrowser
