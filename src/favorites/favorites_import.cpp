#include <algorithm>
#include <cerrno>
#include <memory>
#include <QUuid>
#include <vector>

#include "favorites/favorite_names.h"
#include "favorites/favorites_folder.h"
#include "favorites/favorites_order.h"
#include "favorites/favorites_transfer.h"
#include "favorites/shortcut_file.h"
#include "platform/folder_entries.h"
#include "platform/native_path.h"

namespace {

using TEnd = TTransferReport::TEnd;
using TReason = TSkippedBookmark::TReason;

// Begins the name of the hidden folder in which an import is made.
const QString HiddenStart = QStringLiteral(".zvimport-");
const QString UrlEnding = QStringLiteral(".url");
// Bytes: what systems take for a whole path, less the longest name below it.
constexpr qsizetype LongestPath = 3500;
constexpr int MostTries = 100;

// The disk as a whole is at fault, not one name.
bool IsHopeless(int code) {
  return code == ENOSPC || code == EDQUOT || code == EFBIG || code == EROFS || code == EIO || code == EACCES ||
         code == ENOENT;
}

// A hidden folder that nobody holds is what an import has left that was cut off.
void RemoveLeftOvers(const QString &folder) {
  const auto entries = FolderEntries::List(folder, nullptr, FolderEntries::THidden::Listed);
  if (!entries) return;
  for (const FolderEntries::TEntry &entry : *entries) {
    if (!entry.isFolder || !entry.name.startsWith(HiddenStart)) continue;
    const QString path = folder + u'/' + entry.name;
    const FolderEntries::THold hold(path);
    if (hold.IsHeld()) (void)FolderEntries::Remove(path);
  }
}

QString RootName(TBookmark::TRoot root, const TRootNames &names) {
  switch (root) {
    case TBookmark::TRoot::Bar:
      return names.bar;
    case TBookmark::TRoot::Menu:
      return names.menu;
    case TBookmark::TRoot::Other:
      return names.other;
    case TBookmark::TRoot::Mobile:
      return names.mobile;
    case TBookmark::TRoot::None:
      break;
  }
  return {};
}

// Makes the files below a folder that nobody knows of yet.
class TTree final {
 public:
  TTree(const QString &root, const TRootNames &names, TTransferReport &report) : m_names(names), m_report(report) {
    m_open.push_back(std::make_shared<TFolder>(TFolder{root, {}, {}}));
  }

  // 0, or the reason why nothing more can be made.
  [[nodiscard]] int Add(const TBookmark &bookmark) {
    if (const int code = CloseTo(size_t(bookmark.depth) + 1); code != 0) return code;
    return bookmark.kind == TBookmark::TKind::Page ? AddPage(bookmark) : AddFolder(bookmark);
  }
  [[nodiscard]] int Finish() { return CloseTo(0); }

 private:
  struct TFolder {
    QString path;
    TFavoriteNames names;
    QStringList order;
  };

  int CloseTo(size_t count) {
    while (m_open.size() > count) {
      const std::shared_ptr<TFolder> folder = m_open.back();
      m_open.pop_back();
      // A folder that stands for one too deep goes on.
      if (folder.use_count() > 1 || folder->order.size() < 2) continue;
      const QString path = folder->path + u'/' + QLatin1String(FavoritesOrder::FileName);
      if (const int code = FolderEntries::CreateUnseen(path, FavoritesOrder::Bytes(folder->order)); code != 0) {
        return code;
      }
    }
    return 0;
  }

  int AddPage(const TBookmark &bookmark) {
    TFolder &folder = *m_open.back();
    const QString name = folder.names.Free(TFavoriteNames::For(bookmark.name, bookmark.address), UrlEnding);
    const int code = FolderEntries::CreateUnseen(folder.path + u'/' + name, ShortcutFile::Bytes(bookmark.address));
    if (IsHopeless(code)) return code;
    if (code != 0) {
      m_report.skipped.Add(TReason::Refused, bookmark.name, bookmark.address);
      return 0;
    }
    folder.order.append(name);
    ++m_report.pages;
    return 0;
  }

  int AddFolder(const TBookmark &bookmark) {
    const std::shared_ptr<TFolder> folder = m_open.back();
    const QString given = RootName(bookmark.root, m_names);
    const QString caption = given.isEmpty() ? bookmark.name : given;
    const QString name = TFavoriteNames::For(caption, {});
    const QString start = folder->path + u'/';
    int code = ENAMETOOLONG;
    QString path;
    if (NativePath::ToBytes(start).size() + name.toUtf8().size() <= LongestPath) {
      path = start + folder->names.Free(name, {});
      code = FolderEntries::MakeFolder(path);
    }
    if (IsHopeless(code)) return code;
    if (code != 0) {
      m_report.skipped.Add(code == ENAMETOOLONG ? TReason::TooDeep : TReason::Refused, caption);
      m_open.push_back(folder);
      return 0;
    }
    folder->order.append(path.mid(start.size()));
    m_open.push_back(std::make_shared<TFolder>(TFolder{path, {}, {}}));
    ++m_report.folders;
    return 0;
  }

  const TRootNames &m_names;
  TTransferReport &m_report;
  std::vector<std::shared_ptr<TFolder>> m_open;  // from the top to the one that is being filled
};

int Fill(const QString &root, const TBookmarks &bookmarks, const TRootNames &names, const TTransferControl &control,
         TTransferReport &report) {
  TTree tree(root, names, report);
  const qint64 total = bookmarks.size();
  for (qint64 done = 0; done < total; ++done) {
    if (control.IsCancelled()) return ECANCELED;
    if (const int code = tree.Add(bookmarks.at(done)); code != 0) return code;
    control.Tell(done + 1, total);
  }
  return tree.Finish();
}

// Gives what was made its place. 0, or the reason.
int Show(const QString &hidden, const QString &folder, const QString &caption, QString &path) {
  TFavoriteNames taken;
  if (const auto entries = FolderEntries::List(folder)) {
    for (const FolderEntries::TEntry &entry : *entries) taken.Take(entry.name);
  }
  const QString name = TFavoriteNames::For(caption, {});
  int code = EEXIST;
  for (int tries = 0; tries < MostTries && code == EEXIST; ++tries) {
    path = folder + u'/' + taken.Free(name, {});
    code = FolderEntries::MoveToFree(hidden, path);
  }
  if (code != 0) path.clear();
  return code;
}

TTransferReport ImportInto(TTransferReport report, const TBookmarks &bookmarks, const QString &folder,
                           const QString &caption, const TRootNames &names, TTransferControl &control) {
  int code = FavoritesFolder::Make(folder) ? 0 : EACCES;
  const QString hidden = folder + u'/' + HiddenStart + QUuid::createUuid().toString(QUuid::Id128);
  if (code == 0) {
    RemoveLeftOvers(folder);
    code = FolderEntries::MakeFolder(hidden);
  }
  if (code == 0) {
    const FolderEntries::THold hold(hidden);
    code = Fill(hidden, bookmarks, names, control, report);
    // All of it is on the disk before any of it shows.
    if (code == 0) FolderEntries::SyncDisk(hidden);
    if (code == 0) code = control.IsCancelled() ? ECANCELED : Show(hidden, folder, caption, report.path);
    if (code != 0) (void)FolderEntries::Remove(hidden);
  }
  if (code != 0) report.pages = report.folders = 0;
  report.end = code == 0 ? TEnd::Done : code == ECANCELED ? TEnd::Cancelled : TEnd::Failed;
  if (report.end == TEnd::Failed) report.error = qt_error_string(code);
  return report;
}

}  // namespace

TTransferReport FavoritesTransfer::Import(const TBookmarkSource &source, const QString &folder, const QString &caption,
                                          const TRootNames &names, TTransferControl &control) {
  TTransferReport report;
  control.Tell(0, 0);
  const std::optional<TBookmarks> bookmarks = BookmarkSources::Read(
      source, &report.skipped, [&control] { return !control.IsCancelled(); }, &report.error);
  if (bookmarks) return ImportInto(std::move(report), *bookmarks, folder, caption, names, control);
  if (control.IsCancelled()) {
    report.end = TEnd::Cancelled;
    report.error.clear();
  }
  return report;
}

TTransferReport FavoritesTransfer::Import(const TBookmarks &bookmarks, const QString &folder, const QString &caption,
                                          const TRootNames &names, TTransferControl &control) {
  return ImportInto({}, bookmarks, folder, caption, names, control);
}
