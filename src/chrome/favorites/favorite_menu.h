#pragma once

#include <functional>
#include <QObject>
#include <QTimer>

#include "chrome/favorites/favorite_launcher.h"
#include "favorites/favorites_folder.h"

class QAction;
class QIcon;
class QKeyEvent;
class QMenu;
class QMouseEvent;
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

  // Has a menu that shows favorites, its own or borrowed, treat them as such: hints, columns where they are wanted, and
  // what can be done with a favorite but opening it. For as long as the menu lives.
  void Serve(QMenu *menu);
  // Appends an item that opens a favorite. A middle click, or one with Ctrl, opens it in a background tab.
  QAction *AddLink(QMenu *menu, const TFavorite &favorite, const QIcon &icon);
  // What the item of any menu stands for; without a path when it is no favorite.
  [[nodiscard]] static TFavorite FavoriteOf(const QAction *item);

 Q_SIGNALS:
  // The user wants to do something else with a favorite that a menu shows.
  void MenuWanted(const TFavorite &favorite, const QPoint &globalPosition);

 protected:
  bool eventFilter(QObject *watched, QEvent *event) override;

 private:
  friend class TFavoriteMenu;

  // Changes an item in a way that takes no other room, so that an open menu need not measure all others.
  void ChangeQuietly(QAction *item, const std::function<void()> &change);
  void ShowHint(QAction *item);
  void Choose(const TFavorite &favorite);
  // The right button, and the keys that stand for it; true when they have come to a favorite.
  [[nodiscard]] bool TakeClick(QMenu *menu, const QMouseEvent &click);
  [[nodiscard]] bool TakeKey(QMenu *menu, const QKeyEvent &key);

  TFavoriteLauncher &m_launcher;
  const TFavoriteIcons &m_icons;
  const TLanguage &m_language;
  TSettings &m_settings;
  const TFlagSetting &m_newTab;
  TFavoriteMenuStyle *m_style;
  int m_generation = 0;
  bool m_inBackground = false;  // the click or key that is about to choose an item
  bool m_isQuiet = false;
};

// The favorites of one folder in a menu, below what the menu holds already: sub-folders as sub-menus, in which the same
// goes on, then files.
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

 Q_SIGNALS:
  void Filled();

 private:
  void Clear();
  void Fill();
  void AddFolder(const TFavorite &favorite);
  void BeginIcons();
  void ShowIcons();

  QMenu *m_menu;
  TFolder m_folder;
  TKind m_kind;
  TFavoriteMenus &m_menus;
  QAction *m_placeHolder = nullptr;
  QList<QAction *> m_items;
  QTimer m_iconTimer{this};
  qsizetype m_iconsShown = 0;  // of m_items
  int m_iconVersion = 0;
  QString m_shown;  // the folder that it was filled from
  quint64 m_stamp = 0;
  int m_generation = -1;
  bool m_isOpen = false;
};
