#pragma once

#include <memory>
#include <QDialog>

#include "search/search_lists.h"

class QTreeWidgetItem;

namespace Ui {
class TfrmSearchEngine;
}

// Changes one of the three lists of named addresses: entries are inserted, changed, removed and moved. OK saves the
// list; when the store refuses it the user is told, and the dialog stays with all that was changed in it.
class TfrmSearchEngine final : public QDialog {
  Q_OBJECT

 public:
  TfrmSearchEngine(const TLanguage &language, TSearchLists &lists, TSearchList list, QWidget *parent = nullptr);
  ~TfrmSearchEngine() override;

  [[nodiscard]] QStringList Lines() const;

 protected:
  void keyPressEvent(QKeyEvent *event) override;

 private:
  void cmdInsertClick();
  void cmdUpdateClick();
  void cmdDeleteClick();
  // Takes the edit area's entry. What cannot be one (no title, no location, a keyword of several words) is refused
  // without a word, and the area stays open.
  void cmdUrlInsertClick();
  void cmdUrlCancelClick();
  void cmdOkClick();
  void Move(int step);
  void OpenEditArea(const QString &title, const QString &location, const QString &acceptText);
  void UpdateButtons();
  [[nodiscard]] QTreeWidgetItem *Selected() const;

  const TLanguage &m_language;
  TSearchLists &m_lists;
  const TSearchList m_list;
  std::unique_ptr<Ui::TfrmSearchEngine> m_ui;
  int m_edited = -1;  // the position of the entry that is being changed
  bool m_editing = false;
  int m_editHeight = 0;  // by which the dialog has grown for the edit area
};
