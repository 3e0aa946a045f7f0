#pragma once

#include <QList>
#include <QString>
#include <QStringList>

class TRegistryStore;

// A favorite, or a folder of favorites.
struct TFavorite {
  QString caption{};  // the folder's name, or the file's without its ending; fit for the screen
  QString path{};     // in full; as NativePath writes it, where the name is no UTF-8
  bool isFolder = false;

  bool operator==(const TFavorite &) const = default;
};

using TFavorites = QList<TFavorite>;

// The favorites on disk: folders of files that hold an address each (see ShortcutFile); other files stand among them
// and are favorites of themselves. Nothing here keeps a state: each call looks at the disk, once.
namespace FavoritesFolder {

// The two places where the desktop's shell says which folder is whose. Menus go by the first, searching by the second;
// where one says nothing the other counts.
enum class TPlace { UserShellFolders, ShellFolders };

// The folder of the favorites, which need not be there: what `place` says, when that is a full path ("~/" in front is
// the user's own folder), else "Favorites" in the program's folder.
[[nodiscard]] QString Path(const TRegistryStore &store, TPlace place = TPlace::UserShellFolders);
// The sub-folder that the links bar shows, by the name that the system's browser keeps; "Links" where it keeps none, or
// one that leads out of the favorites.
[[nodiscard]] QString LinksPath(const TRegistryStore &store);
// Makes the folder with its parents, private to the user; for the first favorite. False when it cannot be made.
bool Make(const QString &folder);

// What stands in one folder. Names that begin with "." are left out. In the order by hand where there is one (see
// FavoritesOrder), in which folders and files may be mixed, and what it does not name at the end; else folders, then
// files. The rest of the order is that of the captions, as the user's language sorts them, regardless of case and
// numbers by their value, and by their characters where that is the same.
// Reads no file but the order. A folder that cannot be read is empty, and `error`, when given, holds the reason.
[[nodiscard]] TFavorites List(const QString &folder, QString *error = nullptr);

// Changes whenever List would give something else; costs next to nothing. For menus, which are filled again only then.
[[nodiscard]] quint64 Stamp(const QString &folder);

// What a favorite leads to: the address in it, or its full path where it holds none. Reads the file.
[[nodiscard]] QString Target(const TFavorite &favorite);
// The caption, "\r\n", and the target.
[[nodiscard]] QString Hint(const TFavorite &favorite);

// What all favorites of one folder lead to (see Target), in its order; without its sub-folders. For what opens all of
// them: scripts ("javascript:") and programs, which are executable files and what starts them on the desktop, are left
// out, since those run only when the user chooses them.
[[nodiscard]] QStringList Targets(const QString &folder);
// The addresses in all internet shortcuts (".url") right in the folder, hidden ones too, in the order of the disk;
// without scripts, and without those that hold none.
[[nodiscard]] QStringList ShortcutAddresses(const QString &folder);

// The name of a file or folder, as the caption shows it.
[[nodiscard]] QString CaptionOf(const QString &path, bool isFolder);

}  // namespace FavoritesFolder
