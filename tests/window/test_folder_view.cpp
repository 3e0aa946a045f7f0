#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDir>
#include <QDrag>
#include <QDropEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QScrollBar>
#include <QTemporaryDir>

#include "chrome/folder_view/dropped_links.h"
#include "chrome/folder_view/folder_editor.h"
#include "chrome/folder_view/folder_kind.h"
#include "chrome/folder_view/folder_view.h"
#include "config/language.h"
#include "favorites/favorite_drag.h"
#include "favorites/favorites_order.h"
#include "favorites/shortcut_file.h"
#include "support/data_row.h"
#include "support/shipped_files.h"

using namespace Qt::StringLiterals;

namespace {

// Notes what is opened, and where.
class TNotingKind final : public TFolderKind {
 public:
  [[nodiscard]] QStringList Endings() const override { return endings; }
  [[nodiscard]] QIcon IconOf(const QString &address) const override {
    ++icons;
    QPixmap pixmap(4, 4);
    pixmap.fill(address.contains(u"a.test"_s) ? Qt::red : Qt::green);
    return pixmap;
  }
  void Open(const TFavorite &file, TOpenPlace place) override {
    static const QStringList Places{u"by setting"_s, u"new tab"_s, u"background"_s};
    opened.append(file.caption + u": "_s + Places.at(int(place)));
  }
  void OpenAll(const QString &folder) override { opened.append(u"all of "_s + QDir(folder).dirName()); }

  QStringList endings;
  QStringList opened;
  mutable int icons = 0;
};

}  // namespace

// A folder on the disk as a tree: what it shows and keeps when the disk changes, and all that can be done in it.
class TestFolderView final : public QObject {
  Q_OBJECT

 private:
  [[nodiscard]] QString In(const QString &name) const { return m_root + u'/' + name; }
  void Put(const QString &name) const {
    QDir(m_root).mkpath(QFileInfo(In(name)).path());
    QFile file(In(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(ShortcutFile::Bytes(u"http://%1.test/"_s.arg(QFileInfo(name).completeBaseName())));
  }
  [[nodiscard]] QModelIndex Index(const QString &name) const {
    const QModelIndex index = m_view->Model().Nearest(In(name));
    return m_view->Model().At(index).path == In(name) ? index : QModelIndex();
  }
  // The rows from top to bottom, each with a blank for each level.
  [[nodiscard]] QStringList Rows() const {
    QStringList rows;
    for (QModelIndex index = m_view->model()->index(0, 0, m_view->rootIndex()); index.isValid();
         index = m_view->indexBelow(index)) {
      QString row = index.data().toString();
      for (QModelIndex above = index.parent(); above != m_view->rootIndex(); above = above.parent()) row.prepend(u' ');
      rows.append(row);
    }
    return rows;
  }
  // In the folder below the root, with their endings.
  [[nodiscard]] QStringList OnDisk(const QString &folder = {}) const {
    QStringList names;
    for (const TFavorite &one : FavoritesFolder::List(QDir::cleanPath(In(folder)))) {
      names.append(QFileInfo(one.path).fileName());
    }
    return names;
  }
  [[nodiscard]] QStringList Selected() const {
    QStringList names;
    for (const TFavorite &one : m_view->Selected()) names.append(one.caption);
    return names;
  }
  void Make(TFolderView::TLook look) {
    m_view = std::make_unique<TFolderView>(m_kind, *m_editor, m_language, look);
    m_view->resize(300, 300);
    m_view->SetRoot(m_root, u"All"_s);
    m_view->show();
    QVERIFY(QTest::qWaitForWindowActive(m_view.get()));
    m_view->setFocus();
    QTRY_VERIFY(m_view->Model().IsIdle());
  }
  void Expand(const QString &name) {
    m_view->expand(Index(name));
    QTRY_VERIFY(m_view->Model().IsIdle());
  }
  void Choose(const QStringList &names) {
    QStringList paths;
    for (const QString &name : names) paths.append(In(name));
    m_view->Select(paths);
    QTRY_COMPARE(m_view->Selected().size(), names.size());
  }
  void Press(const QString &key) {
    QTest::keyClick(m_view.get(), QKeySequence(key)[0].key(), QKeySequence(key)[0].keyboardModifiers());
  }
  void Settle() { QTRY_VERIFY(m_view->Model().IsIdle()); }
  [[nodiscard]] QPoint At(const QString &name, double part) const {
    const QRect row = m_view->visualRect(Index(name));
    return {row.left() + 4, row.top() + int(row.height() * part)};
  }
  bool Drop(const QMimeData &data, const QPoint &place, Qt::KeyboardModifiers modifiers = {}) {
    QDragEnterEvent enter(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, modifiers);
    QApplication::sendEvent(m_view->viewport(), &enter);
    QDragMoveEvent move(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, modifiers);
    QApplication::sendEvent(m_view->viewport(), &move);
    QDropEvent drop(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, modifiers);
    QApplication::sendEvent(m_view->viewport(), &drop);
    return enter.isAccepted() && move.isAccepted();
  }

  TLanguage m_language;
  TNotingKind m_kind;
  std::unique_ptr<TFolderEditor> m_editor;
  std::unique_ptr<QTemporaryDir> m_temporary;
  QString m_root;
  std::unique_ptr<TFolderView> m_view;

 private Q_SLOTS:
  void initTestCase() { QVERIFY(m_language.LoadFile(SourceFile(QStringLiteral("Languages/zveng.ini")))); }
  void init() {
    m_temporary = std::make_unique<QTemporaryDir>();
    m_root = m_temporary->filePath(u"root"_s);
    for (const char *name : {"f/x.url", "f/g/y.url", "h/z.url", "a.url", "b.url", "c.url"}) Put(QLatin1String(name));
    m_editor = std::make_unique<TFolderEditor>();
    m_kind.opened.clear();
    m_kind.endings.clear();
    Make(TFolderView::TLook::Tree);
    QCOMPARE(Rows(), (QStringList{u"f"_s, u"h"_s, u"a"_s, u"b"_s, u"c"_s}));
  }
  void cleanup() {
    m_view.reset();
    m_editor.reset();
  }

  // One level at a time.
  void ReadsWhatIsOpened() {
    QVERIFY(!m_view->Model().Nearest(In(u"f/g"_s)).data().toString().contains(u'g'));
    Expand(u"f"_s);
    QCOMPARE(Rows(), (QStringList{u"f"_s, u" g"_s, u" x"_s, u"h"_s, u"a"_s, u"b"_s, u"c"_s}));
    m_view->Reveal(In(u"f/g"_s));
    QTRY_COMPARE(m_view->Current().caption, u"g"_s);
    QTRY_VERIFY(Rows().contains(u"  y"_s));
    QCOMPARE(m_view->Folder(), In(u"f/g"_s));
    m_view->Reveal(In(u"h/gone/further"_s));
    QTRY_COMPARE(m_view->Current().caption, u"h"_s);
    // An empty folder has nothing to be opened.
    QDir(m_root).mkpath(u"e"_s);
    m_view->Refresh();
    QTRY_VERIFY(Index(u"e"_s).isValid());
    QVERIFY(m_view->model()->hasChildren(Index(u"e"_s)));
    Expand(u"e"_s);
    QTRY_VERIFY(!m_view->model()->hasChildren(Index(u"e"_s)));
  }

  void ShowsItsKind() {
    m_kind.endings = QStringList{u".cgp"_s};
    Put(u"set.CGP"_s);
    Make(TFolderView::TLook::List);
    QCOMPARE(Rows(), (QStringList{u"f"_s, u"h"_s, u"set"_s}));
    // Pictures are those of the address, and come for what is painted.
    m_kind.endings.clear();
    m_kind.icons = 0;
    for (int i = 0; i < 300; ++i) Put(u"many/%1.url"_s.arg(i));
    Make(TFolderView::TLook::List);
    const auto colour = [this](const QString &name) {
      return Index(name).data(Qt::DecorationRole).value<QIcon>().pixmap(4, 4).toImage().pixelColor(1, 1);
    };
    QTRY_COMPARE(colour(u"a.url"_s), QColor(Qt::red));
    QTRY_COMPARE(colour(u"b.url"_s), QColor(Qt::green));
    QCOMPARE(Index(u"a.url"_s).data(Qt::ToolTipRole).toString(), u"<qt>a<br>http://a.test/</qt>"_s);
    // What another writes into a file shows, too, at the next look.
    QFile file(In(u"a.url"_s));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(ShortcutFile::Bytes(u"http://z.test/"_s)) > 0);
    file.close();
    m_view->Refresh();
    QTRY_COMPARE(Index(u"a.url"_s).data(Qt::ToolTipRole).toString(), u"<qt>a<br>http://z.test/</qt>"_s);
    QTRY_COMPARE(colour(u"a.url"_s), QColor(Qt::green));
    m_view->SetRoot(In(u"many"_s), QString());
    QTRY_COMPARE(Rows().size(), 300);
    QTRY_VERIFY(m_view->indexAt(QPoint(9, m_view->viewport()->height() - 30)).data(Qt::ToolTipRole).isValid());
    QVERIFY2(m_kind.icons > 0 && m_kind.icons < 100, qPrintable(QString::number(m_kind.icons)));
  }

  // What is selected, open and at the top stays so, whatever others do to the disk.
  void KeepsItsPlace_data() {
    Columns<QStringList, QStringList, QStringList, QStringList>("gone", "added", "order", "rows");
    const QStringList none;
    Row("added above and below", none, QStringList{u"aa.url"_s, u"0/q.url"_s, u"f/w.url"_s}, none,
        QStringList{u"0"_s, u"f"_s, u" g"_s, u"  y"_s, u" w"_s, u" x"_s, u"h"_s, u"a"_s, u"aa"_s, u"b"_s, u"c"_s});
    Row("gone around it", QStringList{u"a.url"_s, u"h/z.url"_s, u"h"_s, u"c.url"_s}, none, none,
        QStringList{u"f"_s, u" g"_s, u"  y"_s, u" x"_s, u"b"_s});
    Row("in another order", none, none, QStringList{u"c.url"_s, u"b.url"_s, u"f"_s},
        QStringList{u"c"_s, u"b"_s, u"f"_s, u" g"_s, u"  y"_s, u" x"_s, u"h"_s, u"a"_s});
    Row("all at once", QStringList{u"a.url"_s}, QStringList{u"d.url"_s},
        QStringList{u"d.url"_s, u"c.url"_s, u"b.url"_s},
        QStringList{u"d"_s, u"c"_s, u"b"_s, u"f"_s, u" g"_s, u"  y"_s, u" x"_s, u"h"_s});
  }
  void KeepsItsPlace() {
    QFETCH(QStringList, gone);
    QFETCH(QStringList, added);
    QFETCH(QStringList, order);
    Expand(u"f"_s);
    Expand(u"f/g"_s);
    Choose({u"f/x.url"_s, u"b.url"_s});
    for (const QString &name : gone) QVERIFY(QFile::remove(In(name)) || QDir(m_root).rmdir(name));
    for (const QString &name : added) Put(name);
    if (!order.isEmpty()) QVERIFY(FavoritesOrder::Write(m_root, order));
    m_view->Refresh();
    Settle();
    QTEST(Rows(), "rows");
    QStringList selected = Selected();
    selected.sort();
    QCOMPARE(selected, (QStringList{u"b"_s, u"x"_s}));
  }

  void KeepsItsScrollPlace() {
    for (int i = 0; i < 100; ++i) Put(u"h/%1.url"_s.arg(i));
    Expand(u"h"_s);
    m_view->Refresh();
    QTRY_COMPARE(m_view->model()->rowCount(Index(u"h"_s)), 101);
    m_view->scrollTo(Index(u"h/60.url"_s), QAbstractItemView::PositionAtTop);
    const QModelIndex top = m_view->indexAt(QPoint(0, 0));
    QVERIFY(m_view->verticalScrollBar()->value() > 0);
    const QString caption = top.data().toString();
    for (int i = 0; i < 10; ++i) Put(u"h/0%1.url"_s.arg(i));
    m_view->Refresh();
    QTRY_COMPARE(m_view->model()->rowCount(Index(u"h"_s)), 111);
    QCOMPARE(m_view->indexAt(QPoint(0, 0)).data().toString(), caption);
  }

  void Opens_data() {
    Columns<QString, QString, QStringList>("name", "how", "opened");
    Row("a click", u"a.url"_s, u"click"_s, QStringList(u"a: by setting"_s));
    Row("a click with Ctrl selects", u"a.url"_s, u"ctrl click"_s, QStringList());
    Row("a middle click", u"a.url"_s, u"middle"_s, QStringList(u"a: background"_s));
    Row("a middle click on a folder", u"f"_s, u"middle"_s, QStringList());
    Row("Enter", u"a.url"_s, u"Return"_s, QStringList(u"a: by setting"_s));
    Row("Ctrl+Enter", u"a.url"_s, u"Ctrl+Return"_s, QStringList(u"a: background"_s));
    Row("Shift+Enter", u"a.url"_s, u"Shift+Return"_s, QStringList(u"a: new tab"_s));
    Row("Space only selects", u"a.url"_s, u"Space"_s, QStringList());
  }
  void Opens() {
    QFETCH(QString, name);
    QFETCH(QString, how);
    m_view->SetOpensOnClick(true);
    const QPoint place = At(name, 0.5);
    if (how == u"click"_s) {
      QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, place);
    } else if (how == u"ctrl click"_s) {
      QTest::mouseClick(m_view->viewport(), Qt::LeftButton, Qt::ControlModifier, place);
    } else if (how == u"middle"_s) {
      QTest::mouseClick(m_view->viewport(), Qt::MiddleButton, {}, place);
    } else {
      m_view->clearSelection();
      m_view->selectionModel()->setCurrentIndex(Index(name), QItemSelectionModel::NoUpdate);
      if (how != u"Space"_s) Choose({name});
      Press(how);
      QCOMPARE(Selected(), QStringList(u"a"_s));
    }
    QTEST(m_kind.opened, "opened");
  }

  void FoldersOpenByClickAndEnter() {
    m_view->SetOpensOnClick(true);
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, At(u"f"_s, 0.5));
    QVERIFY(m_view->isExpanded(Index(u"f"_s)));
    Press(u"Return"_s);
    QVERIFY(!m_view->isExpanded(Index(u"f"_s)));
    // Several files: only one of them in the tab in front, and no script runs there.
    QVERIFY(ShortcutFile::SetAddress(In(u"a.url"_s), u"javascript:void(0)"_s));
    Choose({u"a.url"_s, u"b.url"_s, u"c.url"_s});
    Press(u"Return"_s);
    QCOMPARE(m_kind.opened, (QStringList{u"b: by setting"_s, u"c: new tab"_s}));
    Choose({u"a.url"_s});
    Press(u"Return"_s);
    QCOMPARE(m_kind.opened.last(), u"a: by setting"_s);
  }

  // A row that a click with Ctrl has just taken out of what is selected stays the current one.
  void MeansWhatIsSelected_data() {
    Columns<QString, QString>("key", "meant");
    Row("rename", u"F2"_s, u"h: name"_s);
    Row("properties", u"Alt+Return"_s, u"h: properties"_s);
    Row("open all", QString(), u"all of h"_s);
  }
  void MeansWhatIsSelected() {
    QFETCH(QString, key);
    QString meant;
    connect(m_view.get(), &TFolderView::PropertiesWanted, this,
            [&meant](const TFavorite &one) { meant = one.caption + u": properties"_s; });
    Choose({u"h"_s});
    for (int i = 0; i < 2; ++i) {
      QTest::mouseClick(m_view->viewport(), Qt::LeftButton, Qt::ControlModifier, At(u"f"_s, 0.5));
    }
    QCOMPARE(Selected(), QStringList(u"h"_s));
    QCOMPARE(m_view->Current().caption, u"f"_s);
    if (key.isEmpty()) {
      m_view->Action(TFolderAction::OpenAll)->trigger();
    } else {
      Press(key);
    }
    if (const auto *box = m_view->findChild<QLineEdit *>()) meant = box->text() + u": name"_s;
    if (!m_kind.opened.isEmpty()) meant = m_kind.opened.first();
    QTEST(meant, "meant");
  }

  void FindsWhatIsTyped() {
    Put(u"cb.url"_s);
    m_view->Refresh();
    QTRY_VERIFY(Index(u"cb.url"_s).isValid());
    QTest::keyClicks(m_view.get(), u"cb"_s);
    QCOMPARE(m_view->Current().caption, u"cb"_s);
  }

  // The menu comes by the mouse and by its keys, with what fits what is selected.
  void Menu_data() {
    Columns<QStringList, QStringList>("selected", "disabled");
    Row("a file", QStringList(u"b.url"_s), QStringList{u"actPasteFavorite"_s, u"actUndoFavorite"_s});
    Row("the first of all", QStringList(u"f"_s),
        QStringList{u"actPasteFavorite"_s, u"actCopyFavoriteAddress"_s, u"actUndoFavorite"_s, u"actMoveFavoriteUp"_s});
    Row("several", QStringList{u"b.url"_s, u"c.url"_s},
        QStringList{u"actPasteFavorite"_s, u"actRenameFavorite"_s, u"actUndoFavorite"_s, u"actMoveFavoriteDown"_s,
                    u"actFavoriteProperties"_s});
  }
  void Menu() {
    QFETCH(QStringList, selected);
    QGuiApplication::clipboard()->clear();
    Choose(selected);
    Press(u"Shift+F10"_s);
    auto *menu = m_view->findChild<QMenu *>(u"pmFolderView"_s);
    QVERIFY(menu != nullptr && menu->isVisible());
    QStringList disabled;
    for (const QAction *item : menu->actions()) {
      if (!item->isSeparator() && !item->isEnabled()) disabled.append(item->objectName());
    }
    QTEST(disabled, "disabled");
    QVERIFY(menu->actions().contains(m_view->Action(TFolderAction::OpenAll)) == (selected.first() == u"f"_s));
    menu->close();
  }

  void OpensAllOfAFolder() {
    Choose({u"f"_s});
    m_view->Action(TFolderAction::OpenAll)->trigger();
    QCOMPARE(m_kind.opened, QStringList(u"all of f"_s));
    Choose({u"b.url"_s, u"a.url"_s});
    Press(u"Ctrl+Shift+C"_s);
    QCOMPARE(QGuiApplication::clipboard()->text(), u"http://a.test/\nhttp://b.test/"_s);
  }

  // By the keys; each is undone by Ctrl+Z, the last first.
  void OrderByHand() {
    Choose({u"a.url"_s});
    Press(u"Alt+Up"_s);
    const QStringList first{u"f"_s, u"a.url"_s, u"h"_s, u"b.url"_s, u"c.url"_s};
    QCOMPARE(OnDisk(), first);
    Choose({u"a.url"_s, u"h"_s});
    Press(u"Alt+Down"_s);
    const QStringList second{u"f"_s, u"b.url"_s, u"a.url"_s, u"h"_s, u"c.url"_s};
    QCOMPARE(OnDisk(), second);
    QTRY_COMPARE(Rows(), (QStringList{u"f"_s, u"b"_s, u"a"_s, u"h"_s, u"c"_s}));
    QCOMPARE(Selected(), (QStringList{u"a"_s, u"h"_s}));
    m_view->Action(TFolderAction::SortByName)->trigger();
    const QStringList sorted{u"f"_s, u"h"_s, u"a.url"_s, u"b.url"_s, u"c.url"_s};
    QCOMPARE(OnDisk(), sorted);
    for (const QStringList &before : {second, first, sorted}) {
      Press(u"Ctrl+Z"_s);
      QCOMPARE(OnDisk(), before);
    }
    QVERIFY(!FavoritesOrder::Read(m_root));
  }

  // A renamed folder stays open, and what is in it selected.
  void RenamesInPlace() {
    Expand(u"f"_s);
    Expand(u"f/g"_s);
    Choose({u"f"_s});
    Press(u"F2"_s);
    auto *box = m_view->findChild<QLineEdit *>();
    QVERIFY(box != nullptr);
    // Another picture that comes does not put the old name back.
    QTest::keyClicks(box, u"zz top"_s);
    Q_EMIT m_view->model()->dataChanged(Index(u"f"_s), Index(u"f"_s), {Qt::DecorationRole});
    QCOMPARE(box->text(), u"zz top"_s);
    QTest::keyClick(box, Qt::Key_Return);
    QTRY_VERIFY(QDir(In(u"zz top"_s)).exists());
    QTRY_COMPARE(Rows(), (QStringList{u"h"_s, u"zz top"_s, u" g"_s, u"  y"_s, u" x"_s, u"a"_s, u"b"_s, u"c"_s}));
    QCOMPARE(Selected(), QStringList(u"zz top"_s));
    QVERIFY(m_kind.opened.isEmpty());
    Press(u"Ctrl+Z"_s);
    QTRY_COMPARE(Rows(), (QStringList{u"f"_s, u" g"_s, u"  y"_s, u" x"_s, u"h"_s, u"a"_s, u"b"_s, u"c"_s}));
  }

  // Into the current folder, or beside the current file.
  void NewFolderAndPaste() {
    Expand(u"f"_s);
    Choose({u"c.url"_s});
    Press(u"Ctrl+X"_s);
    Choose({u"f/x.url"_s});
    Press(u"Ctrl+V"_s);
    QCOMPARE(OnDisk(u"f"_s), (QStringList{u"g"_s, u"c.url"_s, u"x.url"_s}));
    QTRY_COMPARE(Selected(), QStringList(u"c"_s));
    Choose({u"h"_s});
    Press(u"Ctrl+N"_s);
    QTRY_VERIFY(m_view->findChild<QLineEdit *>() != nullptr);
    auto *box = m_view->findChild<QLineEdit *>();
    QTest::keyClicks(box, u"n"_s);
    QTest::keyClick(box, Qt::Key_Return);
    QTRY_COMPARE(OnDisk(u"h"_s), (QStringList{u"n"_s, u"z.url"_s}));
  }

  void Drops_data() {
    Columns<QString, QString, double, bool, QStringList, QStringList>("what", "over", "part", "isCopied", "root",
                                                                      "inFolder");
    const QStringList all{u"f"_s, u"h"_s, u"a.url"_s, u"b.url"_s, u"c.url"_s};
    const QStringList inFolder{u"g"_s, u"x.url"_s};
    Row("into a folder", u"a.url"_s, u"f"_s, 0.5, false, QStringList{u"f"_s, u"h"_s, u"b.url"_s, u"c.url"_s},
        QStringList{u"g"_s, u"a.url"_s, u"x.url"_s});
    Row("copied", u"a.url"_s, u"f"_s, 0.5, true, all, QStringList{u"g"_s, u"a.url"_s, u"x.url"_s});
    Row("above a folder", u"c.url"_s, u"h"_s, 0.1, false,
        QStringList{u"f"_s, u"c.url"_s, u"h"_s, u"a.url"_s, u"b.url"_s}, inFolder);
    Row("below a folder", u"c.url"_s, u"h"_s, 0.9, false,
        QStringList{u"f"_s, u"h"_s, u"c.url"_s, u"a.url"_s, u"b.url"_s}, inFolder);
    Row("below an open folder", u"c.url"_s, u"f"_s, 0.9, false, QStringList{u"f"_s, u"h"_s, u"a.url"_s, u"b.url"_s},
        QStringList{u"c.url"_s, u"g"_s, u"x.url"_s});
    Row("between files", u"c.url"_s, u"b.url"_s, 0.1, false,
        QStringList{u"f"_s, u"h"_s, u"a.url"_s, u"c.url"_s, u"b.url"_s}, inFolder);
    Row("onto a file's upper half", u"c.url"_s, u"b.url"_s, 0.4, false,
        QStringList{u"f"_s, u"h"_s, u"a.url"_s, u"c.url"_s, u"b.url"_s}, inFolder);
    Row("onto a file's lower half", u"f/x.url"_s, u"b.url"_s, 0.6, false,
        QStringList{u"f"_s, u"h"_s, u"a.url"_s, u"b.url"_s, u"x.url"_s, u"c.url"_s}, QStringList(u"g"_s));
    Row("into itself", u"f"_s, u"f"_s, 0.5, false, all, inFolder);
    Row("into what is in it", u"f"_s, u"f/g"_s, 0.5, false, all, inFolder);
  }
  void Drops() {
    QFETCH(QString, what);
    QFETCH(QString, over);
    QFETCH(double, part);
    QFETCH(bool, isCopied);
    QFETCH(QStringList, root);
    QFETCH(QStringList, inFolder);
    Expand(u"f"_s);
    QString told;
    connect(m_view.get(), &TFolderView::Told, this, [&told](const QString &text) { told = text; });
    const std::unique_ptr<QMimeData> data(FavoriteDrag::DataOf({In(what)}));
    const bool isTaken = Drop(*data, At(over, part), isCopied ? Qt::ControlModifier : Qt::NoModifier);
    QCOMPARE(OnDisk(), root);
    QCOMPARE(OnDisk(u"f"_s), inFolder);
    // What is refused is said, and leaves nothing to undo.
    const bool isRefused = what == u"f"_s;
    QCOMPARE(told.isEmpty(), !isRefused);
    QCOMPARE(m_editor->CanUndo(), !isRefused);
    QVERIFY(isTaken);
  }

  // Each link gets its own title; they are taken back together.
  void DropsLinks() {
    QMimeData data;
    const QString lines = u"http://one.test/\nThe first\nhttp://two.test/\nThe second"_s;
    data.setData(u"text/x-moz-url"_s, QByteArray(reinterpret_cast<const char *>(lines.utf16()), lines.size() * 2));
    data.setUrls({QUrl(u"http://one.test/"_s), QUrl(u"http://two.test/"_s)});
    Drop(data, At(u"h"_s, 0.5));
    QCOMPARE(OnDisk(u"h"_s), (QStringList{u"The first.url"_s, u"The second.url"_s, u"z.url"_s}));
    QCOMPARE(ShortcutFile::Read(In(u"h/The second.url"_s)), u"http://two.test/"_s);
    Press(u"Ctrl+Z"_s);
    QCOMPARE(OnDisk(u"h"_s), QStringList(u"z.url"_s));
  }

  void LinksInWhatIsDropped_data() {
    Columns<QString, QString, QString, QStringList>("titled", "html", "text", "links");
    Row("a text", QString(), QString(), u" http://a.test/x "_s, QStringList(u"http://a.test/x|"_s));
    Row("in HTML", QString(), u"<p><a class='x' href=\"http://a.test/?a=1&amp;b=2\">An <b>A</b> &amp; B</a>"_s,
        u"http://a.test/?a=1&b=2"_s, QStringList(u"http://a.test/?a=1&b=2|An A & B"_s));
    Row("titled, and without an end", u"http://a.test/\nA\nhttp://b.test/"_s, QString(), QString(),
        QStringList{u"http://a.test/|A"_s, u"http://b.test/|"_s});
    Row("no title is taken from another link", QString(),
        u"<a href='http://b.test/'>B</a><a href='http://a.test/'></a><a href='http://a.test/'>A</a>"_s,
        u"http://a.test/"_s, QStringList(u"http://a.test/|A"_s));
    Row("no pages", u"javascript:alert(1)\nA\nmailto:a@b.test\nB"_s, QString(), u"just words"_s, QStringList());
    Row("told twice", u"http://a.test/\nA\nhttp://a.test/\nB"_s, QString(), u"http://a.test/"_s,
        QStringList(u"http://a.test/|A"_s));
  }
  void LinksInWhatIsDropped() {
    QFETCH(QString, titled);
    QFETCH(QString, html);
    QFETCH(QString, text);
    QMimeData data;
    if (!titled.isEmpty()) {
      data.setData(u"text/x-moz-url"_s, QByteArray(reinterpret_cast<const char *>(titled.utf16()), titled.size() * 2));
    }
    if (!html.isEmpty()) data.setHtml(html);
    if (!text.isEmpty()) data.setText(text);
    QStringList links;
    for (const TDroppedLink &link : DroppedLinks(data)) links.append(link.address + u'|' + link.title);
    QTEST(links, "links");
    QCOMPARE(HasDroppedLinks(data), !links.isEmpty());
  }

  // More than may become tabs at once, but not without end.
  void ManyLinksInWhatIsDropped() {
    QList<QUrl> urls;
    for (int i = 0; i < 1200; ++i) urls.append(QUrl(u"http://a.test/%1"_s.arg(i)));
    QMimeData data;
    data.setUrls(urls);
    const QList<TDroppedLink> links = DroppedLinks(data);
    QCOMPARE(links.size(), 1000);
    QCOMPARE(links.last().address, u"http://a.test/999"_s);
  }

  // A drag that rests on a folder opens it.
  void RestingOpens() {
    const std::unique_ptr<QMimeData> data(FavoriteDrag::DataOf({In(u"a.url"_s)}));
    QDragEnterEvent enter(At(u"h"_s, 0.5), Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_view->viewport(), &enter);
    QDragMoveEvent move(At(u"h"_s, 0.5), Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_view->viewport(), &move);
    QVERIFY(!m_view->isExpanded(Index(u"h"_s)));
    QTRY_VERIFY(m_view->isExpanded(Index(u"h"_s)));
    QDragLeaveEvent leave;
    QApplication::sendEvent(m_view->viewport(), &leave);
  }

  // What the user opens closes what stood open beside it, where that is wanted.
  void KeepsOneOpen_data() {
    Columns<QString, bool, bool>("how", "isOn", "isOtherOpen");
    Row("a click", u"click"_s, true, false);
    Row("the arrow key", u"Right"_s, true, false);
    Row("Enter", u"Return"_s, true, false);
    Row("a folder is shown", u"reveal"_s, true, false);
    Row("a file is shown", u"reveal file"_s, true, false);
    Row("a drag rests", u"drag"_s, true, true);
    Row("a file is selected", u"select"_s, true, true);
    Row("not wanted", u"Right"_s, false, true);
  }
  void KeepsOneOpen() {
    QFETCH(QString, how);
    QFETCH(bool, isOn);
    m_view->SetOpensOnClick(true);
    m_view->SetKeepsOneOpen(isOn);
    Expand(u"f"_s);
    Expand(u"f/g"_s);
    QVERIFY(m_view->isExpanded(Index(u"f"_s)));
    Choose({u"f/g/y.url"_s});
    const QPoint place = At(u"h"_s, 0.5);
    if (how == u"click"_s) {
      QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, place);
    } else if (how == u"reveal"_s) {
      m_view->Reveal(In(u"h"_s));
    } else if (how == u"reveal file"_s) {
      m_view->RevealFile(In(u"h/z.url"_s));
      QCOMPARE(m_view->Folder(), In(u"h"_s));
      QTRY_COMPARE(Selected(), QStringList(u"z"_s));
    } else if (how == u"select"_s) {
      m_view->Select({In(u"h/z.url"_s)});
    } else if (how == u"drag"_s) {
      const std::unique_ptr<QMimeData> data(FavoriteDrag::DataOf({In(u"a.url"_s)}));
      QDragEnterEvent enter(place, Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
      QApplication::sendEvent(m_view->viewport(), &enter);
      QDragMoveEvent move(place, Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
      QApplication::sendEvent(m_view->viewport(), &move);
      QTRY_VERIFY(m_view->isExpanded(Index(u"h"_s)));
      QDragLeaveEvent leave;
      QApplication::sendEvent(m_view->viewport(), &leave);
    } else {
      Choose({u"h"_s});
      Press(how);
    }
    QTRY_VERIFY(m_view->isExpanded(Index(u"h"_s)));
    QTEST(m_view->isExpanded(Index(u"f"_s)), "isOtherOpen");
  }

  // What is opened stays where it is as others close above it; a command means what is to be seen.
  void StaysInPlaceAsOthersClose() {
    for (int i = 0; i < 50; ++i) {
      Put(u"f/%1.url"_s.arg(i));
      Put(u"h/%1.url"_s.arg(i));
      Put(u"e%1/1.url"_s.arg(i));
    }
    m_view->Refresh();
    QTRY_VERIFY(Index(u"e49"_s).isValid());
    m_view->SetKeepsOneOpen(true);
    Expand(u"h"_s);
    Expand(u"f"_s);
    QVERIFY(!m_view->isExpanded(Index(u"h"_s)));
    Choose({u"f/40.url"_s});
    m_view->scrollTo(Index(u"h"_s), QAbstractItemView::PositionAtTop);
    const QRect before = m_view->visualRect(Index(u"h"_s));
    QVERIFY(before.top() > 0);
    // By what opens it beside its text, which makes it no current one.
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, QPoint(before.left() - 10, before.center().y()));
    QVERIFY(m_view->isExpanded(Index(u"h"_s)) && !m_view->isExpanded(Index(u"f"_s)));
    QCOMPARE(m_view->visualRect(Index(u"h"_s)), before);
    QCOMPARE(Selected(), QStringList(u"h"_s));
    // All that is below is asked for by a key of its own.
    Put(u"h/i/1.url"_s);
    Put(u"h/j/1.url"_s);
    m_view->Refresh();
    QTRY_VERIFY(Index(u"h/j"_s).isValid());
    Press(u"*"_s);
    QVERIFY(m_view->isExpanded(Index(u"h/i"_s)) && m_view->isExpanded(Index(u"h/j"_s)));
    QCoreApplication::processEvents();  // the key is done with
    Expand(u"f"_s);
    QVERIFY(!m_view->isExpanded(Index(u"h"_s)));
  }

  // At the edge of the view a drag scrolls it, for as long as it stays there.
  void ScrollsAtItsEdge() {
    for (int i = 0; i < 50; ++i) Put(u"h/%1.url"_s.arg(i));
    Expand(u"h"_s);
    const std::unique_ptr<QMimeData> data(FavoriteDrag::DataOf({In(u"a.url"_s)}));
    const auto drag = [&](int y) {
      QDragEnterEvent enter(QPoint(20, y), Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
      QApplication::sendEvent(m_view->viewport(), &enter);
      QDragMoveEvent move(QPoint(20, y), Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
      QApplication::sendEvent(m_view->viewport(), &move);
    };
    const QScrollBar *bar = m_view->verticalScrollBar();
    drag(m_view->viewport()->height() - 3);
    QTRY_COMPARE(bar->value(), bar->maximum());
    drag(2);
    QTRY_COMPARE(bar->value(), 0);
    QDragLeaveEvent leave;
    QApplication::sendEvent(m_view->viewport(), &leave);
  }

  // What comes from elsewhere may be a whole disk; favorites themselves are never too much.
  void RefusesTooMuch_data() {
    Columns<int, int, bool, bool>("files", "megabytes", "isOwn", "isRefused");
    Row("as many as may be", 4999, 64, false, false);  // and their folder
    Row("too many", 5000, 0, false, true);
    Row("too large", 1, 65, false, true);
    Row("favorites", 1, 65, true, false);
  }
  void RefusesTooMuch() {
    QFETCH(int, files);
    QFETCH(int, megabytes);
    QFETCH(bool, isOwn);
    QFETCH(bool, isRefused);
    const QString from = m_temporary->filePath(u"from"_s);
    QVERIFY(QDir().mkpath(from));
    for (int i = 0; i < files; ++i) {
      QFile file(from + u'/' + QString::number(i));
      QVERIFY(file.open(QIODevice::WriteOnly));
      if (i == 0) QVERIFY(file.resize(qint64(megabytes) * 1024 * 1024));
    }
    if (!isOwn && !isRefused) {
      QVERIFY(!FavoritesEdit::IsTooMuch({from}));
      return;
    }
    QStringList told;
    connect(m_view.get(), &TFolderView::Told, this, [&told](const QString &text) { told.append(text); });
    const auto data = [&] {
      auto *given = FavoriteDrag::DataOf({from});
      if (!isOwn) {
        given->clear();
        given->setUrls({QUrl::fromLocalFile(from)});
      }
      return given;
    };
    const std::unique_ptr<QMimeData> dropped(data());
    Drop(*dropped, At(u"h"_s, 0.5), Qt::ControlModifier);
    // More than a moment's work.
    QTRY_VERIFY(isRefused ? told.size() == 1 : OnDisk(u"h"_s).contains(u"from"_s));
    QGuiApplication::clipboard()->setMimeData(data());
    Choose({u"f"_s});
    Press(u"Ctrl+V"_s);
    QTRY_VERIFY(isRefused ? told.size() == 2 : OnDisk(u"f"_s).contains(u"from"_s));
    QCOMPARE(told.size(), isRefused ? 2 : 0);
    QVERIFY(!isRefused || !(OnDisk(u"h"_s) + OnDisk(u"f"_s)).contains(u"from"_s));
  }

  // Other programs get the files, or the addresses as text.
  void CarriesFilesAndAddresses() {
    Choose({u"f"_s, u"b.url"_s});
    const std::unique_ptr<QMimeData> data(m_view->SelectedData());
    QCOMPARE(data->urls(), (QList<QUrl>{QUrl::fromLocalFile(In(u"f"_s)), QUrl::fromLocalFile(In(u"b.url"_s))}));
    QCOMPARE(data->text(), u"http://b.test/"_s);
    QVERIFY(FavoriteDrag::AreFavorites(*data));
  }

  // A file manager without a wish of its own copies them.
  void DragsCopies() {
    QWidget *viewport = m_view->viewport();
    QTest::mousePress(viewport, Qt::LeftButton, {}, At(u"b.url"_s, 0.5));
    for (const int distance : {1, 2}) {
      const QPoint to = At(u"b.url"_s, 0.5) + QPoint(0, distance * QApplication::startDragDistance());
      QMouseEvent move(QEvent::MouseMove, to, viewport->mapToGlobal(to), Qt::NoButton, Qt::LeftButton, {});
      QApplication::sendEvent(viewport, &move);
    }
    const auto *drag = m_view->findChild<QDrag *>();
    QVERIFY(drag != nullptr);
    QCOMPARE(drag->defaultAction(), Qt::CopyAction);
    QVERIFY(drag->supportedActions().testFlag(Qt::MoveAction));
  }

  // What could not be moved is still there to be pasted elsewhere.
  void FailedPasteKeepsTheClipboard() {
    Choose({u"f"_s});
    Press(u"Ctrl+X"_s);
    Press(u"Ctrl+V"_s);  // into itself
    QVERIFY(!m_editor->CanUndo());
    Choose({u"h"_s});
    Press(u"Ctrl+V"_s);
    QCOMPARE(OnDisk(u"h"_s), (QStringList{u"f"_s, u"z.url"_s}));
  }

  // An undo that the disk refuses can be tried again; one of what has gone is forgotten.
  void FailedUndoIsKept() {
    Expand(u"f"_s);
    Choose({u"f/x.url"_s});
    Press(u"Ctrl+X"_s);
    Choose({u"a.url"_s});
    Press(u"Ctrl+V"_s);
    QVERIFY(QFile::rename(In(u"f"_s), In(u"away"_s)));
    Put(u"f"_s);  // a file where its folder was
    Press(u"Ctrl+Z"_s);
    QVERIFY(m_editor->CanUndo() && QFile::exists(In(u"x.url"_s)));
    QVERIFY(QFile::remove(In(u"f"_s)) && QFile::rename(In(u"away"_s), In(u"f"_s)));
    Press(u"Ctrl+Z"_s);
    QVERIFY(!m_editor->CanUndo());
    QCOMPARE(OnDisk(u"f"_s), (QStringList{u"g"_s, u"x.url"_s}));
    Choose({u"a.url"_s});
    Press(u"Ctrl+N"_s);
    QVERIFY(m_editor->CanUndo());
    for (const TFavorite &one : FavoritesFolder::List(m_root)) {
      if (one.caption.startsWith(u"New"_s)) QVERIFY(QDir().rmdir(one.path));
    }
    Press(u"Escape"_s);
    m_editor->Undo();
    QVERIFY(!m_editor->CanUndo());
  }

  // Where the disk refuses nothing is lost, and the reason is told.
  void FailuresAreTold() {
    QVERIFY(QDir(In(u"h"_s)).removeRecursively());
    Put(u"h"_s);  // a file now, which the tree does not know yet
    QString reason;
    connect(m_editor.get(), &TFolderEditor::Failed, this, [&reason](const QString &why) { reason = why; });
    const std::unique_ptr<QMimeData> data(FavoriteDrag::DataOf({In(u"a.url"_s), In(u"b.url"_s)}));
    Drop(*data, At(u"h"_s, 0.5));
    QCOMPARE(reason, qt_error_string(ENOTDIR));
    QVERIFY(QFile::exists(In(u"a.url"_s)) && QFile::exists(In(u"b.url"_s)) && !m_editor->CanUndo());
    QTRY_COMPARE(Rows(), (QStringList{u"f"_s, u"a"_s, u"b"_s, u"c"_s, u"h"_s}));
  }
};

QTEST_MAIN(TestFolderView)
#include "test_folder_view.moc"
