#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>

#include "chrome/favorites/favorite_drag.h"
#include "chrome/favorites/favorite_list.h"
#include "chrome/favorites/organize_favorites.h"
#include "favorites/favorites_order.h"
#include "window/favorites_fixture.h"

// The window that puts favorites in order, by keyboard, mouse and clipboard; each change undone again.
class TestFavoritesOrganize final : public QObject, private TFavoritesFixture {
  Q_OBJECT

 private:
  [[nodiscard]] QStringList Shown() const {
    QStringList names;
    for (int i = 0; i < m_list->count(); ++i) names.append(m_list->item(i)->text());
    return names;
  }
  void Select(const QStringList &names) const {
    QStringList paths;
    for (const TFavorite &favorite : m_list->Shown()) {
      if (names.contains(favorite.caption)) paths.append(favorite.path);
    }
    m_list->Select(paths);
    QCOMPARE(m_list->selectedItems().size(), names.size());
  }
  void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const { QTest::keyClick(m_list, key, modifiers); }
  void Drop(const QStringList &paths, QAbstractItemView &view, const QPoint &place, bool isCopied = false) const {
    const std::unique_ptr<QMimeData> data(FavoriteDrag::DataOf(paths));
    Drop(*data, view, place, isCopied);
  }
  void Drop(const QMimeData &data, QAbstractItemView &view, const QPoint &place, bool isCopied = false) const {
    QDragEnterEvent enter(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(view.viewport(), &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                    isCopied ? Qt::ControlModifier : Qt::NoModifier);
    drop.setDropAction(isCopied ? Qt::CopyAction : Qt::MoveAction);
    QApplication::sendEvent(view.viewport(), &drop);
  }
  // In the folder below the root.
  [[nodiscard]] static QStringList OnDisk(const QString &folder = {}) {
    QStringList names;
    for (const TFavorite &favorite : FavoritesFolder::List(QDir::cleanPath(Root() + u'/' + folder))) {
      names.append(favorite.caption);
    }
    return names;
  }

  TfrmOrganizeFavorites *m_window = nullptr;
  TFavoriteList *m_list = nullptr;
  TFolderTree *m_tree = nullptr;

 private Q_SLOTS:
  void initTestCase() { Prepare(); }
  void init() {
    Begin();
    QVERIFY(FavoritesEdit::AddFolder(Root(), u"f"_s).IsGood());
    for (const QString &name : {u"a"_s, u"b"_s, u"c"_s}) Put(QString(), name, Page(1));
    (*actions)[TCommand::OrganizeFavorites]->trigger();
    m_window = window->findChild<TfrmOrganizeFavorites *>();
    QVERIFY(m_window != nullptr && QTest::qWaitForWindowActive(m_window));
    m_list = m_window->findChild<TFavoriteList *>();
    m_tree = m_window->findChild<TFolderTree *>();
    QCOMPARE(Shown(), (QStringList{u"f"_s, u"a"_s, u"b"_s, u"c"_s}));
  }
  void cleanup() {
    delete m_window;
    End();
  }

  void RenamesInPlace() {
    Select({u"b"_s});
    Press(Qt::Key_F2);
    auto *box = m_list->findChild<QLineEdit *>();
    QVERIFY(box != nullptr);
    QTest::keyClicks(box, u"new name"_s);
    QTest::keyClick(box, Qt::Key_Return);
    QTRY_COMPARE(OnDisk(), (QStringList{u"f"_s, u"a"_s, u"c"_s, u"new name"_s}));
    QCOMPARE(Shown(), OnDisk());
    QCOMPARE(m_list->Current().caption, u"new name"_s);
    QCOMPARE(tabs->TabCount(), 1);  // Enter has only closed the box
    Press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(OnDisk(), (QStringList{u"f"_s, u"a"_s, u"b"_s, u"c"_s}));
  }

  void DeletesToTheTrash() {
    Select({u"a"_s, u"c"_s, u"f"_s});
    Press(Qt::Key_Delete);
    QCOMPARE(OnDisk(), QStringList(u"b"_s));
    QCOMPARE(Shown(), OnDisk());
    Press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(Shown(), (QStringList{u"f"_s, u"a"_s, u"b"_s, u"c"_s}));
    QVERIFY(!m_window->findChild<QAction *>(u"actUndoFavorite"_s)->isEnabled());
  }

  void ByTheClipboard_data() {
    Columns<Qt::Key, QStringList>("key", "left");
    Row("cut", Qt::Key_X, QStringList{u"f"_s, u"c"_s});
    Row("copied", Qt::Key_C, QStringList{u"f"_s, u"a"_s, u"b"_s, u"c"_s});
  }
  void ByTheClipboard() {
    QFETCH(Qt::Key, key);
    Select({u"a"_s, u"b"_s});
    Press(key, Qt::ControlModifier);
    Select({u"f"_s});
    Press(Qt::Key_Return);  // goes into the folder
    QCOMPARE(m_tree->Current(), Root() + u"/f"_s);
    QCOMPARE(Shown(), QStringList());
    Press(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(Shown(), (QStringList{u"a"_s, u"b"_s}));
    QTEST(OnDisk(), "left");
    // Copies can be pasted again, what was cut is there only once.
    const QMimeData *clip = QGuiApplication::clipboard()->mimeData();
    QCOMPARE(clip != nullptr && FavoriteDrag::HasPaths(*clip), key == Qt::Key_C);
    Press(Qt::Key_Z, Qt::ControlModifier);
    Press(Qt::Key_Backspace);
    QCOMPARE(Shown(), (QStringList{u"f"_s, u"a"_s, u"b"_s, u"c"_s}));
  }

  void ByDragging() {
    const auto place = [this](int row, bool isUpper) {
      const QRect rect = m_list->visualItemRect(m_list->item(row));
      return isUpper ? rect.topLeft() + QPoint(2, 1) : rect.bottomLeft() + QPoint(2, -1);
    };
    Drop({Root() + u"/c.url"_s}, *m_list, place(1, true));
    QCOMPARE(Shown(), (QStringList{u"f"_s, u"c"_s, u"a"_s, u"b"_s}));
    QAction *sort = m_window->findChild<QAction *>(u"actSortFavorites"_s);
    QVERIFY(sort->isEnabled());
    sort->trigger();
    QCOMPARE(Shown(), (QStringList{u"f"_s, u"a"_s, u"b"_s, u"c"_s}));
    QVERIFY(!sort->isEnabled() && !FavoritesOrder::Read(Root()));

    Drop({Root() + u"/a.url"_s}, *m_list, place(0, false));
    QCOMPARE(OnDisk(u"f"_s), QStringList(u"a"_s));
    QCOMPARE(Shown(), (QStringList{u"f"_s, u"b"_s, u"c"_s}));
    m_tree->topLevelItem(0)->setExpanded(true);
    const QPoint folder = m_tree->visualItemRect(m_tree->topLevelItem(0)->child(0)).center();
    Drop({Root() + u"/b.url"_s}, *m_tree, folder, true);
    QCOMPARE(OnDisk(u"f"_s), (QStringList{u"a"_s, u"b"_s}));
    QCOMPARE(Shown(), (QStringList{u"f"_s, u"b"_s, u"c"_s}));
  }

  // A file manager proposes to move.
  void FilesOfOthersStay() {
    const QTemporaryDir folder;
    QFile letter(folder.filePath(u"letter.txt"_s));
    QVERIFY(letter.open(QIODevice::WriteOnly));
    letter.close();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(letter.fileName())});
    Drop(data, *m_list, m_list->visualItemRect(m_list->item(0)).center());  // the folder
    Drop(data, *m_tree, m_tree->visualItemRect(m_tree->topLevelItem(0)).center());
    QVERIFY(letter.exists());
    QVERIFY(OnDisk().contains(u"letter"_s) && OnDisk(u"f"_s).contains(u"letter"_s));
  }

  void NewFolderIsNamedAtOnce() {
    m_window->findChild<QAction *>(u"actNewFolder"_s)->trigger();
    auto *box = m_list->findChild<QLineEdit *>();
    QVERIFY(box != nullptr);
    QTest::keyClicks(box, u"mine"_s);
    // What changes meanwhile does not take the box away.
    Put(QString(), u"d"_s, Page(1));
    m_window->Refresh();
    QTest::keyClick(box, Qt::Key_Return);
    QTRY_VERIFY(OnDisk().contains(u"mine"_s));
    QTRY_VERIFY(Shown().contains(u"d"_s));
    QVERIFY(QDir(Root() + u"/mine"_s).exists());
  }

  // What another program does shows by itself.
  void FollowsTheDisk() {
    view->Begin();
    Put(QString(), u"d"_s, Page(1));
    QTRY_VERIFY(Shown().contains(u"d"_s));
  }
};

int main(int argc, char **argv) {
  return RunWithEngine<TestFavoritesOrganize>(argc, argv);
}
#include "test_favorites_organize.moc"
