#pragma once

#include <functional>
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

class QWidget;

// Leaves a window's thread time for other things than composing the window. However little has changed, the whole
// window is composed anew for it, the picture of its page with it; where no graphics card does it that takes some 10 to
// 40 ms, and pages that are to be asked for and painted wait meanwhile. So each time is followed by a pause that is as
// long, which is next to nothing where there is a graphics card. What the user does ends the pause.
class TFramePacer final : public QObject {
 public:
  static constexpr int LongestPause = 100;  // milliseconds
  static constexpr int HeadStart = 30;      // milliseconds in which a page's request goes out

  // Of the top-level `window`, which owns this object.
  explicit TFramePacer(QWidget *window);

  // A page is about to be asked for, which takes the thread a moment: that comes first.
  void GiveWay();

  bool eventFilter(QObject *watched, QEvent *event) override;

 private:
  void Compose();
  void Compose(const std::function<void()> &compose);

  QWidget *m_window;
  QTimer m_pause;
  bool m_isWanted = false;  // asked for in the pause
  bool m_isComposing = false;
  QElapsedTimer m_sinceComposed;
};
