#pragma once

#include "browser/page/permission_decisions.h"
#include "ui/floating_panel.h"

class QLabel;
class QPushButton;
class TClickGuard;
class TLanguage;

// One question over the page's top edge, with Allow, Allow this time, Deny, Never and a close button. It never takes
// the keyboard from the page by itself, and its buttons wake up a moment after it appeared, so that a click meant for
// the page does not allow anything.
class TPermissionBar final : public TFloatingPanel {
  Q_OBJECT

 public:
  explicit TPermissionBar(const TLanguage &language, QWidget *parent = nullptr);

  // `canLast` where an allowance may hold in the next run, too.
  void Ask(const QString &question, bool canLast);
  [[nodiscard]] QSize sizeHint() const override;

 Q_SIGNALS:
  // Allowed, AllowedForNow, RefusedForNow, Refused; Ask when it was closed without a decision.
  void Answered(TPermissionDecision decision);

 protected:
  bool event(QEvent *event) override;
  void keyPressEvent(QKeyEvent *event) override;

 private:
  void ComeBeforePage();

  QLabel *m_question = nullptr;
  QList<QPushButton *> m_buttons;
  QPushButton *m_forNow = nullptr;
  QWidget *m_close = nullptr;
  TClickGuard *m_guard = nullptr;
};
