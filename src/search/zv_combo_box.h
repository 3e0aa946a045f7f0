#pragma once

#include <QComboBox>

class QDropEvent;

// An editable drop-down box for addresses. It shows the page's address until something else is typed, and gets it back
// with Esc or when the user goes back to the page with the mouse. What the keys of the box do beyond that, and what its
// list holds, is the matter of the class derived from it.
class TZVComboBox : public QComboBox {
  Q_OBJECT

 public:
  explicit TZVComboBox(QWidget *parent = nullptr);

  // The page's address, shown as people read it (see ShownAddress). What the user is typing right now is not
  // overwritten.
  void ShowAddress(const QString &address);
  void FocusAll();

 Q_SIGNALS:
  void Left();  // Esc with nothing to put back: the page wants the keyboard again.

 protected:
  // A key for the text box, before the box has it. True when it is used up.
  virtual bool TakeKey(const QKeyEvent &key) = 0;
  // Shift+Delete on an entry of the open list.
  virtual void RemoveEntry(const QString &address) = 0;
  // An address or link was dropped on the box.
  virtual void TakeDropped(const QString &address) = 0;

  // Fills the list, without any change to what the box shows.
  void SetEntries(const QStringList &addresses);
  [[nodiscard]] QString EntryAddress(int row) const;
  [[nodiscard]] QString PageAddress() const { return m_pageAddress; }
  // Shows `text` as if it had been typed. `selectFrom` and what follows is selected, with the caret before it.
  void ShowTyped(const QString &text, qsizetype selectFrom);
  void ForgetTyped() { m_typed = false; }
  void PutBack();
  void TakeEdited(const QString &text);

  bool eventFilter(QObject *watched, QEvent *event) override;
  void dragEnterEvent(QDragEnterEvent *event) override;
  void dropEvent(QDropEvent *event) override;
  // The wheel does not change the text: it would open page after page.
  void wheelEvent(QWheelEvent *event) override;

 private:
  [[nodiscard]] bool FilterEdit(QEvent *event);
  [[nodiscard]] bool FilterList(QEvent *event);
  [[nodiscard]] QString DroppedAddress(const QDropEvent &event) const;

  QString m_pageAddress;
  bool m_typed = false;
  QString m_lastText;  // before what is being edited
  bool m_selectOnRelease = false;
};
