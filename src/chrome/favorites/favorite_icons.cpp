#include "chrome/favorites/favorite_icons.h"

#include <QApplication>
#include <QStyle>

#include "browser/tabs/browser_tab.h"
#include "browser/tabs/tab_strip.h"
#include "config/settings.h"
#include "favorites/favorites_folder.h"

TFavoriteIcons::TFavoriteIcons(TTabStrip &tabs, TSettings &settings)
    : m_settings(settings),
      m_folder(QApplication::style()->standardIcon(QStyle::SP_DirIcon)),
      m_page(QStringLiteral(":/icons/page.svg")) {
  for (TBrowserTab *tab : tabs.Tabs()) Follow(tab);
  connect(&m_pages, &TPageIcons::Changed, this, [this] { ++m_version; });
  connect(&tabs, &TTabStrip::TabOpened, this, &TFavoriteIcons::Follow);
}

void TFavoriteIcons::Follow(TBrowserTab *tab) {
  if (tab->Browser() == nullptr) return;
  connect(tab->Browser(), &THalvexBrowser::IconChanged, this, [this, tab] { Keep(tab); });
}

void TFavoriteIcons::Keep(const TBrowserTab *tab) {
  if (tab->Browser() == nullptr) return;
  const QIcon icon = tab->Browser()->Icon();
  if (icon.isNull()) return;
  if (!m_cache.Put(tab->GetLocationUrl(), icon.pixmap(TFaviconCache::Size).toImage())) return;
  ++m_version;
  Q_EMIT Came();
}

void TFavoriteIcons::Forget(const QStringList &addresses) {
  if (addresses.isEmpty()) m_cache.Clear();
  for (const QString &address : addresses) m_cache.Forget(address);
  ++m_version;
  Q_EMIT Came();
}

bool TFavoriteIcons::HasOwn() const {
  return m_settings.Get(Setting::UseCustomIcons);
}

QIcon TFavoriteIcons::Of(const TFavorite &favorite) const {
  if (favorite.isFolder) return m_folder;
  return HasOwn() ? OfAddress(FavoritesFolder::Target(favorite)) : m_page;
}

QIcon TFavoriteIcons::OfAddress(const QString &address) const {
  const QImage image = HasOwn() ? m_cache.Find(address) : QImage();
  return image.isNull() ? m_page : QIcon(QPixmap::fromImage(image));
}

QIcon TFavoriteIcons::KnownOf(const QString &address) const {
  if (!HasOwn()) return {};
  const QImage image = m_pages.Of(address);
  if (image.isNull()) m_pages.Fetch({address});
  return image.isNull() ? QIcon() : QIcon(QPixmap::fromImage(image));
}
