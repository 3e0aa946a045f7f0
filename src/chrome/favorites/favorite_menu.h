#pragma once

#include <functional>
#include <QHash>
#include <QObject>
#include <QTimer>

#include "chrome/favorites/favorite_launcher.h"
#include "favorites/favorites_folder.h"

class QAction;
class QMenu;
class TFavoriteIcons;
class TFavoriteMenuStyle;
class TLanguage;
class TSettings;

// What all menus of favorites share. Each is filled when it opens, and again when its folder has changed since.
class TFavoriteMenus final : public QObject {
  Q_OBJECT

 public:
  // Links open as `newTab` says. All must outlive this object.
  TFavoriteMenus(TFavoriteLauncher &launcher, const TFavoriteIcons &icons, const TLanguage &language,
                 TSettings &settings, const TFlagSetting &newTab);
  ~TFavoriteMenus() override;

  // Every menu is filled anew when it opens next.
  void MarkStale() { ++m_generation; }

 Q_SIGNALS:
  // The user wants to do something else with a favorite that a menu shows.
  void MenuWanted(const TFavorite &favorite, const QPoint &globalPosition);

 private:
  friend class TFavoriteMenu;

  TFavoriteLauncher &m_launcher;
  const TFavoriteIcons &m_icons;
  const TLanguage &m_language;
  TSettings &m_settings;
  const TFlagSetting &m_newTab;
  TFavoriteMenuStyle *m_style;
  int m_generation = 0;
};

// The favorites of one folder in a menu, below what the menu holds already: sub-folders as sub-menus, in which the same
// goes on, then files. A middle click, or one with Ctrl, opens in a background tab.
class TFavoriteMenu final : public QObject {
  Q_OBJECT

 public:
  enum class TKind {
    Main,    // brings its own item to open all
    Folder,  // gets one, when ShowOpenAllFavorites is set
  };
  using TFolder = std::function<QString()>;

  // `menu` owns this object; `menus` must outlive it.
  TFavoriteMenu(QMenu *menu, TFolder folder, TKind kind, TFavoriteMenus &menus);

  // Fills the menu, unless it shows what the folder holds.
  void Load();
  // Nullptr for what is no favorite.
  [[nodiscard]] const TFavorite *FavoriteOf(const QAction *item) const;
  [[nodiscard]] const QString &Folder() const { return m_shown; }

 Q_SIGNALS:
  void Filled();

 protected:
  bool eventFilter(QObject *watched, QEvent *event) override;

 private:
  void Clear();
  void Fill();
  void AddFolder(const TFavorite &favorite);
  void AddLink(const TFavorite &favorite);
  void ShowHint(QAction *item) const;
  void ShowIcons();

  QMenu *m_menu;
  TFolder m_folder;
  TKind m_kind;
  TFavoriteMenus &m_menus;
  QAction *m_placeHolder = nullptr;
  QList<QAction *> m_items;
  QHash<const QAction *, TFavorite> m_favorites;
  QTimer m_iconTimer{this};
  qsizetype m_iconsShown = 0;  // of m_items
  int m_iconVersion = 0;
  QString m_shown;  // the folder that it was filled from
  quint64 m_stamp = 0;
  int m_generation = -1;
  bool m_inBackground = false;  // the click that is about to choose an item
};
