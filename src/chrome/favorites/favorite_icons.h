#pragma once

#include <QIcon>
#include <QObject>

#include "favorites/favicon_cache.h"
#include "favorites/page_icons.h"

class TBrowserTab;
class TSettings;
class TTabStrip;
struct TFavorite;

// The pictures of favorites. With UseCustomIcons each page shows the icon that its site had when it was last visited,
// else all show the plain one.
class TFavoriteIcons final : public QObject {
  Q_OBJECT

 public:
  // Keeps the icons of the pages in these tabs as they come. Both must outlive this object.
  TFavoriteIcons(TTabStrip &tabs, TSettings &settings);

  [[nodiscard]] const QIcon &Folder() const { return m_folder; }
  [[nodiscard]] const QIcon &Page() const { return m_page; }
  // Whether some have pictures of their own.
  [[nodiscard]] bool HasOwn() const;
  // Another number after each icon that came, from a page or from the disk.
  [[nodiscard]] int Version() const { return m_version; }
  // The same icons for what must not wait for the disk.
  [[nodiscard]] TPageIcons &Pages() const { return m_pages; }
  // That of its site, where it is to be shown and known, else the plain one. Reads the file, and the cache's.
  [[nodiscard]] QIcon Of(const TFavorite &favorite) const;
  // The same of an address that is known already.
  [[nodiscard]] QIcon OfAddress(const QString &address) const;
  // The same without waiting for the disk: null where there is none, or not yet; Pages() tells when one has come.
  [[nodiscard]] QIcon KnownOf(const QString &address) const;
  // Keeps the icon that the page in this tab has now, whether icons are shown or not.
  void Keep(const TBrowserTab *tab);
  // Forgets those of these pages, or, without any, all of them; on the disk too. Pages tell theirs again when they are
  // next loaded.
  void Forget(const QStringList &addresses);

 Q_SIGNALS:
  // A page has shown an icon that was not known, or all were forgotten.
  void Came();

 private:
  void Follow(TBrowserTab *tab);

  TSettings &m_settings;
  TFaviconCache m_cache;
  mutable TPageIcons m_pages{m_cache};
  QIcon m_folder;
  QIcon m_page;
  int m_version = 0;
};
