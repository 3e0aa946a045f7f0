#pragma once

#include <functional>
#include <memory>
#include <QObject>
#include <thread>

#include "favorites/favorites_transfer.h"

// One import or export, done on a thread of its own: make it, connect it, start it.
class TFavoritesJob final : public QObject {
  Q_OBJECT

 public:
  using TWork = std::function<TTransferReport(TTransferControl &)>;

  // `work` is one of FavoritesTransfer's with what it needs, by value.
  explicit TFavoritesJob(TWork work, QObject *parent = nullptr);
  // Cancels it and waits for its end: a few milliseconds, or the time of one slow access to the disk.
  ~TFavoritesJob() override;

  // Once.
  void Start();
  // Finished comes all the same.
  void Cancel();

 Q_SIGNALS:
  // At most twenty times a second; `total` is 0 while it is not known.
  void Progress(qint64 done, qint64 total);
  // The last signal, in the job's own thread like the other.
  void Finished(const TTransferReport &report);

 private:
  TWork m_work;
  std::unique_ptr<TTransferControl> m_control;
  std::thread m_thread;
};
