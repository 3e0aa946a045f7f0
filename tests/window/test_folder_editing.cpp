#include <QClipboard>
#include <QDrag>
#include <QLineEdit>

#include "chrome/folder_view/dropped_links.h"
#include "favorites/favorite_drag.h"
#include "favorites/favorites_order.h"
#include "favorites/shortcut_file.h"
#include "support/data_row.h"
#include "window/folder_view_fixture.h"

// What can be done with the files of a folder that is shown as a tree: order, names, drops, copies; and what fails.
class TestFolderEditing final : public QObject, private TFolderViewFixture {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { Prepare(); }
  void init() { Begin(); }
  void cleanup() { End(); }

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

QTEST_MAIN(TestFolderEditing)
#include "test_folder_editing.moc"
