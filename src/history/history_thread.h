#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <QString>
#include <thread>

#include "history/history_reader.h"

// A thread that reads the history, for whoever shows much of it. What it is given is done in its order; it begins with
// the first. Its end stops what is at work, and drops what waits.
class THistoryThread final {
 public:
  using TWork = std::function<void(THistoryReader &)>;

  explicit THistoryThread(const QString &filePath) : m_reader(filePath) {}
  ~THistoryThread();
  THistoryThread(const THistoryThread &) = delete;
  THistoryThread &operator=(const THistoryThread &) = delete;

  // `work` runs on the thread.
  void Do(TWork work);

 private:
  void Run();

  THistoryReader m_reader;  // the thread's alone
  std::mutex m_mutex;
  std::condition_variable m_wake;
  // Under the mutex.
  std::deque<TWork> m_waiting;
  bool m_stop = false;
  std::thread m_thread;
};
