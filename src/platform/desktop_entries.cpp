#include "platform/desktop_entries.h"

#include <algorithm>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QSet>
#include <QStandardPaths>
#include <QUrl>

#include "store/ini_file.h"

namespace {

constexpr qint64 LargestEntry = 1 << 20;  // bytes
const QString Section = QStringLiteral("Desktop Entry");
const QString ChoicesSection = QString::fromLatin1(TDesktopEntries::Choices);

QStringList ListOf(const QString &value) {
  QStringList items;
  for (const QString &item : value.split(u';')) {
    if (const QString trimmed = item.trimmed(); !trimmed.isEmpty()) items.append(trimmed);
  }
  return items;
}

// The escapes that every text of an entry may have.
QString Unescaped(const QString &value) {
  QString text;
  for (qsizetype i = 0; i < value.size(); ++i) {
    if (value[i] != u'\\' || i + 1 == value.size()) {
      text += value[i];
      continue;
    }
    switch (value[++i].toLatin1()) {
      case 's':
        text += u' ';
        break;
      case 'n':
        text += u'\n';
        break;
      case 't':
        text += u'\t';
        break;
      case 'r':
        text += u'\r';
        break;
      case '\\':
        text += u'\\';
        break;
      default:
        // What is no escape is left for the Exec line's own quoting.
        text += u'\\';
        text += value[i];
    }
  }
  return text;
}

// "de_AT@euro" is looked for as such, then with less and less of it.
QString LocalText(const TIniFile &file, const QString &key) {
  const QString locale = QLocale().name();
  for (const QString &tried : {locale, locale.section(u'_', 0, 0)}) {
    const QString text = file.Value(Section, QStringLiteral("%1[%2]").arg(key, tried));
    if (!text.isEmpty()) return Unescaped(text);
  }
  return Unescaped(file.Value(Section, key));
}

QStringList CurrentDesktops() {
  return qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':', Qt::SkipEmptyParts);
}

bool IsForThisDesktop(const TIniFile &file) {
  const QStringList desktops = CurrentDesktops();
  const auto names = [&](const char *key) {
    const QStringList listed = ListOf(file.Value(Section, QString::fromLatin1(key)));
    return std::any_of(desktops.begin(), desktops.end(), [&](const QString &name) { return listed.contains(name); });
  };
  if (names("NotShowIn")) return false;
  return file.Value(Section, QStringLiteral("OnlyShowIn")).isEmpty() || names("OnlyShowIn");
}

bool IsTrue(const TIniFile &file, const char *key) {
  return file.Value(Section, QString::fromLatin1(key)) == QLatin1String("true");
}

// The lines of an entry that are looked at, in the user's language or in none. Most of a file are other languages, and
// a menu that opens reads hundreds of files.
QByteArray WantedLines(const QByteArray &bytes) {
  static const QSet<QByteArray> keys{"Type",      "Name",     "Icon",       "Exec",      "TryExec",  "Hidden",
                                     "NoDisplay", "Terminal", "OnlyShowIn", "NotShowIn", "MimeType", "Categories"};
  const QByteArray language = '[' + QLocale().name().section(u'_', 0, 0).toLatin1();
  const QByteArray header = '[' + Section.toLatin1() + ']';
  QByteArray wanted = header + '\n';
  bool isInside = false;
  for (qsizetype begin = 0; begin < bytes.size();) {
    qsizetype end = bytes.indexOf('\n', begin);
    if (end < 0) end = bytes.size();
    const QByteArrayView line = QByteArrayView(bytes).sliced(begin, end - begin).trimmed();
    begin = end + 1;
    if (line.startsWith('[')) {
      if (isInside) break;
      isInside = line == header;
    }
    const qsizetype equals = line.indexOf('=');
    if (!isInside || equals < 0) continue;
    const QByteArrayView name = line.first(equals).trimmed();
    const qsizetype bracket = name.indexOf('[');
    if (bracket >= 0 && !name.sliced(bracket).startsWith(language)) continue;
    const QByteArrayView key = bracket < 0 ? name : name.first(bracket);
    if (keys.contains(QByteArray::fromRawData(key.data(), key.size()))) wanted += line.toByteArray() + '\n';
  }
  return wanted;
}

std::optional<TDesktopEntry> ReadEntry(const QString &path, const QString &id) {
  // What is no regular file could keep the reader waiting for ever.
  if (const QFileInfo info(path); !info.isFile() || info.size() > LargestEntry) return {};
  QFile source(path);
  if (!source.open(QIODevice::ReadOnly)) return {};
  const TIniFile file = TIniFile::FromBytes(WantedLines(source.readAll()));
  if (file.Value(Section, QStringLiteral("Type")) != QLatin1String("Application") || IsTrue(file, "Hidden")) return {};
  const QString needed = Unescaped(file.Value(Section, QStringLiteral("TryExec")));
  if (!needed.isEmpty() && QStandardPaths::findExecutable(needed).isEmpty()) return {};
  TDesktopEntry entry{.id = id,
                      .path = path,
                      .name = LocalText(file, QStringLiteral("Name")),
                      .icon = LocalText(file, QStringLiteral("Icon")),
                      .exec = Unescaped(file.Value(Section, QStringLiteral("Exec"))),
                      .mimeTypes = ListOf(file.Value(Section, QStringLiteral("MimeType"))),
                      .categories = ListOf(file.Value(Section, QStringLiteral("Categories"))),
                      .isShown = !IsTrue(file, "NoDisplay") && IsForThisDesktop(file),
                      .inTerminal = IsTrue(file, "Terminal")};
  if (entry.name.isEmpty()) entry.name = id.chopped(8);  // ".desktop"
  if (entry.CommandLine({}).isEmpty()) return {};
  return entry;
}

// An Exec line as its arguments; nothing for one whose quotes do not close.
std::optional<QStringList> SplitExec(const QString &exec) {
  QStringList arguments;
  QString argument;
  bool isQuoted = false;
  bool isBegun = false;
  for (qsizetype i = 0; i < exec.size(); ++i) {
    const QChar c = exec[i];
    if (c == u'"') {
      isQuoted = !isQuoted;
      isBegun = true;
    } else if (isQuoted && c == u'\\' && i + 1 < exec.size() && QStringView(u"\"`$\\").contains(exec[i + 1])) {
      argument += exec[++i];
    } else if (!isQuoted && (c == u' ' || c == u'\t' || c == u'\n')) {
      if (isBegun) arguments.append(argument);
      argument.clear();
      isBegun = false;
    } else {
      argument += c;
      isBegun = true;
    }
  }
  if (isQuoted) return {};
  if (isBegun) arguments.append(argument);
  return arguments;
}

// A target as an address, and as the name of a file where it is one.
QString AsAddress(const QString &target) {
  return target.startsWith(u'/') ? QUrl::fromLocalFile(target).toString(QUrl::FullyEncoded) : target;
}
QString AsFile(const QString &target) {
  const QUrl url(target);
  return url.isLocalFile() ? url.toLocalFile() : target;
}

QStringList ChoiceFilesIn(const QString &folder) {
  QStringList files;
  for (const QString &desktop : CurrentDesktops()) {
    files.append(QStringLiteral("%1/%2-mimeapps.list").arg(folder, desktop.toLower()));
  }
  files.append(folder + QStringLiteral("/mimeapps.list"));
  return files;
}

bool IsBrowser(const TDesktopEntry &entry) {
  return entry.categories.contains(QLatin1String("WebBrowser"));
}

// What a menu may offer.
template <typename TWanted>
QList<TDesktopEntry> Offered(const QList<TDesktopEntry> &entries, const TWanted &isWanted) {
  QList<TDesktopEntry> offered;
  for (const TDesktopEntry &entry : entries) {
    const bool isOwn = entry.id == QLatin1String(TDesktopEntries::OwnId);
    if (entry.isShown && !entry.inTerminal && !isOwn && isWanted(entry)) offered.append(entry);
  }
  return offered;
}

}  // namespace

QStringList TDesktopEntry::CommandLine(const QStringList &targets) const {
  const std::optional<QStringList> arguments = SplitExec(exec);
  if (!arguments || arguments->isEmpty()) return {};
  QStringList command;
  bool usedTargets = false;
  for (const QString &argument : *arguments) {
    // These stand for several arguments, or for none, and only by themselves.
    if (argument == QLatin1String("%F") || argument == QLatin1String("%U")) {
      for (const QString &target : targets) command.append(argument[1] == u'F' ? AsFile(target) : AsAddress(target));
      usedTargets = true;
      continue;
    }
    if (argument == QLatin1String("%i")) {
      if (!icon.isEmpty()) command << QStringLiteral("--icon") << icon;
      continue;
    }
    QString filled;
    for (qsizetype i = 0; i < argument.size(); ++i) {
      if (argument[i] != u'%' || i + 1 == argument.size()) {
        filled += argument[i];
        continue;
      }
      switch (argument[++i].toLatin1()) {
        case '%':
          filled += u'%';
          break;
        case 'f':
        case 'F':
        case 'u':
        case 'U': {
          const QString target = targets.value(0);
          if (!target.isEmpty()) filled += argument[i].toLower() == u'f' ? AsFile(target) : AsAddress(target);
          usedTargets = true;
          break;
        }
        case 'c':
          filled += name;
          break;
        case 'k':
          filled += path;
          break;
        default:
          break;  // retired codes, and what means nothing
      }
    }
    // An argument that was nothing but a code without a value is no argument.
    if (!filled.isEmpty() || !argument.startsWith(u'%')) command.append(filled);
  }
  if (command.value(0).isEmpty()) return {};
  if (!usedTargets) command.append(targets);
  return command;
}

TDesktopEntries TDesktopEntries::Installed() {
  TDesktopEntries entries;
  entries.ReadEntries();
  entries.ReadAssociations();
  return entries;
}

void TDesktopEntries::ReadEntries() {
  QSet<QString> seen;
  for (const QString &folder : QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation)) {
    QDirIterator walk(folder, {QStringLiteral("*.desktop")}, QDir::Files, QDirIterator::Subdirectories);
    while (walk.hasNext()) {
      const QString path = walk.next();
      // An entry in an earlier folder hides one of the same name in a later one, even if it only says "hidden".
      const QString id = path.mid(folder.size() + 1).replace(u'/', u'-');
      if (seen.contains(id)) continue;
      seen.insert(id);
      if (const std::optional<TDesktopEntry> entry = ReadEntry(path, id)) m_entries.append(*entry);
    }
  }
  std::sort(m_entries.begin(), m_entries.end(), [](const TDesktopEntry &a, const TDesktopEntry &b) {
    const int order = a.name.localeAwareCompare(b.name);
    return order != 0 ? order < 0 : a.id < b.id;
  });
}

void TDesktopEntries::ReadAssociations() {
  QStringList files;
  for (const QString &folder : QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation)) {
    files += ChoiceFilesIn(folder);
  }
  for (const QString &folder : QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation)) {
    files += ChoiceFilesIn(folder);
  }
  for (const QString &path : std::as_const(files)) {
    TIniFile file;
    if (!file.Load(path)) continue;
    const auto read = [&file](const QString &section, QHash<QString, QStringList> &into, const auto &mayAdd) {
      for (const auto &[type, ids] : file.Pairs(section)) {
        for (const QString &id : ListOf(ids)) {
          if (mayAdd(type, id)) into[type].append(id);
        }
      }
    };
    read(ChoicesSection, m_chosen, [](const QString &, const QString &) { return true; });
    // What a list that counts more has added or taken away stays so.
    const QHash<QString, QStringList> removedBefore = m_removed;
    const QHash<QString, QStringList> addedBefore = m_associations;
    read(QStringLiteral("Added Associations"), m_associations,
         [&](const QString &type, const QString &id) { return !removedBefore.value(type).contains(id); });
    read(QStringLiteral("Removed Associations"), m_removed,
         [&](const QString &type, const QString &id) { return !addedBefore.value(type).contains(id); });
  }
}

std::optional<TDesktopEntry> TDesktopEntries::Find(const QString &id) const {
  const auto found =
      std::find_if(m_entries.begin(), m_entries.end(), [&](const TDesktopEntry &entry) { return entry.id == id; });
  if (found == m_entries.end()) return {};
  return *found;
}

QString TDesktopEntries::ChosenFor(const QString &type) const {
  for (const QString &id : m_chosen.value(type)) {
    if (Find(id)) return id;
  }
  return {};
}

std::optional<TDesktopEntry> TDesktopEntries::DefaultOf(const QString &type) const {
  if (const QString chosen = ChosenFor(type); !chosen.isEmpty()) return Find(chosen);
  for (const QString &id : m_associations.value(type)) {
    if (const std::optional<TDesktopEntry> added = Find(id)) return added;
  }
  for (const TDesktopEntry &entry : m_entries) {
    if (Handles(entry, type)) return entry;
  }
  return {};
}

bool TDesktopEntries::Handles(const TDesktopEntry &entry, const QString &type) const {
  if (m_associations.value(type).contains(entry.id)) return true;
  return entry.mimeTypes.contains(type) && !m_removed.value(type).contains(entry.id);
}

QList<TDesktopEntry> TDesktopEntries::HandlersOf(const QString &type) const {
  const std::optional<TDesktopEntry> first = DefaultOf(type);
  QList<TDesktopEntry> handlers;
  for (const TDesktopEntry &entry : m_entries) {
    const bool isFirst = first && first->id == entry.id;
    if (!entry.isShown || (!isFirst && !Handles(entry, type))) continue;
    if (isFirst) {
      handlers.prepend(entry);
    } else {
      handlers.append(entry);
    }
  }
  return handlers;
}

QList<TDesktopEntry> TDesktopEntries::Editors() const {
  return Offered(m_entries, [this](const TDesktopEntry &entry) {
    // Browsers open web pages, too, but do not edit them.
    return !IsBrowser(entry) &&
           (Handles(entry, QStringLiteral("text/html")) || entry.categories.contains(QLatin1String("WebDevelopment")) ||
            entry.categories.contains(QLatin1String("TextEditor")));
  });
}

QList<TDesktopEntry> TDesktopEntries::MailClients() const {
  return Offered(HandlersOf(QStringLiteral("x-scheme-handler/mailto")),
                 [](const TDesktopEntry &entry) { return !IsBrowser(entry); });
}

QList<TDesktopEntry> TDesktopEntries::Browsers() const {
  return Offered(m_entries, [this](const TDesktopEntry &entry) {
    return IsBrowser(entry) || Handles(entry, QStringLiteral("x-scheme-handler/http"));
  });
}

QString TDesktopEntries::Quoted(const QString &argument) {
  QString quoted = argument;
  // Once for the quotes, once more because every text of an entry has escapes.
  for (const char c : {'\\', '"', '`', '$'}) {
    quoted.replace(QLatin1Char(c), QStringLiteral("\\") + QLatin1Char(c));
  }
  quoted.replace(u'\\', QLatin1String("\\\\")).replace(u'%', QLatin1String("%%"));
  quoted.replace(u'\n', QLatin1String("\\n"));
  return u'"' + quoted + u'"';
}

QStringList TDesktopEntries::UserChoiceFiles() {
  return ChoiceFilesIn(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)) +
         ChoiceFilesIn(QStandardPaths::writableLocation(QStandardPaths::ApplicationsLocation));
}
