#pragma once

#include <memory>
#include <QPointer>
#include <QWidget>

#include "search/search_routing.h"

class QToolButton;
class TAddress;
class THalvexBrowser;
class TRegistryStore;
class TSearchLists;
class TTabStrip;
class TWindowBudget;
struct TNavigation;
struct TTabEnvironment;

// The side bar's search page: a small browser for a page to search with, whose results open in the tabs, and the
// commands that belong to it. Nothing of the engine is made before it shows for the first time.
class TSideSearch final : public QWidget {
  Q_OBJECT

 public:
  // Dialogs belong to `window`. The search browser goes with `tabs`, before the engine does; this may live on.
  TSideSearch(QWidget *window, TTabStrip &tabs, TSearchLists &lists, QWidget *parent = nullptr);
  ~TSideSearch() override;

  // False under a system browser that has no search panel: then there is to be no such page.
  [[nodiscard]] static bool IsAvailable(const TRegistryStore &store);

  // The search browser; nullptr before the page shows for the first time.
  [[nodiscard]] THalvexBrowser *Browser() const;
  // The same while the user has the keyboard in it, else nullptr: what commands of the clipboard are to go to.
  [[nodiscard]] THalvexBrowser *FocusedBrowser() const;
  // Leaves the settings that it obeys in the store.
  void Save();

 Q_SIGNALS:
  void StatusTextChanged(const QString &text);  // what the pointer is on
  void ShowWanted();                            // the page has a question that nothing else can be done beside

 protected:
  void showEvent(QShowEvent *event) override;

 private:
  enum class TPlaceholder { None, Loading };

  void MakeButtons();
  QToolButton *AddButton(const char *name, const char *icon, const QString &hint);
  void MakeMenu();
  void MakeBrowser();
  void tbChooseSearchBarClick();
  void pmSearchFavsAddClick();
  void pmSearchHomeSetClick();
  void SearchBrowserBeforeNavigate2(TNavigation *navigation);
  [[nodiscard]] bool TakesOwnPage(TNavigation *navigation);
  // The page to begin with: the user's choice, else the maker's, else the first of the list, else our own; with
  // `makersFirst` the maker's before the user's.
  [[nodiscard]] QString PageAddress(bool makersFirst) const;
  // At first, and when another page was chosen elsewhere.
  void OpenFirst();
  void Open(const TAddress &address, TPlaceholder placeholder = TPlaceholder::None);
  void OpenInMain(const TAddress &address, bool byUser);
  [[nodiscard]] bool MayOpen(const TAddress &address, bool byUser) const;
  void SetUnderWay(bool underWay);

  QWidget *m_window;
  TTabStrip &m_tabs;
  TTabEnvironment &m_environment;
  TSearchLists &m_lists;
  QPointer<THalvexBrowser> m_browser;
  TSearchRouting m_routing;
  std::shared_ptr<TWindowBudget> m_windows;  // that its pages may open, results that no click asked for included
  bool m_wasShown = false;
  bool m_setsHome = false;    // the page that is there is being made the one to begin with
  bool m_isUnderWay = false;  // a navigation was let through and has not ended yet
  bool m_hasArrived = true;   // its page has begun to arrive

  QToolButton *m_choose = nullptr;   // tbSearchBar
  QToolButton *m_pages = nullptr;    // tbSearchFavs, with the menu pmSearchFavs
  QToolButton *m_back = nullptr;     // tbSearchBack
  QToolButton *m_forward = nullptr;  // tbSearchForward
  QToolButton *m_stop = nullptr;     // tbSearchStop
  QToolButton *m_refresh = nullptr;  // tbSearchRefresh
};
