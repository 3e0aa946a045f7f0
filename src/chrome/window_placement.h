#pragma once

#include <QList>
#include <QObject>
#include <QRect>

class QWidget;
class TFullScreen;
class TSettings;

// Where the main window stands: restored at start, never off every screen, and written back at the end.
class TWindowPlacement final : public QObject {
  Q_OBJECT

 public:
  // All must outlive this object.
  TWindowPlacement(QWidget *window, const TFullScreen &fullScreen, TSettings &settings);

  // The stored bounds: the place of the window's frame and the size of its contents, in desktop coordinates.
  [[nodiscard]] static QRect Stored(const TSettings &settings);
  // `bounds`, moved and shrunk so that it can be reached on one of `screens` (their available areas). Bounds that lie
  // well enough on the screens stay as they are.
  [[nodiscard]] static QRect OnScreens(const QRect &bounds, const QList<QRect> &screens);
  // Negative numbers are written as 0. What is not `changed` is written only where nothing is stored yet.
  static void Write(const QRect &bounds, TSettings &settings, bool changed = true);

  // The bounds of the normal window, and whether it is maximised.
  void Restore();
  // A window that is maximised keeps the last normal placement; one in full screen counts as not maximised. A placement
  // that has not changed since the start is not written over the one that another window has left meanwhile.
  void Save();

  bool eventFilter(QObject *watched, QEvent *event) override;

 private:
  QWidget *m_window;
  const TFullScreen &m_fullScreen;
  TSettings &m_settings;
  QRect m_restoredBounds;
  bool m_restoredMaximized = false;
  QRect m_normalBounds;  // of the window when it was last neither maximised nor full screen
};
