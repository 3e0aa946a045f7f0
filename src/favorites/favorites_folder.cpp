#include "favorites/favorites_folder.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <QCollator>
#include <QDir>
#include <QHash>
#include <QMimeDatabase>

#include "config/registry_paths.h"
#include "favorites/favorites_order.h"
#include "favorites/shortcut_file.h"
#include "platform/folder_entries.h"
#include "platform/native_path.h"
#include "platform/program_folders.h"
#include "store/private_folder.h"
#include "store/registry_store.h"

namespace {

const QString FavoritesName = QStringLiteral("Favorites");
const QString LinksName = QStringLiteral("Links");

// A full path, or empty.
QString StoredPath(const TRegistryStore &store, const char *key) {
  QString path = store.Read(TRegistryHive::CurrentUser, QString::fromLatin1(key), FavoritesName).value_or(QString());
  if (path.startsWith(QLatin1String("~/"))) path.replace(0, 1, QDir::homePath());
  return QDir::isAbsolutePath(path) ? QDir::cleanPath(path) : QString();
}

// A favorite with what decides its place.
struct TSorted {
  TFavorite favorite;
  QString name;
  qsizetype place;                      // in the order by hand
  std::optional<QCollatorSortKey> key;  // of those that have none
};

class TCaptions final {
 public:
  TCaptions() {
    m_collator.setCaseSensitivity(Qt::CaseInsensitive);
    m_collator.setNumericMode(true);
  }

  [[nodiscard]] QCollatorSortKey Key(const QString &caption) const {
    // Where there is no language the collator knows nothing of upper and lower case, nor of numbers.
    return m_collator.sortKey(m_isPlain ? WithPaddedNumbers(caption.toCaseFolded()) : caption);
  }

 private:
  // Numbers of fewer digits come first.
  static QString WithPaddedNumbers(const QString &caption) {
    constexpr qsizetype MostDigits = 20;
    QString padded;
    qsizetype number = -1;  // where one begins in `padded`
    for (const QChar c : caption) {
      const bool isDigit = c >= u'0' && c <= u'9';
      if (!isDigit && number >= 0) {
        padded.insert(number, QString(qMax<qsizetype>(0, MostDigits - (padded.size() - number)), u'0'));
        number = -1;
      } else if (isDigit && number < 0) {
        number = padded.size();
      }
      padded += c;
    }
    if (number >= 0) padded.insert(number, QString(qMax<qsizetype>(0, MostDigits - (padded.size() - number)), u'0'));
    return padded;
  }

  QCollator m_collator;
  bool m_isPlain = m_collator.locale().language() == QLocale::C;
};

bool ComesFirst(const TSorted &a, const TSorted &b) {
  if (a.place != b.place) return a.place < b.place;
  if (a.favorite.isFolder != b.favorite.isFolder) return a.favorite.isFolder;
  if (a.key && b.key) {
    if (const int order = a.key->compare(*b.key); order != 0) return order < 0;
  }
  if (const int order = a.favorite.caption.compare(b.favorite.caption); order != 0) return order < 0;
  return a.name < b.name;
}

// By their names, the places in the order by hand.
QHash<QString, qsizetype> PlacesIn(const QString &folder) {
  QHash<QString, qsizetype> places;
  const QStringList names = FavoritesOrder::Read(folder).value_or(QStringList());
  places.reserve(names.size());
  // From the end, so that of a repeated name the first counts.
  for (qsizetype i = names.size() - 1; i >= 0; --i) places.insert(names.at(i), i);
  return places;
}

// The desktop might run it. One of its own files that is a target starts something: it holds no address, or another
// favorite leads to it.
bool IsProgram(const QString &target) {
  if (!QDir::isAbsolutePath(target)) return false;
  return ShortcutFile::KindOf(target) == ShortcutFile::TKind::Desktop || FolderEntries::IsExecutable(target) ||
         QMimeDatabase().mimeTypeForFile(target).inherits(QStringLiteral("application/x-desktop"));
}

}  // namespace

namespace FavoritesFolder {

QString Path(const TRegistryStore &store, TPlace place) {
  const bool isUserFirst = place == TPlace::UserShellFolders;
  QString path = StoredPath(store, isUserFirst ? RegistryKey::UserShellFolders : RegistryKey::ShellFolders);
  if (path.isEmpty()) path = StoredPath(store, isUserFirst ? RegistryKey::ShellFolders : RegistryKey::UserShellFolders);
  return path.isEmpty() ? ProgramFolders::UserData() + u'/' + FavoritesName : path;
}

QString LinksPath(const TRegistryStore &store) {
  QString name = store
                     .Read(TRegistryHive::CurrentUser, QString::fromLatin1(RegistryKey::SystemToolbar),
                           QStringLiteral("LinksFolderName"))
                     .value_or(QString());
  name = QDir::cleanPath(name.trimmed().replace(u'\\', u'/'));
  const bool isInside = !name.isEmpty() && name != u"." && name != u".." && !name.startsWith(QLatin1String("../")) &&
                        QDir::isRelativePath(name);
  return Path(store) + u'/' + (isInside ? name : LinksName);
}

bool Make(const QString &folder) {
  return MakePrivateFolder(folder);
}

QString CaptionOf(const QString &path, bool isFolder) {
  QString name = path.mid(path.lastIndexOf(u'/') + 1);
  const qsizetype dot = isFolder ? -1 : name.lastIndexOf(u'.');
  if (dot > 0) name.truncate(dot);
  return NativePath::Shown(name);
}

TFavorites List(const QString &folder, QString *error) {
  const auto entries = FolderEntries::List(folder, error);
  if (!entries) return {};
  const TCaptions captions;
  const QHash<QString, qsizetype> places = PlacesIn(folder);
  const qsizetype last = std::numeric_limits<qsizetype>::max();
  const QString start = folder.endsWith(u'/') ? folder : folder + u'/';
  QList<TSorted> sorted;
  sorted.reserve(entries->size());
  for (const FolderEntries::TEntry &entry : *entries) {
    const QString caption = CaptionOf(entry.name, entry.isFolder);
    const qsizetype place = places.value(entry.name, last);
    sorted.append({{caption, start + entry.name, entry.isFolder},
                   entry.name,
                   place,
                   place == last ? std::optional(captions.Key(caption)) : std::nullopt});
  }
  std::sort(sorted.begin(), sorted.end(), ComesFirst);
  TFavorites favorites;
  favorites.reserve(sorted.size());
  for (TSorted &one : sorted) favorites.append(std::move(one.favorite));
  return favorites;
}

quint64 Stamp(const QString &folder) {
  const quint64 stamp = FolderEntries::Stamp(folder);
  // The order may also be edited where it stands.
  return stamp == 0 ? 0 : stamp ^ FolderEntries::Stamp(folder + u'/' + QLatin1String(FavoritesOrder::FileName));
}

QString Target(const TFavorite &favorite) {
  const QString address = favorite.isFolder ? QString() : ShortcutFile::Read(favorite.path);
  return address.isEmpty() ? favorite.path : address;
}

QString Hint(const TFavorite &favorite) {
  return favorite.caption + QLatin1String("\r\n") + NativePath::Shown(Target(favorite));
}

QStringList Targets(const QString &folder) {
  QStringList targets;
  for (const TFavorite &favorite : List(folder)) {
    const QString target = favorite.isFolder ? QString() : Target(favorite);
    if (!target.isEmpty() && !ShortcutFile::IsScript(target) && !IsProgram(target)) targets.append(target);
  }
  return targets;
}

QStringList ShortcutAddresses(const QString &folder) {
  QStringList addresses;
  const auto entries = FolderEntries::List(folder, nullptr, FolderEntries::THidden::Listed);
  for (const FolderEntries::TEntry &entry : entries.value_or(QList<FolderEntries::TEntry>())) {
    if (entry.isFolder || ShortcutFile::KindOf(entry.name) != ShortcutFile::TKind::Url) continue;
    const QString address = ShortcutFile::Read(folder + u'/' + entry.name);
    if (!address.isEmpty() && !ShortcutFile::IsScript(address)) addresses.append(address);
  }
  return addresses;
}

}  // namespace FavoritesFolder
