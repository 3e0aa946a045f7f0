#pragma once

#include <QListWidget>

// A list of the dialog that arranges the tool bar. It changes nothing in itself: what the mouse and the keyboard do
// there become wishes.
class TButtonList final : public QListWidget {
  Q_OBJECT

 public:
  explicit TButtonList(QWidget *parent);

  [[nodiscard]] int SelectedRow() const;  // -1 for none
  // A row out of range selects nothing.
  void SelectRow(int row);

 Q_SIGNALS:
  void Chosen();              // a double click on an item, or Enter
  void RemoveWanted();        // Delete
  void MoveWanted(int rows);  // Ctrl with an arrow: -1 up, 1 down
  // The item of that row in the list of that object name, this one or the other, is to stand before `row`.
  void Dropped(const QString &list, int from, int row);

 protected:
  [[nodiscard]] QMimeData *mimeData(const QList<QListWidgetItem *> &items) const override;
  void keyPressEvent(QKeyEvent *event) override;
  void dragEnterEvent(QDragEnterEvent *event) override;
  void dropEvent(QDropEvent *event) override;
};
