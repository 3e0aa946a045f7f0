#include "chrome/favorites/favorites_view.h"

#include <QDrag>
#include <QMenu>
#include <QMimeData>
#include <QPointer>

#include "actions/actions.h"
#include "browser/engine/address.h"
#include "browser/strip/page_control.h"
#include "browser/strip/tab_bar_view.h"
#include "browser/tabs/browser_tab.h"
#include "browser/tabs/tab_menu.h"
#include "browser/tabs/tab_strip.h"
#include "chrome/favorites/add_favorite_dialog.h"
#include "chrome/favorites/favorites_popup.h"
#include "chrome/favorites/organize_favorites.h"
#include "chrome/favorites/page_shortcut.h"
#include "config/language.h"
#include "config/settings.h"
#include "favorites/favorites_edit.h"
#include "ui/dialog_gate.h"
#include "ui/message_box.h"

TFavoritesView::TFavoritesView(QWidget *window, TActions &actions, TTabStrip &tabs, TTabMenu &tabMenu,
                               TLoadQueue &queue)
    : m_window(window),
      m_actions(actions),
      m_tabs(tabs),
      m_settings(tabs.Environment().settings),
      m_language(tabs.Environment().language),
      m_launcher(window, tabs, queue),
      m_icons(tabs, m_settings),
      m_commands(window, m_launcher, m_language),
      m_menus(m_launcher, m_icons, m_language, m_settings, Setting::FavoritesNewWin),
      m_transfer(window, m_language, [this] { return Folder(); }),
      m_drop(
          m_launcher, [this] { return Folder(); }, nullptr),
      m_links(new TLinksBar(m_launcher, m_commands, m_icons, m_language, m_settings, window)) {
  ConnectCommands(tabMenu);
  connect(&tabs, &TTabStrip::TabOpened, &m_drop, [this](const TBrowserTab *tab) { m_drop.WatchPage(tab->Browser()); });
  for (const TBrowserTab *tab : tabs.Tabs()) m_drop.WatchPage(tab->Browser());
  m_drop.Watch(&tabs.Pages());
  m_drop.Watch(tabs.Pages().findChild<TTabBarView *>());
  new TFavoriteMenu(
      actions.Menu(TMenu::Favorites), [this] { return Folder(); }, TFavoriteMenu::TKind::Main, m_menus);
  connect(&m_menus, &TFavoriteMenus::MenuWanted, this,
          [this](const TFavorite &favorite, const QPoint &place) { m_commands.ShowMenu(favorite, place); });
  connect(&m_commands, &TFavoriteCommands::Changed, this, &TFavoritesView::Refresh);
  connect(&m_transfer, &TFavoritesTransferView::Changed, this, &TFavoritesView::Refresh);
  connect(m_links, &TLinksBar::Changed, this, &TFavoritesView::Refresh);
  connect(m_links, &TLinksBar::OrganizeWanted, this, &TFavoritesView::Organize);
  connect(&m_watcher, &TFolderWatcher::Changed, this, &TFavoritesView::Refresh);
  connect(&m_firstPage, &TFirstPageWait::Over, this, &TFavoritesView::Watch);
}

TFavoritesView::~TFavoritesView() {
  delete m_organizer;
  delete m_popup;
  delete m_links;
}

void TFavoritesView::ConnectCommands(TTabMenu &tabMenu) {
  connect(m_actions[TCommand::AddFavorite], &QAction::triggered, this, [this] { AddTab(m_tabs.GetActivePage()); });
  connect(m_actions[TCommand::OpenAllFavorites], &QAction::triggered, this, [this] { m_launcher.OpenAll(Folder()); });
  connect(m_actions[TCommand::ShowFavorites], &QAction::triggered, this, &TFavoritesView::ShowPopup);
  connect(m_actions[TCommand::OrganizeFavorites], &QAction::triggered, this, [this] { Organize(Folder()); });
  connect(m_actions[TCommand::CustomizeOrganizeLinks], &QAction::triggered, m_links, &TLinksBar::Organize);
  connect(m_actions[TCommand::ImportFavorites], &QAction::triggered, &m_transfer, &TFavoritesTransferView::Import);
  connect(m_actions[TCommand::ExportFavorites], &QAction::triggered, &m_transfer, &TFavoritesTransferView::Export);
  tabMenu.On(TCommand::TabAddToFavorites, this, [this](TBrowserTab *tab) { AddTab(tab); });
}

QString TFavoritesView::Folder() const {
  return FavoritesFolder::Path(m_settings.Store());
}

void TFavoritesView::Begin() {
  m_firstPage.Begin();
}

void TFavoritesView::DragPage(QWidget *from) {
  const TBrowserTab *tab = m_tabs.GetActivePage();
  if (tab == nullptr || tab->AddressToSave().isEmpty()) return;
  auto *drag = new QDrag(from);
  drag->setMimeData(PageShortcut::DataOf(tab->Title(), tab->AddressToSave()));
  drag->setPixmap(m_icons.Page().pixmap(from->style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, from)));
  drag->exec(Qt::CopyAction | Qt::LinkAction);
}

void TFavoritesView::Organize(const QString &folder) {
  if (!m_organizer) {
    m_organizer = new TfrmOrganizeFavorites(m_language, m_launcher, m_icons, Folder(), m_window);
    connect(m_organizer, &TfrmOrganizeFavorites::Changed, this, &TFavoritesView::RefreshBars);
    connect(this, &TFavoritesView::Changed, m_organizer, &TfrmOrganizeFavorites::Refresh);
  }
  m_organizer->ShowFolder(folder);
  m_organizer->show();
  m_organizer->raise();
  m_organizer->activateWindow();
}

void TFavoritesView::ShowPopup() {
  const QRect button = m_popupButton ? m_popupButton() : QRect();
  if (button.isEmpty()) return;
  if (m_popup == nullptr) {
    m_popup = new TfrmFavorites(m_language, m_launcher, m_icons, m_settings, m_window);
    connect(m_popup, &TfrmFavorites::Changed, this, &TFavoritesView::RefreshBars);
    connect(this, &TFavoritesView::Changed, m_popup, &TfrmFavorites::Refresh);
  }
  m_popup->ShowBelow(button, Folder());
}

void TFavoritesView::Watch() {
  m_watcher.Watch(Folder());
  Refresh();
}

void TFavoritesView::RefreshBars() {
  m_menus.MarkStale();
  m_links->Refresh();
}

void TFavoritesView::Refresh() {
  RefreshBars();
  Q_EMIT Changed();
}

void TFavoritesView::AddTab(TBrowserTab *tab) {
  if (tab == nullptr || DialogGate::IsClosed()) return;
  const QString address = tab->AddressToSave().isEmpty() ? BlankPageAddress : tab->AddressToSave();
  m_icons.Keep(tab);
  const QPointer<TFavoritesView> self(this);
  const QPointer<TfrmAddFavorite> dialog(new TfrmAddFavorite(m_language, tab->ListCaption(), Folder(),
                                                             m_settings.Get(Setting::LastFavoritesFolder), m_window));
  const bool accepted = dialog->exec() == QDialog::Accepted;
  if (!dialog || !self) return;  // The window has gone meanwhile.
  const QString name = dialog->Name();
  const QString folder = dialog->Folder();
  delete dialog;
  if (!accepted) return;
  m_settings.Set(Setting::LastFavoritesFolder, folder);
  m_work.Do([=] { return FavoritesEdit::AddPage(folder, name, address); },
            [this](const TFavoritesChange &change) {
              const QPointer<TFavoritesView> there(this);
              const QString failure = m_language.Text("FAVORITES", "CannotAdd").arg(change.error);
              if (!change.IsGood()) ShowWarning(m_window, m_language, failure);
              if (there) Refresh();
            });
}
