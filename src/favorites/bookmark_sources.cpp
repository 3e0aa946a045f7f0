#include "favorites/bookmark_sources.h"

#include <cerrno>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <vector>

#include "favorites/bookmark_file.h"
#include "favorites/bookmark_json.h"
#include "platform/folder_entries.h"
#include "store/ini_file.h"
#include "store/sqlite_connection.h"
#include "store/store_file.h"

namespace {

using TKind = TBookmarkSource::TKind;
using TRoot = TBookmark::TRoot;
using TReason = TSkippedBookmark::TReason;

constexpr qint64 LargestList = 16 * 1024 * 1024;  // of profiles
constexpr qsizetype HeadSize = 64;
constexpr int CopyTries = 3;
constexpr QByteArrayView SqliteHeader("SQLite format 3");
constexpr qint64 Microseconds = 1'000'000;

const QString FirefoxFile = QStringLiteral("places.sqlite");
const QString ChromiumFile = QStringLiteral("Bookmarks");
const QString FalkonFile = QStringLiteral("bookmarks.json");

QStringList SubFolders(const QString &folder) {
  return QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
}

void Add(QList<TBookmarkSource> &sources, TKind kind, const QString &profile, const QString &path) {
  if (!QFileInfo(path).isFile()) return;
  // The same profile may be named twice.
  for (const TBookmarkSource &known : std::as_const(sources)) {
    if (known.path == path) return;
  }
  sources.append({kind, profile, path});
}

void FindFirefox(QList<TBookmarkSource> &sources, const QString &folder) {
  TIniFile profiles;
  if (const auto bytes = FolderEntries::Read(folder + QLatin1String("/profiles.ini"), LargestList)) {
    profiles = TIniFile::FromBytes(*bytes);
  }
  const QStringList sections = profiles.Sections();
  for (const QString &section : sections) {
    const QString path = profiles.Value(section, QStringLiteral("Path"));
    if (path.isEmpty() || !section.startsWith(QLatin1String("Profile"))) continue;
    const bool isFull = profiles.Value(section, QStringLiteral("IsRelative")) == u"0";
    const QString full = QDir::cleanPath(isFull ? path : folder + u'/' + path);
    Add(sources, TKind::Firefox, profiles.Value(section, QStringLiteral("Name"), QFileInfo(path).fileName()),
        full + u'/' + FirefoxFile);
  }
  for (const QString &profile : SubFolders(folder)) {
    Add(sources, TKind::Firefox, profile, folder + u'/' + profile + u'/' + FirefoxFile);
  }
}

void FindChromium(QList<TBookmarkSource> &sources, const QString &folder) {
  QJsonObject names;
  if (const auto bytes = FolderEntries::Read(folder + QLatin1String("/Local State"), LargestList)) {
    names = QJsonDocument::fromJson(*bytes).object().value(u"profile").toObject().value(u"info_cache").toObject();
  }
  for (const QString &profile : SubFolders(folder)) {
    const QString name = names.value(profile).toObject().value(u"name").toString();
    Add(sources, TKind::Chromium, name.isEmpty() ? profile : name, folder + u'/' + profile + u'/' + ChromiumFile);
  }
}

void FindFalkon(QList<TBookmarkSource> &sources, const QString &folder) {
  for (const QString &profile : SubFolders(folder)) {
    Add(sources, TKind::Falkon, profile, folder + u'/' + profile + u'/' + FalkonFile);
  }
}

TRoot RootOf(const QString &guid) {
  if (guid == u"toolbar_____") return TRoot::Bar;
  if (guid == u"menu________") return TRoot::Menu;
  if (guid == u"unfiled_____") return TRoot::Other;
  return guid == u"mobile______" ? TRoot::Mobile : TRoot::None;
}

// The tables of one browser's places: bookmarks with the number of the folder they are in.
class TPlaces final {
 public:
  explicit TPlaces(TSkippedBookmarks *skipped) : m_list(skipped) {}

  std::optional<TBookmarks> Read(const QString &file, const std::function<bool()> &mayGoOn) {
    if (!ReadRows(file, mayGoOn)) return std::nullopt;
    for (const char *guid : {"toolbar_____", "menu________", "unfiled_____", "mobile______"}) {
      const qint64 id = m_roots.value(QString::fromLatin1(guid), -1);
      if (id < 0) continue;
      const qsizetype place = m_list.All().size();
      m_list.AddFolder(0, m_names.value(id), 0, RootOf(QString::fromLatin1(guid)));
      ReadFolder(id);
      m_list.DropIfEmpty(place);
    }
    return m_list.All();
  }

 private:
  enum TType { Page = 1, Folder = 2, Separator = 3 };
  struct TRow {
    qint64 id;
    int type;
    QString name;
    QString address;
    qint64 added;
  };

  bool ReadRows(const QString &file, const std::function<bool()> &mayGoOn) {
    TSqliteConnection database;
    if (database.Open(file, TSqliteConnection::TMode::ReadWrite) != 0) return false;
    TSqliteStatement rows = database.Use(
        "SELECT b.id, b.parent, b.type, coalesce(b.title, ''), coalesce(b.guid, ''), coalesce(p.url, ''), "
        "coalesce(b.dateAdded, 0) FROM moz_bookmarks b LEFT JOIN moz_places p ON p.id = b.fk "
        "ORDER BY b.parent, b.position, b.id");
    constexpr int AskedEvery = 256;
    for (int count = 1; rows.Step(); ++count) {
      if (count % AskedEvery == 0 && !mayGoOn()) return false;
      const qint64 id = rows.Integer(0);
      const QString guid = rows.Text(4);
      if (RootOf(guid) != TRoot::None) {
        m_roots.insert(guid, id);
        m_names.insert(id, rows.Text(3));
      }
      m_children[rows.Integer(1)].append(
          {id, int(rows.Integer(2)), rows.Text(3), rows.Text(5), rows.Integer(6) / Microseconds});
    }
    return TStoreFile::StateOf(rows.Code()) == TStoreFile::TState::Ready;
  }

  void ReadFolder(qint64 root) {
    struct TOpen {
      QList<TRow> rows;
      qsizetype next = 0;
    };
    // Each folder is taken once, however the numbers lead around.
    std::vector<TOpen> open{{m_children.take(root)}};
    while (!open.empty()) {
      if (open.back().next == open.back().rows.size()) {
        open.pop_back();
        continue;
      }
      const TRow row = open.back().rows.at(open.back().next++);
      const int depth = int(open.size());
      if (row.type == Folder) {
        m_list.AddFolder(depth, row.name, row.added, TRoot::None);
        open.push_back({m_children.take(row.id)});
      } else if (row.type == Separator) {
        m_list.Skip(TReason::Separator);
      } else {
        m_list.AddPage(depth, row.name, row.address, row.added);
      }
    }
  }

  TBookmarkList m_list;
  QHash<qint64, QList<TRow>> m_children;
  QHash<QString, qint64> m_roots;
  QHash<qint64, QString> m_names;
};

// Size and time, by which a change is seen.
QString StateOf(const QString &file) {
  const QFileInfo info(file);
  return QStringLiteral("%1 %2").arg(info.size()).arg(info.lastModified().toMSecsSinceEpoch());
}

// The database with what its log holds; copied again when the browser has written meanwhile. 0, or the reason.
int CopyDatabase(const QString &from, const QString &to, const std::function<bool()> &mayGoOn) {
  const QString log = QStringLiteral("-wal");
  int code = EAGAIN;
  for (int tries = 0; tries < CopyTries; ++tries) {
    const QString before = StateOf(from) + StateOf(from + log);
    for (const QString &copy : {to, to + log}) QFile::remove(copy);
    code = FolderEntries::Copy(from, to, mayGoOn);
    if (code == 0) code = FolderEntries::Copy(from + log, to + log, mayGoOn);
    if (code == ENOENT && QFileInfo::exists(to)) code = 0;
    if (code != 0 || before == StateOf(from) + StateOf(from + log)) break;
  }
  return code;
}

void Tell(QString *error, const QString &text) {
  if (error != nullptr) *error = text;
}

std::optional<TBookmarks> ReadDatabase(const QString &path, TSkippedBookmarks *skipped,
                                       const std::function<bool()> &mayGoOn, QString *error) {
  const QTemporaryDir folder;
  if (!folder.isValid()) {
    Tell(error, folder.errorString());
    return std::nullopt;
  }
  const QString copy = folder.filePath(FirefoxFile);
  // Of a link the file is meant.
  if (const int code = CopyDatabase(QFileInfo(path).canonicalFilePath(), copy, mayGoOn); code != 0) {
    Tell(error, qt_error_string(code));
    return std::nullopt;
  }
  return TPlaces(skipped).Read(copy, mayGoOn);
}

}  // namespace

namespace BookmarkSources {

QList<TBookmarkSource> Find(const QString &home, const QString &config) {
  QList<TBookmarkSource> sources;
  for (const QString &place :
       {home + "/.mozilla/firefox", config + "/mozilla/firefox", home + "/snap/firefox/common/.mozilla/firefox",
        home + "/.var/app/org.mozilla.firefox/.mozilla/firefox"}) {
    FindFirefox(sources, place);
  }
  for (const QString &place : {config + "/chromium", home + "/snap/chromium/common/chromium",
                               home + "/.var/app/org.chromium.Chromium/config/chromium"}) {
    FindChromium(sources, place);
  }
  for (const QString &place : {config + "/falkon/profiles", home + "/.var/app/org.kde.falkon/config/falkon/profiles"}) {
    FindFalkon(sources, place);
  }
  return sources;
}

QList<TBookmarkSource> Find() {
  const QString config = qEnvironmentVariable("XDG_CONFIG_HOME");
  return Find(QDir::homePath(), QDir::isAbsolutePath(config) ? config : QDir::homePath() + "/.config");
}

std::optional<TBookmarks> Read(const TBookmarkSource &source, TSkippedBookmarks *skipped,
                               const std::function<bool()> &mayGoOn, QString *error) {
  Tell(error, {});
  const std::optional<QByteArray> head = FolderEntries::Read(source.path, HeadSize, error);
  if (!head) return std::nullopt;
  if (head->startsWith(SqliteHeader)) return ReadDatabase(source.path, skipped, mayGoOn, error);
  const auto bytes = FolderEntries::Read(source.path, BookmarkFile::LargestFile + 1, error);
  if (!bytes || !mayGoOn()) return std::nullopt;
  if (bytes->size() > BookmarkFile::LargestFile) {
    Tell(error, qt_error_string(EFBIG));
    return std::nullopt;
  }
  if (const auto bookmarks = BookmarkJson::Read(*bytes, skipped)) return bookmarks;
  return BookmarkFile::IsOne(*bytes) ? std::optional(BookmarkFile::Read(*bytes, skipped)) : std::nullopt;
}

}  // namespace BookmarkSources
