#pragma once

#include <functional>
#include <optional>
#include <QList>
#include <QString>

#include "favorites/bookmarks.h"

// Where bookmarks are to be had: a bookmark file, or the profile of a browser that this user has.
struct TBookmarkSource {
  enum class TKind { File, Firefox, Chromium, Falkon };
  TKind kind = TKind::File;
  QString profile{};  // its name, as the browser calls it
  QString path{};     // of the file that holds the bookmarks

  bool operator==(const TBookmarkSource &) const = default;
};

namespace BookmarkSources {

// The profiles below the user's own folder `home` and his `config` folder, by browser and name. Looks into a few
// folders only.
[[nodiscard]] QList<TBookmarkSource> Find(const QString &home, const QString &config);
// For the user that runs this.
[[nodiscard]] QList<TBookmarkSource> Find();

// Reads it all; what kind of file it is is told by its contents, so that a file that the user names may also be one of
// a browser's own. A database is never opened as it stands there but copied first, so that nothing of a running browser
// is locked or changed. `mayGoOn` is asked now and then. The answer is std::nullopt when it says no, when the source
// cannot be read (then `error` holds the reason), and when it is no file of bookmarks (then `error` is empty).
[[nodiscard]] std::optional<TBookmarks> Read(const TBookmarkSource &source, TSkippedBookmarks *skipped,
                                             const std::function<bool()> &mayGoOn, QString *error = nullptr);

}  // namespace BookmarkSources
