#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>
#include <algorithm>
#include <memory>

#include "browser/dialogs/confirm_dialog.h"
#include "browser/tabs/browser_tab.h"
#include "browser/tabs/close_all.h"
#include "browser/tabs/load_queue.h"
#include "browser/tabs/tab_menus.h"
#include "browser/tabs/tab_strip.h"
#include "config/language.h"
#include "config/options.h"
#include "groups/group_editor.h"
#include "groups/group_pages.h"
#include "support/modal_dialogs.h"
#include "support/test_server.h"

namespace {

constexpr int LoadTime = 20000;   // milliseconds

// What a modal dialog of the kind `T` looks like is of no interest here; it is answered.
void ChooseFile(const QString &path) {
  OnModalDialog<QFileDialog>([path](QFileDialog &dialog) {
    dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(path);
    static_cast<QDialog &>(dialog).accept();
  });
}

void Answer(bool yes) {
  OnModalDialog<TfrmConfirm>([yes](TfrmConfirm &dialog) { yes ? dialog.accept() : dialog.reject(); });
}

}  // namespace

// Page groups and the queue that opens their pages, with the real engine, against a local server.
class TestGroups final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase();
  void init();
  void cleanup();

  void Arguments_data();
  void Arguments();
  void Opens_data();
  void Opens();
  void LockedPageInTheTabThatIsLeft();
  void NothingToOpen_data();
  void NothingToOpen();
  void HostileAddresses();
  void SavesAll();
  void SavesWhatIsOnItsWay();
  void AsksBeforeReplacing_data();
  void AsksBeforeReplacing();
  void RefusedSave();
  void AddsTab();
  void AddsToUnreadableGroup();

  void LoadsAFewAtATime();
  void SilentPagesHoldNobody();
  void TurningToATab();
  void StopsLoading();
  void TabsThatDropOut();
  void ManyPages();

  void MenuShowsTheFolder();
  void MenuFollowsTheFolder();
  void MenuOpensGroup();
  void TabMenuAdds();

  void Rename_data();
  void Rename();
  void FolderCommands();

  void Editor();
  void EditorRenumbers();
  void EditorCancels();
  void EditorTellsRefusedWrite();
  void EditorLargeGroup();

 private:
  [[nodiscard]] QString Put(const QString &name, const QString &lines) const;
  [[nodiscard]] QString Lines(const QString &path) const;
  [[nodiscard]] QStringList Names() const;
  [[nodiscard]] QString Page(int number) const { return m_server.Url(QStringLiteral("/page%1").arg(number)); }
  [[nodiscard]] QString GroupOf(int pages) const;
  [[nodiscard]] bool AllLoaded() const;
  TfrmHalvexGroup *OpenEditor(const QString &path);

  TTestServer m_server;
  TLanguage m_language;
  std::unique_ptr<QTemporaryDir> m_temporary;
  std::unique_ptr<TRegistryStore> m_store;
  std::unique_ptr<TEngine> m_engine;
  std::unique_ptr<TTabEnvironment> m_environment;
  std::unique_ptr<QMainWindow> m_window;
  TZVPageControl *m_pages = nullptr;
  std::unique_ptr<TTabStrip> m_tabs;
  std::unique_ptr<TCloseAllTabs> m_closeAll;
  std::unique_ptr<TLoadQueue> m_queue;
  std::unique_ptr<TPageGroups> m_groups;
  std::unique_ptr<TfrmHalvexGroup> m_editor;
};

void TestGroups::initTestCase() {
  QVERIFY(m_language.LoadFile(QStringLiteral(ZV_SOURCE_DIR "/Languages/zveng.ini")));
  QVERIFY(m_server.Listen());
  for (int i = 0; i < 200; ++i) m_server.RoutePage("/page" + QByteArray::number(i), "Page " + QByteArray::number(i));
  m_server.RoutePage("/link", "Link", "<a id='link' href='/page1'>page 1</a>");
  m_server.Route("/silent", TTestResponse{.neverAnswer = true});
}

void TestGroups::init() {
  m_temporary = std::make_unique<QTemporaryDir>();
  m_store = std::make_unique<TRegistryStore>(m_temporary->filePath(QStringLiteral("registry.sqlite")));
  m_engine = std::make_unique<TEngine>(m_language, *m_store);
  m_environment.reset(new TTabEnvironment{*m_engine, m_language, *m_store, {}, {}});
  m_window = std::make_unique<QMainWindow>();
  m_pages = new TZVPageControl(m_window.get());
  m_window->setCentralWidget(m_pages);
  m_window->resize(800, 600);
  m_window->show();
  m_tabs = std::make_unique<TTabStrip>(m_window.get(), m_pages, *m_environment);
  m_closeAll = std::make_unique<TCloseAllTabs>(m_window.get(), *m_tabs);
  m_queue = std::make_unique<TLoadQueue>(*m_tabs);
  m_groups = std::make_unique<TPageGroups>(m_window.get(), *m_tabs, *m_closeAll, *m_queue, m_language, *m_store);
  m_tabs->NewTab();
  m_server.ForgetRequests();
}

void TestGroups::cleanup() {
  m_editor.reset();
  m_groups.reset();
  m_queue.reset();
  m_closeAll.reset();
  m_tabs.reset();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  m_window.reset();
  m_environment.reset();
  m_engine.reset();
  m_store.reset();
  m_temporary.reset();
  QDir(TGroupFolder::Path()).removeRecursively();
}

QString TestGroups::Put(const QString &name, const QString &lines) const {
  const QString path = TGroupFolder::Path() + QLatin1Char('/') + name;
  QDir().mkpath(QFileInfo(path).path());
  QFile file(path);
  const QByteArray bytes = "[HalvexGroup]\n" + lines.toUtf8() + '\n';
  return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() ? path : QString();
}

QString TestGroups::Lines(const QString &path) const {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return {};
  return QString::fromUtf8(file.readAll()).section(QLatin1Char('\n'), 1).trimmed();
}

QStringList TestGroups::Names() const {
  QStringList names;
  for (const TBrowserTab *tab : m_tabs->Tabs()) names.append(tab->StickyName());
  return names;
}

QString TestGroups::GroupOf(int pages) const {
  QStringList lines;
  for (int i = 0; i < pages; ++i) lines.append(QStringLiteral("n%1=%2").arg(QString::number(i), Page(i)));
  return lines.join(QLatin1Char('\n'));
}

bool TestGroups::AllLoaded() const {
  const QList<TBrowserTab *> tabs = m_tabs->Tabs();
  return m_queue->ToCome() == 0 && std::none_of(tabs.begin(), tabs.end(), [](TBrowserTab *tab) {
           return tab->Busy() || tab->GetLocationUrl() != tab->Url();
         });
}

void TestGroups::Arguments_data() {
  QTest::addColumn<QString>("argument");   // %1: the folder
  QTest::addColumn<bool>("isGroup");
  QTest::addColumn<bool>("isHandedOver");
  QTest::newRow("path") << "%1/Work.hgp" << true << true;
  QTest::newRow("not there") << "%1/None.hgp" << true << false;
  QTest::newRow("other spelling") << "%1/UPPER.HGP" << true << false;
  QTest::newRow("file URL") << "file://%1/My%20group.hgp" << true << true;
  QTest::newRow("folder") << "%1/Folder.hgp" << true << false;
  QTest::newRow("web address") << "http://example.test/x.hgp" << false << false;
  QTest::newRow("page") << "%1/Work.html" << false << false;
  QTest::newRow("nothing") << "" << false << false;
}

void TestGroups::Arguments() {
  QFETCH(QString, argument);
  for (const char *name : {"Work.hgp", "UPPER.HGP", "My group.hgp", "Folder.hgp/x", "Work.html"}) {
    QVERIFY(!Put(QString::fromLatin1(name), QString()).isEmpty());
  }
  argument.replace(QLatin1String("%1"), TGroupFolder::Path());
  QTEST(TPageGroups::IsGroupFile(argument), "isGroup");
  QTEST(TPageGroups::IsHandedOverGroup(argument), "isHandedOver");
}

void TestGroups::Opens_data() {
  QTest::addColumn<bool>("closeFirst");
  QTest::addColumn<bool>("foreground");
  QTest::addColumn<int>("spared");   // position of a tab that close-all spares, -1 for none
  QTest::addColumn<QStringList>("names");
  QTest::addColumn<QString>("active");
  const QStringList group{"first", "", "BLANK2", "last"};
  QTest::newRow("beside what is open") << false << false << -1 << QStringList{"A", "B"} + group << "A";
  QTest::newRow("in the foreground") << false << true << -1 << QStringList{"A", "B"} + group << "last";
  QTest::newRow("instead of what is open") << true << false << -1 << group << "first";
  // The spared tab is the one that is left, and the first page takes it.
  QTest::newRow("a spared tab") << true << false << 1 << group << "first";
}

void TestGroups::Opens() {
  QFETCH(bool, closeFirst);
  QFETCH(bool, foreground);
  QFETCH(int, spared);
  QFETCH(QStringList, names);
  m_tabs->Tab(0)->SetStickyName(QStringLiteral("A"));
  m_tabs->NewTab()->SetStickyName(QStringLiteral("B"));
  m_tabs->MakeMeActiveTab(0);
  m_environment->settings.openNewInForeground = foreground;
  if (spared >= 0) m_tabs->Tab(spared)->SetHideFromCloseAll(true);
  const QString path = Put(QStringLiteral("g.hgp"), QStringLiteral("first=%1\nblank1=%2\nBLANK2=%3\nlast=*%4")
                                                        .arg(Page(1), Page(2), Page(3), Page(4)));
  m_groups->Open(path, closeFirst);
  // Tabs and names are there at once, the pages come.
  QTRY_COMPARE(Names(), names);
  QTEST(m_tabs->GetActivePage()->StickyName(), "active");
  QVERIFY(!m_environment->settings.openNewAtEnd);
  const int begin = m_tabs->TabCount() - 4;
  QCOMPARE(m_tabs->Tab(begin + 1)->ListCaption(), Page(2));
  QVERIFY(!m_tabs->Tab(begin + 3)->Locked());
  QTRY_VERIFY_WITH_TIMEOUT(m_queue->ToCome() == 0, LoadTime);
  for (int i = 0; i < 4; ++i) {
    QCOMPARE(m_tabs->Tab(begin + i)->GetLocationUrl(), Page(i + 1));
    QCOMPARE(m_tabs->Tab(begin + i)->Locked(), i == 3);
  }
}

// The tab that is left is blank for a moment; that is not the page to lock, and the lock must not send the page away.
void TestGroups::LockedPageInTheTabThatIsLeft() {
  m_tabs->Tab(0)->Navigate(Page(9));
  QTRY_COMPARE_WITH_TIMEOUT(m_tabs->Tab(0)->GetLocationName(), QStringLiteral("Page 9"), LoadTime);
  m_groups->Open(Put(QStringLiteral("g.hgp"), QStringLiteral("a=*%1").arg(Page(1))), true, true);
  QVERIFY(m_tabs->Tab(0)->Restored());
  QTRY_VERIFY_WITH_TIMEOUT(m_tabs->Tab(0)->Locked(), LoadTime);
  QTRY_COMPARE_WITH_TIMEOUT(m_tabs->Tab(0)->GetLocationUrl(), Page(1), LoadTime);
  QCOMPARE(m_tabs->TabCount(), 1);
}

void TestGroups::NothingToOpen_data() {
  QTest::addColumn<QByteArray>("bytes");   // null: no such file
  QTest::addColumn<bool>("isTold");
  QByteArray many("[HalvexGroup]\n");
  for (int i = 0; i < 1'000'000; ++i) many += "blank=http://example.test/\n";
  QTest::newRow("not there") << QByteArray() << false;
  QTest::newRow("empty") << QByteArray("") << false;
  QTest::newRow("no section") << QByteArray("a=http://example.test/\n") << false;
  QTest::newRow("zero bytes") << QByteArray(5000, '\0') << false;
  QTest::newRow("a million lines") << many << true;
  QTest::newRow("no file") << QByteArray("folder") << true;
}

void TestGroups::NothingToOpen() {
  QFETCH(QByteArray, bytes);
  QFETCH(bool, isTold);
  const QString path = TGroupFolder::Path() + QStringLiteral("/g.hgp");
  if (bytes == "folder") {
    QVERIFY(QDir().mkpath(path));
  } else if (!bytes.isNull()) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
  }
  m_tabs->NewTab()->SetStickyName(QStringLiteral("B"));
  m_groups->Open(path, true);
  QCOMPARE(Names(), (QStringList{QString(), QStringLiteral("B")}));
  auto *box = m_window->findChild<QMessageBox *>();
  QCOMPARE(box != nullptr, isTold);
  if (box != nullptr) QVERIFY2(box->text().contains(QLatin1String("g.hgp")), qPrintable(box->text()));
}

// Whatever a file holds, its tabs open and none does harm.
void TestGroups::HostileAddresses() {
  m_tabs->Tab(0)->Navigate(Page(1));
  QTRY_COMPARE_WITH_TIMEOUT(m_tabs->Tab(0)->GetLocationName(), QStringLiteral("Page 1"), LoadTime);
  const QString longOne = Page(2) + QLatin1Char('?') + QString(100'000, QLatin1Char('a'));
  const QStringList lines{QStringLiteral("script=javascript:location='%1'").arg(Page(7)),
                          QStringLiteral("mail=mailto:nobody@example.test"),
                          QStringLiteral("empty="),
                          QStringLiteral("locked=*"),
                          QStringLiteral("bad=http://[::bad/"),
                          QStringLiteral("blank=about:blank"),
                          QString(QLatin1String("zero=") + Page(3)).insert(7, QChar(u'\0')),
                          QStringLiteral("%1=%2").arg(QString(100'000, QLatin1Char('n')), Page(4)),
                          QStringLiteral("long=%1").arg(longOne),
                          QStringLiteral("end=%1").arg(Page(5))};
  m_groups->Open(Put(QStringLiteral("g.hgp"), lines.join(QLatin1Char('\n'))), true);
  QCOMPARE(m_tabs->TabCount(), lines.size());
  QTRY_COMPARE_WITH_TIMEOUT(m_tabs->Tab(9)->GetLocationName(), QStringLiteral("Page 5"), LoadTime);
  QTRY_COMPARE_WITH_TIMEOUT(m_queue->ToCome(), 0, LoadTime);
  QCOMPARE(m_tabs->Tab(8)->AddressToSave(), longOne);
  QCOMPARE(m_tabs->Tab(7)->StickyName().size(), 100'000);
  QCOMPARE(m_server.RequestCount("/page7"), 0);
  QVERIFY(!m_tabs->Tab(3)->Locked());
}

void TestGroups::SavesAll() {
  const QStringList paths{"/page1?a=b=c", "/page2", "/page3", "/page4"};
  for (int i = 0; i < paths.size(); ++i) {
    TBrowserTab *tab = i == 0 ? m_tabs->Tab(0) : m_tabs->NewTab();
    tab->Navigate(m_server.Url(paths.at(i)));
    QTRY_COMPARE_WITH_TIMEOUT(tab->GetLocationUrl(), m_server.Url(paths.at(i)), LoadTime);
    QTRY_VERIFY_WITH_TIMEOUT(!tab->Busy(), LoadTime);
  }
  m_tabs->Tab(0)->SetStickyName(QStringLiteral("x=y"));
  m_tabs->Tab(1)->SetLocked(true);
  m_tabs->Tab(3)->SetStickyName(QStringLiteral("xy"));
  m_tabs->NewHiddenTab();   // a window that a page asked for; it has not been let in
  const QString path = TGroupFolder::Path() + QStringLiteral("/My.News");
  ChooseFile(path);
  m_window->findChild<QAction *>(QStringLiteral("actSaveAsHalvexGroup"))->trigger();
  // Of two pages of one name the later address takes the earlier place.
  QCOMPARE(Lines(path + QStringLiteral(".hgp")),
           QStringLiteral("xy=%1\nblank2=*%2\nblank3=%3").arg(Page(4), Page(2), Page(3)));
}

// A group that is saved before its pages have come keeps their addresses and locks.
void TestGroups::SavesWhatIsOnItsWay() {
  const QString lines = QStringLiteral("a=%1\nb=*%2\nblank3=%3").arg(Page(1), Page(2), Page(3));
  m_groups->Open(Put(QStringLiteral("g.hgp"), lines), true);
  const QString path = TGroupFolder::Path() + QStringLiteral("/copy.hgp");
  m_queue->Stop();
  ChooseFile(path);
  m_groups->SaveAll();
  QCOMPARE(Lines(path), lines);
}

void TestGroups::AsksBeforeReplacing_data() {
  QTest::addColumn<bool>("yes");
  QTest::newRow("yes") << true;
  QTest::newRow("no") << false;
}

void TestGroups::AsksBeforeReplacing() {
  QFETCH(bool, yes);
  const QString path = Put(QStringLiteral("g.hgp"), QStringLiteral("old=1"));
  m_tabs->Tab(0)->SetStickyName(QStringLiteral("new"));
  // The name is given without its extension; the question is about the file that is really there.
  OnModalDialog<QFileDialog>([path, yes](QFileDialog &dialog) {
    Answer(yes);
    dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(QString(path).chopped(4));
    static_cast<QDialog &>(dialog).accept();
  });
  m_groups->SaveAll();
  QCOMPARE(Lines(path), yes ? QStringLiteral("new=") : QStringLiteral("old=1"));
}

void TestGroups::RefusedSave() {
  const QString path = TGroupFolder::Path() + QStringLiteral("/no-such-folder/g.hgp");
  OnModalDialog<QFileDialog>([path](QFileDialog &dialog) {
    // The folder goes while the dialog is open.
    QDir().mkpath(QFileInfo(path).path());
    dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(path);
    static_cast<QDialog &>(dialog).accept();
    QDir().rmdir(QFileInfo(path).path());
  });
  m_groups->SaveAll();
  const auto *box = m_window->findChild<QMessageBox *>();
  QVERIFY(box != nullptr);
  QVERIFY2(box->text().contains(QLatin1String("g.hgp")) && !box->text().contains(QLatin1String("%2")),
           qPrintable(box->text()));
  QCOMPARE(m_tabs->TabCount(), 1);
}

void TestGroups::AddsTab() {
  const QString path = Put(QStringLiteral("g.hgp"), QStringLiteral("blank1=http://a\nblank2=http://b"));
  m_tabs->Tab(0)->Navigate(Page(1));
  QTRY_COMPARE_WITH_TIMEOUT(m_tabs->Tab(0)->GetLocationUrl(), Page(1), LoadTime);
  const QSignalSpy changed(&m_groups->Folder(), &TGroupFolder::Changed);
  OnModalDialog<QFileDialog>([](QFileDialog &dialog) { dialog.reject(); });
  QTest::keyClick(m_window.get(), Qt::Key_F6);
  QCOMPARE(changed.size(), 1);
  m_window->activateWindow();
  QTRY_VERIFY(m_window->isActiveWindow());
  ChooseFile(path);
  QTest::keyClick(m_window.get(), Qt::Key_F6);
  QCOMPARE(Lines(path), QStringLiteral("blank1=http://a\nblank2=http://b\nblank3=%1").arg(Page(1)));
}

// A file that cannot be read must not be replaced by one with nothing but the new page.
void TestGroups::AddsToUnreadableGroup() {
  const QString path = Put(QStringLiteral("g.hgp"), QStringLiteral("a=1"));
  QVERIFY(QFile::resize(path, (qint64(256) << 20) + 1));
  ChooseFile(path);
  m_groups->AddTab(m_tabs->Tab(0));
  QVERIFY(m_window->findChild<QMessageBox *>() != nullptr);
  QCOMPARE(QFileInfo(path).size(), (qint64(256) << 20) + 1);
}

void TestGroups::LoadsAFewAtATime() {
  int open = 0;
  int most = 0;
  QStringList order;
  connect(m_tabs.get(), &TTabStrip::TabsChanged, m_queue.get(), [&] {
    open = 0;
    for (const TBrowserTab *tab : m_tabs->Tabs()) {
      if (tab->Busy()) ++open;
      if (tab->Browser()->EnginePageIfAny() != nullptr && !order.contains(tab->StickyName())) {
        order.append(tab->StickyName());
      }
    }
    most = qMax(most, open);
  });
  const QSignalSpy told(m_queue.get(), &TLoadQueue::ToComeChanged);
  m_groups->Open(Put(QStringLiteral("g.hgp"), GroupOf(20)), true);
  QCOMPARE(m_queue->ToCome(), 20);
  m_tabs->MakeMeActiveTab(7);
  QTRY_VERIFY_WITH_TIMEOUT(AllLoaded(), LoadTime);
  QVERIFY2(most <= TLoadQueue::AtOnce, qPrintable(QString::number(most)));
  QCOMPARE(order.first(), QStringLiteral("n7"));
  order.removeFirst();
  QStringList sorted = order;
  std::sort(sorted.begin(), sorted.end(), [](const QString &a, const QString &b) {
    return a.mid(1).toInt() < b.mid(1).toInt();
  });
  QCOMPARE(order, sorted);
  QCOMPARE(order.size(), 19);
  // Down to nothing, one by one.
  int last = 20;
  for (const QList<QVariant> &news : told.mid(told.indexOf({20}) + 1)) {
    QCOMPARE(news.first().toInt(), last - 1);
    last = news.first().toInt();
  }
  QCOMPARE(last, 0);
}

// Servers that never answer keep the rest waiting for a while only.
void TestGroups::SilentPagesHoldNobody() {
  QStringList lines;
  for (int i = 0; i < TLoadQueue::AtOnce; ++i) {
    // Different addresses: the engine lets requests for one and the same wait for each other.
    lines.append(QStringLiteral("s%1=%2?%1").arg(QString::number(i), m_server.Url(QStringLiteral("/silent"))));
  }
  lines.append(QStringLiteral("end=%1").arg(Page(1)));
  m_groups->Open(Put(QStringLiteral("g.hgp"), lines.join(QLatin1Char('\n'))), true);
  TBrowserTab *last = m_tabs->Tab(m_tabs->TabCount() - 1);
  QTRY_VERIFY_WITH_TIMEOUT(m_server.RequestCount("/silent") == TLoadQueue::AtOnce, LoadTime);
  QCOMPARE(last->Browser()->EnginePageIfAny(), nullptr);
  QTRY_COMPARE_WITH_TIMEOUT(last->GetLocationName(), QStringLiteral("Page 1"), LoadTime);
  QTRY_COMPARE_WITH_TIMEOUT(m_queue->ToCome(), 0, LoadTime);
}

// The page that the user turns to comes next, even while others take all places.
void TestGroups::TurningToATab() {
  QStringList lines;
  for (int i = 0; i < TLoadQueue::AtOnce; ++i) {
    lines.append(QStringLiteral("s%1=%2?%1").arg(QString::number(i), m_server.Url(QStringLiteral("/silent"))));
  }
  lines.append(GroupOf(5));
  m_groups->Open(Put(QStringLiteral("g.hgp"), lines.join(QLatin1Char('\n'))), true);
  QTRY_VERIFY_WITH_TIMEOUT(m_server.RequestCount("/silent") == TLoadQueue::AtOnce, LoadTime);
  QElapsedTimer timer;
  timer.start();
  m_tabs->MakeMeActiveTab(TLoadQueue::AtOnce + 3);
  QTRY_COMPARE_WITH_TIMEOUT(m_tabs->GetActivePage()->GetLocationName(), QStringLiteral("Page 3"), LoadTime);
  QVERIFY(timer.elapsed() < TLoadQueue::LongestHold);
  QCOMPARE(m_server.RequestCount("/page0"), 0);
}

void TestGroups::StopsLoading() {
  m_groups->Open(Put(QStringLiteral("g.hgp"), GroupOf(30)), true);
  QTRY_VERIFY_WITH_TIMEOUT(m_queue->ToCome() < 29, LoadTime);
  m_queue->Stop();
  QVERIFY(m_queue->ToCome() <= TLoadQueue::AtOnce);
  QTRY_COMPARE_WITH_TIMEOUT(m_queue->ToCome(), 0, LoadTime);
  TBrowserTab *last = m_tabs->Tab(29);
  QVERIFY(last->Browser()->EnginePageIfAny() == nullptr);
  QCOMPARE(last->AddressToSave(), Page(29));
  m_tabs->Activate(last);
  QTRY_COMPARE_WITH_TIMEOUT(last->GetLocationName(), QStringLiteral("Page 29"), LoadTime);
  QVERIFY(m_tabs->Tab(28)->Browser()->EnginePageIfAny() == nullptr);
  // What is opened after that loads again.
  TBrowserTab *other = m_tabs->NewBackgroundTab();
  m_queue->Navigate(other, Page(50));
  QTRY_COMPARE_WITH_TIMEOUT(other->GetLocationName(), QStringLiteral("Page 50"), LoadTime);
}

void TestGroups::TabsThatDropOut() {
  m_groups->Open(Put(QStringLiteral("g.hgp"), GroupOf(20)), true);
  m_tabs->Tab(19)->Navigate(Page(60));
  m_tabs->Tab(18)->MakeBlank();
  m_tabs->Tab(18)->Navigate(Page(61));
  for (int i = 17; i >= 5; --i) m_tabs->Tab(i)->Close();
  QTRY_COMPARE_WITH_TIMEOUT(m_queue->ToCome(), 0, LoadTime);
  QTRY_VERIFY_WITH_TIMEOUT(AllLoaded(), LoadTime);
  QCOMPARE(m_tabs->TabCount(), 7);
  QCOMPARE(m_tabs->Tab(6)->GetLocationUrl(), Page(60));
  QCOMPARE(m_server.RequestCount("/page19") + m_server.RequestCount("/page18") + m_server.RequestCount("/page10"), 0);

  // Everything closed in the middle of it.
  m_groups->Open(Put(QStringLiteral("g.hgp"), GroupOf(20)), true);
  QTRY_VERIFY_WITH_TIMEOUT(m_queue->ToCome() < 19, LoadTime);
  m_closeAll->CloseAll(true);
  QTRY_COMPARE_WITH_TIMEOUT(m_queue->ToCome(), 0, LoadTime);
  QCOMPARE(m_tabs->TabCount(), 1);
}

void TestGroups::ManyPages() {
  const QString path = Put(QStringLiteral("g.hgp"), GroupOf(200));
  QElapsedTimer timer;
  timer.start();
  m_groups->Open(path, true);
  QCOMPARE(m_tabs->TabCount(), 200);
  qInfo("200 tabs: %lld ms", timer.elapsed());
  // Generous for slow machines.
  QVERIFY(timer.elapsed() < 3000);
  QTRY_VERIFY_WITH_TIMEOUT(m_queue->ToCome() < 190, LoadTime);
  m_queue->Stop();

  QString most;
  for (int i = 0; i < TPageGroups::MostPages; ++i) most += QStringLiteral("n%1=%2\n").arg(QString::number(i), Page(1));
  timer.restart();
  m_groups->Open(Put(QStringLiteral("most.hgp"), most), true);
  m_queue->Stop();
  qInfo("%d tabs: %lld ms", TPageGroups::MostPages, timer.elapsed());
  QVERIFY(timer.elapsed() < 20000);
}

void TestGroups::MenuShowsTheFolder() {
  for (const char *name : {"beta.hgp", "Alpha.hgp", "R&D.hgp", "UPPER.HGP", "note.txt", ".hidden.hgp", "Zoo/inner.hgp",
                           "archive/deep/x.hgp", ".git/x.hgp"}) {
    QVERIFY(!Put(QString::fromLatin1(name), QString()).isEmpty());
  }
  QMenu menu;
  m_groups->FillMenu(&menu);
  Q_EMIT menu.aboutToShow();
  QStringList captions;
  for (const QAction *item : menu.actions().sliced(4)) captions.append(item->text());
  QCOMPARE(captions, (QStringList{"archive", "Zoo", "Alpha", "beta", "R&&D"}));
  QCOMPARE(menu.actions().at(6)->data().toString(), TGroupFolder::Path() + QStringLiteral("/Alpha.hgp"));
  QMenu *archive = menu.actions().at(4)->menu();
  QVERIFY(archive != nullptr && archive->isEmpty());
  Q_EMIT archive->aboutToShow();
  QCOMPARE(archive->actions().first()->text(), QStringLiteral("deep"));
  QVERIFY(QFile::remove(TGroupFolder::Path() + QStringLiteral("/Zoo/inner.hgp")));
  QMenu *zoo = menu.actions().at(5)->menu();
  Q_EMIT zoo->aboutToShow();
  QCOMPARE(zoo->actions().first()->text(), m_language.Global("EmptyFolder"));
}

void TestGroups::MenuFollowsTheFolder() {
  QMenu menu;
  m_groups->FillMenu(&menu);
  const auto count = [&menu] {
    Q_EMIT menu.aboutToShow();
    return int(menu.actions().size()) - 4;
  };
  QCOMPARE(count(), 0);
  QVERIFY(!Put(QStringLiteral("new.hgp"), QString()).isEmpty());
  QTRY_COMPARE(count(), 1);
  QVERIFY(!Put(QStringLiteral("folder/new.hgp"), QString()).isEmpty());
  QTRY_COMPARE(count(), 2);
  const QAction *kept = menu.actions().last();
  QCOMPARE(count(), 2);
  QCOMPARE(menu.actions().last(), kept);   // not filled anew for nothing
  QVERIFY(QFile::remove(TGroupFolder::Path() + QStringLiteral("/new.hgp")));
  QTRY_COMPARE(count(), 1);
}

void TestGroups::MenuOpensGroup() {
  QVERIFY(!Put(QStringLiteral("folder/g.hgp"), GroupOf(2)).isEmpty());
  QMenu menu;
  m_groups->FillMenu(&menu);
  for (const bool closeFirst : {false, true}) {
    TZVOptions(*m_store).Set(Setting::HGCloseFirst, closeFirst);
    Q_EMIT menu.aboutToShow();
    QMenu *folder = menu.actions().at(4)->menu();
    Q_EMIT folder->aboutToShow();
    folder->actions().first()->trigger();
    QCOMPARE(m_tabs->TabCount(), closeFirst ? 2 : 3);
  }
}

void TestGroups::TabMenuAdds() {
  const QString path = Put(QStringLiteral("g.hgp"), QString());
  TTabMenu menu(m_window.get(), *m_tabs, *m_closeAll);
  m_groups->ExtendTabMenu(menu);
  m_tabs->Tab(0)->SetStickyName(QStringLiteral("A"));
  m_tabs->NewTab();
  menu.Open(m_tabs->Tab(0), QPoint(0, 0));
  ChooseFile(path);
  menu.Menu()->findChild<QAction *>(QStringLiteral("pmTabAddToHalvexGroup"))->trigger();
  QCOMPARE(Lines(path), QStringLiteral("A="));
  menu.Menu()->close();
}

void TestGroups::Rename_data() {
  QTest::addColumn<QString>("name");
  QTest::addColumn<QString>("offered");
  QTest::addColumn<QString>("answer");
  QTest::addColumn<QString>("result");   // empty: nothing happens
  QTest::newRow("plain") << "Work.hgp" << "Work" << "Play" << "Play.hgp";
  QTest::newRow("other spelling") << "Work.HGP" << "Work.HGP" << "Work.HGP" << "Work.HGP.hgp";
  QTest::newRow("two extensions") << "a.hgp.hgp" << "a.hgp" << "b" << "b.hgp";
  QTest::newRow("empty answer") << "Work.hgp" << "Work" << "" << "";
  QTest::newRow("taken") << "Work.hgp" << "Work" << "Taken" << "";
  QTest::newRow("no such folder") << "Work.hgp" << "Work" << "none/x" << "";
}

void TestGroups::Rename() {
  QFETCH(QString, name);
  QFETCH(QString, offered);
  QFETCH(QString, answer);
  QFETCH(QString, result);
  const QString path = Put(name, QStringLiteral("a=1"));
  const QString taken = Put(QStringLiteral("Taken.hgp"), QStringLiteral("b=2"));
  OnModalDialog<QInputDialog>([=](QInputDialog &dialog) {
    QCOMPARE(dialog.textValue(), offered);
    dialog.setTextValue(answer);
    dialog.accept();
  });
  const QString now = m_groups->Folder().Rename(path);
  QCOMPARE(now, result.isEmpty() ? QString() : TGroupFolder::Path() + QLatin1Char('/') + result);
  QCOMPARE(Lines(result.isEmpty() ? path : now), QStringLiteral("a=1"));
  QCOMPARE(QFileInfo::exists(path), result.isEmpty());
  QCOMPARE(Lines(taken), QStringLiteral("b=2"));
}

void TestGroups::FolderCommands() {
  TGroupFolder &folder = m_groups->Folder();
  const QString file = Put(QStringLiteral("sub/g.hgp"), QStringLiteral("a=1"));
  const QString sub = QFileInfo(file).path();
  QSignalSpy changed(&folder, &TGroupFolder::Changed);
  const QString made = folder.NewFolder(sub);
  const QString second = folder.NewFolder(sub);
  QVERIFY(QFileInfo(made).isDir() && QFileInfo(second).isDir() && made != second);
  QVERIFY(folder.NewFolder(sub + QStringLiteral("/none")).isEmpty());
  QVERIFY(m_window->findChild<QMessageBox *>() != nullptr);
  QVERIFY(folder.RenameFolder(made, QFileInfo(second).fileName()).isEmpty());
  const QString renamed = folder.RenameFolder(made, QStringLiteral("other"));
  QVERIFY(QFileInfo(renamed).isDir() && !QFileInfo::exists(made));

  changed.clear();
  Answer(false);
  QVERIFY(!folder.Delete(file) && QFileInfo::exists(file));
  Answer(true);
  QVERIFY(folder.Delete(file) && !QFileInfo::exists(file));
  Answer(true);
  QVERIFY(folder.Delete(sub) && !QFileInfo::exists(sub));
  QCOMPARE(changed.size(), 2);
  // The folder of all groups is not to be thrown away, and what is not there cannot be.
  QVERIFY(!folder.Delete(TGroupFolder::Path()) && !folder.Delete(file));
  QVERIFY(QFileInfo(TGroupFolder::Path()).isDir());
}

TfrmHalvexGroup *TestGroups::OpenEditor(const QString &path) {
  m_editor = std::make_unique<TfrmHalvexGroup>(m_language, path);
  m_editor->show();
  return m_editor.get();
}

namespace {

void Click(TfrmHalvexGroup *editor, const char *button) {
  editor->findChild<QPushButton *>(QString::fromLatin1(button))->click();
}

QAbstractItemView *ListOf(TfrmHalvexGroup *editor) {
  return editor->findChild<QAbstractItemView *>(QStringLiteral("lstSites"));
}

void Select(TfrmHalvexGroup *editor, int row) {
  ListOf(editor)->setCurrentIndex(ListOf(editor)->model()->index(row, 0));
}

void Fill(TfrmHalvexGroup *editor, const QString &name, const QString &location, bool locked) {
  editor->findChild<QLineEdit *>(QStringLiteral("edtTitle"))->setText(name);
  editor->findChild<QLineEdit *>(QStringLiteral("edtLocation"))->setText(location);
  editor->findChild<QCheckBox *>(QStringLiteral("chkTabLocked"))->setChecked(locked);
}

QString Shown(TfrmHalvexGroup *editor) {
  const QAbstractItemModel *model = ListOf(editor)->model();
  QStringList rows;
  for (int row = 0; row < model->rowCount(); ++row) {
    QStringList cells;
    for (int column = 0; column < model->columnCount(); ++column) {
      cells.append(model->index(row, column).data().toString());
    }
    rows.append(cells.join(QLatin1Char('|')));
  }
  return rows.join(QLatin1Char(' '));
}

}  // namespace

void TestGroups::Editor() {
  const QString path = Put(QStringLiteral("g.hgp"), QStringLiteral("a=1\nBlank9=*2\nb=3"));
  TfrmHalvexGroup *editor = OpenEditor(path);
  QVERIFY2(editor->windowTitle().endsWith(QLatin1String(": g.hgp")), qPrintable(editor->windowTitle()));
  QCOMPARE(Shown(editor), QStringLiteral("a|1| |2|X b|3|"));
  const auto isEnabled = [editor](const char *name) {
    return editor->findChild<QPushButton *>(QString::fromLatin1(name))->isEnabled();
  };
  QVERIFY(isEnabled("cmdInsert") && !isEnabled("cmdUpdate") && !isEnabled("cmdDelete") && !isEnabled("cmdUp"));

  Click(editor, "cmdInsert");
  Fill(editor, QStringLiteral("new"), QString(), true);
  Click(editor, "cmdUrlInsert");   // refused silently
  QVERIFY(editor->findChild<QWidget *>(QStringLiteral("grpEdit"))->isVisible());
  Fill(editor, QStringLiteral("new"), QStringLiteral("4"), true);
  Click(editor, "cmdUrlInsert");
  QCOMPARE(Shown(editor), QStringLiteral("a|1| |2|X b|3| new|4|X"));
  QVERIFY(!editor->findChild<QWidget *>(QStringLiteral("grpEdit"))->isVisible());

  Select(editor, 0);
  QVERIFY(isEnabled("cmdUpdate") && isEnabled("cmdDelete") && isEnabled("cmdUp") && isEnabled("cmdDown"));
  Click(editor, "cmdUpdate");
  QCOMPARE(editor->findChild<QLineEdit *>(QStringLiteral("edtLocation"))->text(), QStringLiteral("1"));
  Fill(editor, QStringLiteral("A=A"), QStringLiteral("11"), false);
  QTest::keyClick(editor->findChild<QLineEdit *>(QStringLiteral("edtLocation")), Qt::Key_Return);
  QVERIFY(editor->isVisible());
  Click(editor, "cmdDown");
  Click(editor, "cmdDown");
  Click(editor, "cmdUp");
  Click(editor, "cmdUp");
  Click(editor, "cmdUp");
  Click(editor, "cmdDown");
  QCOMPARE(Shown(editor), QStringLiteral("|2|X A=A|11| b|3| new|4|X"));

  // Escape leaves the edit area, not the dialog; what was being changed and is deleted changes nothing else.
  Click(editor, "cmdUpdate");
  QTest::keyClick(editor->findChild<QLineEdit *>(QStringLiteral("edtTitle")), Qt::Key_Escape);
  QVERIFY(editor->isVisible());
  Select(editor, 2);
  Click(editor, "cmdUpdate");
  Click(editor, "cmdDelete");
  QVERIFY(!editor->findChild<QWidget *>(QStringLiteral("grpEdit"))->isVisible());
  Click(editor, "cmdOk");
  QCOMPARE(editor->result(), int(QDialog::Accepted));
  QCOMPARE(Lines(path), QStringLiteral("blank1=*2\nAA=11\nnew=*4"));
}

void TestGroups::EditorRenumbers() {
  const QString path = Put(QStringLiteral("g.hgp"), QStringLiteral("blank1=1\nblank2=2\nblank3=3"));
  TfrmHalvexGroup *editor = OpenEditor(path);
  Select(editor, 1);
  QTest::keyClick(ListOf(editor), Qt::Key_Delete);
  // Somebody has removed the file meanwhile: the user's work is written all the same.
  QVERIFY(QFile::remove(path));
  Click(editor, "cmdOk");
  QCOMPARE(Lines(path), QStringLiteral("blank1=1\nblank2=3"));
}

void TestGroups::EditorCancels() {
  const QString path = Put(QStringLiteral("g.hgp"), QStringLiteral("a = 1\n;note\n\nb=2"));
  QFile file(path);
  QVERIFY(file.open(QIODevice::ReadOnly));
  const QByteArray before = file.readAll();
  OnModalDialog<TfrmHalvexGroup>([](TfrmHalvexGroup &editor) {
    Select(&editor, 0);
    Click(&editor, "cmdDelete");
    Click(&editor, "cmdCancel");
  });
  m_groups->Organize(path);
  QVERIFY(file.seek(0));
  QCOMPARE(file.readAll(), before);
}

void TestGroups::EditorTellsRefusedWrite() {
  const QString path = Put(QStringLiteral("sub/g.hgp"), QStringLiteral("a=1"));
  TfrmHalvexGroup *editor = OpenEditor(path);
  QVERIFY(QDir(QFileInfo(path).path()).removeRecursively());
  Click(editor, "cmdOk");
  QVERIFY(editor->isVisible() && editor->findChild<QMessageBox *>() != nullptr);
  QVERIFY(QDir().mkpath(QFileInfo(path).path()));
  Click(editor, "cmdOk");
  QCOMPARE(Lines(path), QStringLiteral("a=1"));
}

void TestGroups::EditorLargeGroup() {
  QString lines;
  for (int i = 0; i < 200'000; ++i) lines += QStringLiteral("blank%1=http://example.test/\n").arg(i + 1);
  const QString longOne = QStringLiteral("http://example.test/") + QString(100'000, QLatin1Char('a'));
  const QString path = Put(QStringLiteral("g.hgp"), QStringLiteral("long=%1\n%2").arg(longOne, lines));
  QElapsedTimer timer;
  timer.start();
  TfrmHalvexGroup *editor = OpenEditor(path);
  QVERIFY(!editor->grab().isNull());
  Select(editor, 0);
  Click(editor, "cmdUpdate");
  Click(editor, "cmdUrlInsert");
  Click(editor, "cmdOk");
  QVERIFY(Lines(path).startsWith(QStringLiteral("long=%1\nblank2=").arg(longOne)));
  qInfo("%lld ms", timer.elapsed());
  QVERIFY(timer.elapsed() < 20000);
}

int main(int argc, char **argv) {
  TEngine::RegisterSchemes();
  QApplication application(argc, argv);
  TestGroups test;
  return QTest::qExec(&test, argc, argv);
}

#include "test_groups.moc"
