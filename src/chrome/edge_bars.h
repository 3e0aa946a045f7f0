#pragma once

#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QTimer>

class QMainWindow;
class QMenuBar;
class QWindow;
class TFullScreen;

// The menu bar and the status bar in the user's full screen, which hides them: each comes back for as long as the mouse
// is at its edge of the screen or in it, and the menu bar also for as long as the keyboard is in the menus. The
// settings that keep them there all the time stay as they are.
class TEdgeBars final : public QObject {
  Q_OBJECT

 public:
  // All must outlive this object.
  TEdgeBars(QMainWindow *window, QMenuBar *menus, TFullScreen &fullScreen);

  [[nodiscard]] bool ShowsMenuBar() const { return m_edge == TEdge::Top; }
  [[nodiscard]] bool ShowsStatusBar() const { return m_edge == TEdge::Bottom; }
  // Gives the keyboard to the menus, with the first one open. A page that has the screen to itself keeps it.
  void OpenMenus();

  bool eventFilter(QObject *watched, QEvent *event) override;

 Q_SIGNALS:
  void Changed();

 private:
  enum class TEdge : char { None, Top, Bottom };

  [[nodiscard]] bool MayShow() const;
  [[nodiscard]] TEdge EdgeAt(const QPoint &mouse) const;
  [[nodiscard]] bool IsInUse() const;
  void Show(TEdge edge);
  void WatchWindow();
  void WatchMenus();
  void FollowMouse(const QPoint &mouse);
  void Settle();

  QMainWindow *m_window;
  QMenuBar *m_menus;
  TFullScreen &m_fullScreen;
  QPointer<QWindow> m_watched;
  QTimer m_rest;  // runs while the mouse rests at an edge whose bar is still to come
  TEdge m_edge = TEdge::None;
  QPoint m_mouse;  // in the window; outside when it is nowhere
};
