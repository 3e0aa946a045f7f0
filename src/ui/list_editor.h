#pragma once

#include <memory>
#include <QDialog>
#include <QPersistentModelIndex>
#include <QStringList>
#include <span>

#include "config/language.h"

class TTableRows;

namespace Ui {
class TListEditor;
}

// A column of the list, which is also a box of the edit area.
struct TListColumn {
  static constexpr QLatin1String Ticked{"X"};  // in the list, for a box that is ticked

  TTextKey header;
  TTextKey label;
  const char *box;      // the box's object name: three letters for its kind, then the name
  bool isFlag = false;  // a check box
};

// What one list editor has of its own.
struct TListForm {
  const char *list;  // the list's object name
  std::span<const TListColumn> columns;
  TTextKey editTitle{};  // above the edit area; none where it has no key
  int updateBox = 0;     // the box that gets the keyboard when an entry is changed
  // What rests while an entry is edited: the buttons beside the list, or, while one is changed, the list.
  enum class TRests { Buttons, List } rests = TRests::Buttons;
};

// The base of the dialogs that change a list: entries are inserted, changed, removed and moved, in an edit area that
// opens below the list and gives the room back. Escape gives up the entry first and the whole list only then; OK waits
// until the entry is taken or given up.
class TListEditor : public QDialog {
  Q_OBJECT

 public:
  ~TListEditor() override;

 protected:
  // `form` must live as long as the dialog.
  TListEditor(const TLanguage &language, const TListForm &form, QWidget *owner);
  // Fills the list, `cells` row by row, and gives the dialog its size. `note` stands above the list, unless it is
  // empty.
  void Begin(const QString &caption, const QStringList &cells, const QString &note = {});

  [[nodiscard]] const TLanguage &Language() const { return m_language; }
  [[nodiscard]] const TTableRows &Rows() const { return *m_rows; }

  // Whether the edit area's entry can be taken; where not it stays open, without a word. `entry` may be brought into
  // its proper form, which the boxes then show.
  [[nodiscard]] virtual bool Accepts(QStringList &entry) const = 0;
  // OK was pressed: writes the list. The dialog stays open when that fails, which is told to the user here.
  [[nodiscard]] virtual bool Save() = 0;

  void keyPressEvent(QKeyEvent *event) override;
  bool eventFilter(QObject *watched, QEvent *event) override;

 private:
  enum class TEdit { None, Insert, Update };

  void MakeBoxes();
  void SetTabOrder();
  void ConnectButtons();
  void UpdateButtons();
  void OpenEdit(TEdit edit);
  void CloseEdit();
  void cmdUrlInsertClick();
  void cmdDeleteClick();
  void MoveRow(int by);
  [[nodiscard]] QStringList Entry() const;
  void SetEntry(const QStringList &entry);
  [[nodiscard]] int Row() const;  // the selected one, -1 for none
  void SelectRow(int row);

  const TLanguage &m_language;
  const TListForm &m_form;
  std::unique_ptr<Ui::TListEditor> m_ui;
  TTableRows *m_rows;
  QList<QWidget *> m_boxes;  // by column
  TEdit m_edit = TEdit::None;
  QPersistentModelIndex m_edited;  // the entry that is being changed, whatever is selected by now
  int m_editHeight = 0;            // by which the dialog has grown for the edit area
};
