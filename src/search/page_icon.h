#pragma once

#include <QObject>
#include <QPoint>

class QAction;
class QIcon;
class QLineEdit;

// The icon in front of the address (imgIELink). It tells how the page is connected, and is the handle by which the page
// is dragged to where a link to it is to be kept.
class TPageIcon final : public QObject {
  Q_OBJECT

 public:
  // `edit` owns it.
  explicit TPageIcon(QLineEdit *edit);

  void Show(const QIcon &icon, const QString &hint);
  void Hide();

 Q_SIGNALS:
  // Pressed and let go without a drag.
  void Clicked();
  // The mouse has gone so far with it that the desktop takes it for a drag.
  void DragWanted();

 protected:
  bool eventFilter(QObject *watched, QEvent *event) override;

 private:
  void SetVisible(bool isVisible);

  QLineEdit *m_edit;
  QAction *m_action;
  QPoint m_pressed;
  bool m_isPressed = false;
};
