#pragma once

#include <functional>
#include <QPointer>
#include <QTimer>
#include <QWidget>

class QLabel;
class QToolButton;

// A few words about what was just done, with one button beside them: "Undo". They go by themselves after a while, but
// not under the mouse or the keyboard.
class TStatusOffer final : public QWidget {
 public:
  static constexpr int ShownFor = 10'000;  // milliseconds

  explicit TStatusOffer(QWidget *parent);

  // In the place of what is offered so far. `action` is done at most once.
  void Show(const QString &text, const QString &actionText, std::function<void()> action);

 private:
  void Take();
  void Close();

  QLabel *m_text;         // pnlOffer
  QToolButton *m_button;  // tbOffer
  std::function<void()> m_action;
  QPointer<QWidget> m_before;  // where the keyboard was
  QTimer m_time{this};
};
