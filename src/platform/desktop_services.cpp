#include "platform/desktop_services.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QProcess>
#include <QSet>
#include <QStandardPaths>
#include <QUrl>

#include "store/ini_file.h"

namespace DesktopServices {

namespace {

constexpr const char *Section = "Desktop Entry";
constexpr const char *OwnEntry = "zarvela.desktop";

bool IsEditor(const QStringList &types, const QStringList &categories) {
  if (categories.contains(QLatin1String("WebBrowser"))) return false;
  return categories.contains(QLatin1String("WebDevelopment")) || categories.contains(QLatin1String("TextEditor")) ||
         (types.contains(QLatin1String("text/html")) && categories.contains(QLatin1String("Development")));
}

QString LocalName(const TIniFile &entry) {
  const QString section = QString::fromLatin1(Section);
  const QString locale = QLocale().name();
  for (const QString &key : {QStringLiteral("Name[%1]").arg(locale),
                             QStringLiteral("Name[%1]").arg(locale.section(QLatin1Char('_'), 0, 0))}) {
    if (const QString name = entry.Value(section, key); !name.isEmpty()) return name;
  }
  return entry.Value(section, QStringLiteral("Name"));
}

// One argument of an Exec line; the codes that stand for icons and names are dropped, as the format asks.
QString FillCodes(const QString &argument, const QString &file, bool *usedFile) {
  QString filled;
  for (int i = 0; i < argument.size(); ++i) {
    if (argument[i] != QLatin1Char('%') || i + 1 == argument.size()) {
      filled += argument[i];
      continue;
    }
    switch (argument[++i].toLatin1()) {
      case '%':
        filled += QLatin1Char('%');
        break;
      case 'f':
      case 'F':
        filled += file;
        *usedFile = true;
        break;
      case 'u':
      case 'U':
        filled += QUrl::fromLocalFile(file).toString(QUrl::FullyEncoded);
        *usedFile = true;
        break;
      default:
        break;
    }
  }
  return filled;
}

bool Start(const QStringList &command) {
  if (command.isEmpty()) return false;
  const QString program = QStandardPaths::findExecutable(command.first());
  return !program.isEmpty() && QProcess::startDetached(program, command.mid(1));
}

}  // namespace

QList<TEditor> Editors() {
  QList<TEditor> editors;
  QSet<QString> seen;
  const QString section = QString::fromLatin1(Section);
  for (const QString &folder : QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation)) {
    const QDir dir(folder);
    for (const QString &name : dir.entryList({QStringLiteral("*.desktop")}, QDir::Files)) {
      // An entry in an earlier folder hides one of the same name in a later one.
      if (seen.contains(name) || name == QLatin1String(OwnEntry)) continue;
      seen.insert(name);
      TIniFile entry;
      if (!entry.Load(dir.filePath(name))) continue;
      const auto list = [&](const char *key) {
        return entry.Value(section, QString::fromLatin1(key)).split(QLatin1Char(';'), Qt::SkipEmptyParts);
      };
      const bool hidden = entry.Value(section, QStringLiteral("NoDisplay")) == QLatin1String("true") ||
                          entry.Value(section, QStringLiteral("Hidden")) == QLatin1String("true") ||
                          entry.Value(section, QStringLiteral("Terminal")) == QLatin1String("true");
      const QString exec = entry.Value(section, QStringLiteral("Exec"));
      if (hidden || exec.isEmpty() || !IsEditor(list("MimeType"), list("Categories"))) continue;
      editors.append({LocalName(entry), entry.Value(section, QStringLiteral("Icon")), exec});
    }
  }
  std::sort(editors.begin(), editors.end(),
            [](const TEditor &a, const TEditor &b) { return a.name.localeAwareCompare(b.name) < 0; });
  return editors;
}

QStringList CommandLine(const QString &exec, const QString &file) {
  QStringList command;
  bool usedFile = false;
  for (const QString &argument : QProcess::splitCommand(exec)) {
    const QString filled = FillCodes(argument, file, &usedFile);
    // An argument that was nothing but a dropped code is no argument.
    if (!filled.isEmpty() || !argument.startsWith(QLatin1Char('%'))) command.append(filled);
  }
  if (command.isEmpty()) return {};
  if (!usedFile) command.append(file);
  return command;
}

bool EditWith(const TEditor &editor, const QString &file) {
  return Start(CommandLine(editor.command, file));
}

bool OpenMailAddress(const QString &address) {
  return Start({QStringLiteral("xdg-email"), address}) || Start({QStringLiteral("xdg-open"), address}) ||
         QDesktopServices::openUrl(QUrl(address, QUrl::TolerantMode));
}

bool SendDocument(const QString &file) {
  return Start({QStringLiteral("xdg-email"), QStringLiteral("--attach"), file});
}

}  // namespace DesktopServices
