#pragma once

#include <memory>
#include <QDesktopServices>
#include <QDir>
#include <QMenu>

#include "chrome/favorites/favorites_view.h"
#include "favorites/favorites_edit.h"
#include "favorites/favorites_folder.h"
#include "platform/program_folders.h"
#include "window/tabs_fixture.h"

// Tabs with favorites, in the folder that they have by default. The server has the pages /page0 to /page9 ("Page 0" and
// so on).
class TFavoritesFixture : public TTabsFixture {
 public:
  void Prepare() {
    TTabsFixture::Prepare();
    for (int i = 0; i < 10; ++i) server.RoutePage("/page" + QByteArray::number(i), "Page " + QByteArray::number(i));
  }
  void Begin() {
    TTabsFixture::Begin();
    view = std::make_unique<TFavoritesView>(window.get(), *actions, *tabs, *tabMenu, *queue);
  }
  void End() {
    view.reset();
    TTabsFixture::End();
    QDir(Root()).removeRecursively();
  }

  [[nodiscard]] static QString Root() { return ProgramFolders::UserData() + u"/Favorites"_s; }
  [[nodiscard]] QString Page(int number) const { return server.Url(u"/page%1"_s.arg(number)); }
  // A new favorite in the folder below the root; its path.
  static QString Put(const QString &folder, const QString &name, const QString &address) {
    return FavoritesEdit::AddPage(QDir::cleanPath(Root() + u'/' + folder), name, address).paths.value(0);
  }
  static void PutFile(const QString &name, const QByteArray &bytes) {
    const QString path = Root() + u'/' + name;
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
  }

  // The menu as it is when it has opened.
  static QMenu *Opened(QMenu *menu) {
    Q_EMIT menu->aboutToShow();
    return menu;
  }
  [[nodiscard]] QMenu *MainMenu() const { return Opened(actions->Menu(TMenu::Favorites)); }
  // Captions, sub-menus with ">" behind them, lines as "-".
  [[nodiscard]] static QStringList Captions(const QMenu &menu) {
    QStringList captions;
    for (const QAction *item : menu.actions()) {
      captions.append(item->isSeparator() ? u"-"_s : item->text() + (item->menu() != nullptr ? u" >"_s : QString()));
    }
    return captions;
  }
  // What stands below the window's own items.
  [[nodiscard]] QStringList Favorites() const { return Captions(*MainMenu()).mid(FixedItems()); }
  [[nodiscard]] qsizetype FixedItems() const {
    const QMenu *menu = actions->Menu(TMenu::Favorites);
    return menu->actions().indexOf((*actions)[TCommand::OpenAllFavorites]) + 2;
  }
  [[nodiscard]] static QAction *Item(const QMenu *menu, const QString &caption) {
    for (QAction *item : menu->actions()) {
      if (item->text() == caption) return item;
    }
    return nullptr;
  }
  [[nodiscard]] QMenu *SubMenu(const QString &caption) const { return Opened(Item(MainMenu(), caption)->menu()); }
  [[nodiscard]] QStringList Addresses() const {
    QStringList addresses;
    for (const TBrowserTab *tab : tabs->Tabs()) addresses.append(tab->AddressToSave());
    return addresses;
  }

  std::unique_ptr<TFavoritesView> view;
};
