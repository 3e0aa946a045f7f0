#pragma once

#include <QHash>
#include <QList>
#include <QPointer>
#include <QTimer>
#include <QToolButton>

#include "chrome/favorites/favorite_menu.h"
#include "chrome/folder_view/file_work.h"

class QMenu;
class TFavoriteCommands;
class TLanguage;
class TSettings;

// The links bar (pnlLinks): a button for each favorite in the Links folder, in their order; sub-folders open as menus.
// What does not fit is behind the button at its end. Addresses that are dropped on it become links, buttons are dragged
// to another place or, by the middle half of its button, into a folder. Arrow keys walk the buttons.
class TLinksBar final : public QWidget {
  Q_OBJECT

 public:
  // All must outlive this object. Nothing is read before Refresh.
  TLinksBar(TFavoriteLauncher &launcher, TFavoriteCommands &commands, const TFavoriteIcons &icons,
            const TLanguage &language, TSettings &settings, QWidget *parent);
  ~TLinksBar() override;

  // Shows what the folder holds now.
  void Refresh();
  // Makes the Links folder where there is none, for the user who wants it; what cannot be made is told.
  void MakeFolder();
  // Has the folder organised; makes it first where there is none.
  void Organize();
  // Whether there is a Links folder.
  [[nodiscard]] bool IsThere() const { return m_isThere; }
  // The folder's favorites as a menu, with "Customize" at its end.
  [[nodiscard]] QMenu *Menu() const { return m_menu; }

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 Q_SIGNALS:
  // The folder has come or gone.
  void ThereChanged();
  // The folder is to be organised.
  void OrganizeWanted(const QString &folder);
  // Something was done to the files.
  void Changed();

 protected:
  void resizeEvent(QResizeEvent *event) override;
  void contextMenuEvent(QContextMenuEvent *event) override;
  void dragEnterEvent(QDragEnterEvent *event) override;
  void dragMoveEvent(QDragMoveEvent *event) override;
  void dragLeaveEvent(QDragLeaveEvent *event) override;
  void dropEvent(QDropEvent *event) override;
  bool eventFilter(QObject *watched, QEvent *event) override;

 private:
  // Where a thing would go that is dropped here.
  struct TDropPlace {
    QString folder;
    int position;       // in the folder; NoPosition where its order decides
    QToolButton *into;  // the folder's button; none for the bar itself
    int x;              // of the gap between two buttons
  };

  void Rebuild();
  void AddButton(QAction *item, const TFavorite &favorite);
  void Arrange();
  void FillExtender();
  void ShowIcons();
  void ShowIcon(qsizetype number);
  void OrderForKeys();
  // Some menu shows what the bar does. It stays as it is until it has closed.
  [[nodiscard]] bool HasOpenMenu() const;
  void FollowClosing(const QMenu *menu);
  void Drag(QToolButton *button);
  void OpenByMouse(const QToolButton *button, const QMouseEvent &click);
  [[nodiscard]] bool TakeKey(QToolButton *button, const QKeyEvent &key);
  [[nodiscard]] TDropPlace PlaceAt(const QPoint &place) const;
  void ShowPlace(const TDropPlace *place);
  void Tell(const QString &error);
  [[nodiscard]] TFavorite FavoriteOf(const QToolButton *button) const;

  TFavoriteLauncher &m_launcher;
  TFavoriteCommands &m_commands;
  const TFavoriteIcons &m_icons;
  const TLanguage &m_language;
  TSettings &m_settings;
  TFavoriteMenus m_menus;
  QMenu *m_menu;
  TFavoriteMenu *m_favorites;
  QMenu *m_extenderMenu;    // pmLinksBarExtender
  QToolButton *m_extender;  // tbxLinks
  QWidget *m_mark;          // the gap between two buttons where a thing would be dropped
  QList<QToolButton *> m_buttons;
  QList<QAction *> m_customize;         // at the end of the menu
  TFavorites m_shown;                   // of the buttons, in their order
  QHash<QString, QString> m_addresses;  // of those whose files have been read, by their paths
  QPoint m_pressed;
  bool m_isThere = false;
  bool m_isDragging = false;  // the buttons stay as they are
  bool m_isStale = false;     // the folder has changed meanwhile
  QTimer m_iconTimer;
  TFileWork m_work;
};
