#pragma once

#include <QToolButton>

// The small cross that closes a bar, drawn in the colour of the palette's text.
class TCloseButton final : public QToolButton {
  Q_OBJECT

 public:
  // `text` is the tool tip and what a screen reader says.
  explicit TCloseButton(const QString &text, QWidget *parent = nullptr);

 protected:
  void paintEvent(QPaintEvent *event) override;
};
