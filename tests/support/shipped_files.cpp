#include "support/shipped_files.h"

#include <QDir>
#include <QFile>

// The only file that knows where the tree lies: objects of all others can come from another tree's cache.
QString SourceFile(const QString &path) {
  return QStringLiteral(ZV_SOURCE_DIR "/") + path;
}

QString BuiltFile(const QString &path) {
  return QStringLiteral(ZV_BUILD_DIR "/") + path;
}

void UseShippedLanguages() {
  const QDir folder(qEnvironmentVariable("XDG_DATA_HOME") + QStringLiteral("/zarvela"));
  folder.mkpath(QStringLiteral("."));
  QFile::link(SourceFile(QStringLiteral("Languages")), folder.filePath(QStringLiteral("Languages")));
}
