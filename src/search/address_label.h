#pragma once

#include <QLabel>

// The label of the address bar (lblAddress), which tells of double clicks.
class TAddressLabel final : public QLabel {
  Q_OBJECT

 public:
  explicit TAddressLabel(const QString &text, QWidget *parent = nullptr);

 Q_SIGNALS:
  void DoubleClicked();

 protected:
  void mouseDoubleClickEvent(QMouseEvent *event) override;
};
