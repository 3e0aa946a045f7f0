#pragma once

#include <QBasicTimer>
#include <QObject>
#include <QPoint>

class QWidget;
class TTabGeometry;
class TTabList;

// A tab held by the mouse: it goes where the mouse goes and, held beyond the end of the strip, on without the mouse
// moving. It only wishes; who hears it moves the tab and scrolls the strip, and lays the tabs out before `Follow`.
class TTabDrag final : public QObject {
  Q_OBJECT

 public:
  TTabDrag(const TTabList &tabs, const TTabGeometry &geometry, QObject *parent);

  // The left button went down on this page's tab. Nothing moves before the mouse has gone as far as the desktop has it.
  void Press(QWidget *page, const QPoint &position);
  void Follow(const QPoint &position);
  void Release();
  // Where something outside of `inside`, the strip with its pages, takes what is dropped at that place of the screen,
  // the tab that is being moved is let go, back where it was taken from; its page, or null. A field for text is no such
  // place: the address bar is too close.
  [[nodiscard]] QWidget *TakeOut(const QPoint &globalPosition, const QWidget &inside);
  // The tab goes: while it is held, nothing else is dragged in its place.
  void Forget(const QWidget *page);

 Q_SIGNALS:
  void MoveWanted(int from, int to);  // positions
  void ScrollWanted(int direction);   // a step: -1 to the tabs before, 1 to those behind

 protected:
  void timerEvent(QTimerEvent *event) override;

 private:
  void Stop();
  void MoveTab();

  const TTabList &m_tabs;
  const TTabGeometry &m_geometry;
  QWidget *m_page = nullptr;  // a key into the list: what a signal sets off may have removed it
  int m_start = -1;           // its position
  QPoint m_from;
  QPoint m_mouse;
  bool m_moving = false;
  QBasicTimer m_scroll;
};
