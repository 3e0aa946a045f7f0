#include <optional>
#include <QSet>
#include <vector>

#include "favorites/bookmark_file.h"
#include "favorites/favorites_folder.h"
#include "favorites/favorites_transfer.h"
#include "favorites/shortcut_file.h"
#include "platform/folder_entries.h"

namespace {

using TEnd = TTransferReport::TEnd;
using TReason = TSkippedBookmark::TReason;

// Walks through all folders, each of them once, whatever links lead to it.
class TWalk final {
 public:
  TWalk(const TTransferControl &control, TTransferReport &report) : m_control(control), m_report(report) {}

  // std::nullopt when it was cancelled.
  std::optional<TBookmarks> Gather(const QString &root) {
    Enter(root);
    while (!m_open.empty()) {
      if (m_control.IsCancelled()) return std::nullopt;
      if (m_open.back().next == m_open.back().favorites.size()) {
        m_open.pop_back();
        continue;
      }
      const TFavorite favorite = m_open.back().favorites.at(m_open.back().next++);
      if (favorite.isFolder) {
        AddFolder(favorite);
      } else {
        AddPage(favorite);
      }
      m_control.Tell(m_report.pages + m_report.folders, 0);
    }
    return m_bookmarks;
  }

 private:
  struct TOpen {
    TFavorites favorites;
    qsizetype next = 0;
  };

  [[nodiscard]] int Depth() const { return int(m_open.size()) - 1; }

  // False, and nothing done, for one that was there before.
  bool Enter(const QString &folder) {
    const QByteArray identity = FolderEntries::Identity(folder);
    if (m_seen.contains(identity)) return false;
    m_seen.insert(identity);
    QString error;
    m_open.push_back({FavoritesFolder::List(folder, &error)});
    if (!error.isEmpty()) m_report.skipped.Add(TReason::Unreadable, FavoritesFolder::CaptionOf(folder, true));
    return true;
  }

  void AddFolder(const TFavorite &favorite) {
    const int depth = Depth();
    if (!Enter(favorite.path)) return m_report.skipped.Add(TReason::Circle, favorite.caption);
    m_bookmarks.append({TBookmark::TKind::Folder, depth, favorite.caption});
    ++m_report.folders;
  }

  void AddPage(const TFavorite &favorite) {
    const QString address = ShortcutFile::Read(favorite.path);
    if (address.isEmpty()) return m_report.skipped.Add(TReason::Unreadable, favorite.caption);
    m_bookmarks.append({TBookmark::TKind::Page, Depth(), favorite.caption, address});
    ++m_report.pages;
  }

  const TTransferControl &m_control;
  TTransferReport &m_report;
  TBookmarks m_bookmarks;
  std::vector<TOpen> m_open;
  QSet<QByteArray> m_seen;
};

}  // namespace

TTransferReport FavoritesTransfer::Export(const QString &folder, const QString &file, const QString &title,
                                          TTransferControl &control) {
  TTransferReport report;
  const std::optional<TBookmarks> bookmarks = TWalk(control, report).Gather(folder);
  const int code = bookmarks ? FolderEntries::Replace(file, BookmarkFile::Write(*bookmarks, title)) : ECANCELED;
  if (code == 0) {
    report.end = TEnd::Done;
    report.path = file;
    return report;
  }
  report.pages = report.folders = 0;
  report.end = bookmarks ? TEnd::Failed : TEnd::Cancelled;
  if (bookmarks) report.error = qt_error_string(code);
  return report;
}
