#pragma once

#include <QObject>

class TBrowserTab;
class TTabStrip;

// The home page of a tab in the background, which gives way to the page in front: it is opened as soon as some page has
// loaded, the user turns to the tab, or a second has passed. A tab that is closed before takes it along, and one that
// is sent elsewhere meanwhile stays there. Deletes itself.
class TLaterHomePage final : public QObject {
  Q_OBJECT

 public:
  TLaterHomePage(TTabStrip &tabs, TBrowserTab *tab);

 private:
  void Open();

  TBrowserTab *m_tab;
  bool m_opened = false;
};
