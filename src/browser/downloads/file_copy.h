#pragma once

#include <functional>
#include <memory>
#include <QString>

class QObject;

enum class TCopyEnd { Good, DiskFull, Failed, Stopped };

// Copies a file on a thread of its own, in pieces that are brought to the disk one by one: a slow stick may take many
// minutes for all of it, and is not to hold up the end of the program.
class TFileCopy final {
 public:
  // `to` must not be there; it is taken away again unless all of it has arrived, on the disk. `done` is called in the
  // thread of `receiver`, as long as that one and this object live.
  TFileCopy(const QString &from, const QString &to, QObject *receiver, const std::function<void(TCopyEnd)> &done);
  // Stops it. Does not wait for it.
  ~TFileCopy();
  void Stop();
  // False when it is still at work after so many milliseconds: a disk that does not answer.
  [[nodiscard]] bool Wait(int milliseconds);

 private:
  struct TShared;
  std::shared_ptr<TShared> m_shared;  // with the thread, which may be left to itself
};
