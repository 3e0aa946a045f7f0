#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QSignalSpy>
#include <QTest>

#include "browser/tabs/tab_menu.h"
#include "support/data_row.h"
#include "support/modal_dialogs.h"
#include "ui/confirm_dialog.h"
#include "window/groups_fixture.h"

namespace {

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

// Page groups with the real engine: opening, saving, the menu and the folder.
class TestGroups final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { m_f.Prepare(); }
  void init() { m_f.Begin(); }
  void cleanup() { m_f.End(); }

  void Arguments_data() {
    // In an argument %1 is the folder.
    Columns<QString, bool, bool>("argument", "isGroup", "isHandedOver");
    QTest::newRow("path") << "%1/Work.hgp" << true << true;
    QTest::newRow("not there") << "%1/None.hgp" << true << false;
    QTest::newRow("other spelling") << "%1/UPPER.HGP" << true << false;
    QTest::newRow("file URL") << "file://%1/My%20group.hgp" << true << true;
    QTest::newRow("folder") << "%1/Folder.hgp" << true << false;
    QTest::newRow("web address") << "http://example.test/x.hgp" << false << false;
    QTest::newRow("page") << "%1/Work.html" << false << false;
    QTest::newRow("nothing before it") << ".hgp" << true << false;
    QTest::newRow("longer") << "/a/Work.hgpx" << false << false;
    QTest::newRow("no dot") << "/a/Workhgp" << false << false;
    QTest::newRow("a folder's name") << "/a.hgp/Work" << false << false;
    QTest::newRow("nothing") << "" << false << false;
  }

  void Arguments() {
    QFETCH(QString, argument);
    for (const char *name : {"Work.hgp", "UPPER.HGP", "My group.hgp", "Folder.hgp/x", "Work.html"}) {
      QVERIFY(!m_f.Put(QString::fromLatin1(name), QString()).isEmpty());
    }
    argument.replace(QLatin1String("%1"), TGroupFolder::Path());
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
    m_f.tabs->Tab(0)->SetStickyName(QStringLiteral("A"));
    m_f.tabs->NewTab()->SetStickyName(QStringLiteral("B"));
    m_f.tabs->MakeMeActiveTab(0);
    m_f.settings->Set(Setting::OpenNewInForeground, foreground);
    if (spared >= 0) m_f.tabs->Tab(spared)->SetHideFromCloseAll(true);
    const QString path = m_f.Put(QStringLiteral("g.hgp"), QStringLiteral("first=%1\nblank1=%2\nBLANK2=%3\nlast=*%4")
                                                              .arg(m_f.Page(1), m_f.Page(2), m_f.Page(3), m_f.Page(4)));
    m_f.groups->OpenHalvexGroup(path, closeFirst);
    // Tabs and names are there at once, the pages come.
    QTRY_COMPARE(m_f.Names(), names);
    QTEST(m_f.tabs->GetActivePage()->StickyName(), "active");
    const int begin = m_f.tabs->TabCount() - 4;
    QCOMPARE(m_f.tabs->Tab(begin + 1)->ListCaption(), m_f.Page(2));
    QVERIFY(!m_f.tabs->Tab(begin + 3)->Locked());
    QTRY_VERIFY_WITH_TIMEOUT(m_f.queue->ToCome() == 0, m_f.LoadTime);
    for (int i = 0; i < 4; ++i) {
      QCOMPARE(m_f.tabs->Tab(begin + i)->GetLocationUrl(), m_f.Page(i + 1));
      QCOMPARE(m_f.tabs->Tab(begin + i)->Locked(), i == 3);
    }
  }

  // The tab that is left is blank for a moment; that is not the page to lock, and the lock must not send the page away.
  void LockedPageInTheTabThatIsLeft() {
    m_f.tabs->Tab(0)->Navigate(m_f.Page(9));
    QTRY_COMPARE_WITH_TIMEOUT(m_f.tabs->Tab(0)->GetLocationName(), QStringLiteral("Page 9"), m_f.LoadTime);
    m_f.groups->OpenHalvexGroup(m_f.Put(QStringLiteral("g.hgp"), QStringLiteral("a=*%1").arg(m_f.Page(1))), true, true);
    QVERIFY(m_f.tabs->Tab(0)->Restored());
    QTRY_VERIFY_WITH_TIMEOUT(m_f.tabs->Tab(0)->Locked(), m_f.LoadTime);
    QTRY_COMPARE_WITH_TIMEOUT(m_f.tabs->Tab(0)->GetLocationUrl(), m_f.Page(1), m_f.LoadTime);
    QCOMPARE(m_f.tabs->TabCount(), 1);
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
    const QString path = TGroupFolder::Path() + QStringLiteral("/g.hgp");
    if (bytes == "folder") {
      QVERIFY(QDir().mkpath(path));
    } else if (!bytes.isNull()) {
      QFile file(path);
      QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }
    m_f.tabs->NewTab()->SetStickyName(QStringLiteral("B"));
    m_f.groups->OpenHalvexGroup(path, true);
    QCOMPARE(m_f.Names(), (QStringList{QString(), QStringLiteral("B")}));
    auto *box = m_f.window->findChild<QMessageBox *>();
    QTEST(box != nullptr, "isTold");
    if (box != nullptr) QVERIFY2(box->text().contains(QLatin1String("g.hgp")), qPrintable(box->text()));
  }

  // Whatever a file holds, its tabs open and none does harm.
  void HostileAddresses() {
    m_f.tabs->Tab(0)->Navigate(m_f.Page(1));
    QTRY_COMPARE_WITH_TIMEOUT(m_f.tabs->Tab(0)->GetLocationName(), QStringLiteral("Page 1"), m_f.LoadTime);
    const QString longOne = m_f.Page(2) + QLatin1Char('?') + QString(100'000, QLatin1Char('a'));
    const QStringList lines{QStringLiteral("script=javascript:location='%1'").arg(m_f.Page(7)),
                            QStringLiteral("mail=mailto:nobody@example.test"),
                            QStringLiteral("empty="),
                            QStringLiteral("locked=*"),
                            QStringLiteral("bad=http://[::bad/"),
                            QStringLiteral("blank=about:blank"),
                            QString(QLatin1String("zero=") + m_f.Page(3)).insert(7, QChar(u'\0')),
                            QStringLiteral("%1=%2").arg(QString(100'000, QLatin1Char('n')), m_f.Page(4)),
                            QStringLiteral("long=%1").arg(longOne),
                            QStringLiteral("end=%1").arg(m_f.Page(5))};
    m_f.groups->OpenHalvexGroup(m_f.Put(QStringLiteral("g.hgp"), lines.join(QLatin1Char('\n'))), true);
    QCOMPARE(m_f.tabs->TabCount(), lines.size());
    QTRY_COMPARE_WITH_TIMEOUT(m_f.tabs->Tab(9)->GetLocationName(), QStringLiteral("Page 5"), m_f.LoadTime);
    QTRY_COMPARE_WITH_TIMEOUT(m_f.queue->ToCome(), 0, m_f.LoadTime);
    QCOMPARE(m_f.tabs->Tab(8)->AddressToSave(), longOne);
    QCOMPARE(m_f.tabs->Tab(7)->StickyName().size(), 100'000);
    QCOMPARE(m_f.server.RequestCount("/page7"), 0);
    QVERIFY(!m_f.tabs->Tab(3)->Locked());
  }

  void SavesAll() {
    const QStringList paths{"/page1?a=b=c", "/page2", "/page3", "/page4"};
    for (int i = 0; i < paths.size(); ++i) {
      TBrowserTab *tab = i == 0 ? m_f.tabs->Tab(0) : m_f.tabs->NewTab();
      tab->Navigate(m_f.server.Url(paths.at(i)));
      QTRY_COMPARE_WITH_TIMEOUT(tab->GetLocationUrl(), m_f.server.Url(paths.at(i)), m_f.LoadTime);
      QTRY_VERIFY_WITH_TIMEOUT(!tab->Busy(), m_f.LoadTime);
    }
    m_f.tabs->Tab(0)->SetStickyName(QStringLiteral("x=y"));
    m_f.tabs->Tab(1)->SetLocked(true);
    m_f.tabs->Tab(3)->SetStickyName(QStringLiteral("xy"));
    m_f.tabs->NewHiddenTab();  // a window that a page asked for; it has not been let in
    const QString path = TGroupFolder::Path() + QStringLiteral("/My.News");
    ChooseFile(path);
    m_f.window->findChild<QAction *>(QStringLiteral("actSaveAsHalvexGroup"))->trigger();
    // Of two pages of one name the later address takes the earlier place.
    QCOMPARE(m_f.Lines(path + QStringLiteral(".hgp")),
             QStringLiteral("xy=%1\nblank2=*%2\nblank3=%3").arg(m_f.Page(4), m_f.Page(2), m_f.Page(3)));
  }

  // A group that is saved before its pages have come keeps their addresses and locks.
  void SavesWhatIsOnItsWay() {
    const QString lines = QStringLiteral("a=%1\nb=*%2\nblank3=%3").arg(m_f.Page(1), m_f.Page(2), m_f.Page(3));
    m_f.groups->OpenHalvexGroup(m_f.Put(QStringLiteral("g.hgp"), lines), true);
    const QString path = TGroupFolder::Path() + QStringLiteral("/copy.hgp");
    m_f.queue->Stop();
    ChooseFile(path);
    m_f.groups->actSaveAsHalvexGroupExecute();
    QCOMPARE(m_f.Lines(path), lines);
  }

  void AsksBeforeReplacing() {
    const QString path = m_f.Put(QStringLiteral("g.hgp"), QStringLiteral("old=1"));
    m_f.tabs->Tab(0)->SetStickyName(QStringLiteral("new"));
    for (const bool yes : {false, true}) {
      // The name is given without its extension; the question is about the file that is really there.
      OnModalDialog<QFileDialog>([path, yes](QFileDialog &dialog) {
        Answer(yes);
        dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(QString(path).chopped(4));
        static_cast<QDialog &>(dialog).accept();
      });
      m_f.groups->actSaveAsHalvexGroupExecute();
      QCOMPARE(m_f.Lines(path), yes ? QStringLiteral("new=") : QStringLiteral("old=1"));
    }
  }

  void RefusedSave() {
    const QString path = TGroupFolder::Path() + QStringLiteral("/no-such-folder/g.hgp");
    OnModalDialog<QFileDialog>([path](QFileDialog &dialog) {
      // The folder goes while the dialog is open.
      QDir().mkpath(QFileInfo(path).path());
      dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(path);
      static_cast<QDialog &>(dialog).accept();
      QDir().rmdir(QFileInfo(path).path());
    });
    m_f.groups->actSaveAsHalvexGroupExecute();
    const auto *box = m_f.window->findChild<QMessageBox *>();
    QVERIFY(box != nullptr);
    QVERIFY2(box->text().contains(QLatin1String("g.hgp")) && !box->text().contains(QLatin1String("%2")),
             qPrintable(box->text()));
    QCOMPARE(m_f.tabs->TabCount(), 1);
  }

  // A file that cannot be read must not be replaced by one with nothing but the new page.
  void AddsToUnreadableGroup() {
    const QString path = m_f.Put(QStringLiteral("g.hgp"), QStringLiteral("a=1"));
    QVERIFY(QFile::resize(path, (qint64(256) << 20) + 1));
    ChooseFile(path);
    m_f.groups->AddTabToHalvexGroup(m_f.tabs->Tab(0));
    QVERIFY(m_f.window->findChild<QMessageBox *>() != nullptr);
    QCOMPARE(QFileInfo(path).size(), (qint64(256) << 20) + 1);
  }

  void MenuShowsTheFolder() {
    for (const char *name : {"beta.hgp", "Alpha.hgp", "R&D.hgp", "UPPER.HGP", "note.txt", ".hidden.hgp",
                             "Zoo/inner.hgp", "archive/deep/x.hgp", ".git/x.hgp"}) {
      QVERIFY(!m_f.Put(QString::fromLatin1(name), QString()).isEmpty());
    }
    QMenu &menu = *m_f.actions->Menu(TMenu::Groups);
    Q_EMIT menu.aboutToShow();
    QStringList captions;
    for (const QAction *item : menu.actions().sliced(4)) captions.append(item->text());
    QCOMPARE(captions, (QStringList{"archive", "Zoo", ".hidden", "Alpha", "beta", "R&&D"}));
    QCOMPARE(menu.actions().at(7)->data().toString(), TGroupFolder::Path() + QStringLiteral("/Alpha.hgp"));
    QMenu *archive = menu.actions().at(4)->menu();
    QVERIFY(archive != nullptr && archive->isEmpty());
    Q_EMIT archive->aboutToShow();
    QCOMPARE(archive->actions().first()->text(), QStringLiteral("deep"));
    QVERIFY(QFile::remove(TGroupFolder::Path() + QStringLiteral("/Zoo/inner.hgp")));
    QMenu *zoo = menu.actions().at(5)->menu();
    Q_EMIT zoo->aboutToShow();
    QCOMPARE(zoo->actions().first()->text(), m_f.language.Global("EmptyFolder"));
  }

  void MenuFollowsTheFolder() {
    QMenu &menu = *m_f.actions->Menu(TMenu::Groups);
    const auto count = [&menu] {
      Q_EMIT menu.aboutToShow();
      return int(menu.actions().size()) - 4;
    };
    QCOMPARE(count(), 0);
    QVERIFY(!m_f.Put(QStringLiteral("new.hgp"), QString()).isEmpty());
    QTRY_COMPARE(count(), 1);
    QVERIFY(!m_f.Put(QStringLiteral("folder/new.hgp"), QString()).isEmpty());
    QTRY_COMPARE(count(), 2);
    const QAction *kept = menu.actions().last();
    QCOMPARE(count(), 2);
    QCOMPARE(menu.actions().last(), kept);  // not filled anew for nothing
    QVERIFY(QFile::remove(TGroupFolder::Path() + QStringLiteral("/new.hgp")));
    QTRY_COMPARE(count(), 1);
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
    const QString path = m_f.Put(name, QStringLiteral("a=1"));
    const QString taken = m_f.Put(QStringLiteral("Taken.hgp"), QStringLiteral("b=2"));
    OnModalDialog<QInputDialog>([=](QInputDialog &dialog) {
      QTEST(dialog.textValue(), "offered");
      dialog.setTextValue(answer);
      dialog.accept();
    });
    const QString now = m_f.groups->Folder().Rename(path);
    QCOMPARE(now, result.isEmpty() ? QString() : TGroupFolder::Path() + QLatin1Char('/') + result);
    QCOMPARE(m_f.Lines(result.isEmpty() ? path : now), QStringLiteral("a=1"));
    QCOMPARE(QFileInfo::exists(path), result.isEmpty());
    QCOMPARE(m_f.Lines(taken), QStringLiteral("b=2"));
  }

  void FolderCommands() {
    TGroupFolder &folder = m_f.groups->Folder();
    const QString file = m_f.Put(QStringLiteral("sub/g.hgp"), QStringLiteral("a=1"));
    const QString sub = QFileInfo(file).path();
    QSignalSpy changed(&folder, &TGroupFolder::Changed);
    const QString made = folder.NewFolder(sub);
    const QString second = folder.NewFolder(sub);
    QVERIFY(QFileInfo(made).isDir() && QFileInfo(second).isDir() && made != second);
    QVERIFY(folder.NewFolder(sub + QStringLiteral("/none")).isEmpty());
    QVERIFY(m_f.window->findChild<QMessageBox *>() != nullptr);
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

 private:
  TGroupsFixture m_f;
};

int main(int argc, char **argv) {
  return RunWithEngine<TestGroups>(argc, argv);
}

#include "test_groups.moc"
