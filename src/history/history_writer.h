#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <limits>
#include <mutex>
#include <QList>
#include <QString>
#include <thread>

#include "history/history_store.h"
#include "store/store_file.h"

// A change of the history that waits to be written.
struct THistoryChange {
  enum class TKind {
    Visit,
    Title,
    Remove,
    RemoveSpan,  // pages last visited from `when` to before `until`, of `address`, a site, unless that is empty
    RemoveOld,   // at most `most` pages last visited before `until`
    Clear,
    Damaged,  // a reader has found this file damaged
    Upgrade,  // a reader has found the file to be of an earlier version
  };
  TKind kind = TKind::Visit;
  QString address{};
  QString title{};
  qint64 when = 0;  // milliseconds since 1970, here and below
  qint64 until = std::numeric_limits<qint64>::max();
  int most = 0;
  TStoreFile::TIdentity file{};

  [[nodiscard]] bool IsRemoval() const {
    return kind == TKind::Remove || kind == TKind::RemoveSpan || kind == TKind::Clear;
  }
};

// Takes changes of the history from its owner's thread and writes them on its own, in their order.
class THistoryWriter final {
 public:
  // Both are called on the writer's thread: `written` each time after something has been written.
  THistoryWriter(const QString &filePath, std::function<void()> written, std::function<void(THistoryTrouble)> troubled);
  ~THistoryWriter();
  THistoryWriter(const THistoryWriter &) = delete;
  THistoryWriter &operator=(const THistoryWriter &) = delete;

  void Add(THistoryChange change);
  bool Flush(std::chrono::milliseconds time);
  [[nodiscard]] QString SetAsideFile() const;
  [[nodiscard]] THistoryRemoval Removal() const;

 private:
  using TState = TStoreFile::TState;

  using TLock = std::unique_lock<std::mutex>;

  void Run();
  void TellFailedRemoval(TLock &lock);
  void Pause(TLock &lock);
  void DropOldest();
  [[nodiscard]] QList<THistoryChange> Next();
  [[nodiscard]] TState Write(const QList<THistoryChange> &changes);
  [[nodiscard]] TState WriteOnce(const QList<THistoryChange> &changes);
  [[nodiscard]] bool WriteOne(const THistoryChange &change);
  [[nodiscard]] bool WriteSpan(const THistoryChange &change);
  void MoveAside(const TStoreFile::TIdentity &damaged);

  TStoreFile m_file;        // the thread's alone
  bool m_hasMore = false;   // of the span that was written last; the thread's alone
  qint64 m_spanTotal = -1;  // pages of the span that is being removed, -1 while it was not counted; the thread's alone
  qint64 m_spanStep = 0;    // of these, what was removed last; the thread's alone
  const std::function<void()> m_written;
  const std::function<void(THistoryTrouble)> m_troubled;
  mutable std::mutex m_mutex;
  std::condition_variable m_wake;
  std::condition_variable m_idle;
  // All below under the mutex.
  QList<THistoryChange> m_waiting;
  QString m_setAside;
  THistoryRemoval m_removal;  // of the span at hand
  std::chrono::milliseconds m_retry;
  bool m_tryNow = false;      // something has come that is worth another try at once
  bool m_isRemoving = false;  // something of what is being written
  bool m_writing = false;
  bool m_hurry = false;
  bool m_urgent = false;
  bool m_stop = false;
  bool m_givenUp = false;  // the last flush has waited in vain
  std::thread m_thread;
};
