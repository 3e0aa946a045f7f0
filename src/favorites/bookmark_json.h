#pragma once

#include <optional>
#include <QByteArray>

#include "favorites/bookmarks.h"

// The JSON files in which two families of browsers keep their bookmarks: an object "roots" with the folders that are
// there from the beginning, and in each folder its "children" with "type", "name" and "url".
namespace BookmarkJson {

// std::nullopt for what is neither. Takes any bytes.
[[nodiscard]] std::optional<TBookmarks> Read(const QByteArray &bytes, TSkippedBookmarks *skipped);

}  // namespace BookmarkJson
