#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPointer>
#include <QScrollBar>
#include <QToolButton>

#include "chrome/folder_view/folder_view.h"
#include "chrome/side_bar/groups_page.h"
#include "favorites/favorite_drag.h"
#include "favorites/favorites_order.h"
#include "favorites/shortcut_file.h"
#include "groups/group_drag.h"
#include "groups/halvex_group.h"
#include "groups/halvex_group_dialog.h"
#include "support/shipped_files.h"
#include "window/groups_fixture.h"

// The side bar's page of page groups: the tree of them with their pages, by mouse, keyboard, menu and drag.
class TestGroupsPage final : public QObject, private TGroupsFixture {
  Q_OBJECT

 private:
  [[nodiscard]] static QString In(const QString &name) { return TGroupFolder::Path() + u'/' + name; }
  [[nodiscard]] static QString Saved(const QString &name) { return Lines(In(name)).replace(u'\n', u' '); }
  // A folder or group by its path, a page by "path>caption".
  [[nodiscard]] QModelIndex Index(const QString &name) const {
    const QStringList parts = name.split(u'>');
    const QModelIndex file = m_tree->Model().Nearest(In(parts.first()));
    if (m_tree->Model().At(file).path != In(parts.first())) return {};
    if (parts.size() == 1) return file;
    for (int row = 0; row < m_tree->model()->rowCount(file); ++row) {
      const QModelIndex page = m_tree->model()->index(row, 0, file);
      if (page.data().toString() == parts.last()) return page;
    }
    return {};
  }
  // The rows from top to bottom, each with a blank for each level.
  [[nodiscard]] QStringList Rows() const {
    QStringList rows;
    for (QModelIndex index = m_tree->model()->index(0, 0, m_tree->rootIndex()); index.isValid();
         index = m_tree->indexBelow(index)) {
      QString row = index.data().toString();
      for (QModelIndex above = index.parent(); above != m_tree->rootIndex(); above = above.parent()) row.prepend(u' ');
      rows.append(row);
    }
    return rows;
  }
  void Expand(const QString &name) {
    QTRY_VERIFY(Index(name).isValid());
    m_tree->expand(Index(name));
    QTRY_VERIFY(m_tree->Model().IsIdle());
  }
  void Choose(const QStringList &names) {
    m_tree->clearSelection();
    for (const QString &name : names) {
      QTRY_VERIFY2(Index(name).isValid(), qPrintable(name));
      m_tree->selectionModel()->setCurrentIndex(Index(name), QItemSelectionModel::Select);
    }
  }
  void Press(const QString &key) {
    QTest::keyClick(m_tree, QKeySequence(key)[0].key(), QKeySequence(key)[0].keyboardModifiers());
  }
  [[nodiscard]] QPoint At(const QString &name, double part = 0.5) const {
    const QRect row = m_tree->visualRect(Index(name));
    return {row.left() + 4, row.top() + int(row.height() * part)};
  }
  void Click(const QString &name, Qt::MouseButton button = Qt::LeftButton) {
    QTest::mouseClick(m_tree->viewport(), button, {}, At(name));
  }
  // False where it is not taken there.
  bool Drop(const QMimeData &data, const QPoint &place, Qt::KeyboardModifiers modifiers = {}) {
    QDragEnterEvent enter(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, modifiers);
    QApplication::sendEvent(m_tree->viewport(), &enter);
    if (!enter.isAccepted()) return false;
    QDragMoveEvent move(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, modifiers);
    QApplication::sendEvent(m_tree->viewport(), &move);
    if (!move.isAccepted()) return false;
    QDropEvent drop(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, modifiers);
    QApplication::sendEvent(m_tree->viewport(), &drop);
    return true;
  }
  [[nodiscard]] std::unique_ptr<QMimeData> Dragged(const QStringList &names) {
    QList<TFilePartPlace> parts;
    for (const QString &name : names) parts.append(m_tree->Model().PartAt(Index(name)));
    THalvexGroupKind kind(language, *groups, *tabs);
    return std::unique_ptr<QMimeData>(kind.Parts()->DataOf(parts));
  }
  [[nodiscard]] QMenu *OpenMenu() {
    Press(u"Shift+F10"_s);
    return m_tree->findChild<QMenu *>(u"pmHalvexGroups"_s);
  }

  std::unique_ptr<TGroupsPage> m_page;
  TFolderView *m_tree = nullptr;

 private Q_SLOTS:
  void initTestCase() { Prepare(); }
  void init() {
    Begin();
    for (const char *name : {"sub/inner.hgp", "b.hgp"})
      QVERIFY(!Put(QLatin1String(name), u"i=http://i.test/"_s).isEmpty());
    QVERIFY(!Put(u"a.hgp"_s, u"x=http://x.test/\nblank2=*http://2.test/\nBlank7=http://7.test/"_s).isEmpty());
    QVERIFY(!Put(u"UPPER.HGP"_s, QString()).isEmpty() && !Put(u"note.txt"_s, QString()).isEmpty());
    m_page = std::make_unique<TGroupsPage>(language, *groups, *tabs);
    m_tree = m_page->findChild<TFolderView *>(u"shHalvexGroups"_s);
    QVERIFY(m_tree->Model().Root().isEmpty());  // nothing before it shows
    m_page->resize(300, 400);
    m_page->show();
    m_page->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_page.get()));
    m_page->setFocus();
    QTRY_COMPARE(Rows(), (QStringList{u"sub"_s, u"a"_s, u"b"_s, u"UPPER"_s}));
    QVERIFY(m_tree->hasFocus());
    Expand(u"a.hgp"_s);
    QCOMPARE(Rows(), (QStringList{u"sub"_s, u"a"_s, u" x – http://x.test/"_s, u" http://2.test/"_s,
                                  u" Blank7 – http://7.test/"_s, u"b"_s, u"UPPER"_s}));
  }
  void cleanup() {
    m_page.reset();
    End();
  }

  // A group without pages has nothing to unfold, and locks are told.
  void ShowsGroups() {
    Expand(u"UPPER.HGP"_s);
    QVERIFY(!m_tree->model()->hasChildren(Index(u"UPPER.HGP"_s)));
    const QString locked = language.Text("HalvexGroups", "LockedColumn");
    QCOMPARE(Index(u"a.hgp>http://2.test/"_s).data(Qt::AccessibleTextRole).toString(), u"http://2.test/, "_s + locked);
    QVERIFY(Index(u"a.hgp>http://2.test/"_s).data(Qt::ToolTipRole).toString().contains(locked));
    QVERIFY(!Index(u"a.hgp>x – http://x.test/"_s).data(Qt::ToolTipRole).toString().contains(locked));
  }

  // What others do shows by itself, also in a file that is written where it stands; what is selected and open stays.
  void FollowsTheDisk() {
    Choose({u"a.hgp>Blank7 – http://7.test/"_s});
    QFile file(In(u"a.hgp"_s));
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Append) && file.write("end=http://e.test/\n") > 0);
    file.close();
    QTRY_VERIFY(Rows().contains(u" end – http://e.test/"_s));
    THalvexGroup group(In(u"a.hgp"_s));
    group.AddLine(u"more=http://m.test/"_s);
    QVERIFY(group.Save(nullptr));
    QTRY_VERIFY(Rows().contains(u" more – http://m.test/"_s));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("[HalvexGroup]\nBlank7=http://7.test/\n") > 0);
    file.close();
    QTRY_COMPARE(Rows(), (QStringList{u"sub"_s, u"a"_s, u" Blank7 – http://7.test/"_s, u"b"_s, u"UPPER"_s}));
    QCOMPARE(m_tree->SelectedParts().size(), 1);
    QVERIFY(!Put(u"sub/new.hgp"_s, QString()).isEmpty());
    Expand(u"sub"_s);
    QTRY_VERIFY(Rows().contains(u" new"_s));
  }

  void OpensGroups_data() {
    Columns<QString, bool, int>("how", "closeFirst", "tabs");
    Row("a double click", u"double"_s, true, 3);
    Row("beside what is open", u"double"_s, false, 5);
    Row("Enter", u"Return"_s, true, 3);
    Row("the menu", u"menu"_s, true, 3);
    Row("one click selects", u"click"_s, true, 2);
  }
  void OpensGroups() {
    QFETCH(QString, how);
    QFETCH(bool, closeFirst);
    settings->Set(Setting::HGCloseFirst, closeFirst);
    settings->Set(Setting::ConfirmCloseAll, true);  // not asked
    tabs->NewTab();
    if (how == u"double") {
      Click(u"a.hgp"_s);
      QTest::mouseDClick(m_tree->viewport(), Qt::LeftButton, {}, At(u"a.hgp"_s));
    } else if (how == u"click") {
      Click(u"a.hgp"_s);
    } else {
      Choose({u"a.hgp"_s});
      if (how == u"menu") {
        QMenu *menu = OpenMenu();
        QVERIFY(menu != nullptr && menu->defaultAction()->objectName() == u"pmHGOpen");
        menu->defaultAction()->trigger();
        menu->close();
      } else {
        Press(how);
      }
    }
    QTEST(tabs->TabCount(), "tabs");
    QVERIFY(m_tree->isExpanded(Index(u"a.hgp"_s)));
  }

  void OpensPages_data() {
    // Of the tab that the page comes into: its place, and how many there are then; which is in front.
    Columns<QString, bool, int, int, int>("how", "inNewTab", "place", "count", "active");
    Row("a click", u"click"_s, false, 0, 1, 0);
    Row("a click, in a new tab", u"click"_s, true, 1, 2, 1);
    Row("Enter", u"Return"_s, true, 1, 2, 1);
    Row("a middle click", u"middle"_s, false, 1, 2, 0);
    Row("Ctrl+Enter", u"Ctrl+Return"_s, false, 1, 2, 0);
  }
  void OpensPages() {
    QFETCH(QString, how);
    QFETCH(bool, inNewTab);
    QFETCH(int, place);
    QVERIFY(!Put(u"b.hgp"_s, u"mine=*%1"_s.arg(Page(1))).isEmpty());
    const QString page = u"b.hgp>mine – %1"_s.arg(Page(1));
    settings->Set(Setting::FavoritesNewWin, inNewTab);
    Expand(u"b.hgp"_s);
    QTRY_VERIFY(Index(page).isValid());
    if (how == u"click") {
      Click(page);
    } else if (how == u"middle") {
      Click(page, Qt::MiddleButton);
    } else {
      Choose({page});
      Press(how);
    }
    QTEST(tabs->TabCount(), "count");
    QTRY_COMPARE_WITH_TIMEOUT(tabs->Tab(place)->GetLocationUrl(), Page(1), LoadTime);
    QTEST(int(tabs->Tabs().indexOf(tabs->GetActivePage())), "active");
    // A tab that is made for it is as the group has it.
    const bool isNew = place == 1;
    QCOMPARE(tabs->Tab(place)->StickyName(), isNew ? u"mine"_s : QString());
    QTRY_COMPARE_WITH_TIMEOUT(tabs->Tab(place)->Locked(), isNew, LoadTime);
  }

  void ChangesPages_data() {
    Columns<QStringList, QString, QString, QString>("pages", "keys", "a", "b");
    const QString a = u"x=http://x.test/ blank2=*http://2.test/ Blank7=http://7.test/"_s;
    const QString b = u"i=http://i.test/"_s;
    const QString x = u"a.hgp>x – http://x.test/"_s;
    const QString two = u"a.hgp>http://2.test/"_s;
    const QString seven = u"a.hgp>Blank7 – http://7.test/"_s;
    Row("delete", QStringList{x, seven}, u"Del"_s, u"blank2=*http://2.test/"_s, b);
    Row("down", QStringList{x}, u"Alt+Down"_s, u"blank2=*http://2.test/ x=http://x.test/ Blank7=http://7.test/"_s, b);
    // The second press comes before the rows show the first.
    Row("up, twice", QStringList{seven}, u"Alt+Up Alt+Up"_s,
        u"Blank7=http://7.test/ x=http://x.test/ blank2=*http://2.test/"_s, b);
    Row("two of them up", QStringList{two, seven}, u"Alt+Up"_s,
        u"blank2=*http://2.test/ Blank7=http://7.test/ x=http://x.test/"_s, b);
    Row("up at the top", QStringList{x}, u"Alt+Up"_s, a, b);
    Row("cut and paste", QStringList{two, x}, u"Ctrl+X b Ctrl+V"_s, u"Blank7=http://7.test/"_s,
        b + u" x=http://x.test/ blank3=*http://2.test/"_s);
    Row("copy and paste", QStringList{x}, u"Ctrl+C b Ctrl+V"_s, a, b + u" x=http://x.test/"_s);
  }
  void ChangesPages() {
    QFETCH(QStringList, pages);
    QFETCH(QString, keys);
    const QString a = Saved(u"a.hgp"_s);
    const QString b = Saved(u"b.hgp"_s);
    Choose(pages);
    int changes = 0;
    for (const QString &key : keys.split(u' ')) {
      if (key == u"b") {
        Choose({u"b.hgp"_s});
      } else {
        Press(key);
        if (key != u"Ctrl+X" && key != u"Ctrl+C") ++changes;
      }
    }
    QTEST(Saved(u"a.hgp"_s), "a");
    QTEST(Saved(u"b.hgp"_s), "b");
    for (int i = 0; i < changes; ++i) Press(u"Ctrl+Z"_s);
    QCOMPARE(Saved(u"a.hgp"_s), a);
    QCOMPARE(Saved(u"b.hgp"_s), b);
  }

  // What was moved stays selected, so that it can be moved on.
  void KeepsWhatIsMoved() {
    Choose({u"a.hgp>x – http://x.test/"_s});
    Press(u"Ctrl+X"_s);
    Choose({u"b.hgp"_s});
    Press(u"Ctrl+V"_s);
    QTRY_COMPARE(m_tree->SelectedParts().size(), 1);
    QTRY_COMPARE(m_tree->SelectedParts().first().file, In(u"b.hgp"_s));
    QVERIFY(m_tree->isExpanded(Index(u"b.hgp"_s)));
    Press(u"Alt+Up"_s);
    QTRY_COMPARE(Rows().mid(4), (QStringList{u"b"_s, u" x – http://x.test/"_s, u" i – http://i.test/"_s, u"UPPER"_s}));
    QCOMPARE(m_tree->SelectedParts().size(), 1);
    // What was cut is there only once.
    const QMimeData *clip = QGuiApplication::clipboard()->mimeData();
    QVERIFY(clip == nullptr || !GroupDrag::HasPages(*clip));
  }

  void Drops_data() {
    // Dragged are pages of the tree; a tab; links as text; a favorite. Where nothing is taken all stays.
    Columns<QString, QString, double, bool, QString, QString>("what", "over", "part", "isCopied", "a", "b");
    const QString a = u"x=http://x.test/ blank2=*http://2.test/ Blank7=http://7.test/"_s;
    const QString b = u"i=http://i.test/"_s;
    const QString x = u"a.hgp>x – http://x.test/"_s;
    const QString two = u"a.hgp>http://2.test/"_s;
    const QString seven = u"a.hgp>Blank7 – http://7.test/"_s;
    const QString withoutX = u"blank2=*http://2.test/ Blank7=http://7.test/"_s;
    Row("a page into another group", x, u"b.hgp"_s, 0.1, false, withoutX, b + u" x=http://x.test/"_s);
    Row("copied", x, u"b.hgp"_s, 0.5, true, a, b + u" x=http://x.test/"_s);
    Row("before a page", seven, x, 0.2, false, u"Blank7=http://7.test/ x=http://x.test/ blank2=*http://2.test/"_s, b);
    Row("behind a page", x, two, 0.8, false, u"blank2=*http://2.test/ x=http://x.test/ Blank7=http://7.test/"_s, b);
    Row("above the first", seven, u"a.hgp"_s, 0.9, false,
        u"Blank7=http://7.test/ x=http://x.test/ blank2=*http://2.test/"_s, b);
    Row("a page into a folder", x, u"sub"_s, 0.5, false, a, b);
    Row("a tab", u"tab"_s, u"b.hgp"_s, 0.5, false, a, b + u" mine=*http://t.test/"_s);
    Row("a tab before a page", u"tab"_s, two, 0.2, false,
        u"x=http://x.test/ mine=*http://t.test/ blank2=*http://2.test/ Blank7=http://7.test/"_s, b);
    Row("a link", u"http://l.test/?a=b"_s, u"b.hgp"_s, 0.5, false, a, b + u" blank2=http://l.test/?a=b"_s);
    Row("a link into a folder", u"http://l.test/"_s, u"sub"_s, 0.5, false, a, b);
    Row("a favorite", u"favorite"_s, u"b.hgp"_s, 0.5, false, a, b + u" blank2=http://f.test/"_s);
  }
  void Drops() {
    QFETCH(QString, what);
    QFETCH(QString, over);
    QFETCH(double, part);
    QFETCH(bool, isCopied);
    QFETCH(QString, a);
    QFETCH(QString, b);
    const QString wasA = Saved(u"a.hgp"_s);
    const QString wasB = Saved(u"b.hgp"_s);
    std::unique_ptr<QMimeData> data;
    if (what.contains(u'>')) {
      data = Dragged({what});
    } else if (what == u"favorite") {
      QFile file(Path(u"f.url"_s));
      QVERIFY(file.open(QIODevice::WriteOnly) && file.write(ShortcutFile::Bytes(u"http://f.test/"_s)) > 0);
      file.close();
      data.reset(FavoriteDrag::DataOf({file.fileName()}));
    } else {
      data = std::make_unique<QMimeData>();
      if (what == u"tab") {
        GroupDrag::AddTo(*data, {{{}, {-1, GroupDrag::LineOf(u"mine"_s, u"http://t.test/"_s, true)}}});
      } else {
        data->setText(what);
      }
    }
    QCOMPARE(Drop(*data, At(over, part), isCopied ? Qt::ControlModifier : Qt::NoModifier), over != u"sub");
    QCOMPARE(Saved(u"a.hgp"_s), a);
    QCOMPARE(Saved(u"b.hgp"_s), b);
    QVERIFY(!QFile::exists(In(u"sub/x.url"_s)));
    Press(u"Ctrl+Z"_s);
    QCOMPARE(Saved(u"a.hgp"_s), wasA);
    QCOMPARE(Saved(u"b.hgp"_s), wasB);
  }

  // Groups themselves go into folders, and between each other.
  void DropsGroups() {
    const std::unique_ptr<QMimeData> data(FavoriteDrag::DataOf({In(u"b.hgp"_s)}));
    QVERIFY(Drop(*data, At(u"sub"_s)));
    QVERIFY(QFile::exists(In(u"sub/b.hgp"_s)) && !QFile::exists(In(u"b.hgp"_s)));
    Press(u"Ctrl+Z"_s);
    QVERIFY(QFile::exists(In(u"b.hgp"_s)));
    QTRY_VERIFY(Index(u"b.hgp"_s).isValid());
    QVERIFY(Drop(*data, At(u"a.hgp>http://2.test/"_s)));
    QCOMPARE(FavoritesOrder::Read(TGroupFolder::Path()).value_or(QStringList()).indexOf(u"b.hgp"_s), 2);
    // What is no group has no business here.
    const std::unique_ptr<QMimeData> other(FavoriteDrag::DataOf({In(u"note.txt"_s)}));
    QVERIFY(!Drop(*other, At(u"sub"_s)));
  }

  // A page that somebody else has taken out or changed meanwhile is left to him.
  void MeetsOthers() {
    m_page->hide();  // its rows stay as they are
    QVERIFY(!Put(u"a.hgp"_s, u"x=http://x.test/changed\nBlank7=http://7.test/\nnew=http://n.test/"_s).isEmpty());
    const std::unique_ptr<QMimeData> data =
        Dragged({u"a.hgp>Blank7 – http://7.test/"_s, u"a.hgp>x – http://x.test/"_s});
    QVERIFY(Drop(*data, At(u"b.hgp"_s)));
    QCOMPARE(Saved(u"a.hgp"_s), u"x=http://x.test/changed new=http://n.test/"_s);
    QCOMPARE(Saved(u"b.hgp"_s), u"i=http://i.test/ Blank7=http://7.test/"_s);
    QVERIFY(!Put(u"b.hgp"_s, u"i=http://i.test/\nBlank7=http://7.test/\nlate=http://l.test/"_s).isEmpty());
    Press(u"Ctrl+Z"_s);
    QCOMPARE(Saved(u"b.hgp"_s), u"i=http://i.test/ late=http://l.test/"_s);
  }

  void Menus_data() {
    Columns<QStringList, QString>("selected", "enabled");
    Row("a group", QStringList{u"b.hgp"_s},
        u"pmHGOpen pmHGOrganize pmHGRename pmHGDelete pmHGNewFolder actCutFavorite actCopyFavorite actMoveFavoriteUp "
        "actMoveFavoriteDown actSortFavorites pmHGRefresh"_s);
    Row("a folder", QStringList{u"sub"_s},
        u"pmHGOpen pmHGRename pmHGDelete pmHGNewFolder actCutFavorite actCopyFavorite actMoveFavoriteDown "
        "actSortFavorites pmHGRefresh"_s);
    Row("a page", QStringList{u"a.hgp>x – http://x.test/"_s},
        u"pmHGOpen actOpenFavoriteInNewTab actOpenFavoriteInBackground pmHGDelete pmHGNewFolder actCutFavorite "
        "actCopyFavorite actCopyFavoriteAddress actMoveFavoriteDown pmHGRefresh"_s);
    Row("a page and a group", QStringList{u"a.hgp>x – http://x.test/"_s, u"b.hgp"_s},
        u"pmHGDelete pmHGNewFolder pmHGRefresh"_s);
    Row("nothing", QStringList(), u"pmHGNewFolder actSortFavorites pmHGRefresh"_s);
  }
  void Menus() {
    QFETCH(QStringList, selected);
    QGuiApplication::clipboard()->clear();
    Choose(selected);
    QMenu *menu = nullptr;
    if (selected.isEmpty()) {
      const QPoint below(9, m_tree->viewport()->height() - 4);
      QContextMenuEvent event(QContextMenuEvent::Mouse, below, m_tree->viewport()->mapToGlobal(below));
      QApplication::sendEvent(m_tree->viewport(), &event);
      menu = m_tree->findChild<QMenu *>(u"pmHalvexGroups"_s);
    } else {
      menu = OpenMenu();
    }
    QVERIFY(menu != nullptr);
    QStringList enabled;
    for (const QAction *item : menu->actions()) {
      if (!item->isSeparator() && item->isEnabled()) enabled.append(item->objectName());
    }
    menu->close();
    QTEST(enabled.join(u' '), "enabled");
  }

  // In each language a letter leads to one command.
  void MenuLetters_data() {
    QTest::addColumn<QString>("file");
    const QDir folder(SourceFile(QStringLiteral("Languages")));
    for (const QString &file : folder.entryList({u"*.ini"_s})) QTest::newRow(qPrintable(file)) << folder.filePath(file);
  }
  void MenuLetters() {
    QFETCH(QString, file);
    TLanguage other;
    QVERIFY(other.LoadFile(file));
    m_page = std::make_unique<TGroupsPage>(other, *groups, *tabs);
    m_tree = m_page->findChild<TFolderView *>(u"shHalvexGroups"_s);
    m_page->show();
    Expand(u"a.hgp"_s);
    for (const QString &selected : {u"b.hgp"_s, u"a.hgp>http://2.test/"_s}) {
      Choose({selected});
      QMenu *menu = OpenMenu();
      QVERIFY(menu != nullptr);
      QStringList letters;
      for (const QAction *item : menu->actions()) {
        const QString letter = QKeySequence::mnemonic(item->text()).toString();
        QVERIFY2(item->isSeparator() || (!letter.isEmpty() && !letters.contains(letter)), qPrintable(item->text()));
        letters.append(letter);
      }
      delete menu;
    }
  }

  void MenuCommands() {
    Choose({u"b.hgp"_s});
    QSignalSpy changed(&groups->Folder(), &TGroupFolder::Changed);
    const auto run = [this](const char *name) {
      // A dialog that opens closes it on newer toolkits, and it goes then.
      const QPointer<QMenu> menu(OpenMenu());
      m_page->findChild<QAction *>(QLatin1String(name))->trigger();
      if (menu) menu->close();
    };
    // The editor.
    OnModalDialog<TfrmHalvexGroup>([](TfrmHalvexGroup &dialog) { dialog.reject(); });
    run("pmHGOrganize");
    QVERIFY(!changed.isEmpty());
    // A group gets its name in a box, is used as typed, and stays where it was in the order by hand.
    QVERIFY(FavoritesOrder::Write(TGroupFolder::Path(), QStringList{u"b.hgp"_s, u"sub"_s}));
    OnModalDialog<QInputDialog>([](QInputDialog &dialog) {
      QCOMPARE(dialog.textValue(), u"b"_s);
      dialog.setTextValue(u"c"_s);
      dialog.accept();
    });
    run("pmHGRename");
    QVERIFY(QFile::exists(In(u"c.hgp"_s)));
    QCOMPARE(FavoritesOrder::Read(TGroupFolder::Path()).value_or(QStringList()).first(), u"c.hgp"_s);
    QTRY_COMPARE(m_tree->Sole().path, In(u"c.hgp"_s));
    Press(u"Ctrl+Z"_s);
    QVERIFY(QFile::exists(In(u"b.hgp"_s)));
    QTRY_VERIFY(Index(u"b.hgp"_s).isValid());
    // To the trash, and back.
    Choose({u"b.hgp"_s});
    changed.clear();
    run("pmHGDelete");
    QVERIFY(!QFile::exists(In(u"b.hgp"_s)) && !changed.isEmpty());
    QTRY_VERIFY(!Index(u"b.hgp"_s).isValid());
    Press(u"Ctrl+Z"_s);
    QVERIFY(QFile::exists(In(u"b.hgp"_s)));
    // A folder is unfolded, and its name is typed in its place.
    Choose({u"sub"_s});
    for (int i = 0; i < 2; ++i) {
      run("pmHGOpen");
      QVERIFY(m_tree->isExpanded(Index(u"sub"_s)));
    }
    run("pmHGRename");
    auto *box = m_tree->findChild<QLineEdit *>();
    QVERIFY(box != nullptr);
    QTest::keyClicks(box, u"other"_s);
    changed.clear();
    QTest::keyClick(box, Qt::Key_Return);
    QTRY_VERIFY(QFile::exists(In(u"other/inner.hgp"_s)));
    QTRY_VERIFY(!changed.isEmpty());
  }

  void Buttons() {
    Choose({u"a.hgp>http://2.test/"_s});
    QSignalSpy changed(&groups->Folder(), &TGroupFolder::Changed);
    m_page->findChild<QToolButton *>(u"tbNewHGFolder"_s)->click();
    const QString made = language.Text("HalvexGroups", "NewFolder");
    QVERIFY(QFileInfo(In(made)).isDir() && !changed.isEmpty());
    QTRY_VERIFY(m_tree->findChild<QLineEdit *>() != nullptr);
    QTest::keyClick(m_tree->findChild<QLineEdit *>(), Qt::Key_Escape);
    changed.clear();
    m_page->findChild<QToolButton *>(u"tbHGRefresh"_s)->click();
    QCOMPARE(changed.size(), 1);
  }

  // A write that fails is told, and nothing is lost.
  void FailuresAreTold() {
    QVERIFY(QFile::remove(In(u"b.hgp"_s)));
    const std::unique_ptr<QMimeData> data = Dragged({u"a.hgp>x – http://x.test/"_s});
    QVERIFY(Drop(*data, At(u"b.hgp"_s)));
    const auto *message = m_page->findChild<QLabel *>(u"lblMessage"_s);
    QVERIFY(message->isVisible() && !message->text().isEmpty());
    QVERIFY(Saved(u"a.hgp"_s).startsWith(u"x="));
    Choose({u"a.hgp>x – http://x.test/"_s});
    Press(u"Del"_s);
    QVERIFY(!message->isVisible());
  }

  // More pages than are opened are not shown, and take no time.
  void HugeGroup() {
    QString lines;
    for (int i = 0; i < 200'000; ++i) lines += u"n%1=http://n.test/%1\n"_s.arg(i);
    QVERIFY(!Put(u"b.hgp"_s, lines).isEmpty());
    Expand(u"b.hgp"_s);
    QTRY_COMPARE(m_tree->model()->rowCount(Index(u"b.hgp"_s)), TPageGroups::MostPages);
  }

  // Whatever another program calls pages of groups.
  void BadDrags() {
    for (const QByteArray &bytes : {QByteArray("x"), QByteArray(100, '\xff'), QByteArray(4, '\0')}) {
      QMimeData data;
      data.setData(u"application/x-zarvela-group-pages"_s, bytes);
      Drop(data, At(u"b.hgp"_s));
      QCOMPARE(Saved(u"b.hgp"_s), u"i=http://i.test/"_s);
    }
    QMimeData data;
    GroupDrag::AddTo(data, {{u"/etc/passwd"_s, {0, u"a=b"_s}}, {{}, {0, u"no page"_s}}});
    QVERIFY(GroupDrag::PagesIn(data).isEmpty());
  }
};

ENGINE_MAIN(TestGroupsPage)
#include "test_groups_page.moc"
