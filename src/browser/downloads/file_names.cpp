#include "browser/downloads/file_names.h"

#include <algorithm>
#include <array>
#include <QDir>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QUuid>

#include "platform/safe_name.h"

namespace {

constexpr qsizetype LongestName = 200;   // bytes; file systems take 255, and numbers and endings are appended
constexpr qsizetype LongestEnding = 24;  // bytes; a longer "ending" is a part of the name
constexpr int MostNumbers = 10000;
constexpr int OwnCharacters = 8;
constexpr const char *PartialEnding = ".download";

constexpr std::array ExecutableEndings{
    "desktop", "sh",  "bash", "csh", "ksh", "zsh",  "fish", "run", "bin", "appimage",   "py",      "pyc", "pl",  "rb",
    "jar",     "exe", "msi",  "bat", "cmd", "com",  "scr",  "ps1", "vbs", "vbe",        "wsf",     "deb", "rpm", "snap",
    "lnk",     "url", "apk",  "dmg", "pkg", "jnlp", "hta",  "reg", "cpl", "flatpakref", "flatpak", "elf", "out", "js",
};

// The ending with its dot: both parts of "tar.gz" where the system knows them to belong together.
QString EndingOf(const QString &name) {
  const QString known = QMimeDatabase().suffixForFileName(name);
  QString ending = known.isEmpty() ? QFileInfo(name).suffix() : name.right(known.size());
  if (ending.isEmpty() || ending.size() + 1 >= name.size() || ending.toUtf8().size() > LongestEnding) return {};
  return '.' + ending;
}

QString Shortened(const QString &name) {
  if (name.toUtf8().size() <= LongestName) return name;
  const QString ending = EndingOf(name);
  return SafeName::Shortened(name.chopped(ending.size()), LongestName - ending.toUtf8().size()) + ending;
}

}  // namespace

QString FileNames::Safe(const QString &suggested, const QString &fallback) {
  const qsizetype folderEnd = qMax(suggested.lastIndexOf('/'), suggested.lastIndexOf('\\'));
  QString name = SafeName::Cleaned(suggested.mid(folderEnd + 1));
  if (name.isEmpty()) name = fallback;
  return Shortened(name);
}

QString FileNames::FreePath(const QString &folder, const QString &name,
                            const std::function<bool(const QString &)> &isTaken) {
  const QDir directory(folder);
  const auto isFree = [&](const QString &path) {
    const QFileInfo file(path);
    // A dangling link does not exist but would be written through.
    return !file.exists() && !file.isSymLink() && !QFileInfo::exists(PartialOf(path)) && !(isTaken && isTaken(path));
  };
  const QString ending = EndingOf(name);
  const QString stem = name.chopped(ending.size());
  QString path = directory.filePath(name);
  for (int number = 1; number < MostNumbers && !isFree(path); ++number) {
    path = directory.filePath(QString("%1 (%2)%3").arg(stem).arg(number).arg(ending));
  }
  return path;
}

QString FileNames::PartialOf(const QString &path) {
  return path + PartialEnding;
}

QString FileNames::HiddenPath(const QString &path) {
  const QFileInfo file(path);
  const QString own = QUuid::createUuid().toString(QUuid::Id128).left(OwnCharacters);
  return QDir(file.path()).filePath(QStringLiteral(".%1.%2.part").arg(file.fileName(), own));
}

bool FileNames::IsExecutable(const QString &path) {
  const QFileInfo file(path);
  const QString ending = file.suffix().toLower();
  return std::any_of(ExecutableEndings.begin(), ExecutableEndings.end(),
                     [&ending](const char *executable) { return ending == QLatin1String(executable); }) ||
         (file.isFile() && file.isExecutable());
}
