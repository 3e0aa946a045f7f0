#pragma once

#include <QWidget>

#include "ui/escape_watch.h"

// The edge between the side bar and the pages. While the bar is open the mouse drags it and a double click closes the
// bar; with the keyboard on it the arrow keys make the bar wider and narrower, and Enter closes it. While the bar is
// closed the edge is a narrow strip at the side of the window, and a click on it opens the bar.
class TSideBarEdge final : public QWidget {
  Q_OBJECT

 public:
  explicit TSideBarEdge(QWidget *parent);

  void SetOpen(bool open);
  // Pixels that it wants.
  [[nodiscard]] int Extent() const;

 Q_SIGNALS:
  // So many pixels away from where the mouse took hold of it, positive where the bar gets wider.
  void Dragged(int distance);
  // Without `kept` the user has given it up.
  void DragEnded(bool kept);
  void StepWanted(bool wider);
  void OpenWanted();
  void CloseWanted();

 protected:
  void enterEvent(QEnterEvent *event) override;
  void hideEvent(QHideEvent *event) override;
  void keyPressEvent(QKeyEvent *event) override;
  void leaveEvent(QEvent *event) override;
  void mouseDoubleClickEvent(QMouseEvent *event) override;
  void mouseMoveEvent(QMouseEvent *event) override;
  void mousePressEvent(QMouseEvent *event) override;
  void mouseReleaseEvent(QMouseEvent *event) override;
  void paintEvent(QPaintEvent *event) override;

 private:
  void EndDrag(bool kept);

  bool m_isOpen = true;
  bool m_isPressed = false;
  bool m_isDragging = false;
  int m_from = 0;  // of the screen
  TEscapeWatch m_escape{[this] { EndDrag(false); }};
};
