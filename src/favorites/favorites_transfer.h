#pragma once

#include <atomic>
#include <functional>
#include <QString>

#include "favorites/bookmark_sources.h"
#include "favorites/bookmarks.h"

// How an import or an export has ended.
struct TTransferReport {
  enum class TEnd { Done, Cancelled, Failed };
  TEnd end = TEnd::Failed;
  // The reason, when it failed; empty when what was to be read is no file of bookmarks.
  QString error{};
  QString path{};    // of the folder or file that was made; empty when none was
  qint64 pages = 0;  // that were brought over
  qint64 folders = 0;
  TSkippedBookmarks skipped{};
};

// How far a transfer has come, and whether it is to go on; for the thread that does it and the one that waits.
class TTransferControl final {
 public:
  // Of what is to be done, `total` or 0 while that is not known; called often, on the thread that works.
  std::function<void(qint64 done, qint64 total)> progress{};

  void Cancel() { m_isCancelled = true; }
  [[nodiscard]] bool IsCancelled() const { return m_isCancelled; }
  void Tell(qint64 done, qint64 total) const {
    if (progress) progress(done, total);
  }

 private:
  std::atomic<bool> m_isCancelled = false;
};

// What the folders are called that each browser has from the beginning. An empty name leaves the one in the source.
struct TRootNames {
  QString bar{};
  QString menu{};
  QString other{};
  QString mobile{};
};

namespace FavoritesTransfer {

// Brings bookmarks into a new folder `caption` in `folder` (which is made when it is missing), with their folders and
// their order. All is made in a hidden folder beside and moved to its place in one step at the end: whoever cancels, or
// pulls the plug, has nothing of it. What a cut-off import has left hidden is taken away by the next one. A disk that
// is full ends it; a single favorite that is refused is skipped.
[[nodiscard]] TTransferReport Import(const TBookmarkSource &source, const QString &folder, const QString &caption,
                                     const TRootNames &names, TTransferControl &control);

// The second half of it, for bookmarks that are read already.
[[nodiscard]] TTransferReport Import(const TBookmarks &bookmarks, const QString &folder, const QString &caption,
                                     const TRootNames &names, TTransferControl &control);

// Writes the favorites in `folder` and all its sub-folders to the bookmark file `file`, which is replaced, whole or not
// at all. Of a folder that several links lead to, only the first is gone into; files that hold no address are left out.
[[nodiscard]] TTransferReport Export(const QString &folder, const QString &file, const QString &title,
                                     TTransferControl &control);

}  // namespace FavoritesTransfer
