#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include "chrome/favorites/favorite_dialog.h"
#include "chrome/folder_view/folder_view.h"
#include "chrome/side_bar/favorites_page.h"
#include "config/registry_paths.h"
#include "support/shipped_files.h"
#include "window/favorites_fixture.h"

// The side bar's page of favorites: the tree, the search below it, and how both follow what becomes of the files.
class TestFavoritesPage final : public QObject, private TFavoritesFixture {
  Q_OBJECT

 private:
  void Make() {
    m_page = std::make_unique<TFavoritesPage>(language, *settings, view->Launcher(), view->Icons());
    m_tree = m_page->findChild<TFolderView *>();
    m_text = m_page->findChild<QLineEdit *>(u"edtFindFavorites"_s);
    m_list = m_page->findChild<QTreeView *>(u"lvFindFavorites"_s);
    connect(view.get(), &TFavoritesView::Changed, m_page.get(), &TFavoritesPage::Refresh);
    connect(m_page.get(), &TFavoritesPage::Changed, view.get(), &TFavoritesView::Refresh);
    m_page->resize(300, 500);
  }
  void Show() {
    m_page->show();
    QVERIFY(QTest::qWaitForWindowActive(m_page.get()));
    m_page->setFocus();
    QVERIFY(m_tree->hasFocus());
    QTRY_VERIFY(!Rows(*m_tree).isEmpty() && m_tree->Model().IsIdle());
  }
  // From top to bottom.
  [[nodiscard]] static QStringList Rows(const QTreeView &list) {
    QStringList rows;
    for (QModelIndex row = list.model()->index(0, 0, list.rootIndex()); row.isValid(); row = list.indexBelow(row)) {
      rows.append(row.data().toString());
    }
    return rows;
  }
  [[nodiscard]] QStringList Found() const { return Rows(*m_list); }
  [[nodiscard]] QStringList FoundSorted() const {
    QStringList found = Found();
    found.sort();
    return found;
  }
  void Find(const QString &text) {
    m_text->setText(text);
    QTest::mouseClick(m_page->findChild<QToolButton *>(u"spdFindFavorites"_s), Qt::LeftButton);
  }
  void FindFirst(const QString &text, const QStringList &found) {
    Find(text);
    QTRY_COMPARE(FoundSorted(), found);
    m_list->setFocus();
    m_list->setCurrentIndex(m_list->model()->index(0, 0));
  }
  void Choose(const char *name) {
    QTest::keyClick(m_list, Qt::Key_F10, Qt::ShiftModifier);
    auto *menu = m_page->findChild<QMenu *>(u"pmFoundFavorite"_s);
    QVERIFY(menu != nullptr);
    for (QAction *action : menu->actions()) {
      if (action->objectName() != QLatin1String(name)) continue;
      QVERIFY(action->isEnabled());
      menu->close();
      action->trigger();
      return;
    }
    QFAIL("no such item");
  }
  [[nodiscard]] QModelIndex Index(const QString &name) const { return m_tree->Model().Nearest(Root() + u'/' + name); }
  void Expand(const QString &name) const {
    m_tree->expand(Index(name));
    QTRY_VERIFY(m_tree->Model().IsIdle());
  }

  std::unique_ptr<TFavoritesPage> m_page;
  TFolderView *m_tree = nullptr;
  QLineEdit *m_text = nullptr;
  QTreeView *m_list = nullptr;

 private Q_SLOTS:
  void initTestCase() { Prepare(); }
  void init() {
    Begin();
    settings->Set(Setting::FavoritesNewWin, false);
    Put(u"f"_s, u"Xylophone"_s, Page(1));
    Put(u"f/deep"_s, u"Drum"_s, Page(2));
    Put(u"g"_s, u"Harp"_s, Page(3));
    Put(QString(), u"Lute"_s, Page(4));
    Make();
  }
  void cleanup() {
    m_page.reset();
    End();
  }

  // Nothing is looked at before it shows.
  void IsReadWhenItShows() {
    m_page->Refresh();
    QVERIFY(m_tree->Model().Root().isEmpty());
    Show();
    QCOMPARE(Rows(*m_tree), (QStringList{u"f"_s, u"g"_s, u"Lute"_s}));
    QVERIFY(!m_list->isVisible());
    // Another folder is shown as soon as it is the one.
    const QString other = Path(u"other"_s);
    QVERIFY(!FavoritesEdit::AddPage(other, u"Only"_s, Page(5)).paths.isEmpty());
    QVERIFY(
        store->Write(TRegistryHive::CurrentUser, QLatin1String(RegistryKey::UserShellFolders), u"Favorites"_s, other));
    view->Refresh();
    QTRY_COMPARE(Rows(*m_tree), QStringList(u"Only"_s));
  }

  void Finds_data() {
    Columns<QString, QStringList>("text", "found");
    Row("a name", u"LUTE"_s, QStringList(u"Lute"_s));
    Row("a part of addresses", u"/Page"_s, QStringList{u"Drum"_s, u"Harp"_s, u"Lute"_s, u"Xylophone"_s});
    Row("the sub-folders' come first", u"r"_s, QStringList{u"Drum"_s, u"Harp"_s});
    Row("nothing", u"piano"_s, QStringList(u"(Nothing found)"_s));
  }
  void Finds() {
    QFETCH(QString, text);
    Show();
    Find(text);
    QTRY_VERIFY(!Found().isEmpty() && !m_page->findChild<QLabel *>(u"lblFoundFavorites"_s)->text().endsWith(u'…'));
    QTEST(FoundSorted(), "found");
    QVERIFY(m_list->isVisible());
    const QStringList found = Found();
    // Nothing to look for leaves what was found.
    Find(QString());
    QCoreApplication::processEvents();
    QCOMPARE(Found(), found);
    QVERIFY(m_list->isVisible());
    // Enter in the field is the button.
    m_text->setText(u"xyl"_s);
    QTest::keyClick(m_text, Qt::Key_Return);
    QTRY_COMPARE(Found(), QStringList(u"Xylophone"_s));
    QVERIFY(m_list->model()->index(0, 1).data().toString().contains(Page(1)));
  }

  // The folder is the one that the shell's other list names; what lies outside the tree cannot be shown in it.
  void SearchesTheShellsFolder() {
    Show();
    const QString other = Path(u"other"_s);
    QVERIFY(!FavoritesEdit::AddPage(other, u"Lute elsewhere"_s, Page(5)).paths.isEmpty());
    QVERIFY(store->Write(TRegistryHive::CurrentUser, QLatin1String(RegistryKey::ShellFolders), u"Favorites"_s, other));
    QVERIFY(
        store->Write(TRegistryHive::CurrentUser, QLatin1String(RegistryKey::UserShellFolders), u"Favorites"_s, Root()));
    FindFirst(u"lute"_s, QStringList(u"Lute elsewhere"_s));
    QTest::keyClick(m_list, Qt::Key_F10, Qt::ShiftModifier);
    QVERIFY(!m_page->findChild<QAction *>(u"actRevealFound"_s)->isEnabled());
    QVERIFY(m_page->findChild<QAction *>(u"actDeleteFound"_s)->isEnabled());
    m_page->findChild<QMenu *>(u"pmFoundFavorite"_s)->close();
    QDir(other).removeRecursively();
    Find(u"lute"_s);
    QTRY_COMPARE(Found(), QStringList(u"(Nothing found)"_s));
  }

  void OpensWhatWasFound_data() {
    Columns<QString, bool, int, int>("how", "newTab", "tab", "active");
    Row("a click", u"click"_s, false, 0, 0);
    Row("a click, by setting", u"click"_s, true, 1, 1);
    Row("a click with Ctrl", u"ctrl click"_s, false, 1, 0);
    Row("a middle click", u"middle"_s, false, 1, 0);
    Row("Enter", u"Return"_s, false, 0, 0);
    Row("Ctrl+Enter", u"Ctrl+Return"_s, true, 1, 0);
    Row("Shift+Enter", u"Shift+Return"_s, false, 1, 1);
    Row("menu", u"actOpenFound"_s, false, 0, 0);
    Row("menu, new tab", u"actOpenFoundInNewTab"_s, false, 1, 1);
    Row("menu, background", u"actOpenFoundInBackground"_s, false, 1, 0);
  }
  void OpensWhatWasFound() {
    QFETCH(QString, how);
    QFETCH(bool, newTab);
    QFETCH(int, tab);
    settings->Set(Setting::FavoritesNewWin, newTab);
    settings->Set(Setting::OpenNewInForeground, false);
    Show();
    FindFirst(u"drum"_s, QStringList(u"Drum"_s));
    const QPoint place = m_list->visualRect(m_list->currentIndex()).center();
    if (how == u"click"_s) {
      QTest::mouseClick(m_list->viewport(), Qt::LeftButton, {}, place);
    } else if (how == u"ctrl click"_s) {
      QTest::mouseClick(m_list->viewport(), Qt::LeftButton, Qt::ControlModifier, place);
    } else if (how == u"middle"_s) {
      QTest::mouseClick(m_list->viewport(), Qt::MiddleButton, {}, place);
    } else if (how.startsWith(u"act"_s)) {
      Choose(qPrintable(how));
    } else {
      QTest::keyClick(m_list, QKeySequence(how)[0].key(), QKeySequence(how)[0].keyboardModifiers());
    }
    QCOMPARE(tabs->TabCount(), tab + 1);
    QTRY_COMPARE(tabs->Tab(tab)->AddressToSave(), Page(2));
    QTEST(int(tabs->Tabs().indexOf(tabs->GetActivePage())), "active");
  }

  void DoesWhatItsMenuSays() {
    Show();
    FindFirst(u"drum"_s, QStringList(u"Drum"_s));
    Choose("actCopyFoundAddress");
    QCOMPARE(QGuiApplication::clipboard()->text(), Page(2));
    Choose("actRevealFound");
    QTRY_COMPARE(m_tree->Current().caption, u"Drum"_s);
    QCOMPARE(m_page->focusWidget(), m_tree);
    m_list->setFocus();
    OnModalDialog<TfrmFavorite>([](TfrmFavorite &dialog) {
      dialog.findChild<QLineEdit *>(u"edtName"_s)->setText(u"Snare drum"_s);
      dialog.accept();
    });
    Choose("actFoundProperties");
    QTRY_COMPARE(Found(), QStringList(u"Snare drum"_s));
    m_list->setCurrentIndex(m_list->model()->index(0, 0));
    Choose("actDeleteFound");
    QVERIFY(!QFile::exists(Root() + u"/f/deep/Snare drum.url"_s));
    QTRY_COMPARE(Found(), QStringList(u"(Nothing found)"_s));
    QTRY_VERIFY(!Rows(*m_tree).contains(u"Snare drum"_s));
    // Also where nothing is left to be selected.
    QTest::keyClick(m_list, Qt::Key_Z, Qt::ControlModifier);
    QTRY_COMPARE(Found(), QStringList(u"Snare drum"_s));
    QTRY_VERIFY(Rows(*m_tree).contains(u"Snare drum"_s));
    QVERIFY(Favorites().contains(u"f >"_s));
  }

  // Of two presses in a row the second means the next row.
  void DeletesOneAfterTheOther() {
    Show();
    FindFirst(u"/page"_s, {u"Drum"_s, u"Harp"_s, u"Lute"_s, u"Xylophone"_s});
    QTest::keyClick(m_list, Qt::Key_Delete);
    QTest::keyClick(m_list, Qt::Key_Delete);
    QVERIFY(!m_page->findChild<QLabel *>(u"lblMessage"_s)->isVisible());
    QTRY_COMPARE(Found().size(), 2);
    // What is gone already is told.
    const QString left = m_list->currentIndex().data().toString();
    QVERIFY(QDir(Root()).removeRecursively());
    QTest::keyClick(m_list, Qt::Key_Delete);
    QVERIFY2(m_page->findChild<QLabel *>(u"lblMessage"_s)->isVisible(), qPrintable(left));
  }

  void LeavesByEscape_data() {
    Columns<QString>("from");
    Row("the field", u"edtFindFavorites"_s);
    Row("the list", u"lvFindFavorites"_s);
    Row("the tree", u"shFavorites"_s);
    Row("the cross", u"spdCloseFoundFavorites"_s);
  }
  void LeavesByEscape() {
    QFETCH(QString, from);
    Show();
    FindFirst(u"drum"_s, QStringList(u"Drum"_s));
    auto *widget = m_page->findChild<QWidget *>(from);
    widget->setFocus();
    from == u"spdCloseFoundFavorites"_s ? QTest::mouseClick(widget, Qt::LeftButton)
                                        : QTest::keyClick(widget, Qt::Key_Escape);
    QVERIFY(m_tree->hasFocus() && !m_list->isVisible());
    // A search that is ended tells no more.
    view->Refresh();
    QTRY_VERIFY(m_tree->Model().IsIdle());
    QVERIFY(Found().isEmpty() && !m_list->isVisible());
    // What is left is the window's.
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, {});
    QApplication::sendEvent(m_tree, &escape);
    QVERIFY(!escape.isAccepted());
  }

  // What other programs do shows within a second, and nothing moves under the user's hand.
  void FollowsTheDisk() {
    for (int i = 10; i < 60; ++i) Put(u"f"_s, u"Tune %1"_s.arg(i), Page(6));
    Show();
    view->Begin();
    Expand(u"f"_s);
    Expand(u"f/deep"_s);
    m_tree->Select({Root() + u"/f/Tune 40.url"_s});
    QTRY_COMPARE(m_tree->Current().caption, u"Tune 40"_s);
    FindFirst(u"tune 4"_s, Tunes(40, 49));
    m_list->setCurrentIndex(m_list->model()->index(5, 0));
    const QString kept = m_list->currentIndex().data().toString();
    m_tree->scrollTo(Index(u"f/Tune 30.url"_s), QAbstractItemView::PositionAtTop);
    const QString top = m_tree->indexAt(QPoint(0, 0)).data().toString();
    QVERIFY(m_tree->verticalScrollBar()->value() > 0);
    QElapsedTimer clock;
    clock.start();
    PutFile(u"f/A new one.url"_s, "[InternetShortcut]\r\nURL=http://a.example/\r\n");
    PutFile(u"f/Tune 4.url"_s, "[InternetShortcut]\r\nURL=http://a.example/\r\n");
    QVERIFY(QFile::remove(Root() + u"/f/Tune %1.url"_s.arg(kept.endsWith(u'1') ? 42 : 41)));
    QTRY_VERIFY(Rows(*m_tree).contains(u"A new one"_s));
    QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
    QTRY_VERIFY(Found().contains(u"Tune 4"_s));
    QCOMPARE(Found().size(), 10);
    QCOMPARE(m_list->currentIndex().data().toString(), kept);
    QCOMPARE(m_tree->Selected().first().caption, u"Tune 40"_s);
    QCOMPARE(m_tree->indexAt(QPoint(0, 0)).data().toString(), top);
    QVERIFY(m_tree->isExpanded(Index(u"f/deep"_s)));
    // What happens while it is hidden shows when it is seen again.
    m_page->hide();
    PutFile(u"f/Another.url"_s, "[InternetShortcut]\r\nURL=http://a.example/\r\n");
    QTRY_VERIFY(Captions(*SubMenu(u"f"_s)).contains(u"Another"_s));
    QVERIFY(!Rows(*m_tree).contains(u"Another"_s));
    m_page->show();
    QTRY_VERIFY(Rows(*m_tree).contains(u"Another"_s));
  }

  void KeepsOneFolderOpenByTheSetting() {
    Show();
    Expand(u"f"_s);
    Expand(u"g"_s);
    QVERIFY(!m_tree->isExpanded(Index(u"f"_s)));
    settings->Set(Setting::HBAutoExpand, false);
    Expand(u"f"_s);
    QVERIFY(m_tree->isExpanded(Index(u"g"_s)));
    settings->Set(Setting::HBAutoExpand, true);
    m_tree->collapse(Index(u"g"_s));
    Expand(u"g"_s);
    QVERIFY(!m_tree->isExpanded(Index(u"f"_s)));
  }

  void Buttons() {
    Show();
    m_tree->Select({Root() + u"/g"_s});
    QString organized;
    connect(m_page.get(), &TFavoritesPage::OrganizeWanted, this, [&](const QString &folder) { organized = folder; });
    const auto press = [this](const char *name) {
      QTest::mouseClick(m_page->findChild<QToolButton *>(QLatin1String(name)), Qt::LeftButton);
    };
    press("spdOrganizeFavorites");
    QCOMPARE(organized, Root() + u"/g"_s);
    PutFile(u"Unseen.url"_s, "x");
    press("spdRefreshFavorites");
    QTRY_VERIFY(Rows(*m_tree).contains(u"Unseen"_s));
    press("spdNewFavoritesFolder");
    QTRY_VERIFY(m_tree->findChild<QLineEdit *>() != nullptr);
    QTest::keyClicks(m_tree->findChild<QLineEdit *>(), u"Brass"_s);
    QTest::keyClick(m_tree->findChild<QLineEdit *>(), Qt::Key_Return);
    QTRY_VERIFY(QDir(Root() + u"/g/Brass"_s).exists());
  }

  // In every language all of it has room in a narrow bar, a name, and a place in the order of the Tab key.
  void FitsAndIsNamed_data() {
    QTest::addColumn<QString>("file");
    for (const QString &name : QDir(SourceFile(QStringLiteral("Languages"))).entryList({u"*.ini"_s})) {
      QTest::newRow(qPrintable(name)) << name;
    }
  }
  void FitsAndIsNamed() {
    QFETCH(QString, file);
    TLanguage other;
    QVERIFY(other.LoadFile(SourceFile(QStringLiteral("Languages/") + file)));
    QWidget bar;
    QVBoxLayout layout(&bar);
    layout.setContentsMargins(4, 4, 4, 4);
    TFavoritesPage page(other, *settings, view->Launcher(), view->Icons());
    layout.addWidget(&page);
    bar.resize(160, 400);
    bar.show();
    QCOMPARE(bar.width(), 160);
    QVERIFY(QTest::qWaitForWindowActive(&bar));
    auto *text = page.findChild<QLineEdit *>(u"edtFindFavorites"_s);
    text->setText(u"drum"_s);
    QTest::keyClick(text, Qt::Key_Return);
    QTRY_VERIFY(page.findChild<QLabel *>(u"lblFoundFavorites"_s)->text().contains(u'1'));
    QCOMPARE(bar.width(), 160);
    const auto *label = page.findChild<QLabel *>(u"lblFoundFavorites"_s);
    QVERIFY(label->width() >= label->sizeHint().width());
    auto *list = page.findChild<QTreeView *>(u"lvFindFavorites"_s);
    QVERIFY(!list->horizontalScrollBar()->isVisible() && list->viewport()->height() > 100);
    QStringList order;
    page.setFocus();
    for (int i = 0; i < 8; ++i) {
      QWidget *focused = QApplication::focusWidget();
      order.append(focused->objectName());
      QVERIFY2(!focused->accessibleName().isEmpty(), qPrintable(order.last()));
      QVERIFY(page.rect().contains(QRect(focused->mapTo(&page, QPoint()), focused->size())));
      QTest::keyClick(focused, Qt::Key_Tab);
    }
    QCOMPARE(order, (QStringList{u"shFavorites"_s, u"edtFindFavorites"_s, u"spdFindFavorites"_s, u"lvFindFavorites"_s,
                                 u"spdCloseFoundFavorites"_s, u"spdNewFavoritesFolder"_s, u"spdOrganizeFavorites"_s,
                                 u"spdRefreshFavorites"_s}));
    // No letter stands for two items of its menu.
    list->setCurrentIndex(list->model()->index(0, 0));
    QTest::keyClick(list, Qt::Key_F10, Qt::ShiftModifier);
    QSet<QKeySequence> letters;
    for (const QAction *action : page.findChild<QMenu *>(u"pmFoundFavorite"_s)->actions()) {
      if (!action->isSeparator()) letters.insert(QKeySequence::mnemonic(action->text()));
    }
    QVERIFY(!letters.contains(QKeySequence()));
    QCOMPARE(letters.size(), 8);
  }

 private:
  [[nodiscard]] static QStringList Tunes(int first, int last) {
    QStringList tunes;
    for (int i = first; i <= last; ++i) tunes.append(u"Tune %1"_s.arg(i));
    return tunes;
  }
};

ENGINE_MAIN(TestFavoritesPage)
#include "test_favorites_page.moc"
