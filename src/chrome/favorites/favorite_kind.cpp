#include "chrome/favorites/favorite_kind.h"

#include <QAbstractItemView>

#include "chrome/favorites/favorite_icons.h"
#include "chrome/favorites/favorite_launcher.h"

TFavoriteKind::TFavoriteKind(TFavoriteLauncher &launcher, const TFavoriteIcons &icons)
    : m_launcher(launcher), m_icons(icons) {}

void TFavoriteKind::Serve(QAbstractItemView &view) const {
  QWidget *shown = view.viewport();
  QObject::connect(&m_icons, &TFavoriteIcons::Came, shown, qOverload<>(&QWidget::update));
  QObject::connect(&m_icons.Pages(), &TPageIcons::Changed, shown, qOverload<>(&QWidget::update));
}

QIcon TFavoriteKind::FolderIcon() const {
  return m_icons.Folder();
}

QIcon TFavoriteKind::FileIcon() const {
  return m_icons.Page();
}

QIcon TFavoriteKind::IconOf(const QString &address) const {
  return m_icons.KnownOf(address);
}

int TFavoriteKind::IconVersion() const {
  return m_icons.HasOwn() ? 1 + m_icons.Version() : 0;
}

void TFavoriteKind::Open(const TFavorite &file, TOpenPlace place) {
  m_launcher.Open(file, place);
}

void TFavoriteKind::OpenAll(const QString &folder) {
  m_launcher.OpenAll(folder);
}
