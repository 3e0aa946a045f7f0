#pragma once

#include <functional>
#include <QDateTime>
#include <QList>
#include <QString>

class TRegistryStore;

// What is kept of a download beyond the run.
struct TKeptDownload {
  enum class TState { UnderWay, Finished, Cancelled, Failed, NotStarted };

  QString id{};       // tells it from all others, of other windows too
  QString address{};  // empty where it cannot be asked for again
  QString path{};
  QString part{};  // where it is gathered until it has its place, when that is not beside its path
  QDateTime when{};
  TState state = TState::UnderWay;
  QString failure{};    // in words
  qint64 received = 0;  // bytes
  bool isPage = false;  // a page that was saved
};

// The downloads of all windows as the store keeps them: a value for each, below RegistryKey::Downloads, the oldest
// first and the newest two hundred. The value's name is the download's id, its data a JSON object with "address",
// "path", "when" (ISO 8601), "state" ("running", "finished", "cancelled", "failed", "waiting"), "failure", "received",
// "page", of those under way and those that failed "part", and of those under way "window": the number of the process
// that fetches it. A window writes its
// own downloads only, so that those of several come together. What is no such object is passed over.
class TKeptDownloads final {
 public:
  static constexpr int Most = 200;

  // `window` is this process's number, from 1; `isRunning` tells whether another one's process is there.
  TKeptDownloads(TRegistryStore &store, int window, std::function<bool(int)> isRunning);

  // Newest first, without those that other windows are fetching. Those that are still under way then were left so by a
  // process that has ended.
  [[nodiscard]] QList<TKeptDownload> Read() const;
  // Puts it at the end, or in the place that it has already.
  void Write(const TKeptDownload &download);
  void Remove(const QString &id);

 private:
  TRegistryStore &m_store;
  int m_window;
  std::function<bool(int)> m_isRunning;
};
