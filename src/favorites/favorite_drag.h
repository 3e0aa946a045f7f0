#pragma once

#include <QStringList>

class QMimeData;

// Favorites on their way from one place of this program to another, and, as files, to and from other programs.
namespace FavoriteDrag {

// The caller's; `isCut` says that they are to go from where they are.
[[nodiscard]] QMimeData *DataOf(const QStringList &paths, bool isCut = false);
// They come from this program, and may be moved; other files are somebody's, and stay where they are.
[[nodiscard]] bool AreFavorites(const QMimeData &data);
[[nodiscard]] bool HasPaths(const QMimeData &data);
[[nodiscard]] QStringList PathsIn(const QMimeData &data);
[[nodiscard]] bool IsCut(const QMimeData &data);

}  // namespace FavoriteDrag
