#include "support/shipped_files.h"

#include <QDir>
#include <QFile>

void UseShippedLanguages() {
  const QDir folder(qEnvironmentVariable("XDG_DATA_HOME") + QStringLiteral("/zarvela"));
  folder.mkpath(QStringLiteral("."));
  QFile::link(QStringLiteral(ZV_SOURCE_DIR "/Languages"), folder.filePath(QStringLiteral("Languages")));
}
