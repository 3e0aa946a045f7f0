#pragma once

#include <QObject>

class QMenu;
class TTabStrip;

// The list of the tabs (pmTabs): one item for each, made anew each time the menu opens; choosing one activates its
// page.
class TTabListMenu final : public QObject {
  Q_OBJECT

 public:
  // Both must outlive this object.
  TTabListMenu(QMenu *menu, TTabStrip &tabs);

 private:
  void Fill();

  QMenu *m_menu;
  TTabStrip &m_tabs;
};
