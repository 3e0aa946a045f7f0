#pragma once

#include <QWidget>

class TFrameUpdates;

// The mark that turns while the page in front loads, and that rests as the program's own when it is done. Where motion
// is reduced it does not turn, and only looks otherwise meanwhile.
class TBusyIndicator final : public QWidget {
  Q_OBJECT

 public:
  // Turns with the frame's updates, which must outlive this object.
  TBusyIndicator(TFrameUpdates &updates, QWidget *parent);

  void SetBusy(bool busy);
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent *event) override;

 private:
  void AskToTurn();
  void Turn();

  TFrameUpdates &m_updates;
  bool m_isBusy = false;
  int m_angle = 0;  // degrees
};
