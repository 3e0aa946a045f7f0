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

// For the events of a bar that Escape closes: takes the key for it while the bar has the keyboard, also where the
// window has another use for it. True when the event was such a key and is done with.
[[nodiscard]] bool ClaimEscape(QEvent &event);
