#pragma once

#include <QList>
#include <QStringList>

#include "chrome/folder_view/dropped_links.h"
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

// What is in it, for later and for any thread.
struct TDropped {
  bool areFavorites = false;
  QStringList paths{};
  QList<TDroppedLink> links{};
};
[[nodiscard]] TDropped In(const QMimeData &data);

// It is somebody's files, and too many of them; see FavoritesEdit::IsTooMuch.
[[nodiscard]] bool IsTooMuch(const TDropped &dropped);

// Moves or copies favorites into the folder, copies the files of others, and makes a favorite of each address. All is
// one change; what cannot be done does not keep the rest from it. `position` as in FavoritesEdit.
TFavoritesChange Take(const TDropped &dropped, const QString &folder, int position, bool isCopied);

}  // namespace DroppedFavorites
