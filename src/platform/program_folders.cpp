#include "platform/program_folders.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace ProgramFolders {

namespace {

constexpr const char *Name = "/zarvela";
// By the XDG rules a relative path is ignored.
QString BaseFolder(const char *variable, const char *fallback) {
  const QString path = QFile::decodeName(qgetenv(variable));
  return QDir::isAbsolutePath(path) ? QDir::cleanPath(path) : QDir::homePath() + fallback;
}

bool IsPlainName(const QString &name) {
  return !name.isEmpty() && name != u"." && name != u".." && !name.contains(u'/') && !name.contains(u'\\') &&
         !name.contains(QChar(u'\0'));
}

}  // namespace

QString Shipped() {
  const QString beside = QCoreApplication::applicationDirPath();
  if (QFileInfo(beside + "/Languages").isDir()) return beside;
  const QString installed = QDir::cleanPath(beside + "/../share" + Name);
  return QFileInfo(installed).isDir() ? installed : beside;
}

QString UserData() {
  return BaseFolder("XDG_DATA_HOME", "/.local/share") + Name;
}

QString Cache() {
  return BaseFolder("XDG_CACHE_HOME", "/.cache") + Name;
}

QString RegistryFile() {
  return BaseFolder("XDG_CONFIG_HOME", "/.config") + Name + "/registry.sqlite";
}

QStringList SearchPath(const QString &name) {
  const QString tail = name.isEmpty() ? QString() : u'/' + name;
  return {UserData() + tail, Shipped() + tail};
}

QString Find(const QString &folder, const QString &name) {
  if (!IsPlainName(name)) return {};
  for (const QString &place : SearchPath(folder)) {
    const QString path = place + u'/' + name;
    if (QFileInfo(path).isFile()) return path;
  }
  return {};
}

}  // namespace ProgramFolders
