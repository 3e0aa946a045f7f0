#pragma once

#include <memory>
#include <QLockFile>
#include <QString>

// A folder for the engine's profile that no other running process uses. The engine must not share one between two
// processes, so a further instance takes the next free one ("profile", "profile-2", ...); the hold ends with the object
// or with the process. Where no folder can be made, IsHeld() is false and the profile should keep nothing on disk.
class TProfileFolder final {
 public:
  TProfileFolder();
  [[nodiscard]] bool IsHeld() const { return m_lock != nullptr; }
  // Which of them it is, from 1; 1 where none is held.
  [[nodiscard]] int Number() const { return m_number; }
  // Whether a running process, this one too, holds the folder of that number.
  [[nodiscard]] static bool IsInUse(int number);
  [[nodiscard]] const QString &StoragePath() const { return m_storagePath; }
  [[nodiscard]] const QString &CachePath() const { return m_cachePath; }

 private:
  std::unique_ptr<QLockFile> m_lock;
  int m_number = 1;
  QString m_storagePath;
  QString m_cachePath;
};
