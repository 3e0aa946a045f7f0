#pragma once

#include <functional>
#include <QObject>

class TBrowserTab;
class TTabStrip;

// A navigation of a tab in the background that gives way to the page in front: it runs as soon as some page has loaded,
// the user turns to the tab, or a second has passed. A tab that is closed before takes it along, and one that is
// sent elsewhere meanwhile stays there. Deletes itself.
class TLaterNavigation final : public QObject {
  Q_OBJECT

 public:
  TLaterNavigation(TTabStrip &tabs, TBrowserTab *tab, std::function<void()> navigate);

 private:
  void Run();

  TBrowserTab *m_tab;
  std::function<void()> m_navigate;
};
