#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

// Gathers what pages change in the frame around them (captions, images, progress, the busy ring), and has it shown
// together, ten times a second at most. However small a change is, the whole window is composed anew for it, which
// takes some 10 ms where no graphics card does it, and takes them from the pages that are to be painted.
class TFrameUpdates final : public QObject {
  Q_OBJECT

 public:
  static constexpr int Interval = 100;  // milliseconds at least from one showing to the next
  // The same while so many pages are to come that the user watches none of them in particular.
  static constexpr int CrowdInterval = 250;
  static constexpr int Crowd = 8;  // pages

  explicit TFrameUpdates(QObject *parent = nullptr);

  // There is something to show: it is asked for before anything is painted, or, when the last time was a moment ago,
  // once the interval has passed.
  void Ask();
  // The user waits for it, or something else will be painted anyway: what has gathered is shown with that.
  void Hurry();
  void SetPagesToCome(int pages) { m_interval = pages > Crowd ? CrowdInterval : Interval; }
  [[nodiscard]] int CurrentInterval() const { return m_interval; }  // milliseconds

 Q_SIGNALS:
  // What has changed since the last time is to be shown now.
  void Show();

 private:
  void Tell();

  int m_interval = Interval;
  QTimer m_timer{this};
  bool m_isPosted = false;
  QElapsedTimer m_sinceShown;
};
