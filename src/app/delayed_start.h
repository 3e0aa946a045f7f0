#pragma once

#include <QString>

class TBrowserTab;
class TTabStrip;
class TRegistryStore;
struct TProductInfo;

// Opens the first pages, once, a moment after the window is up: the one-time start page, the pages of the start-up mode,
// the address from the command line.
class TDelayedStart final {
 public:
  TDelayedStart(TTabStrip &tabs, TRegistryStore &store, const TProductInfo &product)
      : m_tabs(tabs), m_store(store), m_product(product) {}

  void Run();

 private:
  TBrowserTab *TakeTab();
  void OpenStartupPage();
  void OpenMode();
  void OpenHome();
  void OpenLastSites();
  void OpenCommandLine();
  void OpenMakersPage();

  TTabStrip &m_tabs;
  TRegistryStore &m_store;
  const TProductInfo &m_product;
  TBrowserTab *m_tab = nullptr;   // the tab taken last; none while the first, blank one is still free
  bool m_opened = false;
};
