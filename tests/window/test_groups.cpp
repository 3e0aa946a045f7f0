#include <QCheckBox>
#include <QElapsedTimer>
#include <QInputDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>

#include "groups/halvex_group_dialog.h"
#include "support/list_editor_driver.h"
#include "ui/confirm_dialog.h"
#include "window/groups_fixture.h"

namespace {

void Answer(bool yes) {
  OnModalDialog<TfrmConfirm>([yes](TfrmConfirm &dialog) { yes ? dialog.accept() : dialog.reject(); });
}

}  // namespace

// Page groups with the real engine: opening through the queue of pages to load, saving, the menu, the folder, the
// editor.
class TestGroups final : public QObject, private TGroupsFixture {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { Prepare(); }
  void init() { Begin(); }
  void cleanup() {
    m_editor.reset();
    End();
  }

  void Arguments_data() {
    // In an argument %1 is the folder.
    Columns<QString, bool, bool>("argument", "isGroup", "isHandedOver");
    QTest::newRow("path") << "%1/Work.hgp" << true << true;
    QTest::newRow("not there") << "%1/None.hgp" << true << false;
    QTest::newRow("other spelling") << "%1/UPPER.HGP" << true << false;
    QTest::newRow("file URL") << "file://%1/My%20group.hgp" << true << true;
    QTest::newRow("folder") << "%1/Folder.hgp" << true << false;
    QTest::newRow("web address") << "http://example.test/x.hgp" << false << false;
    QTest::newRow("nothing before it") << ".hgp" << true << false;
    QTest::newRow("longer") << "/a/Work.hgpx" << false << false;
    QTest::newRow("a folder's name") << "/a.hgp/Work" << false << false;
  }

  void Arguments() {
    QFETCH(QString, argument);
    for (const char *name : {"Work.hgp", "UPPER.HGP", "My group.hgp", "Folder.hgp/x"}) {
      QVERIFY(!Put(QString::fromLatin1(name), QString()).isEmpty());
    }
    argument.replace(u"%1"_s, TGroupFolder::Path());
    QTEST(TPageGroups::IsGroupFile(argument), "isGroup");
    QTEST(TPageGroups::IsHandedOverGroup(argument), "isHandedOver");
  }

  void Opens_data() {
    // Spared is the position of a tab that close-all spares, -1 for none.
    Columns<bool, bool, int, QStringList, QString>("closeFirst", "foreground", "spared", "names", "active");
    const QStringList group{"first", "", "BLANK2", "last"};
    QTest::newRow("beside what is open") << false << false << -1 << QStringList{"A", "B"} + group << "A";
    QTest::newRow("in the foreground") << false << true << -1 << QStringList{"A", "B"} + group << "last";
    QTest::newRow("instead of what is open") << true << false << -1 << group << "first";
    // The spared tab is the one that is left, and the first page takes it.
    QTest::newRow("a spared tab") << true << false << 1 << group << "first";
  }

  void Opens() {
    QFETCH(bool, closeFirst);
    QFETCH(bool, foreground);
    QFETCH(int, spared);
    QFETCH(QStringList, names);
    tabs->Tab(0)->SetStickyName(u"A"_s);
    tabs->NewTab()->SetStickyName(u"B"_s);
    tabs->MakeMeActiveTab(0);
    settings->Set(Setting::OpenNewInForeground, foreground);
    if (spared >= 0) tabs->Tab(spared)->SetHideFromCloseAll(true);
    const QString path =
        Put(u"g.hgp"_s, u"first=%1\nblank1=%2\nBLANK2=%3\nlast=*%4"_s.arg(Page(1), Page(2), Page(3), Page(4)));
    groups->OpenHalvexGroup(path, closeFirst);
    // Tabs and names are there at once, the pages come.
    QTRY_COMPARE(Names(), names);
    QTEST(tabs->GetActivePage()->StickyName(), "active");
    const int begin = tabs->TabCount() - 4;
    QCOMPARE(tabs->Tab(begin + 1)->ListCaption(), Page(2));
    QVERIFY(!tabs->Tab(begin + 3)->Locked());
    QTRY_VERIFY_WITH_TIMEOUT(queue->ToCome() == 0, LoadTime);
    for (int i = 0; i < 4; ++i) {
      QCOMPARE(tabs->Tab(begin + i)->GetLocationUrl(), Page(i + 1));
      QCOMPARE(tabs->Tab(begin + i)->Locked(), i == 3);
    }
  }

  // The tab that is left is blank for a moment; that is not the page to lock, and the lock must not send the page away.
  void LockedPageInTheTabThatIsLeft() {
    Load(tabs->Tab(0), u"/page9"_s);
    groups->OpenHalvexGroup(Put(u"g.hgp"_s, u"a=*%1"_s.arg(Page(1))), true, true);
    QVERIFY(tabs->Tab(0)->Restored());
    QTRY_VERIFY_WITH_TIMEOUT(tabs->Tab(0)->Locked(), LoadTime);
    QTRY_COMPARE_WITH_TIMEOUT(tabs->Tab(0)->GetLocationUrl(), Page(1), LoadTime);
    QCOMPARE(tabs->TabCount(), 1);
  }

  void NothingToOpen_data() {
    // Without bytes there is no such file.
    Columns<QByteArray, bool>("bytes", "isTold");
    QByteArray many("[HalvexGroup]\n");
    for (int i = 0; i < 1'000'000; ++i) many += "blank=http://example.test/\n";
    QTest::newRow("not there") << QByteArray() << false;
    QTest::newRow("no section") << QByteArray("a=http://example.test/\n") << false;
    QTest::newRow("a million lines") << many << true;
    QTest::newRow("no file") << QByteArray("folder") << true;
  }

  void NothingToOpen() {
    QFETCH(QByteArray, bytes);
    const QString path = TGroupFolder::Path() + u"/g.hgp"_s;
    if (bytes == "folder") {
      QVERIFY(QDir().mkpath(path));
    } else if (!bytes.isNull()) {
      QFile file(path);
      QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }
    tabs->NewTab()->SetStickyName(u"B"_s);
    groups->OpenHalvexGroup(path, true);
    QCOMPARE(Names(), (QStringList{QString(), u"B"_s}));
    auto *box = window->findChild<QMessageBox *>();
    QTEST(box != nullptr, "isTold");
    if (box != nullptr) QVERIFY2(box->text().contains(u"g.hgp"_s), qPrintable(box->text()));
  }

  // Whatever a file holds, its tabs open and none does harm.
  void HostileAddresses() {
    Load(tabs->Tab(0), u"/page1"_s);
    const QStringList lines{u"script=javascript:location='%1'"_s.arg(Page(7)),
                            u"mail=mailto:nobody@example.test"_s,
                            u"locked=*"_s,
                            u"bad=http://[::bad/"_s,
                            u"long=%1?"_s.arg(Page(2)) + QString(100'000, u'a'),
                            u"end=%1"_s.arg(Page(5))};
    OpenLines(lines.join(u'\n'));
    QCOMPARE(tabs->TabCount(), lines.size());
    QTRY_COMPARE_WITH_TIMEOUT(tabs->Tab(5)->GetLocationName(), u"Page 5"_s, LoadTime);
    QTRY_COMPARE_WITH_TIMEOUT(queue->ToCome(), 0, LoadTime);
    QCOMPARE(tabs->Tab(4)->AddressToSave(), lines.at(4).sliced(5));
    QCOMPARE(server.RequestCount("/page7"), 0);
    QVERIFY(!tabs->Tab(2)->Locked());
  }

  void MenuShowsTheFolder() {
    for (const char *name : {"beta.hgp", "Alpha.hgp", "R&D.hgp", "UPPER.HGP", "note.txt", ".hidden.hgp",
                             "Zoo/inner.hgp", "archive/deep/x.hgp", ".git/x.hgp"}) {
      QVERIFY(!Put(QString::fromLatin1(name), QString()).isEmpty());
    }
    QMenu &menu = *actions->Menu(TMenu::Groups);
    Q_EMIT menu.aboutToShow();
    QStringList captions;
    for (const QAction *item : menu.actions().sliced(4)) captions.append(item->text());
    QCOMPARE(captions, (QStringList{"archive", "Zoo", ".hidden", "Alpha", "beta", "R&&D"}));
    QCOMPARE(menu.actions().at(7)->data().toString(), TGroupFolder::Path() + u"/Alpha.hgp"_s);
    QMenu *archive = menu.actions().at(4)->menu();
    QVERIFY(archive != nullptr && archive->isEmpty());
    Q_EMIT archive->aboutToShow();
    QCOMPARE(archive->actions().first()->text(), u"deep"_s);
    QVERIFY(QFile::remove(TGroupFolder::Path() + u"/Zoo/inner.hgp"_s));
    QMenu *zoo = menu.actions().at(5)->menu();
    Q_EMIT zoo->aboutToShow();
    QCOMPARE(zoo->actions().first()->text(), language.Global("EmptyFolder"));
    // It follows the folder, and is not filled anew for nothing.
    const auto count = [&menu] {
      Q_EMIT menu.aboutToShow();
      return int(menu.actions().size()) - 4;
    };
    QVERIFY(!Put(u"new/new.hgp"_s, QString()).isEmpty());
    QTRY_COMPARE(count(), 7);
    const QAction *kept = menu.actions().last();
    QCOMPARE(count(), 7);
    QCOMPARE(menu.actions().last(), kept);
    QVERIFY(QFile::remove(TGroupFolder::Path() + u"/beta.hgp"_s));
    QTRY_COMPARE(count(), 6);
  }

  void Rename_data() {
    // An empty result: nothing happens.
    Columns<QString, QString, QString, QString>("name", "offered", "answer", "result");
    Row("plain", "Work.hgp", "Work", "Play", "Play.hgp");
    Row("other spelling", "Work.HGP", "Work.HGP", "Work.HGP", "Work.HGP.hgp");
    Row("two extensions", "a.hgp.hgp", "a.hgp", "b", "b.hgp");
    Row("empty answer", "Work.hgp", "Work", "", "");
    Row("taken", "Work.hgp", "Work", "Taken", "");
    Row("no such folder", "Work.hgp", "Work", "none/x", "");
  }

  void Rename() {
    QFETCH(QString, name);
    QFETCH(QString, answer);
    QFETCH(QString, result);
    const QString path = Put(name, u"a=1"_s);
    const QString taken = Put(u"Taken.hgp"_s, u"b=2"_s);
    OnModalDialog<QInputDialog>([=](QInputDialog &dialog) {
      QTEST(dialog.textValue(), "offered");
      dialog.setTextValue(answer);
      dialog.accept();
    });
    const QString now = groups->Folder().Rename(path);
    QCOMPARE(now, result.isEmpty() ? QString() : TGroupFolder::Path() + u'/' + result);
    QCOMPARE(Lines(result.isEmpty() ? path : now), u"a=1"_s);
    QCOMPARE(QFileInfo::exists(path), result.isEmpty());
    QCOMPARE(Lines(taken), u"b=2"_s);
  }

  void FolderCommands() {
    TGroupFolder &folder = groups->Folder();
    const QString file = Put(u"sub/g.hgp"_s, u"a=1"_s);
    const QString sub = QFileInfo(file).path();
    QSignalSpy changed(&folder, &TGroupFolder::Changed);
    const QString made = sub + u"/made"_s;
    const QString second = sub + u"/second"_s;
    QVERIFY(QDir().mkdir(made) && QDir().mkdir(second));
    QVERIFY(folder.RenameFolder(made, QFileInfo(second).fileName()).isEmpty());
    const QString renamed = folder.RenameFolder(made, u"other"_s);
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

  void EditorEdits() {
    const QString path = Put(u"g.hgp"_s, u"a=1\nBlank9=*2\nb=3\nblank4=4"_s);
    const TListEditorDriver editor = Open(path);
    const QString caption = language.Text("HalvexGroups", "HalvexGroup");
    QCOMPARE(m_editor->windowTitle(), caption + u": g.hgp"_s);
    QCOMPARE(editor.Shown(), (QStringList{"a|1|", "|2|X", "b|3|", "|4|"}));
    editor.Click("cmdUpdate");
    QVERIFY(!editor.List().isEnabled());
    QCOMPARE(m_editor->focusWidget()->objectName(), u"edtLocation"_s);
    editor.Enter(u"a"_s, u"  "_s);
    QVERIFY(editor.IsEditing());  // A page needs an address...
    editor.Enter(u" A=A"_s, u" 11 "_s);
    editor.Select(1);
    editor.Click("cmdUpdate");
    editor.Enter(QString(), u"22"_s);  // its lock stays
    editor.Click("cmdInsert");
    editor.Part<QCheckBox>("chkTabLocked").setChecked(true);
    editor.Enter(QString(), u"5"_s);  // ... and no name.
    QCOMPARE(editor.Shown(), (QStringList{" A=A|11|", "|22|X", "b|3|", "|4|", "|5|X"}));
    editor.Select(2);
    editor.Click("cmdDelete");
    // Somebody has removed the file meanwhile: the user's work is written all the same.
    QVERIFY(QFile::remove(path));
    editor.Click("cmdOk");
    QCOMPARE(m_editor->result(), int(QDialog::Accepted));
    // Names are free of "=", and what has none is numbered by its position.
    QCOMPARE(Lines(path), u"AA=11\nblank2=*22\nblank3=4\nblank4=*5"_s);
  }

  void EditorCancels() {
    const QString lines = u"a = 1\n;note\n\nb=2"_s;
    const QString path = Put(u"g.hgp"_s, lines);
    OnModalDialog<TfrmHalvexGroup>([](TfrmHalvexGroup &dialog) {
      const TListEditorDriver editor = DriverOf(dialog);
      editor.Click("cmdDelete");
      editor.Click("cmdCancel");
    });
    groups->Organize(path);
    QCOMPARE(Lines(path), lines);
  }

  void EditorTellsRefusedWrite() {
    const QString path = Put(u"sub/g.hgp"_s, u"a=1"_s);
    const TListEditorDriver editor = Open(path);
    QVERIFY(QDir(QFileInfo(path).path()).removeRecursively());
    editor.Click("cmdOk");
    QVERIFY(m_editor->isVisible());
    const auto &box = *m_editor->findChild<QMessageBox *>();
    QVERIFY2(box.text().contains(u"g.hgp"_s), qPrintable(box.text()));
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    editor.Click("cmdOk");
    QCOMPARE(Lines(path), u"a=1"_s);
  }

  void LoadsAFewAtATime() {
    int most = 0;
    QStringList order;
    connect(tabs.get(), &TTabStrip::TabsChanged, queue.get(), [&] {
      int open = 0;
      for (const TBrowserTab *tab : tabs->Tabs()) {
        if (tab->Busy()) ++open;
        if (tab->Browser()->EnginePageIfAny() != nullptr && !order.contains(tab->StickyName())) {
          order.append(tab->StickyName());
        }
      }
      most = qMax(most, open);
    });
    const QSignalSpy told(queue.get(), &TLoadQueue::ToComeChanged);
    OpenLines(LinesOf(20));
    QCOMPARE(queue->ToCome(), 20);
    tabs->MakeMeActiveTab(7);
    QTRY_VERIFY_WITH_TIMEOUT(AllLoaded(), LoadTime);
    QVERIFY2(most <= TLoadQueue::AtOnce, qPrintable(QString::number(most)));
    QStringList expected{u"n7"_s};
    for (int i = 0; i < 20; ++i) {
      if (i != 7) expected.append(u"n%1"_s.arg(i));
    }
    QCOMPARE(order, expected);
    // Down to nothing, one by one.
    int last = 20;
    for (const QList<QVariant> &news : told.mid(told.indexOf({20}) + 1)) {
      QCOMPARE(news.first().toInt(), last - 1);
      last = news.first().toInt();
    }
    QCOMPARE(last, 0);
  }

  // Servers that never answer keep the rest waiting for a while only.
  void SilentPagesHoldNobody() {
    OpenBehindSilentPages(u"end=%1"_s.arg(Page(1)));
    TBrowserTab *last = tabs->Tab(tabs->TabCount() - 1);
    QCOMPARE(last->Browser()->EnginePageIfAny(), nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(last->GetLocationName(), u"Page 1"_s, LoadTime);
    QTRY_COMPARE_WITH_TIMEOUT(queue->ToCome(), 0, LoadTime);
  }

  // The page that the user turns to comes next, even while others take all places.
  void TurningToATab() {
    OpenBehindSilentPages(LinesOf(5));
    QElapsedTimer timer;
    timer.start();
    tabs->MakeMeActiveTab(TLoadQueue::AtOnce + 3);
    QTRY_COMPARE_WITH_TIMEOUT(tabs->GetActivePage()->GetLocationName(), u"Page 3"_s, LoadTime);
    QVERIFY(timer.elapsed() < TLoadQueue::LongestHold);
    QCOMPARE(server.RequestCount("/page0"), 0);
  }

  void StopsLoading() {
    OpenLines(LinesOf(30));
    QTRY_VERIFY_WITH_TIMEOUT(queue->ToCome() < 29, LoadTime);
    queue->Stop();
    QVERIFY(queue->ToCome() <= TLoadQueue::AtOnce);
    QTRY_COMPARE_WITH_TIMEOUT(queue->ToCome(), 0, LoadTime);
    TBrowserTab *last = tabs->Tab(29);
    QVERIFY(last->Browser()->EnginePageIfAny() == nullptr);
    QCOMPARE(last->AddressToSave(), Page(29));
    tabs->Activate(last);
    QTRY_COMPARE_WITH_TIMEOUT(last->GetLocationName(), u"Page 29"_s, LoadTime);
    // Refreshing all pages leaves those alone that were never opened; a single one it opens.
    tabs->RefreshAll();
    QVERIFY(tabs->Tab(28)->Browser()->EnginePageIfAny() == nullptr);
    tabs->Tab(28)->Refresh();
    QTRY_COMPARE_WITH_TIMEOUT(tabs->Tab(28)->GetLocationName(), u"Page 28"_s, LoadTime);
    // A page that was stopped is locked once it is there.
    TBrowserTab *locked = tabs->Tab(27);
    tabs->Activate(locked);
    tabMenu->Open(locked, {});
    window->findChild<QAction *>(u"pmTabLocked"_s)->trigger();
    QVERIFY(!locked->Locked());
    QTRY_VERIFY_WITH_TIMEOUT(locked->Locked(), LoadTime);
    QTRY_COMPARE_WITH_TIMEOUT(locked->GetLocationName(), u"Page 27"_s, LoadTime);
    QCOMPARE(tabs->TabCount(), 30);
    // What is opened after that loads again.
    TBrowserTab *other = tabs->NewBackgroundTab();
    queue->Navigate(other, Page(50));
    QTRY_COMPARE_WITH_TIMEOUT(other->GetLocationName(), u"Page 50"_s, LoadTime);
  }

  void TabsThatDropOut() {
    OpenLines(LinesOf(20));
    tabs->Tab(19)->Navigate(Page(60));
    tabs->Tab(18)->MakeBlank();
    tabs->Tab(18)->Navigate(Page(61));
    for (int i = 17; i >= 5; --i) tabs->Tab(i)->Close();
    QTRY_COMPARE_WITH_TIMEOUT(queue->ToCome(), 0, LoadTime);
    QTRY_VERIFY_WITH_TIMEOUT(AllLoaded(), LoadTime);
    QCOMPARE(tabs->TabCount(), 7);
    QCOMPARE(tabs->Tab(6)->GetLocationUrl(), Page(60));
    for (const char *path : {"/page19", "/page18", "/page10"}) QCOMPARE(server.RequestCount(path), 0);

    // Everything closed in the middle of it.
    OpenLines(LinesOf(20));
    QTRY_VERIFY_WITH_TIMEOUT(queue->ToCome() < 19, LoadTime);
    closeAll->CloseAll(true);
    QTRY_COMPARE_WITH_TIMEOUT(queue->ToCome(), 0, LoadTime);
    QCOMPARE(tabs->TabCount(), 1);
  }

 private:
  // Opens a group whose first pages take all places and never come.
  void OpenBehindSilentPages(QString lines) {
    for (int i = 0; i < TLoadQueue::AtOnce; ++i) {
      // Different addresses: the engine lets requests for one and the same wait for each other.
      lines.prepend(u"s%1=%2?%1\n"_s.arg(QString::number(i), server.Url(u"/silent"_s)));
    }
    OpenLines(lines);
    QTRY_VERIFY_WITH_TIMEOUT(server.RequestCount("/silent") == TLoadQueue::AtOnce, LoadTime);
  }
  [[nodiscard]] bool AllLoaded() const {
    return queue->ToCome() == 0 && std::ranges::all_of(tabs->Tabs(), [](TBrowserTab *tab) {
             return !tab->Busy() && tab->GetLocationUrl() == tab->Url();
           });
  }
  [[nodiscard]] static TListEditorDriver DriverOf(TfrmHalvexGroup &dialog) {
    return {dialog, "lstSites", {"edtTitle", "edtLocation"}};
  }
  [[nodiscard]] TListEditorDriver Open(const QString &path) {
    m_editor = std::make_unique<TfrmHalvexGroup>(language, path);
    m_editor->show();
    return DriverOf(*m_editor);
  }

  std::unique_ptr<TfrmHalvexGroup> m_editor;
};

ENGINE_MAIN(TestGroups)
#include "test_groups.moc"
