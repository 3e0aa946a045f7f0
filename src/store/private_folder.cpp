#include "store/private_folder.h"

#include <QDir>
#include <QFileInfo>

namespace {

constexpr QFileDevice::Permissions Private = QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner;

}  // namespace

bool MakePrivateFolder(const QString &path) {
  const QString clean = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
  if (QFileInfo::exists(clean)) return QFileInfo(clean).isDir();
  const QString parent = QFileInfo(clean).path();
  if (parent == clean || !MakePrivateFolder(parent)) return false;
  // Another process may have made it in between.
  return QDir().mkdir(clean, Private) || QFileInfo(clean).isDir();
}
