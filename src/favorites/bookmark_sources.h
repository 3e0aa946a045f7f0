#pragma once

#include <functional>
#include <optional>
#include <QByteArray>
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

// Reads it all. A browser's own file is never opened as it stands there but copied first, so that nothing of a running
// browser is locked or changed. A source of the kind File may also be one of the other kinds' files, wherever it lies.
// `mayGoOn` is asked now and then; when it says no, and when the source cannot be read or is something else
// (`error`, when given, says why), the answer is std::nullopt.
[[nodiscard]] std::optional<TBookmarks> Read(const TBookmarkSource &source, TSkippedBookmarks *skipped,
                                             const std::function<bool()> &mayGoOn, QString *error = nullptr);

// The two JSON forms, told apart by what they hold. std::nullopt for what is neither.
[[nodiscard]] std::optional<TBookmarks> ReadJson(const QByteArray &bytes, TSkippedBookmarks *skipped);

}  // namespace BookmarkSources
