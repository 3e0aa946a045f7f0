#pragma once

#include "search/search_lists.h"
#include "ui/list_editor.h"

// Changes one of the three lists of named addresses. OK saves the list; when the store refuses it the user is told, and
// the dialog stays with all that was changed in it.
class TfrmSearchEngine final : public TListEditor {
  Q_OBJECT

 public:
  // `entries` are those of the list.
  TfrmSearchEngine(const TLanguage &language, TSearchLists &lists, TSearchList list, const TNamedAddresses &entries,
                   QWidget *owner = nullptr);

 private:
  // An entry needs a title and a location, and a keyword is one word.
  [[nodiscard]] bool Accepts(QStringList &entry) const override;
  [[nodiscard]] bool Save() override;

  TSearchLists &m_lists;
  const TSearchList m_list;
};
