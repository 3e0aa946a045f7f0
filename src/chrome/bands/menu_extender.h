#pragma once

#include <functional>
#include <map>
#include <QMenu>
#include <vector>

#include "actions/command_table.h"

class TActions;

// The menu behind the chevron of the menu bar (pmMenuExtender): the menus of the bar that do not fit. For as long as it
// is open it has borrowed the items of those menus, which get them back before anything else opens them.
//
// The tabs menu is left out, and meant to be: the keyboard still walks to it.
class TMenuExtender final : public QMenu {
  Q_OBJECT

 public:
  // `fits` says whether the item of a menu is wholly to be seen in the bar. `actions` must outlive this object.
  TMenuExtender(TActions &actions, std::function<bool(const QAction *)> fits, QWidget *parent);

  // Gives all items back to their menus; nothing happens when none is borrowed.
  void GiveBack();

 Q_SIGNALS:
  // This menu takes the place of another one's items from now on, and is to treat them as that one does.
  void BorrowerMade(TMenu menu, QMenu *borrower);

 private:
  void Fill();
  void Borrow(TMenu menu);

  TActions &m_actions;
  std::function<bool(const QAction *)> m_fits;
  std::vector<TMenu> m_entries;          // whose items are borrowed, from top to bottom
  std::map<TMenu, QMenu *> m_borrowers;  // made when they are needed first; the item that was chosen may need its own
};
