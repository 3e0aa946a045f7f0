#pragma once

#include <QList>
#include <QPointer>
#include <QToolButton>

#include "chrome/favorites/favorite_menu.h"

class QMenu;
class TFavoriteCommands;
class TLanguage;
class TSettings;

// The links bar (pnlLinks): a button for each favorite in the Links folder, in their order; sub-folders open as menus.
// What does not fit is behind the button at its end. Addresses that are dropped on it become links, buttons are dragged
// to another place or into a folder.
class TLinksBar final : public QWidget {
  Q_OBJECT

 public:
  // All must outlive this object. Nothing is read before Refresh.
  TLinksBar(TFavoriteLauncher &launcher, TFavoriteCommands &commands, const TFavoriteIcons &icons,
            const TLanguage &language, TSettings &settings, QWidget *parent);
  ~TLinksBar() override;

  // Shows what the folder holds now.
  void Refresh();
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
  void dropEvent(QDropEvent *event) override;
  bool eventFilter(QObject *watched, QEvent *event) override;

 private:
  void Rebuild();
  void AddButton(QAction *item, const TFavorite &favorite);
  void Arrange();
  void FillExtender();
  void ShowIcons();
  void Drag(QToolButton *button);
  // The button there, or none; and before which favorite of the folder a thing that is dropped there would go.
  [[nodiscard]] QToolButton *ButtonAt(const QPoint &place) const;
  [[nodiscard]] int PositionAt(const QPoint &place) const;
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
  QList<QToolButton *> m_buttons;
  QList<QAction *> m_customize;  // at the end of the menu
  TFavorites m_shown;            // of the buttons, in their order
  QPoint m_pressed;
  bool m_isThere = false;
  bool m_isDragging = false;  // The buttons stay as they are.
};
