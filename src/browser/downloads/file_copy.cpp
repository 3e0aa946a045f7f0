#include "browser/downloads/file_copy.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <QElapsedTimer>
#include <QFile>
#include <QObject>
#include <thread>

#include "platform/file_sync.h"

struct TFileCopy::TShared {
  std::atomic<bool> stops = false;
  std::mutex mutex;
  std::condition_variable ended;
  bool hasEnded = false;
  QObject *receiver = nullptr;  // nullptr when nobody listens any more
};

namespace {

constexpr qint64 Piece = 256 * 1024;  // bytes
constexpr qint64 MostUnsynced = 64 * 1024 * 1024;
constexpr int QuickSync = 200;  // ms; more is written before the next one
constexpr int SlowSync = 1000;  // ms; less is, since nothing stops it

TCopyEnd FailureOf(const QFile &file) {
  return file.error() == QFileDevice::ResourceError ? TCopyEnd::DiskFull : TCopyEnd::Failed;
}

TCopyEnd CopyInPieces(QFile &source, QFile &target, const std::atomic<bool> &stops) {
  qint64 unsynced = 0;
  qint64 mostUnsynced = Piece;
  while (!source.atEnd()) {
    if (stops) return TCopyEnd::Stopped;
    const QByteArray bytes = source.read(Piece);
    if (bytes.isEmpty()) return TCopyEnd::Failed;
    // What no longer fits is told only when nothing more of it does.
    for (qint64 written = 0; written < bytes.size();) {
      const qint64 more = target.write(bytes.constData() + written, bytes.size() - written);
      if (more <= 0) return FailureOf(target);
      written += more;
    }
    unsynced += bytes.size();
    if (unsynced < mostUnsynced) continue;
    QElapsedTimer timer;
    timer.start();
    if (!SyncToDisk(target)) return TCopyEnd::Failed;
    if (timer.elapsed() < QuickSync) mostUnsynced = std::min(mostUnsynced * 2, MostUnsynced);
    if (timer.elapsed() > SlowSync) mostUnsynced = std::max(mostUnsynced / 2, Piece);
    unsynced = 0;
  }
  // Not every file system knows permissions.
  target.setPermissions(source.permissions());
  return SyncToDisk(target) && target.size() == source.size() ? TCopyEnd::Good : TCopyEnd::Failed;
}

TCopyEnd Copy(const QString &from, const QString &to, const std::atomic<bool> &stops) {
  QFile source(from);
  QFile target(to);
  if (!source.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) return TCopyEnd::Failed;
  if (!target.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered)) return FailureOf(target);
  TCopyEnd end = CopyInPieces(source, target, stops);
  if (end == TCopyEnd::Good && stops) end = TCopyEnd::Stopped;
  if (end != TCopyEnd::Good) target.remove();
  return end;
}

}  // namespace

TFileCopy::TFileCopy(const QString &from, const QString &to, QObject *receiver,
                     const std::function<void(TCopyEnd)> &done)
    : m_shared(std::make_shared<TShared>()) {
  m_shared->receiver = receiver;
  std::thread([from, to, done, shared = m_shared] {
    const TCopyEnd end = Copy(from, to, shared->stops);
    const std::lock_guard lock(shared->mutex);
    shared->hasEnded = true;
    shared->ended.notify_all();
    if (shared->receiver != nullptr)
      QMetaObject::invokeMethod(
          shared->receiver, [done, end] { done(end); }, Qt::QueuedConnection);
  }).detach();
}

TFileCopy::~TFileCopy() {
  Stop();
  const std::lock_guard lock(m_shared->mutex);
  m_shared->receiver = nullptr;
}

void TFileCopy::Stop() {
  m_shared->stops = true;
}

bool TFileCopy::Wait(int milliseconds) {
  std::unique_lock lock(m_shared->mutex);
  return m_shared->ended.wait_for(lock, std::chrono::milliseconds(milliseconds), [this] { return m_shared->hasEnded; });
}
