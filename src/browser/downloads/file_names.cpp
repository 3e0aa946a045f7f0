#include "browser/downloads/file_names.h"

#include <algorithm>
#include <array>
#include <QDir>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QUuid>

namespace {

constexpr qsizetype LongestName = 200;   // bytes; file systems take 255, and numbers and endings are appended
constexpr qsizetype LongestEnding = 24;  // bytes; a longer "ending" is a part of the name
constexpr int MostNumbers = 10000;
constexpr int OwnCharacters = 8;
constexpr const char *PartialEnding = ".download";

constexpr std::array ReservedNames{"con",  "prn",  "aux",  "nul",  "com1", "com2", "com3", "com4",
                                   "com5", "com6", "com7", "com8", "com9", "lpt1", "lpt2", "lpt3",
                                   "lpt4", "lpt5", "lpt6", "lpt7", "lpt8", "lpt9"};

constexpr std::array ExecutableEndings{
    "desktop", "sh",  "bash", "csh", "ksh", "zsh",  "fish", "run", "bin", "appimage",   "py",      "pyc", "pl",  "rb",
    "jar",     "exe", "msi",  "bat", "cmd", "com",  "scr",  "ps1", "vbs", "vbe",        "wsf",     "deb", "rpm", "snap",
    "lnk",     "url", "apk",  "dmg", "pkg", "jnlp", "hta",  "reg", "cpl", "flatpakref", "flatpak", "elf", "out", "js",
};

bool IsUnsafe(char32_t character) {
  if (character == QChar::ReplacementCharacter) return true;  // what halves of surrogate pairs turn into
  switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Other_Surrogate:
    case QChar::Other_NotAssigned:
    case QChar::Other_PrivateUse:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
      return true;
    case QChar::Other_Format:
      // Direction marks and overrides can make "exe" read as part of another name. Joiners stay, scripts need them.
      return character != 0x200C && character != 0x200D;
    default:
      return false;
  }
}

QString WithoutUnsafeCharacters(const QString &name) {
  static const QString Reserved = QStringLiteral("<>:\"|?*");
  QString kept;
  for (const char32_t character : name.toUcs4()) {
    if (IsUnsafe(character)) continue;
    kept += Reserved.contains(QChar(char16_t(character))) && character < 0x80 ? QString('_')
                                                                              : QString::fromUcs4(&character, 1);
  }
  return kept;
}

QString WithoutEdges(const QString &name) {
  const auto isEdge = [](QChar character) { return character == '.' || character.isSpace(); };
  qsizetype first = 0;
  qsizetype last = name.size();
  while (first < last && isEdge(name.at(first))) ++first;
  while (last > first && isEdge(name.at(last - 1))) --last;
  return name.mid(first, last - first);
}

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
  QList<uint> characters = name.chopped(ending.size()).toUcs4();
  const qsizetype room = LongestName - ending.toUtf8().size();
  QString stem;
  qsizetype used = 0;
  for (const uint character : std::as_const(characters)) {
    const char32_t one = character;
    const QString piece = QString::fromUcs4(&one, 1);
    used += piece.toUtf8().size();
    if (used > room) break;
    stem += piece;
  }
  return stem + ending;
}

}  // namespace

QString FileNames::Safe(const QString &suggested, const QString &fallback) {
  const qsizetype folderEnd = qMax(suggested.lastIndexOf('/'), suggested.lastIndexOf('\\'));
  QString name = WithoutEdges(WithoutUnsafeCharacters(suggested.mid(folderEnd + 1)));
  if (name.isEmpty()) name = fallback;
  const QString stem = name.section('.', 0, 0).trimmed().toLower();
  if (std::any_of(ReservedNames.begin(), ReservedNames.end(),
                  [&stem](const char *reserved) { return stem == QLatin1String(reserved); })) {
    name.prepend('_');
  }
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
