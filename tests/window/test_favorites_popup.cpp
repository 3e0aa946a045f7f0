#include <QLineEdit>
#include <QMenu>
#include <QScreen>

#include "chrome/favorites/favorite_dialog.h"
#include "chrome/favorites/favorites_popup.h"
#include "chrome/folder_view/folder_view.h"
#include "window/favorites_fixture.h"

// The pop-up window of favorites: where it opens, what closes it, and the size that it keeps.
class TestFavoritesPopup final : public QObject, private TFavoritesFixture {
  Q_OBJECT

 private:
  void Show(const QRect &button) {
    m_button = button;
    (*actions)[TCommand::ShowFavorites]->trigger();
    m_popup = window->findChild<TfrmFavorites *>();
    m_tree = m_popup != nullptr ? m_popup->findChild<TFolderView *>() : nullptr;
  }
  void ShowFilled() {
    Show({100, 50, 27, 26});
    QVERIFY(m_popup != nullptr && m_popup->isVisible());
    QTRY_COMPARE(m_tree->model()->rowCount(m_tree->rootIndex()), 2);
  }
  [[nodiscard]] QPoint RowPlace(int row) const {
    return m_tree->visualRect(m_tree->model()->index(row, 0, m_tree->rootIndex())).center();
  }

  QRect m_button;
  TfrmFavorites *m_popup = nullptr;
  TFolderView *m_tree = nullptr;

 private Q_SLOTS:
  void initTestCase() { Prepare(); }
  void init() {
    Begin();
    view->SetPopupButton([this] { return m_button; });
    Put(u"f"_s, u"x"_s, Page(1));
    Put(QString(), u"a"_s, Page(2));
  }
  void cleanup() { End(); }

  // Its corner at the button's lower left one, as far as the screen has room.
  void Opens_data() {
    Columns<QRect, QSize, QRect>("button", "stored", "place");
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    const QRect button(100, 50, 27, 26);
    const QSize usual(250, 400);
    Row("below the button", button, usual, QRect(QPoint(100, 76), usual));
    Row("at the right edge", QRect(screen.right() - 20, 50, 20, 26), usual,
        QRect(QPoint(screen.right() - 249, 76), usual));
    Row("at the lower edge", QRect(100, screen.bottom() - 60, 27, 26), usual,
        QRect(QPoint(100, screen.bottom() - 399), usual));
    Row("too small", button, QSize(-7, 0), QRect(QPoint(100, 76), TfrmFavorites::Smallest));
    Row("too wide", button, QSize(100000, 400), QRect(screen.left(), 76, screen.width(), 400));
    Row("no button", QRect(), usual, QRect());
  }
  void Opens() {
    QFETCH(QRect, button);
    QFETCH(QSize, stored);
    settings->Set(Setting::FavoritesWidth, stored.width());
    settings->Set(Setting::FavoritesHeight, stored.height());
    Show(button);
    QTEST(m_popup != nullptr ? m_popup->geometry() : QRect(), "place");
    if (m_popup == nullptr) return;
    // While it is to be seen nothing happens.
    const QRect place = m_popup->geometry();
    Show(button.translated(40, 0));
    QCOMPARE(m_popup->geometry(), place);
    // What the screen or the window itself has made of a size is not the user's wish.
    m_popup->close();
    QCOMPARE(QSize(settings->Get(Setting::FavoritesWidth), settings->Get(Setting::FavoritesHeight)), stored);
  }

  void Closes_data() {
    Columns<QString, bool, QString>("how", "isOpen", "opened");
    Row("Escape", u"escape"_s, false, QString());
    Row("a click elsewhere", u"elsewhere"_s, false, QString());
    Row("a page", u"page"_s, false, u"/page2"_s);
    Row("Enter", u"enter"_s, false, u"/page2"_s);
    Row("a folder", u"folder"_s, true, QString());
    Row("a page in the background", u"background"_s, true, u"/page2"_s);
    Row("all of a folder", u"all"_s, false, u"/page1"_s);
  }
  void Closes() {
    QFETCH(QString, how);
    QFETCH(QString, opened);
    ShowFilled();
    QVERIFY(m_tree->hasFocus());
    QWidget *rows = m_tree->viewport();
    if (how == u"escape"_s) QTest::keyClick(m_tree, Qt::Key_Escape);
    if (how == u"elsewhere"_s) QTest::mouseClick(m_popup, Qt::LeftButton, {}, QPoint(-20, 200));
    if (how == u"page"_s) QTest::mouseClick(rows, Qt::LeftButton, {}, RowPlace(1));
    if (how == u"folder"_s) QTest::mouseClick(rows, Qt::LeftButton, {}, RowPlace(0));
    if (how == u"background"_s) QTest::mouseClick(rows, Qt::MiddleButton, {}, RowPlace(1));
    if (how == u"enter"_s || how == u"all"_s) {
      m_tree->Select({Root() + (how == u"all"_s ? u"/f"_s : u"/a.url"_s)});
      how == u"all"_s ? m_tree->Action(TFolderAction::OpenAll)->trigger() : QTest::keyClick(m_tree, Qt::Key_Return);
    }
    QTEST(m_popup->isVisible(), "isOpen");
    QCOMPARE(tabs->TabCount(), opened.isEmpty() ? 1 : 2);
    if (!opened.isEmpty()) QTRY_VERIFY(tabs->Tab(1)->AddressToSave().endsWith(opened));
  }

  // Its corner makes it another size, which it has the next time.
  void KeepsItsSize() {
    ShowFilled();
    const QPoint corner = m_popup->rect().bottomRight() - QPoint(6, 6);
    QWidget *grip = m_popup->childAt(corner);
    QVERIFY(grip != nullptr && grip != m_popup);
    const QPoint in = grip->mapFrom(m_popup, corner);
    QTest::mousePress(grip, Qt::LeftButton, {}, in);
    QTest::mouseMove(grip, in + QPoint(60, -100));
    QTest::mouseRelease(grip, Qt::LeftButton, {}, in);
    QCOMPARE(m_popup->size(), QSize(310, 300));
    QTest::keyClick(m_tree, Qt::Key_Escape);
    QCOMPARE(settings->Get(Setting::FavoritesWidth), 310);
    QCOMPARE(settings->Get(Setting::FavoritesHeight), 300);
    Show({100, 50, 27, 26});
    QCOMPARE(m_popup->size(), QSize(310, 300));
  }

  // What was changed in it can be taken back, also when it was closed meanwhile; properties come without it.
  void ChangesFavorites() {
    ShowFilled();
    m_tree->Select({Root() + u"/a.url"_s});
    OnModalDialog<TfrmFavorite>([this](TfrmFavorite &dialog) {
      QVERIFY(!m_popup->isVisible());
      dialog.findChild<QLineEdit *>(u"edtName"_s)->setText(u"b"_s);
      dialog.accept();
    });
    QTest::keyClick(m_tree, Qt::Key_Return, Qt::AltModifier);
    QVERIFY(QFile::exists(Root() + u"/b.url"_s));
    QVERIFY(Favorites().contains(u"b"_s));
    ShowFilled();
    QTRY_VERIFY(m_tree->Model().IsIdle());
    m_tree->Select({Root() + u"/b.url"_s});
    QTest::keyClick(m_tree, Qt::Key_Delete);
    QVERIFY(!QFile::exists(Root() + u"/b.url"_s));
    QTest::keyClick(m_tree, Qt::Key_Escape);
    ShowFilledAgain();
    QTest::keyClick(m_tree, Qt::Key_Z, Qt::ControlModifier);
    QVERIFY(QFile::exists(Root() + u"/b.url"_s));
    QTest::keyClick(m_tree, Qt::Key_Z, Qt::ControlModifier);
    QVERIFY(QFile::exists(Root() + u"/a.url"_s));
  }

  // As the tool bar does: in one ink, or in colours.
  void Colours() {
    const auto folder = [this] {
      ShowFilled();
      const QVariant icon = m_tree->model()->index(0, 0, m_tree->rootIndex()).data(Qt::DecorationRole);
      const QImage image = icon.value<QIcon>().pixmap(16, 16).toImage();
      m_popup->close();
      return image;
    };
    settings->Set(Setting::ToolbarShowColor, true);
    const QImage coloured = folder();
    QCOMPARE(coloured, view->Icons().Folder().pixmap(16, 16).toImage());
    settings->Set(Setting::ToolbarShowColor, false);
    QVERIFY(folder() != coloured);
  }

 private:
  void ShowFilledAgain() {
    Show({100, 50, 27, 26});
    QTRY_VERIFY(m_tree->Model().IsIdle());
  }
};

int main(int argc, char **argv) {
  return RunWithEngine<TestFavoritesPopup>(argc, argv);
}
#include "test_favorites_popup.moc"
