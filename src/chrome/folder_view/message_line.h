#pragma once

#include <QLabel>

// The line of a window that says why something was not done. It is not there as long as there is nothing to say, and is
// read out when it comes.
class TMessageLine final : public QLabel {
 public:
  explicit TMessageLine(QWidget *parent = nullptr);

  // An empty text takes it away.
  void Show(const QString &text);
};
