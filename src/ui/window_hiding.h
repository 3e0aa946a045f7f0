#pragma once

#include <QDeadlineTimer>
#include <QList>
#include <QObject>
#include <QPoint>
#include <QPointer>

class QWidget;

// Takes a window out of sight, together with the other windows that belong to it, and brings all of them back as they
// were: in the same states and at the same place. While it is away, the program does not end with its last dialog.
class TWindowHiding final : public QObject {
  Q_OBJECT

 public:
  // What filters the window's events too, and wants to know only of states that last, has to do so before this object
  // is made.
  explicit TWindowHiding(QWidget *window);
  ~TWindowHiding() override;

  [[nodiscard]] bool IsAway() const { return m_isAway; }
  void Hide();
  // Not minimised. Where it is not away: nothing.
  void Show();

  bool eventFilter(QObject *watched, QEvent *event) override;

 Q_SIGNALS:
  // It is about to be seen again, or is; also where somebody else has shown it.
  void Returned();

 private:
  void Return();
  void ShowOthers();
  [[nodiscard]] bool HasLostStates() const;

  QWidget *m_window;
  bool m_isAway = false;
  bool m_wasAway = false;            // so that m_states is known
  Qt::WindowStates m_states;         // that the window comes back in
  QDeadlineTimer m_settles;          // until it has come back in them
  QPoint m_place;                    // where its frame stood
  QList<QPointer<QWidget>> m_along;  // its other windows, that went with it
};
