#pragma once

#include <optional>
#include <QList>
#include <QString>
#include <QStringList>

// What was done to favorites, so that it can be undone.
struct TFavoritesChange {
  struct TStep {
    enum class TKind {
      Added,    // `to` is new
      Moved,    // from `from` to `to`
      Trashed,  // `from` lies in the trash as `to`
      Ordered,  // the order by hand of the folder `from` was `order` before, or there was none
      Changed,  // the address of `from` was `to`
    };
    TKind kind;
    QString from{};
    QString to{};
    std::optional<QStringList> order{};
  };
  QList<TStep> steps{};
  // Where the favorites that were added, renamed, moved or copied now are, in their order.
  QStringList paths{};
  // Of the first that could not be done, the system's reason; empty when all was. What came before it stays done.
  QString error{};

  [[nodiscard]] bool IsGood() const { return error.isEmpty(); }
  [[nodiscard]] bool IsEmpty() const { return steps.isEmpty(); }
};

// Changes in the folders of favorites. Paths are those that FavoritesFolder::List gives.
//
// Names are made fit for every file system: without reserved characters and names, without dots and blanks at their
// edges, 200 bytes at the most. Of several paths those below another of them go along with it. Nothing is ever written
// over: of two with one name, compared regardless of case, the later gets a number, "name (2)". An order by hand is
// kept in step.
//
// `position` is a place in what FavoritesFolder::List gives for the folder, from 0, before which the favorites are to
// stand; the folder gets an order by hand then, where it has none. NoPosition puts them where the order of names wants
// them, or, under an order by hand, at its end.
namespace FavoritesEdit {

inline constexpr int NoPosition = -1;

// The name that a favorite of that caption would get, without its ending; `address` is taken where nothing is left of
// the caption. Never empty.
[[nodiscard]] QString NameFor(const QString &caption, const QString &address);

// A new favorite in `folder`, which is made when it is missing. An address that is empty or too long (see
// ShortcutFile) is refused, as an invalid argument and as a too long message.
TFavoritesChange AddPage(const QString &folder, const QString &caption, const QString &address,
                         int position = NoPosition);
TFavoritesChange AddFolder(const QString &folder, const QString &caption, int position = NoPosition);
// A file keeps its ending. An empty caption, and the one it has, change nothing.
TFavoritesChange Rename(const QString &path, const QString &caption);
TFavoritesChange SetAddress(const QString &path, const QString &address);
// A folder is not moved or copied into itself: EINVAL. Within one folder Move only changes the order. What comes from
// another disk and cannot be taken away there has been added here, and the error says why the rest stayed.
TFavoritesChange Move(const QStringList &paths, const QString &folder, int position = NoPosition);
// Folders with all that is in them, without hidden files but for the order; links are copied as links.
TFavoritesChange Copy(const QStringList &paths, const QString &folder, int position = NoPosition);
// Whether these, with all that is in them, are more than 5,000 entries or 64 MB: nobody's favorites, and copying them
// would keep the window waiting. Looks no further than that.
[[nodiscard]] bool IsTooMuch(const QStringList &paths);
// To the desktop's trash. Where there is none the favorites stay, and the error says so.
TFavoritesChange Trash(const QStringList &paths);
// The order by hand as it is given: names with their endings, those that are not named at the end. std::nullopt forgets
// it, and names decide again.
TFavoritesChange Order(const QString &folder, const std::optional<QStringList> &names);

// Undoes the steps, the last one first. What was added goes to the trash; what comes back to a name that has been taken
// meanwhile gets a number. What it did, which can be undone again. `left`, when given, gets the steps that could not be
// undone, to be tried again; but not those of what is not there any more.
TFavoritesChange Undo(const TFavoritesChange &change, TFavoritesChange *left = nullptr);

}  // namespace FavoritesEdit
