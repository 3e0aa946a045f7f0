#pragma once

#include <QIcon>
#include <QStringList>

class QMimeData;
class TFileParts;
struct TFavorite;

// Where an entry of a folder opens.
enum class TOpenPlace {
  BySetting,  // in the tab in front, or in a new one when the setting of its kind says so
  NewTab,
  BackgroundTab,
};

// What a tree over a folder has to know of the files in it. As it stands here: folders alone count.
class TFolderKind {
 public:
  virtual ~TFolderKind() = default;

  // The endings of the files that are shown, with their dot, regardless of case; none: all are.
  [[nodiscard]] virtual QStringList Endings() const { return {}; }

  [[nodiscard]] virtual QIcon FolderIcon() const;
  // Of a file that has none of its own, or whose address is not known yet.
  [[nodiscard]] virtual QIcon FileIcon() const;
  // Of one that leads to that address; asked for when its row is painted. A null icon where it has none.
  [[nodiscard]] virtual QIcon IconOf(const QString & /*address*/) const { return {}; }
  // Another number whenever IconOf may answer otherwise.
  [[nodiscard]] virtual int IconVersion() const { return 0; }

  virtual void Open(const TFavorite & /*file*/, TOpenPlace /*place*/) {}
  // All files of a folder.
  virtual void OpenAll(const QString & /*folder*/) {}

  // Whether a drop of that on a folder does something; asked when a drag comes.
  [[nodiscard]] virtual bool CanTake(const QMimeData &data) const;
  // Or else the view only tells that another name is wanted.
  [[nodiscard]] virtual bool IsRenamedInPlace(const TFavorite & /*favorite*/) const { return true; }
  // What the files hold, for rows below them; null where there are none.
  [[nodiscard]] virtual TFileParts *Parts() const { return nullptr; }

 private:
  // Styles make theirs anew each time.
  mutable QIcon m_folderIcon;
  mutable QIcon m_fileIcon;
};
