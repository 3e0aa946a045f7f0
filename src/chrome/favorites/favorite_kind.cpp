#include "chrome/favorites/favorite_kind.h"

#include "chrome/favorites/favorite_icons.h"
#include "chrome/favorites/favorite_launcher.h"

QIcon TFavoriteKind::FolderIcon() const {
  return m_icons.Folder();
}

QIcon TFavoriteKind::FileIcon() const {
  return m_icons.Page();
}

QIcon TFavoriteKind::IconOf(const QString &address) const {
  return m_icons.OfAddress(address);
}

int TFavoriteKind::IconVersion() const {
  return m_icons.HasOwn() ? 1 + m_icons.Version() : 0;
}

void TFavoriteKind::Open(const TFavorite &file, TOpenPlace place) {
  switch (place) {
    case TOpenPlace::BySetting:
      return m_launcher.Open(file, TFavoritePlace::BySetting);
    case TOpenPlace::NewTab:
      return m_launcher.Open(file, TFavoritePlace::NewTab);
    case TOpenPlace::BackgroundTab:
      return m_launcher.Open(file, TFavoritePlace::BackgroundTab);
  }
}

void TFavoriteKind::OpenAll(const QString &folder) {
  m_launcher.OpenAll(folder);
}
