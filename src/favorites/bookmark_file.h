#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include "favorites/bookmarks.h"

// The bookmark file that all browsers read and write: HTML with a list (DL) for each folder, in it an item (DT) for
// each page (A with HREF) and folder (H3 before its list).
//
// The reader takes any bytes: lists that are not closed, items outside of lists and unknown tags are taken as they can
// be, and nesting goes as deep as it likes. Text is UTF-8 or UTF-16, or Latin-1 where it is neither.
namespace BookmarkFile {

// Larger files are refused: pictures in them count, too.
inline constexpr qint64 LargestFile = 256 * 1024 * 1024;

[[nodiscard]] TBookmarks Read(QByteArrayView bytes, TSkippedBookmarks *skipped = nullptr);

// True when the beginning of a file looks like one.
[[nodiscard]] bool IsOne(QByteArrayView beginning);

// The whole file, in UTF-8. `title` stands above the list.
[[nodiscard]] QByteArray Write(const TBookmarks &bookmarks, const QString &title);

}  // namespace BookmarkFile
