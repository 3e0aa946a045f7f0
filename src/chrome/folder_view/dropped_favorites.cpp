#include "chrome/folder_view/dropped_favorites.h"

#include <algorithm>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>

#include "favorites/favorite_drag.h"

namespace {

bool IsFile(const TDroppedLink &link) {
  return QUrl(link.address).isLocalFile();
}

}  // namespace

bool DroppedFavorites::CanTake(const QMimeData &data) {
  return FavoriteDrag::HasPaths(data) || HasDroppedLinks(data);
}

bool DroppedFavorites::IsCopied(const QDropEvent &event) {
  return !FavoriteDrag::AreFavorites(*event.mimeData()) || event.modifiers().testFlag(Qt::ControlModifier);
}

void DroppedFavorites::Propose(QDropEvent &event) {
  const Qt::DropAction wanted = IsCopied(event) ? Qt::CopyAction : Qt::MoveAction;
  if (event.possibleActions().testFlag(wanted)) {
    event.setDropAction(wanted);
    event.accept();
  } else {
    event.acceptProposedAction();
  }
}

DroppedFavorites::TDropped DroppedFavorites::In(const QMimeData &data) {
  const bool areFavorites = FavoriteDrag::AreFavorites(data);
  return {areFavorites, FavoriteDrag::PathsIn(data), areFavorites ? QList<TDroppedLink>() : DroppedLinks(data)};
}

bool DroppedFavorites::IsTooMuch(const TDropped &dropped) {
  return !dropped.areFavorites && FavoritesEdit::IsTooMuch(dropped.paths);
}

TFavoritesChange DroppedFavorites::Take(const TDropped &dropped, const QString &folder, int position, bool isCopied) {
  const auto &[areFavorites, paths, links] = dropped;
  if (areFavorites) {
    return isCopied ? FavoritesEdit::Copy(paths, folder, position) : FavoritesEdit::Move(paths, folder, position);
  }
  // However many they are.
  if (std::ranges::all_of(links, &IsFile)) return FavoritesEdit::Copy(paths, folder, position);
  TFavoritesChange all;
  for (const TDroppedLink &link : links) {
    const TFavoritesChange change = IsFile(link)
                                        ? FavoritesEdit::Copy({QUrl(link.address).toLocalFile()}, folder, position)
                                        : FavoritesEdit::AddPage(folder, link.title, link.address, position);
    all.steps += change.steps;
    all.paths += change.paths;
    if (all.error.isEmpty()) all.error = change.error;
    if (position >= 0) position += int(change.paths.size());
  }
  return all;
}
