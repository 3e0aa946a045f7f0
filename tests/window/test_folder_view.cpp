#include <QClipboard>
#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>

#include "favorites/favorite_drag.h"
#include "favorites/favorites_order.h"
#include "favorites/shortcut_file.h"
#include "support/data_row.h"
#include "window/folder_view_fixture.h"

// A folder on the disk as a tree: what it shows and keeps when the disk changes, and what is opened from it.
class TestFolderView final : public QObject, private TFolderViewFixture {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { Prepare(); }
  void init() { Begin(); }
  void cleanup() { End(); }

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
};

QTEST_MAIN(TestFolderView)
#include "test_folder_view.moc"
