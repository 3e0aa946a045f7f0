#include "platform/profile_folder.h"

#include "platform/program_folders.h"
#include "store/private_folder.h"

namespace {

// More instances than anybody runs; the bound only ends the search where no lock can ever be had.
constexpr int MaxProfiles = 64;

}  // namespace

TProfileFolder::TProfileFolder() {
  const QString data = ProgramFolders::UserData();
  if (!MakePrivateFolder(data)) return;
  for (int number = 1; number <= MaxProfiles; ++number) {
    const QString name = number == 1 ? QString("/profile") : "/profile-" + QString::number(number);
    auto lock = std::make_unique<QLockFile>(data + name + ".lock");
    // Held for the whole run, so that only the death of its holder frees it, never its age.
    lock->setStaleLockTime(0);
    if (!lock->tryLock(0)) {
      if (lock->error() == QLockFile::LockFailedError) continue;
      return;
    }
    const QString cache = ProgramFolders::Cache() + name;
    if (!MakePrivateFolder(data + name) || !MakePrivateFolder(cache)) return;
    m_lock = std::move(lock);
    m_storagePath = data + name;
    m_cachePath = cache;
    return;
  }
}
