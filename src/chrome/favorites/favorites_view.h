#pragma once

#include <functional>
#include <QObject>
#include <QPointer>
#include <QRect>
#include <utility>

#include "browser/tabs/first_page_wait.h"
#include "chrome/favorites/favorite_commands.h"
#include "chrome/favorites/favorite_drop.h"
#include "chrome/favorites/favorite_icons.h"
#include "chrome/favorites/favorite_launcher.h"
#include "chrome/favorites/favorite_menu.h"
#include "chrome/favorites/favorites_transfer_view.h"
#include "chrome/favorites/links_bar.h"
#include "chrome/folder_view/file_work.h"
#include "platform/folder_watcher.h"

class TActions;
class TBrowserTab;
class TfrmFavorites;
class TfrmOrganizeFavorites;
class TTabMenu;

// Favorites as the main window offers them: the Favorites menu, the links bar, adding pages, import and export. What
// cannot be written is told with the system's reason.
class TFavoritesView final : public QObject {
  Q_OBJECT

 public:
  // Connects its commands. Nothing of the disk is touched before a menu opens, or Begin. `window` owns the dialogs; all
  // must outlive this object.
  TFavoritesView(QWidget *window, TActions &actions, TTabStrip &tabs, TTabMenu &tabMenu, TLoadQueue &queue);

  // Its windows and bars go with it.
  ~TFavoritesView() override;

  // The first pages are under way: what is to be seen without a menu may be read, once one of them is there.
  void Begin();
  // Asks for a name and a folder, and adds the tab's page there.
  void AddTab(TBrowserTab *tab);

  // Drags the page in front as a shortcut, from that widget; comes back when it has been let go.
  void DragPage(QWidget *from);

  // Shows the folder in the window where favorites are put in order.
  void Organize(const QString &folder);

  // Tells where the button is that opens the pop-up window of favorites, a rectangle of the screen; empty when there is
  // none, and then nothing opens.
  void SetPopupButton(std::function<QRect()> place) { m_popupButton = std::move(place); }
  // Another menu shows what the Favorites menu holds.
  void Serve(QMenu *menu) { m_menus.Serve(menu); }

  // A child of the window, which places it.
  [[nodiscard]] TLinksBar *Links() const { return m_links; }
  [[nodiscard]] TFavoriteLauncher &Launcher() { return m_launcher; }
  [[nodiscard]] const TFavoriteIcons &Icons() const { return m_icons; }
  // No picture of these pages, or, without any, of any page is kept any more.
  void ForgetIcons(const QStringList &addresses = {}) { m_icons.Forget(addresses); }
  // The folder of all favorites.
  [[nodiscard]] QString Folder() const;
  // Something was done to the files elsewhere; tells of it by Changed.
  void Refresh();

 Q_SIGNALS:
  // Something in the folder may be new, gone or renamed.
  void Changed();

 private:
  void ConnectCommands(TTabMenu &tabMenu);
  void ShowPopup();
  void Watch();
  // What shows favorites without a window of its own.
  void RefreshBars();

  QWidget *m_window;
  TActions &m_actions;
  TTabStrip &m_tabs;
  TSettings &m_settings;
  const TLanguage &m_language;
  TFavoriteLauncher m_launcher;
  TFavoriteIcons m_icons;
  TFavoriteCommands m_commands;
  TFavoriteMenus m_menus;
  TFavoritesTransferView m_transfer;
  TFavoriteDrop m_drop;
  TLinksBar *m_links;
  QPointer<TfrmOrganizeFavorites> m_organizer;
  TfrmFavorites *m_popup = nullptr;  // from its first use on
  std::function<QRect()> m_popupButton;
  TFolderWatcher m_watcher{this};
  TFirstPageWait m_firstPage{m_tabs};
  TFileWork m_work;
};
