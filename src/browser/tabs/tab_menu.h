#pragma once

#include <functional>
#include <QObject>
#include <QPointer>

class QAction;
class QMenu;
class TBrowserTab;
class TCloseAllTabs;
class TTabStrip;

// The pop-up menu of a tab (pmTab). Its commands work on the tab that it was opened on; their short-cuts, with the menu
// closed, on the active one.
class TTabMenu final : public QObject {
  Q_OBJECT

 public:
  TTabMenu(QWidget *window, TTabStrip &tabs, TCloseAllTabs &closeAll);

  void Open(TBrowserTab *tab, const QPoint &globalPosition);
  // An item of a floor above, before the close items. `key` is a Qt key that works with the menu closed too, 0 for
  // none.
  void AddItem(const char *name, const QString &text, const char *icon, int key,
               const std::function<void(TBrowserTab *)> &handler);
  // Sets the items from the active tab, for a menu that shows them elsewhere.
  void PrepareForActive();
  [[nodiscard]] QMenu *Menu() const { return m_menu; }
  // The tab that the menu was opened on, or none when it has gone meanwhile; rejected pop-up tabs are closed first.
  [[nodiscard]] TBrowserTab *TabUnderPopup();

 private:
  using THandler = void (TTabMenu::*)(TBrowserTab *);
  struct TItem;
  static const TItem Items[];

  [[nodiscard]] QAction *MakeItem(const char *name, const QString &text, const char *icon, int key,
                                  const std::function<void(TBrowserTab *)> &handler);
  void Prepare(TBrowserTab *tab);
  void ToggleLock(TBrowserTab *tab);
  void ToggleStickyName(TBrowserTab *tab);
  void ToggleSpared(TBrowserTab *tab);
  void ReturnHome(TBrowserTab *tab);
  void Stop(TBrowserTab *tab);
  void Refresh(TBrowserTab *tab);
  void CloseAllDefault(TBrowserTab *tab);
  void CloseAllKeepCurrent(TBrowserTab *tab);
  void CloseAllShowList(TBrowserTab *tab);
  void CloseTab(TBrowserTab *tab);
  [[nodiscard]] QAction *Item(const char *name) const;

  QWidget *m_window;
  TTabStrip &m_tabs;
  TCloseAllTabs &m_closeAll;
  QMenu *m_menu;
  QAction *m_addedEnd = nullptr;   // the separator behind the items of the floors above
  QPointer<TBrowserTab> m_target;  // the tab that the menu was opened on; counts only while m_opened
  bool m_opened = false;
};

// Fills `menu` with one item per tab each time it opens (pmTabs); choosing one activates its page.
void MakeTabListMenu(QMenu *menu, TTabStrip &tabs);
