#pragma once

#include <QString>

// The hold of the one running instance, and the socket on which it hears of later starts.
//
// The hold is a lock on a file in the folder of the user's session ($XDG_RUNTIME_DIR/zarvela; where there is no such
// folder, or none that the lock's file can be written in, one of the user's own with mode 0700 under the temporary
// folder). It lasts as long as the process: the system frees it when the process ends in whatever way, so a dead holder
// never stands in the way. Where neither folder can be had there is no lock, every start is on its own, and IsUsable()
// is false.
class TInstanceLock final {
 public:
  TInstanceLock();
  ~TInstanceLock();
  TInstanceLock(const TInstanceLock &) = delete;
  TInstanceLock &operator=(const TInstanceLock &) = delete;

  // The instance mutex: takes the hold when nobody has it, and then begins to listen: a start that follows at once
  // finds its listener, however long this process takes to answer. Never waits. True when this process has the hold.
  bool CreateInstanceMutex();

  [[nodiscard]] bool IsFirstInstance() const { return m_held; }
  [[nodiscard]] bool IsUsable() const { return !m_folder.isEmpty(); }
  [[nodiscard]] QString LockFile() const;
  [[nodiscard]] QString SocketFile() const;
  // Gives the listening socket's descriptor to the caller, who closes it; -1 when there is none.
  [[nodiscard]] int TakeListener();

 private:
  QString m_folder;
  int m_lock = -1;  // of the lock file, open from the first try on
  bool m_held = false;
  int m_listener = -1;
};
