#include <QElapsedTimer>
#include <QInputDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>

#include "chrome/bands/menu_extender.h"
#include "chrome/favorites/add_favorite_dialog.h"
#include "chrome/folder_view/folder_view.h"
#include "window/favorites_fixture.h"

// The Favorites menu with the real engine: what it holds and when it is read, where favorites open, and how pages are
// added.
class TestFavoritesMenu final : public QObject, private TFavoritesFixture {
  Q_OBJECT

 private:
  QList<QUrl> m_opened;  // by the desktop

 private Q_SLOTS:
  void initTestCase() { Prepare(); }
  void init() {
    Begin();
    m_opened.clear();
    QDesktopServices::setUrlHandler(u"file"_s, this, "OpenFile");
  }
  void cleanup() {
    QDesktopServices::unsetUrlHandler(u"file"_s);
    End();
  }
  void OpenFile(const QUrl &url) { m_opened.append(url); }

  void FillsOneLevelAtATime() {
    Put(u"b"_s, u"inside"_s, Page(1));
    Put(u"a/deep"_s, u"deepest"_s, Page(1));
    Put(u".hidden"_s, u"x"_s, Page(1));
    Put(QString(), u"Z & co"_s, Page(1));
    PutFile(u"note.old.txt"_s, "text");
    PutFile(u".secret"_s, "text");
    QVERIFY(FavoritesEdit::AddFolder(Root(), u"empty"_s).IsGood());
    QCOMPARE(Favorites(), (QStringList{u"a >"_s, u"b >"_s, u"empty >"_s, u"note.old"_s, u"Z && co"_s}));
    QMenu *a = Item(MainMenu(), u"a"_s)->menu();
    QCOMPARE(Captions(*a), QStringList(u"Place holder"_s));
    const QString all = language.Global("OpenAllFavorites");
    Opened(a);
    QCOMPARE(Captions(*a), (QStringList{all, u"-"_s, u"deep >"_s}));
    QCOMPARE(Captions(*Item(a, u"deep"_s)->menu()), QStringList(u"Place holder"_s));
    QCOMPARE(Captions(*SubMenu(u"b"_s)), (QStringList{all, u"-"_s, u"inside"_s}));

    settings->Set(Setting::ShowOpenAllFavorites, false);
    QCOMPARE(Captions(*SubMenu(u"a"_s)), QStringList(u"deep >"_s));
    const QMenu *empty = SubMenu(u"empty"_s);
    QCOMPARE(Captions(*empty), QStringList(language.Global("EmptyFolder")));
    QVERIFY(!empty->actions().first()->isEnabled());
  }

  void FollowsTheDisk() {
    Put(u"f"_s, u"one"_s, Page(1));
    QMenu *f = SubMenu(u"f"_s);
    const QAction *kept = Item(f, u"one"_s);
    QVERIFY(Opened(f) == SubMenu(u"f"_s) && Item(f, u"one"_s) == kept);  // later openings do nothing
    const QString two = Put(u"f"_s, u"two"_s, Page(2));
    QVERIFY(Item(Opened(f), u"two"_s) != nullptr);
    QVERIFY(QFile::remove(two));
    QVERIFY(Item(Opened(f), u"two"_s) == nullptr);
    QVERIFY(QDir(Root() + u"/f"_s).removeRecursively());
    QCOMPARE(Favorites(), QStringList());
  }

  void Hints() {
    PutFile(u"a<b.url"_s, "[InternetShortcut]\r\nURL=http://example.test/?q=<i>\r\n");
    PutFile(u"note.txt"_s, "text");
    const QMenu *menu = MainMenu();
    QVERIFY(menu->toolTipsVisible());
    for (const auto &[caption, target] :
         {std::pair(u"a<b"_s, u"http://example.test/?q=<i>"_s), {u"note"_s, Root() + u"/note.txt"_s}}) {
      QAction *item = Item(menu, caption);
      QVERIFY(item != nullptr);
      item->hover();
      QCOMPARE(item->statusTip(), target);
      QCOMPARE(item->toolTip(), u"<qt>%1<br>%2</qt>"_s.arg(caption.toHtmlEscaped(), target.toHtmlEscaped()));
    }
  }

  void Opens_data() {
    // Tabs are there with a page in front, /page0; a dot stands for what was there before.
    Columns<bool, Qt::MouseButton, int, QStringList, int>("newTab", "button", "modifiers", "pages", "front");
    const int none = Qt::NoModifier;
    Row("here", false, Qt::LeftButton, none, QStringList{u"/page1"_s}, 0);
    Row("in a new tab", true, Qt::LeftButton, none, QStringList{u"/page0"_s, u"/page1"_s}, 1);
    Row("middle click", false, Qt::MiddleButton, none, QStringList{u"/page0"_s, u"/page1"_s}, 0);
    Row("with Ctrl", false, Qt::LeftButton, int(Qt::ControlModifier), QStringList{u"/page0"_s, u"/page1"_s}, 0);
  }

  void Opens() {
    QFETCH(bool, newTab);
    QFETCH(Qt::MouseButton, button);
    QFETCH(int, modifiers);
    QFETCH(QStringList, pages);
    settings->Set(Setting::FavoritesNewWin, newTab);
    Put(u"f"_s, u"one"_s, Page(1));
    OpenPage(u"/page0"_s);
    QMenu *menu = SubMenu(u"f"_s);
    // Where the mouse has not moved since a menu opened, toolkits after 6.4 take a click for one that closes it.
    QTest::mouseMove(window.get(), QPoint(window->width() - 1, window->height() - 1));
    QCoreApplication::processEvents();
    menu->popup(window->mapToGlobal(QPoint(10, 10)));
    const QPoint place = menu->actionGeometry(Item(menu, u"one"_s)).center();
    QTest::mouseMove(menu, place);
    QTest::mouseClick(menu, button, Qt::KeyboardModifiers(modifiers), place);
    QVERIFY(!menu->isVisible());
    for (QString &page : pages) page = server.Url(page);
    QTRY_COMPARE_WITH_TIMEOUT(Addresses(), pages, LoadTime);
    QTEST(tabs->ActiveTabIndex(), "front");
    QTRY_VERIFY_WITH_TIMEOUT(tabs->Tabs().last()->GetLocationUrl() == Page(1), LoadTime);
  }

  // What a favorite leads to decides where it goes.
  void Targets() {
    settings->Set(Setting::FavoritesNewWin, true);
    TBrowserTab *tab = OpenPage(u"/page0"_s);
    PutFile(u"note.txt"_s, "text");
    PutFile(u"leads to it.url"_s, "[InternetShortcut]\r\nURL=" + (Root() + u"/note.txt"_s).toUtf8() + "\r\n");
    Put(QString(), u"script"_s, u"javascript:document.title='run'"_s);
    const QMenu *menu = MainMenu();
    for (const QString &caption : {u"note"_s, u"leads to it"_s}) Item(menu, caption)->trigger();
    const QUrl note = QUrl::fromLocalFile(Root() + u"/note.txt"_s);
    QCOMPARE(m_opened, (QList<QUrl>{note, note}));
    Item(menu, u"script"_s)->trigger();
    QTRY_COMPARE_WITH_TIMEOUT(tab->GetLocationName(), u"run"_s, LoadTime);
    QCOMPARE(tabs->TabCount(), 1);
  }

  void OpensAll() {
    for (int i = 0; i < 3; ++i) Put(u"f"_s, u"p%1"_s.arg(i), Page(i));
    SubMenu(u"f"_s)->actions().first()->trigger();
    QCOMPARE(Addresses().mid(1), (QStringList{Page(0), Page(1), Page(2)}));
    QCOMPARE(tabs->ActiveTabIndex(), 0);
    queue->Stop();
  }

  // Wherever the items of the menu stand, and whoever has them for a while: one click and one key do the same.
  void AnyMenu_data() {
    Columns<QString, QString>("menu", "act");
    for (const char *menu : {"own", "borrower", "extender"}) {
      for (const char *act : {"middle", "right", "Menu", "Shift+F10"}) {
        Row(qPrintable(QLatin1String(menu) + u' ' + QLatin1String(act)), QString::fromLatin1(menu),
            QString::fromLatin1(act));
      }
    }
  }
  void AnyMenu() {
    QFETCH(QString, menu);
    QFETCH(QString, act);
    settings->Set(Setting::FavoritesNewWin, false);
    settings->Set(Setting::LinksNewWin, false);
    settings->Set(Setting::BreakFavorites, true);
    Put(menu == u"extender"_s ? u"Links"_s : QString(), u"one"_s, Page(1));
    OpenPage(u"/page0"_s);
    TMenuExtender borrowers(
        *actions, [](const QAction *) { return false; }, window.get());
    connect(&borrowers, &TMenuExtender::BorrowerMade, this, [this](TMenu owner, QMenu *borrower) {
      if (owner == TMenu::Favorites) view->Serve(borrower);
    });
    QMenu *opened = nullptr;
    if (menu == u"own"_s) {
      opened = MainMenu();
    } else if (menu == u"borrower"_s) {
      Opened(&borrowers);
      opened = borrowers.findChild<QMenu *>(u"pmFavoritesExtended"_s);
    } else {
      view->Links()->setFixedSize(1, 20);
      view->Links()->Refresh();
      view->Links()->show();
      opened = Opened(view->Links()->findChild<QMenu *>(u"pmLinksBarExtender"_s));
    }
    QAction *item = Item(opened, u"one"_s);
    QVERIFY(item != nullptr);
    QTest::mouseMove(window.get(), QPoint(window->width() - 1, window->height() - 1));
    QCoreApplication::processEvents();
    opened->popup(window->mapToGlobal(QPoint(10, 10)));
    item = Item(opened, u"one"_s);  // one that is filled when it opens has another
    const QPoint place = opened->actionGeometry(item).center();
    QTest::mouseMove(opened, place);
    opened->setActiveAction(item);
    QVERIFY(opened->toolTipsVisible() && item->statusTip() == Page(1));
    QVERIFY(opened->style()->styleHint(QStyle::SH_Menu_Scrollable, nullptr, opened) == 0);  // it has columns
    if (act == u"middle"_s) QTest::mouseClick(opened, Qt::MiddleButton, {}, place);
    if (act == u"right"_s) QTest::mouseClick(opened, Qt::RightButton, {}, place);
    if (act == u"Menu"_s) QTest::keyClick(opened, Qt::Key_Menu);
    if (act == u"Shift+F10"_s) QTest::keyClick(opened, Qt::Key_F10, Qt::ShiftModifier);
    if (act == u"middle"_s) {
      QTRY_COMPARE_WITH_TIMEOUT(Addresses(), (QStringList{Page(0), Page(1)}), LoadTime);
      QCOMPARE(tabs->ActiveTabIndex(), 0);
    } else {
      QWidget *context = QApplication::activePopupWidget();
      QVERIFY(context != nullptr && context->objectName() == u"pmFavorite"_s);
      context->close();
      QCOMPARE(Addresses(), QStringList(Page(0)));
    }
    opened->close();
  }

  // Columns as high as the screen, less 6 items, where the user wants no menu that scrolls.
  void BreaksIntoColumns() {
    for (int i = 0; i < 100; ++i) PutFile(u"f/%1.url"_s.arg(i, 3, 10, QChar(u'0')), "[InternetShortcut]\r\nURL=x\r\n");
    for (const bool breaks : {false, true}) {
      settings->Set(Setting::BreakFavorites, breaks);
      QMenu *menu = SubMenu(u"f"_s);
      menu->popup(QPoint(0, 0));
      const QList<QAction *> items = menu->actions();
      const int length = menu->screen()->geometry().height() / menu->actionGeometry(items.last()).height() - 6;
      QVERIFY(length > 2 && length < 100);
      QList<qsizetype> begins;
      for (qsizetype i = 1; i < items.size(); ++i) {
        if (menu->actionGeometry(items.at(i)).x() > menu->actionGeometry(items.at(i - 1)).x()) begins.append(i);
      }
      QList<qsizetype> expected;
      for (qsizetype i = length; breaks && i < items.size(); i += length) expected.append(i);
      QCOMPARE(begins, expected);
      menu->close();
    }
  }

  void Icons() {
    server.Route("/icon.svg", TTestResponse{.body = "<svg xmlns='http://www.w3.org/2000/svg' width='16' height='16'>"
                                                    "<rect width='16' height='16' fill='#ff0000'/></svg>",
                                            .headers = {{"Content-Type", "image/svg+xml"}}});
    server.Route("/red", TTestResponse::Page("<link rel=icon href=/icon.svg><title>Red</title>"));
    Put(QString(), u"red"_s, server.Url(u"/red"_s));
    const auto middle = [this] {
      QMenu *menu = MainMenu();
      return Item(menu, u"red"_s)->icon().pixmap(16, 16).toImage().pixelColor(8, 8);
    };
    const QColor plain = middle();
    OpenPage(u"/red"_s);
    QTRY_VERIFY_WITH_TIMEOUT(!tabs->Tab(0)->Browser()->Icon().isNull(), LoadTime);
    QTRY_COMPARE(middle(), QColor(Qt::red));
    // One that comes while the menu is open shows at once, in the item that is there.
    settings->Set(Setting::UseCustomIcons, true);
    server.Route("/blue.svg", TTestResponse{.body = "<svg xmlns='http://www.w3.org/2000/svg' width='16' height='16'>"
                                                    "<rect width='16' height='16' fill='#0000ff'/></svg>",
                                            .headers = {{"Content-Type", "image/svg+xml"}}});
    server.Route("/red", TTestResponse::Page("<link rel=icon href=/blue.svg><title>Blue</title>"));
    QMenu *open = MainMenu();
    open->popup(QPoint(0, 0));
    const QPointer<QAction> item = Item(open, u"red"_s);
    QTRY_COMPARE(item->icon().pixmap(16, 16).toImage().pixelColor(8, 8), QColor(Qt::red));
    tabs->Tab(0)->Reload(true);
    QTRY_COMPARE_WITH_TIMEOUT(item->icon().pixmap(16, 16).toImage().pixelColor(8, 8), QColor(Qt::blue), LoadTime);
    QVERIFY(item == Item(open, u"red"_s));
    open->close();
    settings->Set(Setting::UseCustomIcons, false);
    QCOMPARE(middle(), plain);
    // Kept all the same, for when they are wanted again.
    server.Route("/red", TTestResponse::Page("<link rel=icon href=/icon.svg><title>Red</title>"));
    const QIcon blue = tabs->Tab(0)->Browser()->Icon();
    tabs->Tab(0)->Reload(true);
    QTRY_VERIFY_WITH_TIMEOUT(
        tabs->Tab(0)->Browser()->Icon().cacheKey() != blue.cacheKey() && !tabs->Tab(0)->Browser()->Icon().isNull(),
        LoadTime);
    settings->Set(Setting::UseCustomIcons, true);
    QTRY_COMPARE(middle(), QColor(Qt::red));
  }

  void Adds() {
    Put(u"f/g"_s, u"x"_s, Page(1));
    OpenPage(u"/page2"_s);
    OnModalDialog<TfrmAddFavorite>([](TfrmAddFavorite &dialog) {
      auto *name = dialog.findChild<QLineEdit *>(u"edtName"_s);
      auto *ok = dialog.findChild<QPushButton *>(u"cmdOK"_s);
      QCOMPARE(name->text(), u"Page 2"_s);
      name->setText(u" "_s);
      QVERIFY(!ok->isEnabled());
      name->setText(u"Two / three"_s);
      auto *tree = dialog.findChild<TFolderView *>();
      QCOMPARE(dialog.Folder(), Root());
      const QModelIndex root = tree->Model().RootIndex();
      QTRY_COMPARE(tree->Model().rowCount(root), 1);
      tree->setCurrentIndex(tree->Model().index(0, 0, root));
      QTest::keyClick(tree, Qt::Key_Delete);  // chooses only
      QTest::keyClick(tree, Qt::Key_F2);
      QVERIFY(!tree->IsEditing() && QDir(Root() + u"/f"_s).exists());
      OnModalDialog<QInputDialog>([](QInputDialog &question) {
        question.setTextValue(u"new"_s);
        question.accept();
      });
      dialog.findChild<QPushButton *>(u"cmdNewFolder"_s)->click();
      QTRY_COMPARE(dialog.Folder(), Root() + u"/f/new"_s);
      ok->click();
    });
    (*actions)[TCommand::AddFavorite]->trigger();
    const TFavorites added = FavoritesFolder::List(Root() + u"/f/new"_s);
    QCOMPARE(added.size(), 1);
    QCOMPARE(FavoritesFolder::Target(added.first()), Page(2));
    QVERIFY(QDir(Root() + u"/f/new"_s).exists());

    // The next one goes to the same place, unless the user gives up.
    for (const bool accept : {false, true}) {
      OnModalDialog<TfrmAddFavorite>([accept](TfrmAddFavorite &dialog) {
        QTRY_COMPARE(dialog.Folder(), Root() + u"/f/new"_s);
        accept ? dialog.accept() : dialog.reject();
      });
      (*actions)[TCommand::AddFavorite]->trigger();
      QCOMPARE(FavoritesFolder::List(Root() + u"/f/new"_s).size(), accept ? 2 : 1);
    }
  }

  // Thousands of favorites: a menu is there at once, since no file is opened for it.
  void ManyFavorites() {
    for (int folder = 0; folder < 500; ++folder) {
      for (int i = 0; i < 20; ++i) PutFile(u"%1/%2.url"_s.arg(folder).arg(i), "[InternetShortcut]\r\nURL=x\r\n");
    }
    const auto best = [this](const std::function<void()> &act) {
      qint64 shortest = std::numeric_limits<qint64>::max();
      for (int i = 0; i < 5; ++i) {
        settings->Set(Setting::ShowOpenAllFavorites, true);  // all are stale
        QElapsedTimer time;
        time.start();
        act();
        shortest = qMin(shortest, time.elapsed());
      }
      return shortest;
    };
    const qint64 menu = best([this] { (void)MainMenu(); });
    QCOMPARE(Favorites().size(), 500);
    QMenu *child = Item(actions->Menu(TMenu::Favorites), u"77"_s)->menu();
    const qint64 folder = best([child] { Opened(child); });
    QCOMPARE(child->actions().size(), 22);
    qInfo("the menu took %lld ms, a folder %lld ms", menu, folder);
    QVERIFY(menu <= 50 && folder <= 20);
  }
};

int main(int argc, char **argv) {
  return RunWithEngine<TestFavoritesMenu>(argc, argv);
}
#include "test_favorites_menu.moc"
