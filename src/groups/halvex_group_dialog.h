#pragma once

#include <memory>
#include <QDialog>

class TGroupSites;
class TLanguage;

namespace Ui {
class TfrmHalvexGroup;
}

// Shows the pages of one group file and lets the user add, change, delete and reorder them. OK writes the file; when it
// cannot be written the user is told why and the dialog stays. Cancel leaves the file alone.
class TfrmHalvexGroup final : public QDialog {
  Q_OBJECT

 public:
  // `fileName` is an existing group file.
  TfrmHalvexGroup(const TLanguage &language, const QString &fileName, QWidget *owner = nullptr);
  ~TfrmHalvexGroup() override;

  // Why the file could not be read; empty when it could. The dialog is not to be shown then.
  [[nodiscard]] const QString &ReadError() const { return m_readError; }

 protected:
  void keyPressEvent(QKeyEvent *event) override;
  bool eventFilter(QObject *watched, QEvent *event) override;

 private:
  enum class TEdit { None, Insert, Update };

  void ConnectButtons();
  void UpdateButtons();
  void OpenEdit(TEdit edit);
  void CloseEdit();
  void cmdUrlInsertClick();
  void cmdDeleteClick();
  void MoveRow(int by);
  void cmdOkClick();
  [[nodiscard]] int Row() const;  // the selected one, -1 for none
  void SelectRow(int row);

  std::unique_ptr<Ui::TfrmHalvexGroup> m_ui;
  const TLanguage &m_language;
  QString m_fileName;
  QString m_readError;
  TGroupSites *m_sites;
  TEdit m_edit = TEdit::None;
  int m_editHeight = 0;  // by which the dialog has grown for the edit area
};
