#pragma once

#include <QString>

class TBrowserTab;
class TLastOpenSites;
class TLoadQueue;
class TPageGroups;
class TTabStrip;
class TSettings;
struct TProductInfo;

// Opens the first pages, once, a moment after the window is up: the one-time start page, the pages of the start-up
// mode, the address from the command line.
class TDelayedStart final {
 public:
  // The argument of the command line comes through the setting CommandLine; `argument`, when it is not empty, is this
  // process's own and comes before what stands there.
  TDelayedStart(TTabStrip &tabs, TPageGroups &groups, TLoadQueue &queue, TLastOpenSites &lastSites, TSettings &settings,
                const TProductInfo &product, const QString &argument)
      : m_tabs(tabs),
        m_groups(groups),
        m_queue(queue),
        m_lastSites(lastSites),
        m_settings(settings),
        m_product(product),
        m_argument(argument) {}

  void Run();

 private:
  TBrowserTab *TakeTab();
  void OpenStartupPage();
  void OpenMode();
  void OpenHome();
  void OpenLastSites();
  void OpenStartupGroup();
  void OpenCommandLine();
  [[nodiscard]] bool HasArgument() const;
  void OpenMakersPage();

  TTabStrip &m_tabs;
  TPageGroups &m_groups;
  TLoadQueue &m_queue;
  TLastOpenSites &m_lastSites;
  TSettings &m_settings;
  const TProductInfo &m_product;
  QString m_argument;
  TBrowserTab *m_tab = nullptr;  // the tab taken last; none while the first, blank one is still free
  bool m_opened = false;
};
