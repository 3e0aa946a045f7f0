#pragma once

#include <QList>
#include <QObject>
#include <QTimer>

class QAbstractButton;
class QWidget;

// Keeps buttons that give something away from what was meant for that which stood in their place before: whenever they
// come up, be it with their tab or their window, they sleep for half a second, and they do not take the second one of
// two quick clicks, whose first may have closed what covered them.
class TClickGuard final : public QObject {
  Q_OBJECT

 public:
  // Of `buttons` within `panel`, which owns this object. Nobody else may enable or disable them.
  TClickGuard(QWidget *panel, const QList<QAbstractButton *> &buttons);

  // Something new is asked.
  void Sleep();

  bool eventFilter(QObject *watched, QEvent *event) override;

 private:
  void SetEnabled(bool enabled);

  QWidget *m_panel;
  QList<QAbstractButton *> m_buttons;
  QTimer m_wake;
};
