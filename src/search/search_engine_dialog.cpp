#include "search/search_engine_dialog.h"

#include "config/language.h"
#include "ui/message_box.h"
#include "ui/table_rows.h"

namespace {

enum TColumn { TitleColumn, LocationColumn };

constexpr TListColumn Columns[] = {
    {{"SEARCH_ENGINE", "TitleColumn"}, {"SEARCH_ENGINE", "EditTitle"}, "txtTitle"},
    {{"SEARCH_ENGINE", "LocationColumn"}, {"SEARCH_ENGINE", "EditLocation"}, "txtUrl"},
};
constexpr TListForm Form{.list = "lstEngines", .columns = Columns};

QString CaptionOf(TSearchList list, const TLanguage &language) {
  switch (list) {
    case TSearchList::SearchBar:
      return language.Text("SEARCH_ENGINE", "OrganizeSearchBar");
    case TSearchList::SearchEngines:
      return language.Text("SEARCH_ENGINE", "OrganizeSearchEngines");
    case TSearchList::QuickSearch:
      break;
  }
  return language.Text("QUICK_SEARCH", "OrganizeQuickSearch");
}

}  // namespace

TfrmSearchEngine::TfrmSearchEngine(const TLanguage &language, TSearchLists &lists, TSearchList list,
                                   const TNamedAddresses &entries, QWidget *owner)
    : TListEditor(language, Form, owner), m_lists(lists), m_list(list) {
  setObjectName(QStringLiteral("TfrmSearchEngine"));
  QStringList cells;
  for (const TNamedAddress &entry : entries) cells << entry.name << entry.address;
  const bool isQuickSearch = list == TSearchList::QuickSearch;
  Begin(CaptionOf(list, language), cells, isQuickSearch ? language.Text("QUICK_SEARCH", "FormatNote") : QString());
}

bool TfrmSearchEngine::Accepts(QStringList &entry) const {
  for (QString &text : entry) text = text.trimmed();
  if (m_list == TSearchList::QuickSearch && entry.at(TitleColumn).contains(u' ')) return false;
  return !entry.at(TitleColumn).isEmpty() && !entry.at(LocationColumn).isEmpty();
}

bool TfrmSearchEngine::Save() {
  TNamedAddresses entries;
  for (int row = 0; row < Rows().Count(); ++row) {
    const QStringList entry = Rows().At(row);
    entries.append({entry.at(TitleColumn), entry.at(LocationColumn)});
  }
  if (m_lists.Save(m_list, entries)) return true;
  ShowWarning(this, Language(), Language().Text("MAIN", "StoreNotKept"));
  return false;
}
