#pragma once

#include <QTimer>
#include <QWidget>

// The mark that turns while the page in front loads, and that rests as the program's own when it is done.
class TBusyIndicator final : public QWidget {
  Q_OBJECT

 public:
  explicit TBusyIndicator(QWidget *parent = nullptr);

  void SetBusy(bool busy);
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent *event) override;

 private:
  QTimer m_timer;
  int m_angle = 0;  // degrees
};
