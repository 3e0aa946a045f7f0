#pragma once

#include <QObject>
#include <QPointer>

#include "actions/actions.h"

class TBrowserTab;
class TCloseAllTabs;
class TTabStrip;

// The pop-up menu of a tab (pmTab), which also stands in the menu bar as the menu of the tab in front. Its commands
// work on the tab that it was opened on; their keys, with the menu closed, on the active one.
class TTabMenu final : public QObject {
  Q_OBJECT

 public:
  // All must outlive this object.
  TTabMenu(TActions &actions, TTabStrip &tabs, TCloseAllTabs &closeAll);

  // For whoever owns a command of this menu: `handler` is called with the tab that it was chosen for.
  template <typename THandler>
  void On(TCommand command, QObject *context, THandler handler) {
    connect(m_actions[command], &QAction::triggered, context, [this, handler] {
      if (TBrowserTab *tab = TabUnderPopup()) handler(tab);
    });
  }

  void Open(TBrowserTab *tab, const QPoint &globalPosition);
  [[nodiscard]] QMenu *Menu() const { return m_actions.Menu(TMenu::Tab); }
  // The tab that the menu was opened on, or none when it has gone meanwhile; rejected pop-up tabs are closed first.
  [[nodiscard]] TBrowserTab *TabUnderPopup();

 private:
  void ConnectItems();
  void Prepare(TBrowserTab *tab);
  void PrepareForActive();

  TActions &m_actions;
  TTabStrip &m_tabs;
  TCloseAllTabs &m_closeAll;
  QPointer<TBrowserTab> m_target;  // the tab that the menu was opened on; counts only while m_opened
  bool m_opened = false;
};
