#include "platform/damaged_file.h"

#include <sys/stat.h>

#include <QFile>
#include <QFileInfo>
#include <QLockFile>

namespace DamagedFile {

namespace {

constexpr int LockTimeout = 5000;   // milliseconds
constexpr int MostNames = 10000;

QString UnusedName(const QString &filePath) {
  for (int number = 1; number <= MostNames; ++number) {
    const QString name = filePath + ".damaged-" + QString::number(number);
    if (!QFileInfo::exists(name) && !QFileInfo::exists(name + "-wal")) return name;
  }
  return {};
}

}  // namespace

TIdentity IdentityOf(const QString &path) {
  struct stat status = {};
  if (::stat(QFile::encodeName(path).constData(), &status) != 0) return {};
  return {status.st_dev, status.st_ino};
}

bool SetAside(const QString &filePath, const TIdentity &damaged, QString *newName) {
  QLockFile lock(filePath + ".lock");
  if (!lock.tryLock(LockTimeout)) return false;
  if (IdentityOf(filePath) != damaged) return true;
  const QString name = UnusedName(filePath);
  if (name.isEmpty() || !QFile::rename(filePath, name)) return false;
  QFile::rename(filePath + "-wal", name + "-wal");
  QFile::remove(filePath + "-shm");
  if (newName != nullptr) *newName = name;
  return true;
}

}  // namespace DamagedFile
