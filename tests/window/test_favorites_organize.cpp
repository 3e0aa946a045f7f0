#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>

#include "chrome/favorites/favorite_dialog.h"
#include "chrome/favorites/organize_favorites.h"
#include "chrome/folder_view/folder_view.h"
#include "favorites/favicon_cache.h"
#include "favorites/favorite_drag.h"
#include "favorites/favorites_order.h"
#include "favorites/shortcut_file.h"
#include "window/favorites_fixture.h"

namespace {

// How often it is painted.
class TPaintCounter final : public QObject {
 public:
  explicit TPaintCounter(QWidget *widget) { widget->installEventFilter(this); }
  bool eventFilter(QObject *, QEvent *event) override {
    if (event->type() == QEvent::Paint) ++count;
    return false;
  }
  int count = 0;
};

}  // namespace

// The window that puts favorites in order, by keyboard, mouse and clipboard; each change undone again.
class TestFavoritesOrganize final : public QObject, private TFavoritesFixture {
  Q_OBJECT

 private:
  [[nodiscard]] QStringList Shown() const {
    QStringList names;
    const QAbstractItemModel *model = m_list->model();
    for (int i = 0; i < model->rowCount(m_list->rootIndex()); ++i) names.append(IndexAt(i).data().toString());
    return names;
  }
  [[nodiscard]] QModelIndex IndexAt(int row) const { return m_list->model()->index(row, 0, m_list->rootIndex()); }
  [[nodiscard]] QRect RowRect(int row) const { return m_list->visualRect(IndexAt(row)); }
  void Select(const QStringList &names) const {
    QStringList paths;
    for (const TFavorite &favorite : FavoritesFolder::List(m_list->Model().Root())) {
      if (names.contains(favorite.caption)) paths.append(favorite.path);
    }
    m_list->Select(paths);
    QTRY_COMPARE(m_list->Selected().size(), names.size());
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

  const QStringList m_all{u"f"_s, u"a"_s, u"b"_s, u"c"_s};
  TfrmOrganizeFavorites *m_window = nullptr;
  TFolderView *m_list = nullptr;
  TFolderView *m_tree = nullptr;

 private Q_SLOTS:
  void initTestCase() { Prepare(); }
  void init() {
    Begin();
    QVERIFY(FavoritesEdit::AddFolder(Root(), u"f"_s).IsGood());
    for (const QString &name : {u"a"_s, u"b"_s, u"c"_s}) Put(QString(), name, Page(1));
    (*actions)[TCommand::OrganizeFavorites]->trigger();
    m_window = window->findChild<TfrmOrganizeFavorites *>();
    QVERIFY(m_window != nullptr && QTest::qWaitForWindowActive(m_window));
    m_list = m_window->findChild<TFolderView *>(u"lvFavorites"_s);
    m_tree = m_window->findChild<TFolderView *>(u"tvFolders"_s);
    QTRY_COMPARE(Shown(), m_all);
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
    QTRY_COMPARE(Shown(), OnDisk());
    QTRY_COMPARE(m_list->Current().caption, u"new name"_s);
    QCOMPARE(tabs->TabCount(), 1);  // Enter has only closed the box
    Press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(OnDisk(), m_all);
  }

  void DeletesToTheTrash() {
    Select({u"a"_s, u"c"_s, u"f"_s});
    Press(Qt::Key_Delete);
    QCOMPARE(OnDisk(), QStringList(u"b"_s));
    QTRY_COMPARE(Shown(), OnDisk());
    Press(Qt::Key_Z, Qt::ControlModifier);
    QTRY_COMPARE(Shown(), m_all);
    QVERIFY(!m_list->Action(TFolderAction::Undo)->isEnabled());
  }

  // The trash gives the second another name, which is not to come back with it.
  void OneNameTwiceInTheTrash() {
    for (int i = 0; i < 2; ++i) {
      Select({u"a"_s});
      Press(Qt::Key_Delete);
      QTRY_VERIFY(!Shown().contains(u"a"_s));
      if (i == 0) Put(QString(), u"a"_s, Page(2));
      m_window->Refresh();
      QTRY_COMPARE(Shown(), OnDisk());
    }
    Press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(OnDisk(), m_all);
    Press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(OnDisk(), (QStringList{u"f"_s, u"a"_s, u"a (2)"_s, u"b"_s, u"c"_s}));
    QCOMPARE(ShortcutFile::Read(Root() + u"/a.url"_s), Page(2));
  }

  void ByTheClipboard_data() {
    Columns<Qt::Key, QStringList>("key", "left");
    Row("cut", Qt::Key_X, QStringList{u"f"_s, u"c"_s});
    Row("copied", Qt::Key_C, m_all);
  }
  void ByTheClipboard() {
    QFETCH(Qt::Key, key);
    Select({u"a"_s, u"b"_s});
    Press(key, Qt::ControlModifier);
    Select({u"f"_s});
    Press(Qt::Key_Return);  // goes into the folder
    QTRY_COMPARE(m_tree->Current().path, Root() + u"/f"_s);
    QTRY_VERIFY(m_list->Model().IsIdle() && Shown().isEmpty());
    Press(Qt::Key_V, Qt::ControlModifier);
    QTRY_COMPARE(Shown(), (QStringList{u"a"_s, u"b"_s}));
    QTEST(OnDisk(), "left");
    // Copies can be pasted again, what was cut is there only once.
    const QMimeData *clip = QGuiApplication::clipboard()->mimeData();
    QCOMPARE(clip != nullptr && FavoriteDrag::HasPaths(*clip), key == Qt::Key_C);
    Press(Qt::Key_Z, Qt::ControlModifier);
    Press(Qt::Key_Backspace);
    QTRY_COMPARE(Shown(), m_all);
  }

  void ByDragging() {
    const auto place = [this](int row, bool isUpper) {
      return isUpper ? RowRect(row).topLeft() + QPoint(2, 1) : RowRect(row).bottomLeft() + QPoint(2, -1);
    };
    Drop({Root() + u"/c.url"_s}, *m_list, place(1, true));
    QTRY_COMPARE(Shown(), (QStringList{u"f"_s, u"c"_s, u"a"_s, u"b"_s}));
    m_list->Action(TFolderAction::SortByName)->trigger();
    QTRY_COMPARE(Shown(), m_all);
    QVERIFY(!FavoritesOrder::Read(Root()));

    Drop({Root() + u"/a.url"_s}, *m_list, RowRect(0).center());
    QCOMPARE(OnDisk(u"f"_s), QStringList(u"a"_s));
    QTRY_COMPARE(Shown(), (QStringList{u"f"_s, u"b"_s, u"c"_s}));
    const QModelIndex root = m_tree->Model().RootIndex();
    QTRY_COMPARE(m_tree->Model().rowCount(root), 1);
    const QPoint folder = m_tree->visualRect(m_tree->Model().index(0, 0, root)).center();
    Drop({Root() + u"/b.url"_s}, *m_tree, folder, true);
    QCOMPARE(OnDisk(u"f"_s), (QStringList{u"a"_s, u"b"_s}));
    QCOMPARE(OnDisk(), (QStringList{u"f"_s, u"b"_s, u"c"_s}));
  }

  // A file manager proposes to move.
  void FilesOfOthersStay() {
    const QTemporaryDir folder;
    QFile letter(folder.filePath(u"letter.txt"_s));
    QVERIFY(letter.open(QIODevice::WriteOnly));
    letter.close();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(letter.fileName())});
    Drop(data, *m_list, RowRect(0).center());  // the folder
    Drop(data, *m_tree, m_tree->visualRect(m_tree->Model().RootIndex()).center());
    QVERIFY(letter.exists());
    QVERIFY(OnDisk().contains(u"letter"_s) && OnDisk(u"f"_s).contains(u"letter"_s));
  }

  void NewFolderIsNamedAtOnce() {
    m_list->Action(TFolderAction::NewFolder)->trigger();
    QTRY_VERIFY(m_list->findChild<QLineEdit *>() != nullptr);
    auto *box = m_list->findChild<QLineEdit *>();
    QTest::keyClicks(box, u"mine"_s);
    // What changes meanwhile does not take the box away.
    Put(QString(), u"d"_s, Page(1));
    m_window->Refresh();
    QTRY_VERIFY(Shown().contains(u"d"_s));
    QTest::keyClick(box, Qt::Key_Return);
    QTRY_VERIFY(OnDisk().contains(u"mine"_s));
    QVERIFY(QDir(Root() + u"/mine"_s).exists());
  }

  // What the properties have changed is undone in its turn, name and address together.
  void PropertiesAreUndone() {
    Select({u"c"_s});
    Press(Qt::Key_Down, Qt::AltModifier);  // is the last already
    Press(Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(OnDisk(), (QStringList{u"f"_s, u"a"_s, u"c"_s, u"b"_s}));
    OnModalDialog<TfrmFavorite>([this](TfrmFavorite &dialog) {
      auto *name = dialog.findChild<QLineEdit *>(u"edtName"_s);
      auto *address = dialog.findChild<QLineEdit *>(u"edtAddress"_s);
      QCOMPARE(address->text(), Page(1));
      name->selectAll();
      QTest::keyClicks(name, u"x"_s);
      address->selectAll();
      QTest::keyClicks(address, Page(2));
      dialog.accept();
    });
    Press(Qt::Key_Return, Qt::AltModifier);
    QCOMPARE(OnDisk(), (QStringList{u"f"_s, u"a"_s, u"x"_s, u"b"_s}));
    QCOMPARE(ShortcutFile::Read(Root() + u"/x.url"_s), Page(2));
    QTRY_COMPARE(Shown(), OnDisk());
    Select({u"a"_s});
    Press(Qt::Key_Delete);
    QCOMPARE(OnDisk(), (QStringList{u"f"_s, u"x"_s, u"b"_s}));
    Press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(OnDisk(), (QStringList{u"f"_s, u"a"_s, u"x"_s, u"b"_s}));
    Press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(OnDisk(), (QStringList{u"f"_s, u"a"_s, u"c"_s, u"b"_s}));
    QCOMPARE(ShortcutFile::Read(Root() + u"/c.url"_s), Page(1));
    Press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(OnDisk(), m_all);
  }

  // A name from elsewhere may have blanks at its edges: OK alone does not rename it.
  void BlanksAtTheEdgesStay() {
    PutFile(u" edge .url"_s, ShortcutFile::Bytes(Page(1)));
    m_window->Refresh();
    QTRY_VERIFY(Shown().contains(u" edge "_s));
    m_list->Select({Root() + u"/ edge .url"_s});
    QTRY_COMPARE(m_list->Selected().size(), 1);
    OnModalDialog<TfrmFavorite>([](TfrmFavorite &dialog) { dialog.accept(); });
    Press(Qt::Key_Return, Qt::AltModifier);
    Press(Qt::Key_F2);
    QTest::keyClick(m_list->findChild<QLineEdit *>(), Qt::Key_Return);
    QTRY_VERIFY(!m_list->IsEditing());
    QCoreApplication::processEvents();
    QVERIFY(QFile::exists(Root() + u"/ edge .url"_s));
    QVERIFY(!m_list->Action(TFolderAction::Undo)->isEnabled());
  }

  // The folder that the list shows is renamed in the tree.
  void FollowsARenamedFolder() {
    Put(u"f"_s, u"x"_s, Page(1));
    m_window->ShowFolder(Root() + u"/f"_s);
    QTRY_COMPARE(Shown(), QStringList(u"x"_s));
    m_tree->setFocus();
    QTest::keyClick(m_tree, Qt::Key_F2);
    auto *box = m_tree->findChild<QLineEdit *>();
    QVERIFY(box != nullptr);
    QTest::keyClicks(box, u"g"_s);
    QTest::keyClick(box, Qt::Key_Return);
    QTRY_COMPARE(m_list->Model().Root(), Root() + u"/g"_s);
    QTRY_COMPARE(Shown(), QStringList(u"x"_s));
    Press(Qt::Key_Z, Qt::ControlModifier);
    QTRY_COMPARE(m_list->Model().Root(), Root() + u"/f"_s);
  }

  // What could not be done is said in the window, until something is done.
  void RefusalsAreTold() {
    auto *message = m_window->findChild<QLabel *>(u"lblMessage"_s);
    QVERIFY(!message->isVisible());
    QFile::remove(Root() + u"/b.url"_s);
    Select({u"a"_s});
    m_list->selectAll();
    Press(Qt::Key_X, Qt::ControlModifier);
    Select({u"f"_s});
    Press(Qt::Key_Return);
    QTRY_COMPARE(m_list->Model().Root(), Root() + u"/f"_s);
    Press(Qt::Key_V, Qt::ControlModifier);  // the folder into itself, and what is not there
    QTRY_COMPARE(Shown(), (QStringList{u"a"_s, u"c"_s}));
    QVERIFY(message->isVisible() && !message->text().isEmpty());
    Press(Qt::Key_Z, Qt::ControlModifier);
    QVERIFY(!message->isVisible());
  }

  // Painting waits for no disk; what is found there, and what pages bring, is painted when it comes.
  void ShowsIconsAsTheyCome() {
    settings->Set(Setting::UseCustomIcons, true);
    const QString address = u"http://icons.example/"_s;
    QImage red(16, 16, QImage::Format_RGB32);
    red.fill(Qt::red);
    TFaviconCache().Put(address, red);  // on the disk alone
    const TFavoriteKind kind(view->Launcher(), view->Icons());
    QVERIFY(kind.IconOf(address).isNull());
    const int before = kind.IconVersion();
    QTRY_VERIFY(kind.IconVersion() != before);
    const TPaintCounter painted(m_list->viewport());
    QVERIFY(!kind.IconOf(address).isNull());
    QCoreApplication::processEvents();
    const int paintings = painted.count;
    Q_EMIT const_cast<TFavoriteIcons &>(view->Icons()).Came();
    QTRY_VERIFY(painted.count > paintings);
    // Until all are forgotten.
    const int known = kind.IconVersion();
    view->ForgetIcons();
    QVERIFY(kind.IconOf(address).isNull() && kind.IconVersion() != known);
    QVERIFY(TFaviconCache().Find(address).isNull());
  }

  // Once, in a box; the line in the window is for what is done in it.
  void FailingPropertiesAreToldOnce() {
    Select({u"b"_s});
    QString told;
    OnModalDialog<TfrmFavorite>([&told](TfrmFavorite &dialog) {
      QFile::remove(Root() + u"/b.url"_s);
      dialog.findChild<QLineEdit *>(u"edtName"_s)->setText(u"x"_s);
      OnModalDialog<QMessageBox>([&told](QMessageBox &box) {
        told = box.text();
        box.accept();
      });
      dialog.accept();
    });
    Press(Qt::Key_Return, Qt::AltModifier);
    QTRY_VERIFY(!told.isEmpty());
    QVERIFY(!m_window->findChild<QLabel *>(u"lblMessage"_s)->isVisible());
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
