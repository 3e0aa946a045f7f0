#pragma once

#include <QStringList>

class QMimeData;

// Favorites on their way from one place of this program to another, and, as files, to and from other programs.
namespace FavoriteDrag {

// The caller's.
[[nodiscard]] QMimeData *DataOf(const QStringList &paths);
// What is on the clipboard is to go from where it is.
void SetCut(QMimeData &data);
// They come from this program, and may be moved; other files are somebody's, and stay where they are.
[[nodiscard]] bool AreFavorites(const QMimeData &data);
[[nodiscard]] bool HasPaths(const QMimeData &data);
[[nodiscard]] QStringList PathsIn(const QMimeData &data);
[[nodiscard]] bool IsCut(const QMimeData &data);

}  // namespace FavoriteDrag
