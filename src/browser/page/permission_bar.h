#pragma once

#include <QFrame>
#include <QTimer>

class QLabel;
class QPushButton;
class TLanguage;

// One question above the page, with Allow, Deny and a close button. It never takes the keyboard from the page by
// itself, and its buttons wake up a moment after it appeared, so that a click meant for the page does not allow
// anything.
class TPermissionBar final : public QFrame {
  Q_OBJECT

 public:
  explicit TPermissionBar(const TLanguage &language, QWidget *parent = nullptr);

  void Ask(const QString &question);

 Q_SIGNALS:
  void Answered(bool allow);
  // Closed without a decision.
  void Dismissed();

 protected:
  bool event(QEvent *event) override;
  void keyPressEvent(QKeyEvent *event) override;

 private:
  void SetButtonsEnabled(bool enabled);
  void ComeBeforePage();

  QLabel *m_question = nullptr;
  QPushButton *m_allow = nullptr;
  QPushButton *m_deny = nullptr;
  QWidget *m_close = nullptr;
  QTimer m_wake;
};
