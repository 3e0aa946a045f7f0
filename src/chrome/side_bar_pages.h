#pragma once

#include <QObject>
#include <QPointer>

class TActions;
class TAddressBar;
class TEngine;
class TFavoritesPage;
class TFavoritesView;
class TGroupsPage;
class THistoryDaysMenu;
class THistoryPage;
class THistoryStore;
class TLanguage;
class TMainStatusBar;
class TPageCommands;
class TPageGroups;
class TSearchLists;
class TSettings;
class TSideBarView;
class TSideSearch;
class TTabStrip;
struct TForgetting;

// What the pages of the side bar are made of, and where what is chosen in them opens.
class TSideBarPages final : public QObject {
  Q_OBJECT

 public:
  // What the pages work on. All must outlive this object.
  struct TParts {
    QWidget *window;
    TSideBarView &bar;
    TActions &actions;
    TTabStrip &tabs;
    TPageCommands &pageCommands;
    TMainStatusBar &status;
    TFavoritesView &favorites;
    TPageGroups &groups;
    TSearchLists &searchLists;
    THistoryStore &history;
    TAddressBar &address;
    TEngine &engine;
    TSettings &settings;
    const TLanguage &language;
  };

  explicit TSideBarPages(const TParts &parts);

  ~TSideBarPages() override;

  // Leaves the settings that the pages obey in the store.
  void Save();

 private:
  [[nodiscard]] TFavoritesPage *MakeFavorites();
  [[nodiscard]] THistoryPage *MakeHistory();
  [[nodiscard]] TSideSearch *MakeSearch();
  [[nodiscard]] TGroupsPage *MakeGroups();
  // What goes with the visited pages that the user wants to be forgotten.
  void ForgetAlong(const TForgetting &what);

  TParts m_parts;
  THistoryDaysMenu *m_historyDays;
  QPointer<TSideSearch> m_search;  // from its first showing on
};
