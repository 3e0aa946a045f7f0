#pragma once

#include <QWidget>

#include "chrome/bands/band_arrangement.h"
#include "ui/escape_watch.h"

// The grip of a band, with the band's caption where it has one. The mouse drags it; with the keyboard on it the arrow
// keys ask for a step, with Ctrl for another size, and Enter for a break.
class TBandGrip final : public QWidget {
  Q_OBJECT

 public:
  explicit TBandGrip(TBand band, QWidget *parent);

  [[nodiscard]] TBand Band() const { return m_band; }
  [[nodiscard]] const QString &Caption() const { return m_caption; }
  void SetCaption(const QString &caption);
  // Ends a drag without a drop.
  void CancelDrag();

  [[nodiscard]] QSize sizeHint() const override;

 Q_SIGNALS:
  // In the parent's coordinates: where the mouse took hold of the grip and where it is now.
  void Dragged(const QPoint &from, const QPoint &to);
  // The end of a drag; without a drop the user has given it up.
  void DragEnded(bool drop);
  void StepWanted(TBandStep step);
  void ResizeWanted(bool wider);
  void BreakWanted();

 protected:
  bool event(QEvent *event) override;
  void changeEvent(QEvent *event) override;
  void hideEvent(QHideEvent *event) override;
  void keyPressEvent(QKeyEvent *event) override;
  void mouseMoveEvent(QMouseEvent *event) override;
  void mousePressEvent(QMouseEvent *event) override;
  void mouseReleaseEvent(QMouseEvent *event) override;
  void paintEvent(QPaintEvent *event) override;

 private:
  enum class TDrag { None, Pressed, Moving };

  void EndDrag(bool drop);
  [[nodiscard]] int HandleWidth() const;

  TBand m_band;
  QString m_caption;
  TDrag m_drag = TDrag::None;
  QPoint m_from;  // in the parent
  TEscapeWatch m_escape{[this] { CancelDrag(); }};
};
