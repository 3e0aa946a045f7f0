#pragma once

#include <functional>
#include <memory>
#include <QList>
#include <QObject>
#include <QThreadPool>

#include "favorites/favorites_edit.h"

// Changes of files, one after the other on a thread, so that a slow disk keeps no window waiting. What is done within a
// moment is done when Do returns: on most disks that is everything, and nothing is to be seen of the thread.
class TFileWork final : public QObject {
  Q_OBJECT

 public:
  using TWork = std::function<TFavoritesChange()>;
  using TThen = std::function<void(const TFavoritesChange &)>;

  TFileWork();
  // What is under way is done to its end, so that nothing is left half-written; nobody is told.
  ~TFileWork() override;

  // `work` runs on the thread and must know of no window; `then` runs on the caller's, in the order of the calls.
  void Do(const TWork &work, const TThen &then);
  [[nodiscard]] bool IsBusy() const { return !m_jobs.isEmpty(); }

 Q_SIGNALS:
  // Something takes longer than a moment, or nothing does any more.
  void BusyChanged(bool busy);

 private:
  struct TJob;

  void Deliver();

  QThreadPool m_thread;
  QList<std::shared_ptr<TJob>> m_jobs;  // not delivered yet
  bool m_isToldBusy = false;
};
