#pragma once

#include <chrono>
#include <QObject>
#include <QTimer>

class THistoryStore;

// Sees to it that the history holds no pages that were not visited for longer than it is to be kept. They go a few at a
// time, each time when nothing has been written in the history for a while, so that nobody waits for them.
class THistoryKeeper final : public QObject {
  Q_OBJECT

 public:
  // What goes at once.
  static constexpr int PagesAtOnce = 500;

  // `history` must outlive this object. `idle` is that while.
  explicit THistoryKeeper(THistoryStore &history, std::chrono::milliseconds idle = std::chrono::seconds(30),
                          QObject *parent = nullptr);

  // For so many days; 0 and less for ever, as it is at first.
  void SetDays(int days);

 private:
  void Look();

  THistoryStore &m_history;
  const std::chrono::milliseconds m_idle;
  int m_days = 0;
  QTimer m_timer;
};
