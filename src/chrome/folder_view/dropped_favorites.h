#pragma once

#include "favorites/favorites_edit.h"

class QDropEvent;
class QMimeData;

// What a drop on a folder of favorites does, wherever the folder is shown.
namespace DroppedFavorites {

// Favorites, files, or addresses.
[[nodiscard]] bool CanTake(const QMimeData &data);
// Ctrl copies. What comes from elsewhere stays where it is, whatever its owner proposes.
[[nodiscard]] bool IsCopied(const QDropEvent &event);
// The action that the drag shows.
void Propose(QDropEvent &event);

// Moves or copies favorites into the folder, copies the files of others, and makes a favorite of each address. All is
// one change; what cannot be done does not keep the rest from it. `position` as in FavoritesEdit.
TFavoritesChange Take(const QMimeData &data, const QString &folder, int position, bool isCopied);

}  // namespace DroppedFavorites
