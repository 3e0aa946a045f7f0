#include "platform/profile_folder.h"

#include "platform/program_folders.h"
#include "store/private_folder.h"

namespace {

// More instances than anybody runs; the bound only ends the search where no lock can ever be had.
constexpr int MaxProfiles = 64;

QString NameOf(int number) {
  return number == 1 ? QStringLiteral("/profile") : QStringLiteral("/profile-%1").arg(number);
}

std::unique_ptr<QLockFile> LockOf(int number) {
  auto lock = std::make_unique<QLockFile>(ProgramFolders::UserData() + NameOf(number) + QStringLiteral(".lock"));
  // Held for the whole run, so that only the death of its holder frees it, never its age.
  lock->setStaleLockTime(0);
  return lock;
}

}  // namespace

TProfileFolder::TProfileFolder() {
  const QString data = ProgramFolders::UserData();
  if (!MakePrivateFolder(data)) return;
  for (int number = 1; number <= MaxProfiles; ++number) {
    const QString name = NameOf(number);
    auto lock = LockOf(number);
    if (!lock->tryLock(0)) {
      if (lock->error() == QLockFile::LockFailedError) continue;
      return;
    }
    const QString cache = ProgramFolders::Cache() + name;
    if (!MakePrivateFolder(data + name) || !MakePrivateFolder(cache)) return;
    m_lock = std::move(lock);
    m_number = number;
    m_storagePath = data + name;
    m_cachePath = cache;
    return;
  }
}

bool TProfileFolder::IsInUse(int number) {
  if (number < 1 || number > MaxProfiles) return false;
  const auto lock = LockOf(number);
  return !lock->tryLock(0) && lock->error() == QLockFile::LockFailedError;
}
