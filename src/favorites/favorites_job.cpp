#include "favorites/favorites_job.h"

#include <chrono>
#include <utility>

namespace {

constexpr std::chrono::milliseconds ToldEvery{50};

}  // namespace

TFavoritesJob::TFavoritesJob(TWork work, QObject *parent)
    : QObject(parent), m_work(std::move(work)), m_control(std::make_unique<TTransferControl>()) {
  using TClock = std::chrono::steady_clock;
  m_control->progress = [this, last = TClock::time_point()](qint64 done, qint64 total) mutable {
    const TClock::time_point now = TClock::now();
    if (now - last < ToldEvery) return;
    last = now;
    QMetaObject::invokeMethod(
        this, [this, done, total] { Q_EMIT Progress(done, total); }, Qt::QueuedConnection);
  };
}

TFavoritesJob::~TFavoritesJob() {
  Cancel();
  if (m_thread.joinable()) m_thread.join();
}

void TFavoritesJob::Start() {
  if (m_thread.joinable()) return;
  m_thread = std::thread([this] {
    const TTransferReport report = m_work(*m_control);
    QMetaObject::invokeMethod(
        this, [this, report] { Q_EMIT Finished(report); }, Qt::QueuedConnection);
  });
}

void TFavoritesJob::Cancel() {
  m_control->Cancel();
}
