#pragma once

#include <optional>
#include <QObject>
#include <QPointer>

#include "config/named_address.h"

class QAction;
class TActions;
class QMenu;
class QWidget;
class TLanguage;
class TRegistryStore;

// The user's lists of named addresses.
enum class TSearchList {
  SearchBar = 0,      // pages for the search panel of the side bar
  SearchEngines = 1,  // pages of the search menu
  QuickSearch = 2,    // keywords of the address bar and their address formats
};

// The three lists in the store, the dialog that changes them, and the menus that are made of them.
class TSearchLists final : public QObject {
  Q_OBJECT

 public:
  // Where the store has none of the three lists, the quick searches of the shipped file searches.ini are put into it. A
  // list that was emptied stays empty. The menu of search engines is made: behind its own entries one for each engine,
  // anew whenever it opens and when the list has changed. `owner` is the window that the dialogs belong to.
  TSearchLists(const TLanguage &language, TRegistryStore &store, TActions &actions, QWidget *owner);

  // In the order of the store; std::nullopt when that could not be read.
  [[nodiscard]] std::optional<TNamedAddresses> Load(TSearchList list) const;
  // Replaces the list. Names end at their first "="; of two entries with one name (regardless of case) the later
  // address counts, at the earlier place. False when the store refused the list.
  bool Save(TSearchList list, const TNamedAddresses &entries);

  // The quick searches as they were loaded last; where that has not been possible yet it is tried again.
  [[nodiscard]] const TNamedAddresses &QuickSearches() const;
  // They are others in the store by now.
  void ReloadQuickSearches() { m_quickSearches.reset(); }
  // The first address of the menu that was made last, or whose list was changed last; a list without addresses does not
  // count.
  [[nodiscard]] const QString &DefaultSearchPage() const { return m_defaultSearchPage; }

  // Puts one entry for each page of the search panel behind the entries that `menu` has now, and keeps them so.
  void FillSearchBarMenu(QMenu *menu);

  // Adds a page for the search panel to its list, in the place of one with the same name, and makes its menus anew. An
  // empty name adds nothing. False when the store refused it.
  bool AddSearchPage(const TNamedAddress &page);

  // Shows the dialog of a list; true when the list was changed. A list that cannot be read cannot be changed, which is
  // told.
  bool Organize(TSearchList list);

 Q_SIGNALS:
  void EngineChosen(const QString &address);
  void SearchPageChosen(const QString &address);

 private:
  void AddExamples();
  void Follow(QMenu *menu, TSearchList list);
  void Rebuild(TSearchList list);
  void TakeDefaultSearchPage(TSearchList list);

  struct TMenu {
    QPointer<QMenu> menu;
    TSearchList list;
    qsizetype fixedEntries;
  };

  const TLanguage &m_language;
  TRegistryStore &m_store;
  QWidget *m_owner;
  QList<TMenu> m_menus;
  mutable std::optional<TNamedAddresses> m_quickSearches;
  QString m_defaultSearchPage;
};
