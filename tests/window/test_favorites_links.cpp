#include <fcntl.h>
#include <sys/stat.h>
#include <QClipboard>
#include <QDrag>
#include <QDropEvent>
#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QProgressDialog>
#include <QToolBar>

#include "chrome/favorites/favorite_dialog.h"
#include "favorites/bookmark_file.h"
#include "ui/confirm_dialog.h"
#include "window/favorites_fixture.h"

// The links bar, what can be done with a single favorite, and import and export, in a window with the real engine.
class TestFavoritesLinks final : public QObject, private TFavoritesFixture {
  Q_OBJECT

 private:
  [[nodiscard]] QList<QToolButton *> Buttons() const {
    QList<QToolButton *> buttons = view->Links()->findChildren<QToolButton *>();
    buttons.removeIf([](const QToolButton *button) { return button->objectName() == u"tbxLinks"_s; });
    return buttons;
  }
  [[nodiscard]] QStringList Texts() const {
    QStringList texts;
    for (const QToolButton *button : Buttons()) texts.append(button->text());
    return texts;
  }
  [[nodiscard]] QToolButton *Button(const QString &text) const {
    for (QToolButton *button : Buttons()) {
      if (button->text() == text) return button;
    }
    return nullptr;
  }
  void Drop(const QMimeData &data, const QPoint &place, Qt::KeyboardModifiers keys = Qt::NoModifier) const {
    QDragEnterEvent enter(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, keys);
    QApplication::sendEvent(view->Links(), &enter);
    if (!enter.isAccepted()) return;
    QDropEvent drop(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, keys);
    QApplication::sendEvent(view->Links(), &drop);
  }
  void ShowBar(int width = 600) {
    auto *bar = new QToolBar(window.get());
    view->Links()->setFixedWidth(width);
    bar->addWidget(view->Links());
    window->addToolBar(bar);
    view->Links()->Refresh();
    QCoreApplication::processEvents();
  }
  [[nodiscard]] QString Told() const {
    const auto *box = window->findChild<QMessageBox *>();
    return box != nullptr ? box->text() : QString();
  }
  static void ChooseFile(const QString &path) {
    OnModalDialog<QFileDialog>([path](QFileDialog &dialog) {
      dialog.findChild<QLineEdit *>(u"fileNameEdit"_s)->setText(path);
      static_cast<QDialog &>(dialog).accept();
    });
  }

 private Q_SLOTS:
  void initTestCase() { Prepare(); }
  void init() { Begin(); }
  void cleanup() { End(); }

  void ShowsTheFolder() {
    const QSignalSpy changed(view->Links(), &TLinksBar::ThereChanged);
    ShowBar();
    QVERIFY(!view->Links()->IsThere() && Buttons().isEmpty());
    Put(u"Links/more"_s, u"inside"_s, Page(1));
    Put(u"Links"_s, u"one"_s, Page(1));
    Put(u"Links"_s, u"two"_s, Page(2));
    view->Begin();  // from now on it follows the disk
    QTRY_COMPARE(Texts(), (QStringList{u"more"_s, u"one"_s, u"two"_s}));
    QCOMPARE(changed.count(), 1);
    const QString all = language.Global("OpenAllFavorites");
    const QString customize = language.Text("MAIN", "CustomizeLinks");
    QCOMPARE(Captions(*view->Links()->Menu()),
             (QStringList{all, u"-"_s, u"more >"_s, u"one"_s, u"two"_s, u"-"_s, customize}));
    QCOMPARE(Captions(*Opened(Button(u"more"_s)->menu())), (QStringList{all, u"-"_s, u"inside"_s}));
    for (qsizetype i = 1; i < Buttons().size(); ++i) {
      QCOMPARE(Buttons().at(i)->geometry().left(), Buttons().at(i - 1)->geometry().right() + 2);
    }
    QVERIFY(!view->Links()->findChild<QToolButton *>(u"tbxLinks"_s)->isVisible());
    Put(u"Links"_s, u"three"_s, Page(3));
    QTRY_COMPARE(Texts(), (QStringList{u"more"_s, u"one"_s, u"three"_s, u"two"_s}));
    QVERIFY(QDir(Root() + u"/Links"_s).removeRecursively());
    QTRY_VERIFY(!view->Links()->IsThere());
  }

  void MakesTheFolder() {
    const QSignalSpy organized(view->Links(), &TLinksBar::OrganizeWanted);
    view->Begin();
    (*actions)[TCommand::CustomizeOrganizeLinks]->trigger();
    QVERIFY(QDir(Root() + u"/Links"_s).exists() && view->Links()->IsThere());
    QCOMPARE(organized.value(0), QVariantList{Root() + u"/Links"_s});
    // A file has its name, and stays.
    QVERIFY(QDir(Root() + u"/Links"_s).removeRecursively());
    PutFile(u"Links"_s, "text");
    OnModalDialog<QMessageBox>([](QMessageBox &box) { box.accept(); });
    view->Links()->MakeFolder();
    QTRY_VERIFY(QApplication::activeModalWidget() == nullptr);
    QVERIFY(!view->Links()->IsThere() && QFile::exists(Root() + u"/Links"_s));
  }

  void WhatDoesNotFitIsBehindTheButton() {
    for (const QString &name : {u"aaaaaaaa"_s, u"bbbbbbbb"_s, u"cccccccc"_s}) Put(u"Links"_s, name, Page(1));
    ShowBar(150);
    auto *more = view->Links()->findChild<QToolButton *>(u"tbxLinks"_s);
    QTRY_VERIFY(more->isVisible());
    QVERIFY(Buttons().first()->isVisible() && !Buttons().last()->isVisible());
    const QStringList behind = Captions(*Opened(more->menu()));
    QStringList hidden;
    for (const QToolButton *button : Buttons()) {
      if (!button->isVisible()) hidden.append(button->text());
    }
    QCOMPARE(behind, hidden + QStringList({u"-"_s, language.Text("MAIN", "CustomizeLinks")}));
    settings->Set(Setting::LinksNewWin, false);
    Item(more->menu(), u"cccccccc"_s)->trigger();
    QTRY_COMPARE_WITH_TIMEOUT(Addresses(), QStringList(Page(1)), LoadTime);
  }

  void Opens_data() {
    Columns<bool, Qt::MouseButton, int, int>("newTab", "button", "tabs", "front");
    Row("here", false, Qt::LeftButton, 1, 0);
    Row("new tab", true, Qt::LeftButton, 2, 1);
    Row("background", false, Qt::MiddleButton, 2, 0);
  }
  void Opens() {
    QFETCH(bool, newTab);
    QFETCH(Qt::MouseButton, button);
    settings->Set(Setting::LinksNewWin, newTab);
    settings->Set(Setting::FavoritesNewWin, !newTab);
    OpenPage(u"/page0"_s);
    Put(u"Links"_s, u"one"_s, Page(1));
    ShowBar();
    QTest::mouseClick(Button(u"one"_s), button);
    QTEST(tabs->TabCount(), "tabs");
    QTEST(tabs->ActiveTabIndex(), "front");
    QTRY_COMPARE_WITH_TIMEOUT(tabs->Tabs().last()->GetLocationUrl(), Page(1), LoadTime);
  }

  void Drops() {
    for (const QString &name : {u"a"_s, u"b"_s, u"c"_s}) Put(u"Links"_s, name, Page(1));
    QVERIFY(FavoritesEdit::AddFolder(Root() + u"/Links"_s, u"f"_s).IsGood());
    ShowBar();
    QCOMPARE(Texts(), (QStringList{u"f"_s, u"a"_s, u"b"_s, u"c"_s}));
    QMimeData address;
    address.setUrls({QUrl(Page(2))});
    Drop(address, Button(u"b"_s)->geometry().topLeft() + QPoint(1, 1));
    QTRY_COMPARE(Texts(), (QStringList{u"f"_s, u"a"_s, u"127.0.0.1"_s, u"b"_s, u"c"_s}));
    QMimeData favorite;
    favorite.setData(u"application/x-zarvela-favorites"_s, (Root() + u"/Links/c.url"_s).toUtf8() + '\0');
    Drop(favorite, Button(u"a"_s)->geometry().topLeft() + QPoint(1, 1));
    QTRY_COMPARE(Texts(), (QStringList{u"f"_s, u"c"_s, u"a"_s, u"127.0.0.1"_s, u"b"_s}));
    // Into a folder by the middle half of its button, beside it by its quarters.
    const QRect folder = Button(u"f"_s)->geometry();
    Drop(favorite, QPoint(folder.left() + folder.width() / 5, folder.center().y()));
    QTRY_COMPARE(Texts(), (QStringList{u"c"_s, u"f"_s, u"a"_s, u"127.0.0.1"_s, u"b"_s}));
    const QRect moved = Button(u"f"_s)->geometry();
    Drop(favorite, QPoint(moved.right() - moved.width() / 5, moved.center().y()));
    QTRY_COMPARE(Texts(), (QStringList{u"f"_s, u"c"_s, u"a"_s, u"127.0.0.1"_s, u"b"_s}));
    Drop(favorite, Button(u"f"_s)->geometry().center());
    QTRY_COMPARE(Texts(), (QStringList{u"f"_s, u"a"_s, u"127.0.0.1"_s, u"b"_s}));
    QVERIFY(QFile::exists(Root() + u"/Links/f/c.url"_s));
    QMimeData script;
    script.setText(u"javascript:alert(1)"_s);
    Drop(script, QPoint(1, 1));
    QCOMPARE(FavoritesFolder::List(Root() + u"/Links"_s).size(), 4);
  }

  // Also where there is no folder yet.
  void DropsOfOthers() {
    const QString elsewhere = Path(u"Shortcut.url"_s);
    QFile file(elsewhere);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("[InternetShortcut]\r\nURL=http://s.test/\r\n") > 0);
    file.close();
    QFile text(Path(u"text.html"_s));
    QVERIFY(text.open(QIODevice::WriteOnly) && text.write("text") > 0);
    text.close();
    ShowBar();
    QMimeData several;
    several.setUrls({QUrl(Page(1)), QUrl(Page(2)), QUrl::fromLocalFile(Path(u"gone"_s)), QUrl(Page(3)),
                     QUrl::fromLocalFile(elsewhere), QUrl::fromLocalFile(text.fileName())});
    const QString titles = Page(2) + u"\nTwo\n"_s + Page(1) + u"\nOne\n"_s;
    several.setData(u"text/x-moz-url"_s, QByteArray(reinterpret_cast<const char *>(titles.utf16()), titles.size() * 2));
    Drop(several, QPoint(1, 1));
    QTRY_COMPARE(Texts(), (QStringList{u"One"_s, u"Two"_s, u"127.0.0.1"_s, u"Shortcut"_s, u"text"_s}));
    QVERIFY(!Told().isEmpty());  // of the one that is gone, which keeps no other away
    QVERIFY(QFile::exists(elsewhere) && QFile::exists(text.fileName()));
    const TFavorites all = FavoritesFolder::List(Root() + u"/Links"_s);
    QCOMPARE(FavoritesFolder::Target(all.at(1)), Page(2));
    QCOMPARE(FavoritesFolder::Target(all.at(3)), u"http://s.test/"_s);
    QCOMPARE(FavoritesFolder::Target(all.at(4)), Root() + u"/Links/text.html"_s);
    // Files alone, however many.
    QMimeData files;
    QList<QUrl> urls;
    for (int i = 0; i < 60; ++i) {
      QVERIFY(QFile::copy(elsewhere, Path(u"s%1.url"_s.arg(i))));
      urls.append(QUrl::fromLocalFile(Path(u"s%1.url"_s.arg(i))));
    }
    files.setUrls(urls);
    Drop(files, QPoint(1, 1));
    QTRY_COMPARE(FavoritesFolder::List(Root() + u"/Links"_s).size(), 65);
    // With Ctrl favorites are copied.
    QMimeData favorite;
    favorite.setData(u"application/x-zarvela-favorites"_s, (Root() + u"/Links/Shortcut.url"_s).toUtf8() + '\0');
    Drop(favorite, QPoint(1, 1), Qt::ControlModifier);
    QCOMPARE(FavoritesFolder::List(Root() + u"/Links"_s).size(), 66);
  }

  // A folder's button opens its menu when it is let go, and is dragged before.
  void Drags_data() {
    Columns<QString, bool>("button", "isFolder");
    Row("link", "one", false);
    Row("folder", "f", true);
  }
  void Drags() {
    QFETCH(QString, button);
    QFETCH(bool, isFolder);
    const QString link = Put(u"Links"_s, u"one"_s, Page(1));
    Put(u"Links/f"_s, u"inside"_s, Page(2));
    ShowBar();
    QToolButton *dragged = Button(button);
    QTest::mousePress(dragged, Qt::LeftButton, {}, QPoint(3, 3));
    QVERIFY(QApplication::activePopupWidget() == nullptr);
    const QPoint to(3 + QApplication::startDragDistance(), 3);
    QMouseEvent move(QEvent::MouseMove, to, dragged->mapToGlobal(to), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(dragged, &move);
    const auto *drag = view->Links()->findChild<QDrag *>();
    QVERIFY(drag != nullptr);
    QCOMPARE(drag->mimeData()->data(u"application/x-zarvela-favorites"_s),
             isFolder ? (Root() + u"/Links/f"_s).toUtf8() + '\0' : link.toUtf8() + '\0');
    QCOMPARE(drag->mimeData()->urls(), QList<QUrl>{QUrl::fromLocalFile(isFolder ? Root() + u"/Links/f"_s : link)});
    if (!isFolder) {
      QCOMPARE(drag->mimeData()->text(), Page(1));
      const QByteArray titled = drag->mimeData()->data(u"text/x-moz-url"_s);
      QCOMPARE(QString::fromUtf16(reinterpret_cast<const char16_t *>(titled.constData()), titled.size() / 2),
               Page(1) + u"\none"_s);
    }
    QVERIFY(QFile::exists(link));  // nobody has taken it
    if (!isFolder) return;
    bool isOpen = false;
    QTimer::singleShot(0, this, [&] {
      QWidget *menu = QApplication::activePopupWidget();
      isOpen = menu != nullptr && menu == dragged->menu();
      if (menu != nullptr) menu->close();
    });
    QTest::mouseClick(dragged, Qt::LeftButton, {}, QPoint(3, 3));
    QVERIFY(isOpen);
  }

  // Whatever happens on the disk, until it closes.
  void OpenMenuStays_data() {
    Columns<QString>("which");
    Row("folder", "folder");
    Row("rest", "rest");
    Row("whole", "whole");
  }
  void OpenMenuStays() {
    QFETCH(QString, which);
    Put(u"Links/f"_s, u"inside"_s, Page(2));
    Put(u"Links"_s, u"one"_s, Page(1));
    ShowBar();
    QMenu *menu = which == u"folder"_s ? Button(u"f"_s)->menu()
                  : which == u"rest"_s ? view->Links()->findChild<QMenu *>(u"pmLinksBarExtender"_s)
                                       : view->Links()->Menu();
    menu->popup(QPoint(0, 0));
    const QPointer<QToolButton> before = Button(u"one"_s);
    Put(u"Links"_s, u"two"_s, Page(2));
    view->Links()->Refresh();
    QCoreApplication::processEvents();
    QVERIFY(menu->isVisible() && before);
    QCOMPARE(Texts(), (QStringList{u"f"_s, u"one"_s}));
    menu->close();
    QTRY_COMPARE(Texts(), (QStringList{u"f"_s, u"one"_s, u"two"_s}));
  }

  // Also where the times of the disk are too coarse to tell that there was one.
  void ShowsEachChange() {
    const QString folder = Root() + u"/Links"_s;
    const QString inside = Put(u"Links/f"_s, u"inside"_s, Page(2));
    Put(u"Links"_s, u"one"_s, Page(1));
    settings->Set(Setting::ShowOpenAllFavorites, false);
    ShowBar();
    QCOMPARE(Captions(*Opened(Button(u"f"_s)->menu())), QStringList{u"inside"_s});
    struct stat before {};
    QCOMPARE(::stat(folder.toUtf8().constData(), &before), 0);
    QVERIFY(QFile::remove(folder + u"/one.url"_s));
    const timespec times[] = {before.st_atim, before.st_mtim};
    QCOMPARE(::utimensat(AT_FDCWD, folder.toUtf8().constData(), times, 0), 0);
    view->Links()->Refresh();
    QCOMPARE(Texts(), QStringList{u"f"_s});
    QVERIFY(QFile::remove(inside));
    QCOMPARE(Captions(*Opened(Button(u"f"_s)->menu())), QStringList{language.Global("EmptyFolder")});
    Put(u"Links/f"_s, u"again"_s, Page(2));
    QCOMPARE(Captions(*Opened(Button(u"f"_s)->menu())), QStringList{u"again"_s});
    QVERIFY(QFile::remove(Root() + u"/Links/f/again.url"_s));
    QCOMPARE(Captions(*Opened(Button(u"f"_s)->menu())), QStringList{language.Global("EmptyFolder")});
  }

  // In their order, from whatever they were made for; the button for the rest is the last.
  void Keys() {
    for (const char *name : {"aaaaaaaa", "bbbbbbbb", "cccccccc", "dddddddd"}) {
      Put(u"Links"_s, QString::fromLatin1(name), Page(1));
    }
    ShowBar(190);
    Put(u"Links"_s, u"a"_s, Page(1));
    view->Links()->Refresh();
    auto *more = view->Links()->findChild<QToolButton *>(u"tbxLinks"_s);
    QTRY_VERIFY(more->isVisible());
    QList<QWidget *> shown;
    for (const QString &text : Texts()) {
      if (Button(text)->isVisible()) shown.append(Button(text));
    }
    shown.append(more);
    QVERIFY(shown.size() > 2);
    window->activateWindow();
    shown.first()->setFocus();
    QTRY_VERIFY(shown.first()->hasFocus());
    for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Right}) {
      shown.first()->setFocus();
      for (qsizetype i = 1; i < shown.size(); ++i) {
        QTest::keyClick(shown.at(i - 1), key);
        QVERIFY2(shown.at(i)->hasFocus(), qPrintable(QString::number(i)));
      }
    }
    QTest::keyClick(more, Qt::Key_Right);
    QVERIFY(more->hasFocus());
    QTest::keyClick(more, Qt::Key_Home);
    QVERIFY(shown.first()->hasFocus());
    QTest::keyClick(shown.first(), Qt::Key_End);
    QTest::keyClick(more, Qt::Key_Left);
    QVERIFY(shown.at(shown.size() - 2)->hasFocus());
    // The one that has the keyboard keeps it when the bar is made anew.
    Put(u"Links"_s, u"zz"_s, Page(1));
    const QString text = static_cast<QToolButton *>(shown.at(shown.size() - 2))->text();
    view->Links()->Refresh();
    QVERIFY(Button(text)->hasFocus());
  }

  void Commands() {
    const TFavorite one{u"one"_s, Put(u"Links"_s, u"one"_s, Page(1)), false};
    ShowBar();
    QMenu menu;
    TFavoriteCommands commands(window.get(), view->Launcher(), language);
    commands.Fill(menu, one);
    const auto choose = [&](const QString &text) {
      QVERIFY(Item(&menu, text) != nullptr);
      Item(&menu, text)->trigger();
    };
    choose(language.Text("FAVORITES", "CopyAddress"));
    QCOMPARE(QGuiApplication::clipboard()->text(), Page(1));
    choose(language.Text("FAVORITES", "OpenInBackground"));
    QCOMPARE(tabs->ActiveTabIndex(), 0);
    choose(language.Text("FAVORITES", "OpenInNewTab"));
    QCOMPARE(tabs->ActiveTabIndex(), 1);
    QCOMPARE(tabs->TabCount(), 3);

    OnModalDialog<TfrmFavorite>([this](TfrmFavorite &dialog) {
      auto *address = dialog.findChild<QLineEdit *>(u"edtAddress"_s);
      QCOMPARE(address->text(), Page(1));
      address->selectAll();
      QTest::keyClicks(address, Page(2));
      dialog.accept();
    });
    choose(language.Text("FAVORITES", "Properties"));
    QCOMPARE(FavoritesFolder::Target(one), Page(2));
    OnModalDialog<QInputDialog>([](QInputDialog &dialog) {
      QCOMPARE(dialog.textValue(), u"one"_s);
      dialog.setTextValue(u"uno"_s);
      dialog.accept();
    });
    choose(language.Text("FAVORITES", "Rename"));
    const TFavorite renamed = FavoritesFolder::List(Root() + u"/Links"_s).value(0);
    QCOMPARE(renamed.caption, u"uno"_s);
    for (const bool yes : {false, true}) {
      OnModalDialog<TfrmConfirm>([yes](TfrmConfirm &dialog) { yes ? dialog.accept() : dialog.reject(); });
      commands.Delete(renamed);
      QCOMPARE(QFile::exists(renamed.path), !yes);
    }
  }

  // The context menu comes up over the button, and over an item of an open menu.
  void ContextMenus() {
    Put(u"Links"_s, u"one"_s, Page(1));
    ShowBar();
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(2, 2), QPoint(2, 2));
    QApplication::sendEvent(Button(u"one"_s), &event);
    const auto open = [] { return QApplication::activePopupWidget(); };
    QVERIFY(open() != nullptr && open()->objectName() == u"pmFavorite"_s);
    open()->close();
    QMenu *menu = SubMenu(u"Links"_s);
    menu->popup(QPoint(0, 0));
    QTest::mouseClick(menu, Qt::RightButton, {}, menu->actionGeometry(Item(menu, u"one"_s)).center());
    QVERIFY(open() != nullptr && open()->objectName() == u"pmFavorite"_s);
    QCOMPARE(tabs->TabCount(), 1);
    QVERIFY(tabs->Tab(0)->AddressToSave().isEmpty());  // the click itself opens nothing
    open()->close();
    menu->close();
  }

  void ImportsAndExports() {
    const QString file = Path(u"some.html"_s);
    QFile html(file);
    QVERIFY(html.open(QIODevice::WriteOnly));
    html.write(
        "<!DOCTYPE NETSCAPE-Bookmark-file-1><DL><DT><A HREF=\"http://a.test/\">A</A><DT><H3>F</H3><DL>"
        "<DT><A HREF=\"http://b.test/\">B</A></DL><DT><A HREF=\"\">Nothing</A></DL>");
    html.close();
    ChooseFile(file);
    (*actions)[TCommand::ImportFavorites]->trigger();
    QTRY_VERIFY(!Told().isEmpty());
    QVERIFY2(Told().startsWith(language.Text("FAVORITES", "Imported").arg(2).arg(1).arg(u"some"_s)),
             qPrintable(Told()));
    QVERIFY2(Told().contains(language.Text("FAVORITES", "LeftOut").arg(1) + u"\nNothing"_s), qPrintable(Told()));
    delete window->findChild<QMessageBox *>();
    QCOMPARE(Captions(*SubMenu(u"some"_s)).mid(2), (QStringList{u"A"_s, u"F >"_s}));

    const QString saved = Path(u"saved.html"_s);
    ChooseFile(saved);
    (*actions)[TCommand::ExportFavorites]->trigger();
    QTRY_VERIFY(!Told().isEmpty());
    QVERIFY(window->findChild<QProgressDialog *>() == nullptr);
    QFile out(saved);
    QVERIFY(out.open(QIODevice::ReadOnly));
    QStringList names;
    for (const TBookmark &one : BookmarkFile::Read(out.readAll())) names.append(one.name);
    QCOMPARE(names, (QStringList{u"some"_s, u"A"_s, u"F"_s, u"B"_s}));
  }

  void ImportsNothing_data() {
    Columns<QByteArray, QString>("bytes", "told");
    Row("no bookmarks", QByteArray("some text"), language.Text("FAVORITES", "NoBookmarks"));
  }
  void ImportsNothing() {
    QFETCH(QByteArray, bytes);
    QFile file(Path(u"x.html"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    file.close();
    ChooseFile(file.fileName());
    (*actions)[TCommand::ImportFavorites]->trigger();
    QTRY_VERIFY(!Told().isEmpty());
    QTEST(Told(), "told");
    QCOMPARE(Favorites(), QStringList());
  }

  // What the browsers of this user have is offered, each by its name.
  void ImportsFromABrowser() {
    const QString folder = QDir::homePath() + u"/config/chromium"_s;
    QVERIFY(QDir().mkpath(folder + u"/Default"_s));
    QFile file(folder + u"/Default/Bookmarks"_s);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray("{'roots':{'bookmark_bar':{'type':'folder','name':'Bar','children':["
                          "{'type':'url','name':'P','url':'http://p.test/'}]}},'version':1}")
                   .replace('\'', '"'));
    file.close();
    OnModalDialog<QInputDialog>([this](QInputDialog &dialog) {
      const QStringList lines = dialog.comboBoxItems();
      QCOMPARE(lines.size(), 2);
      QCOMPARE(lines.last(), language.Text("FAVORITES", "SourceFile"));
      dialog.setTextValue(lines.first());
      dialog.accept();
    });
    (*actions)[TCommand::ImportFavorites]->trigger();
    QTRY_VERIFY(!Told().isEmpty());
    QCOMPARE(Favorites().size(), 1);
    QVERIFY2(Favorites().first().startsWith(u"Chromium"_s), qPrintable(Favorites().first()));
    QVERIFY(QDir(folder).removeRecursively());
  }
};

int main(int argc, char **argv) {
  return RunWithEngine<TestFavoritesLinks>(argc, argv);
}
#include "test_favorites_links.moc"
