#include "chrome/folder_view/file_work.h"

#include <atomic>
#include <QPointer>
#include <QSemaphore>
#include <utility>

namespace {

// In milliseconds; more would be felt. Tests wait longer: they ask for what is done, not for how soon.
int Moment() {
  bool isSet = false;
  const int moment = qEnvironmentVariableIntValue("ZV_FILE_MOMENT", &isSet);
  return isSet ? moment : 100;
}

}  // namespace

struct TFileWork::TJob {
  TThen then{};
  TFavoritesChange change{};
  QSemaphore end{};
  std::atomic_bool isDone = false;
};

TFileWork::TFileWork() {
  m_thread.setMaxThreadCount(1);
}

TFileWork::~TFileWork() {
  m_thread.waitForDone();
}

void TFileWork::Do(const TWork &work, const TThen &then) {
  const auto job = std::make_shared<TJob>();
  job->then = then;
  m_jobs.append(job);
  m_thread.start([this, job, work] {
    job->change = work();
    job->isDone = true;
    job->end.release();
    QMetaObject::invokeMethod(this, &TFileWork::Deliver, Qt::QueuedConnection);
  });
  if (job->end.tryAcquire(1, Moment())) return Deliver();
  if (!std::exchange(m_isToldBusy, true)) Q_EMIT BusyChanged(true);
}

void TFileWork::Deliver() {
  // Whoever is told may open a dialog, in which all this may go.
  const QPointer<TFileWork> self(this);
  while (!m_jobs.isEmpty() && m_jobs.first()->isDone) {
    const std::shared_ptr<TJob> job = m_jobs.takeFirst();
    if (job->then) job->then(job->change);
    if (!self) return;
  }
  if (m_jobs.isEmpty() && std::exchange(m_isToldBusy, false)) Q_EMIT BusyChanged(false);
}
