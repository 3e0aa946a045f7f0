#include "history/history_thread.h"

#include <utility>

THistoryThread::~THistoryThread() {
  {
    const std::lock_guard lock(m_mutex);
    m_stop = true;
    m_waiting.clear();
  }
  m_reader.Stop();
  m_wake.notify_all();
  if (m_thread.joinable()) m_thread.join();
}

void THistoryThread::Do(TWork work) {
  const std::lock_guard lock(m_mutex);
  m_waiting.push_back(std::move(work));
  if (!m_thread.joinable()) m_thread = std::thread([this] { Run(); });
  m_wake.notify_all();
}

void THistoryThread::Run() {
  std::unique_lock lock(m_mutex);
  while (true) {
    m_wake.wait(lock, [this] { return m_stop || !m_waiting.empty(); });
    if (m_stop) return;
    const TWork work = std::move(m_waiting.front());
    m_waiting.pop_front();
    lock.unlock();
    work(m_reader);
    lock.lock();
  }
}
