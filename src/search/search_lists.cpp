#include "search/search_lists.h"

#include <algorithm>
#include <QMenu>

#include "actions/actions.h"
#include "config/language.h"
#include "config/options.h"
#include "config/registry_paths.h"
#include "platform/program_folders.h"
#include "search/search_engine_dialog.h"
#include "store/ini_file.h"
#include "ui/message_box.h"
#include "ui/shown_text.h"

namespace {

constexpr TRegistryHive Hive = TRegistryHive::CurrentUser;
constexpr qsizetype LongestHint = 400;  // characters, in the status bar

struct TList {
  TSearchList list;
  const char *key;
  std::optional<TNamedAddresses> (TZVOptions::*read)() const;
  bool (TZVOptions::*write)(const TNamedAddresses &);
};

constexpr TList Lists[] = {
    {TSearchList::SearchBar, RegistryKey::SearchBar, &TZVOptions::SearchBarEntries, &TZVOptions::SetSearchBarEntries},
    {TSearchList::SearchEngines, RegistryKey::SearchEngines, &TZVOptions::SearchEngines, &TZVOptions::SetSearchEngines},
    {TSearchList::QuickSearch, RegistryKey::QuickSearch, &TZVOptions::QuickSearchEntries,
     &TZVOptions::SetQuickSearchEntries},
};

const TList &ListOf(TSearchList list) {
  return *std::ranges::find(Lists, list, &TList::list);
}

}  // namespace

TSearchLists::TSearchLists(const TLanguage &language, TRegistryStore &store, TActions &actions, QWidget *owner)
    : m_language(language), m_store(store), m_owner(owner) {
  // A store that cannot be read may hold lists.
  const bool hasNone =
      std::ranges::all_of(Lists, [&](const TList &list) { return m_store.KnownKeyExists(Hive, list.key) == false; });
  if (hasNone) AddExamples();
  m_quickSearches = Load(TSearchList::QuickSearch);
  connect(actions[TCommand::OrganizeSearchEngines], &QAction::triggered, this,
          [this] { Organize(TSearchList::SearchEngines); });
  connect(actions[TCommand::OrganizeQuickSearch], &QAction::triggered, this,
          [this] { Organize(TSearchList::QuickSearch); });
  Follow(actions.Menu(::TMenu::SearchEngines), TSearchList::SearchEngines);
}

const TNamedAddresses &TSearchLists::QuickSearches() const {
  static const TNamedAddresses none;
  if (!m_quickSearches) m_quickSearches = Load(TSearchList::QuickSearch);
  return m_quickSearches ? *m_quickSearches : none;
}

void TSearchLists::AddExamples() {
  TIniFile file;
  const QString path = ProgramFolders::Find({}, QStringLiteral("searches.ini"));
  if (path.isEmpty() || !file.Load(path)) return;
  TNamedAddresses entries;
  for (const auto &[name, address] : file.Pairs(QStringLiteral("QuickSearch"))) entries.append({name, address});
  if (!entries.isEmpty()) Save(TSearchList::QuickSearch, entries);
}

std::optional<TNamedAddresses> TSearchLists::Load(TSearchList list) const {
  return (TZVOptions(m_store).*ListOf(list).read)();
}

bool TSearchLists::Save(TSearchList list, const TNamedAddresses &entries) {
  return m_store.InTransaction([&] {
    TZVOptions options(m_store);
    // An empty list is a key without values, not a missing key: what the user emptied is not filled again.
    return (options.*ListOf(list).write)(entries) && m_store.CreateKey(Hive, ListOf(list).key);
  });
}

bool TSearchLists::AddSearchPage(const TNamedAddress &page) {
  const bool isKept = page.name.isEmpty() || m_store.Write(Hive, RegistryKey::SearchBar, page.name, page.address);
  Rebuild(TSearchList::SearchBar);
  TakeDefaultSearchPage(TSearchList::SearchBar);
  return isKept;
}

void TSearchLists::FillSearchBarMenu(QMenu *menu) {
  Follow(menu, TSearchList::SearchBar);
}

void TSearchLists::Follow(QMenu *menu, TSearchList list) {
  m_menus.append({menu, list, menu->actions().size()});
  menu->setToolTipsVisible(true);
  connect(menu, &QMenu::aboutToShow, this, [this, list] { Rebuild(list); });
  Rebuild(list);
  TakeDefaultSearchPage(list);
}

void TSearchLists::TakeDefaultSearchPage(TSearchList list) {
  const auto entries = Load(list);
  if (entries && !entries->isEmpty()) m_defaultSearchPage = entries->first().address;
}

void TSearchLists::Rebuild(TSearchList list) {
  const auto entries = Load(list);
  if (!entries) return;  // What the menus show is the best that is known.
  for (const TMenu &menu : std::as_const(m_menus)) {
    if (menu.list != list || menu.menu.isNull()) continue;
    const QList<QAction *> old = menu.menu->actions().mid(menu.fixedEntries);
    for (QAction *action : old) {
      menu.menu->removeAction(action);
      action->deleteLater();  // It may be the one that is just being chosen.
    }
    for (const TNamedAddress &entry : *entries) {
      auto *action = new QAction(MenuText(entry.name), menu.menu);
      action->setToolTip(PlainTip(entry.address));
      action->setStatusTip(entry.address.left(LongestHint));
      connect(action, &QAction::triggered, this, [this, list, address = entry.address] {
        Q_EMIT(list == TSearchList::SearchEngines ? EngineChosen(address) : SearchPageChosen(address));
      });
      menu.menu->addAction(action);
    }
  }
}

bool TSearchLists::Organize(TSearchList list) {
  const auto entries = Load(list);
  if (!entries) {
    ShowWarning(m_owner, m_language, m_language.Text("MAIN", "StoreNotRead"));
    return false;
  }
  const QPointer<TSearchLists> self(this);
  const QPointer<TfrmSearchEngine> dialog(new TfrmSearchEngine(m_language, *this, list, *entries, m_owner));
  const bool accepted = dialog->exec() == QDialog::Accepted;
  delete dialog;
  if (!self) return false;  // The owner has gone and has taken the dialog along.
  if (list == TSearchList::QuickSearch) {
    m_quickSearches = Load(list);
  } else if (accepted) {
    Rebuild(list);
    TakeDefaultSearchPage(list);
  }
  return accepted;
}
