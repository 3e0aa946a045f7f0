#include <cstring>
#include <QDragEnterEvent>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QtEndian>

#include "browser/strip/tab_bar_view.h"
#include "chrome/favorites/page_shortcut.h"
#include "ui/confirm_dialog.h"
#include "window/favorites_fixture.h"

// What leaves the window as a shortcut, what comes in as one, and all favorites of a folder opened at once.
class TestFavoritesDrop final : public QObject, private TFavoritesFixture {
  Q_OBJECT

 private:
  QList<QUrl> m_opened;  // by the desktop

  // "$" in a text stands for the folder of the favorites.
  [[nodiscard]] static QString Filled(QString text) { return text.replace(u'$', Root()); }
  [[nodiscard]] bool Drop(QWidget *on, const QMimeData &data) const {
    const Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
    QDragEnterEvent enter(QPoint(700, 5), actions, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(on, &enter);
    if (!enter.isAccepted()) return false;
    QDropEvent drop(QPoint(700, 5), actions, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(on, &drop);
    return drop.isAccepted() && drop.dropAction() != Qt::MoveAction;
  }

 private Q_SLOTS:
  void initTestCase() { Prepare(); }
  void init() {
    Begin();
    m_opened.clear();
    QDesktopServices::setUrlHandler(u"file"_s, this, "OpenFile");
  }
  void cleanup() {
    QDesktopServices::unsetUrlHandler(u"file"_s);
    End();
  }
  void OpenFile(const QUrl &url) { m_opened.append(url); }

  void PageAsShortcut_data() {
    Columns<QString, QString, QString>("title", "address", "file");
    Row("plain", "Page A", "http://a.test/x?y=1", "Page A.url");
    Row("not for a file name", "a/b: \"c\"?\n*", "http://a.test/", "a_b_ _c__ _.url");
    Row("without a title", "", "http://a.test/x", "a.test.url");
    Row("long", QString(1000, u'é'), "http://a.test/", QString(100, u'é') + u".url"_s);
  }
  void PageAsShortcut() {
    QFETCH(QString, title);
    QFETCH(QString, address);
    const std::unique_ptr<QMimeData> data(PageShortcut::DataOf(title, address));
    QCOMPARE(data->text(), address);
    QCOMPARE(data->urls(), QList<QUrl>{address});
    QCOMPARE(data->data(u"UniformResourceLocator"_s), address.toUtf8());
    const QByteArray contents = data->data(u"FileContents"_s);
    QCOMPARE(contents, "[InternetShortcut]\r\nURL=" + address.toUtf8() + "\r\n");
    const QByteArray group = data->data(u"FileGroupDescriptor"_s);
    QCOMPARE(group.size(), 4 + 332);
    QCOMPARE(qFromLittleEndian<quint32>(group.constData()), 1u);
    QCOMPARE(qFromLittleEndian<quint32>(group.constData() + 4 + 68), quint32(contents.size()));
    QTEST(QString::fromUtf8(group.constData() + 4 + 72), "file");
    const QByteArray titled = data->data(u"text/x-moz-url"_s);
    QCOMPARE(QString::fromUtf16(reinterpret_cast<const char16_t *>(titled.constData()), titled.size() / 2),
             address + u'\n' + title.simplified());
  }

  void DropsFavorites_data() {
    Columns<QString, QString, QStringList, bool>("kind", "dropped", "pages", "isTaken");
    const QStringList none;
    Row("path as a text", "text", " $/one.url\r\n", QStringList{"/page1"}, true);
    Row("folder as a text", "text", "$/f", QStringList{"/page2", "/page3"}, true);
    Row("no such file", "text", "$/gone.url", none, false);
    Row("prose", "text", "see $/one.url", none, false);
    Row("favorite", "favorite", "$/one.url", QStringList{"/page1"}, true);
    Row("folder", "favorite", "$/f", QStringList{"/page2", "/page3"}, true);
    Row("no shortcut", "favorite", "$/note.txt", none, true);
    Row("script", "favorite", "$/script.url", none, true);
    Row("file of another program", "url", "$/one.url", QStringList{"/page1"}, true);
    Row("folder of favorites", "url", "$/f", QStringList{"/page2", "/page3"}, true);
    Row("folder from elsewhere", "url", "$/../Elsewhere", QStringList{"$/../Elsewhere"}, true);
    Row("page from the disk", "url", "$/p.html", QStringList{"$/p.html"}, true);
  }
  void DropsFavorites() {
    QFETCH(QString, kind);
    QFETCH(QString, dropped);
    QFETCH(QStringList, pages);
    Put(QString(), u"one"_s, Page(1));
    Put(QString(), u"script"_s, u"javascript:alert(1)"_s);
    Put(u"f"_s, u"two"_s, Page(2));
    Put(u"f/deeper"_s, u"not this"_s, Page(4));
    PutFile(u"f/.hidden.URL"_s, "[InternetShortcut]\r\nURL=" + Page(3).toUtf8() + "\r\n");
    PutFile(u"f/empty.url"_s, "");
    PutFile(u"f/other.desktop"_s, "[Desktop Entry]\nType=Link\nURL=" + Page(5).toUtf8() + "\n");
    PutFile(u"note.txt"_s, "text");
    PutFile(u"p.html"_s, "text");
    PutFile(u"../Elsewhere/x.url"_s, "[InternetShortcut]\r\nURL=" + Page(6).toUtf8() + "\r\n");
    dropped = Filled(dropped);
    QMimeData data;
    if (kind == u"text"_s) data.setText(dropped);
    if (kind == u"url"_s) data.setUrls({QUrl::fromLocalFile(dropped)});
    if (kind == u"favorite"_s) data.setData(u"application/x-zarvela-favorites"_s, dropped.toUtf8() + '\0');
    OpenPage(u"/page0"_s);
    QTEST(Drop(Control()->findChild<TTabBarView *>(), data), "isTaken");
    for (QString &page : pages) {
      page = page.startsWith(u'$') ? QUrl::fromLocalFile(QDir::cleanPath(Filled(page))).toString() : server.Url(page);
    }
    pages.append(Page(0));
    pages.sort();
    const auto opened = [this] {
      QStringList addresses = Addresses();
      for (QString &address : addresses) {
        if (address.startsWith(u"file"_s)) address = QUrl(address).adjusted(QUrl::NormalizePathSegments).toString();
      }
      addresses.sort();
      return addresses;
    };
    QTRY_COMPARE(opened(), pages);
    QVERIFY(m_opened.isEmpty());
  }

  // A page gets what other programs drop on it, and would show a favorite as a file.
  void DropsOnAPage() {
    QMimeData favorite;
    favorite.setData(u"application/x-zarvela-favorites"_s, Put(QString(), u"one"_s, Page(1)).toUtf8() + '\0');
    favorite.setUrls({QUrl::fromLocalFile(Root() + u"/one.url"_s)});
    TBrowserTab *tab = OpenPage(u"/page0"_s);
    QWidget *page = nullptr;  // what takes what is dropped on it
    for (QWidget *inner : tab->Browser()->findChildren<QWidget *>()) {
      if (inner->acceptDrops() && inner->isVisible()) page = inner;
    }
    QVERIFY(page != nullptr);
    QVERIFY(Drop(page, favorite));
    QTRY_COMPARE(Addresses(), (QStringList{Page(0), Page(1)}));
    QMimeData file;
    file.setUrls(favorite.urls());
    (void)Drop(page, file);
    QCoreApplication::processEvents();
    QCOMPARE(tabs->TabCount(), 2);
  }

  // There is no page yet that could take it.
  void DropsOnABlankPage() {
    QMimeData data;
    data.setText(Put(QString(), u"one"_s, Page(1)));
    QVERIFY(Drop(Control(), data));
    QTRY_COMPARE(Addresses().last(), Page(1));
    data.setText(u"no path"_s);
    QVERIFY(!Drop(Control(), data));
  }

  // Each as it would open by itself; scripts run only when they are chosen.
  void OpensAll_data() {
    Columns<int, QString, int>("pages", "asked", "opened");
    Row("a few", 1, "", 1);
    Row("as many as go unasked", 18, "", 18);
    Row("more", 19, "OpenManyPrompt", 19);
    Row("more than can be", 5001, "OpenManyFirst", 0);
  }
  void OpensAll() {
    QFETCH(int, pages);
    QFETCH(QString, asked);
    QFETCH(int, opened);
    for (int i = 0; i < pages; ++i) {
      PutFile(u"f/p%1.url"_s.arg(i, 4, 10, QChar(u'0')), "[InternetShortcut]\r\nURL=" + Page(i % 10).toUtf8() + "\r\n");
    }
    PutFile(u"f/note.txt"_s, "text");
    PutFile(u"f/leads to it.url"_s, "[InternetShortcut]\r\nURL=" + (Root() + u"/f/note.txt"_s).toUtf8() + "\r\n");
    Put(u"f"_s, u"script"_s, u"javascript:alert(1)"_s);
    Put(u"f/deeper"_s, u"not this"_s, Page(1));
    QString told;
    if (!asked.isEmpty()) {
      OnModalDialog<TfrmConfirm>([&](TfrmConfirm &dialog) {
        told = dialog.findChild<QLabel *>(u"lblTitle"_s)->text();
        opened > 0 ? dialog.accept() : dialog.reject();
      });
    }
    view->Launcher().OpenAll(Root() + u"/f"_s);
    const QString text = language.Text("FAVORITES", asked.toLatin1().constData());
    if (!asked.isEmpty()) QCOMPARE(told, pages > 5000 ? text.arg(5000).arg(pages + 2) : text.arg(pages + 2));
    QCOMPARE(tabs->TabCount() - 1, opened);
    QCOMPARE(m_opened.size(), opened > 0 ? 2 : 0);
    queue->Stop();
  }

  // Names of files are bytes, and need be no UTF-8.
  void OpensAFileOfAnyName() {
    const QByteArray path = Root().toUtf8() + "/b\xE9.txt";
    QVERIFY(QDir().mkpath(Root()));
    FILE *file = std::fopen(path.constData(), "w");
    QVERIFY(file != nullptr && std::fclose(file) == 0);
    OpenPage(u"/page0"_s);
    const TFavorites all = FavoritesFolder::List(Root());
    QCOMPARE(all.size(), 1);
    view->Launcher().Open(all.first(), TOpenPlace::NewTab);
    QCOMPARE(m_opened.size(), 1);
    QVERIFY2(m_opened.first().toEncoded().endsWith("/b%E9.txt"), m_opened.first().toEncoded().constData());
    QCOMPARE(tabs->TabCount(), 1);
  }

 private:
  [[nodiscard]] TZVPageControl *Control() const { return &tabs->Pages(); }
};

int main(int argc, char **argv) {
  return RunWithEngine<TestFavoritesDrop>(argc, argv);
}
#include "test_favorites_drop.moc"
