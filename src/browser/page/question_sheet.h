#pragma once

#include <functional>
#include <QList>
#include <QPointer>
#include <QWidget>

class QDialog;

// Covers a page while a question of it is open, and shows the question in the page's own place: other tabs and the
// window around them stay as usable as ever. Questions come one after the other.
class TQuestionSheet final : public QWidget {
  Q_OBJECT

 public:
  // Lies over `page` and belongs to it.
  explicit TQuestionSheet(QWidget *page);
  ~TQuestionSheet() override;

  // Takes the dialog. `done` comes once, with true when it was accepted; the dialog can still be read then.
  void Ask(QDialog *dialog, std::function<void(bool accepted)> done);
  [[nodiscard]] bool IsOpen() const { return !m_dialogs.isEmpty(); }
  // Answers all of them as Escape would, for a page that is going away.
  void Dismiss();

  bool eventFilter(QObject *watched, QEvent *event) override;

 Q_SIGNALS:
  // The first question has come, or the last one has gone.
  void OpenChanged(bool open);

 protected:
  bool event(QEvent *event) override;
  void paintEvent(QPaintEvent *event) override;

 private:
  void ShowFirst();
  void Arrange();
  void Finish(QDialog *dialog, bool accepted, const std::function<void(bool)> &done);

  QList<QPointer<QDialog>> m_dialogs;  // the first one is shown
};
