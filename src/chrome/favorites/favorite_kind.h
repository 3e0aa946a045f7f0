#pragma once

#include "chrome/folder_view/folder_kind.h"

class TFavoriteIcons;
class TFavoriteLauncher;

// Favorites in a tree over their folder: every file is one.
class TFavoriteKind : public TFolderKind {
 public:
  // Both must outlive this object.
  TFavoriteKind(TFavoriteLauncher &launcher, const TFavoriteIcons &icons) : m_launcher(launcher), m_icons(icons) {}

  [[nodiscard]] QIcon FolderIcon() const override;
  [[nodiscard]] QIcon FileIcon() const override;
  [[nodiscard]] QIcon IconOf(const QString &address) const override;
  [[nodiscard]] int IconVersion() const override;
  void Open(const TFavorite &file, TOpenPlace place) override;
  void OpenAll(const QString &folder) override;

 private:
  TFavoriteLauncher &m_launcher;
  const TFavoriteIcons &m_icons;
};
