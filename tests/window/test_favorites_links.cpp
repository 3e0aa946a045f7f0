#include <QClipboard>
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
  void Drop(const QMimeData &data, const QPoint &place) const {
    QDragEnterEvent enter(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(view->Links(), &enter);
    if (!enter.isAccepted()) return;
    QDropEvent drop(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
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
    Drop(favorite, Button(u"f"_s)->geometry().center());
    QTRY_COMPARE(Texts(), (QStringList{u"f"_s, u"a"_s, u"127.0.0.1"_s, u"b"_s}));
    QVERIFY(QFile::exists(Root() + u"/Links/f/c.url"_s));
    QMimeData script;
    script.setText(u"javascript:alert(1)"_s);
    Drop(script, QPoint(1, 1));
    QCOMPARE(FavoritesFolder::List(Root() + u"/Links"_s).size(), 4);
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
