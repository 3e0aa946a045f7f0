#pragma once

#include <functional>
#include <QObject>
#include <utility>

// Hears Escape wherever the keyboard is, for as long as something is dragged that has not got it. Escape is nobody
// else's meanwhile, no command's of the window either.
class TEscapeWatch final : public QObject {
 public:
  explicit TEscapeWatch(std::function<void()> escaped) : m_escaped(std::move(escaped)) {}

  void Start();
  void Stop();

  bool eventFilter(QObject *watched, QEvent *event) override;

 private:
  std::function<void()> m_escaped;
};
