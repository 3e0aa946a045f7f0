#pragma once

#include "chrome/folder_view/folder_kind.h"

class QAbstractItemView;
class TFavoriteIcons;
class TFavoriteLauncher;

// Favorites in a tree over their folder: every file is one.
class TFavoriteKind : public TFolderKind {
 public:
  // Both must outlive this object.
  TFavoriteKind(TFavoriteLauncher &launcher, const TFavoriteIcons &icons);
  // Has a view of this kind painted again whenever icons come.
  void Serve(QAbstractItemView &view) const;

  [[nodiscard]] QIcon FolderIcon() const override;
  [[nodiscard]] QIcon FileIcon() const override;
  // Never waits for the disk.
  [[nodiscard]] QIcon IconOf(const QString &address) const override;
  [[nodiscard]] int IconVersion() const override;
  void Open(const TFavorite &file, TOpenPlace place) override;
  void OpenAll(const QString &folder) override;

 private:
  TFavoriteLauncher &m_launcher;
  const TFavoriteIcons &m_icons;
};
