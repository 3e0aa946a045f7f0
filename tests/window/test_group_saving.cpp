#include <QDrag>
#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>

#include "browser/strip/tab_bar_view.h"
#include "chrome/folder_view/folder_view.h"
#include "chrome/save_group_dialog.h"
#include "chrome/status_offer.h"
#include "chrome/tab_drag_out.h"
#include "groups/group_drag.h"
#include "ui/confirm_dialog.h"
#include "window/groups_fixture.h"

namespace {

void ChooseFile(const QString &path, const std::function<void()> &after = nullptr) {
  OnModalDialog<QFileDialog>([path, after](QFileDialog &dialog) {
    dialog.findChild<QLineEdit *>(u"fileNameEdit"_s)->setText(path);
    static_cast<QDialog &>(dialog).accept();
    if (after) after();
  });
}

// Saves under that name in that sub-folder of the groups.
void SaveAs(const QString &name, const QString &folder = {}, const std::function<void()> &after = nullptr) {
  OnModalDialog<TfrmSaveGroup>([name, folder, after](TfrmSaveGroup &dialog) {
    auto *ok = dialog.findChild<QPushButton *>(u"cmdOK"_s);
    QVERIFY(!ok->isEnabled());
    dialog.findChild<QLineEdit *>(u"edtName"_s)->setText(name);
    if (!folder.isEmpty()) dialog.findChild<TFolderView *>()->Reveal(TGroupFolder::Path() + u'/' + folder);
    ok->click();
    if (after) after();
  });
}

void Answer(bool yes) {
  OnModalDialog<TfrmConfirm>([yes](TfrmConfirm &dialog) { yes ? dialog.accept() : dialog.reject(); });
}

}  // namespace

// What is written of page groups, with the dialog for it, what takes it back, and the menu of an item of the groups
// menu.
class TestGroupSaving final : public QObject, private TGroupsFixture {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { Prepare(); }
  void init() {
    Begin();
    groups->SetNewFileQuestion([this](QWidget *over, const TPageGroups::TBrowse &browse) {
      return TfrmSaveGroup::Ask(over, language, browse);
    });
    connect(groups.get(), &TPageGroups::Done, groups.get(),
            [this](const QString &text, const std::function<void()> &undo) {
              m_told = text;
              m_undo = undo;
            });
    m_told.clear();
  }
  void cleanup() { End(); }

  void SavesAll() {
    const QStringList paths{"/page1?a=b=c", "/page2", "/page3", "/page4"};
    for (int i = 0; i < paths.size(); ++i) {
      TBrowserTab *tab = i == 0 ? tabs->Tab(0) : tabs->NewTab();
      Load(tab, paths.at(i));
    }
    tabs->Tab(0)->SetStickyName(u"x=y"_s);
    tabs->Tab(1)->SetLocked(true);
    tabs->Tab(3)->SetStickyName(u"xy"_s);
    tabs->NewHiddenTab();  // a window that a page asked for; it has not been let in
    const QString path = TGroupFolder::Path() + u"/My.News.hgp"_s;
    SaveAs(u" My.News"_s);
    window->findChild<QAction *>(u"actSaveAsHalvexGroup"_s)->trigger();
    // Of two pages of one name the later address takes the earlier place.
    QCOMPARE(Lines(path), u"xy=%1\nblank2=*%2\nblank3=%3"_s.arg(Page(4), Page(2), Page(3)));
    QCOMPARE(m_told, language.Text("HalvexGroups", "SavedNote").arg(u"My.News"_s));
    // One more page, which is taken back without what somebody else has brought in since; and then all of it.
    const auto undoSave = m_undo;
    ChooseFile(path);
    tabs->Tab(2)->SetStickyName(u"more"_s);
    groups->AddTabToHalvexGroup(tabs->Tab(2));
    QCOMPARE(m_told, language.Text("HalvexGroups", "AddedNote").arg(u"My.News"_s));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Append) && file.write("late=1\n") > 0);
    file.close();
    QVERIFY(Lines(path).endsWith(u"\nmore=%1\nlate=1"_s.arg(Page(3))));
    m_undo();
    QVERIFY2(Lines(path).endsWith(u"\nblank3=%1\nlate=1"_s.arg(Page(3))), qPrintable(Lines(path)));
    undoSave();
    QVERIFY(!QFile::exists(path));
  }

  // The dialog for a new group: its folders, with new ones, and any other file by its button.
  void SaveDialog() {
    QVERIFY(QDir(TGroupFolder::Path()).mkpath(u"sub"_s));
    SaveAs(u"a/b?"_s, u"sub"_s);
    groups->actSaveAsHalvexGroupExecute();
    QCOMPARE(QDir(TGroupFolder::Path() + u"/sub"_s).entryList(QDir::Files).size(), 1);
    OnModalDialog<TfrmSaveGroup>([this](TfrmSaveGroup &dialog) {
      OnModalDialog<QInputDialog>([](QInputDialog &box) {
        box.setTextValue(u"made"_s);
        box.accept();
      });
      dialog.findChild<QPushButton *>(u"cmdNewFolder"_s)->click();
      dialog.findChild<QLineEdit *>(u"edtName"_s)->setText(u"in"_s);
      QTRY_COMPARE(dialog.findChild<TFolderView *>()->Folder(), TGroupFolder::Path() + u"/made"_s);
      // Given up, the file dialog leads back here.
      OnModalDialog<QFileDialog>([](QFileDialog &files) { files.reject(); });
      dialog.findChild<QPushButton *>(u"cmdBrowse"_s)->click();
      QVERIFY(dialog.isVisible());
      dialog.findChild<QPushButton *>(u"cmdOK"_s)->click();
    });
    groups->actSaveAsHalvexGroupExecute();
    QVERIFY(QFile::exists(TGroupFolder::Path() + u"/made/in.hgp"_s));
    const QString elsewhere = Path(u"elsewhere"_s);
    OnModalDialog<TfrmSaveGroup>([elsewhere](TfrmSaveGroup &dialog) {
      ChooseFile(elsewhere);
      dialog.findChild<QPushButton *>(u"cmdBrowse"_s)->click();
    });
    groups->actSaveAsHalvexGroupExecute();
    QVERIFY(QFile::exists(elsewhere + u".hgp"_s));
    m_told.clear();
    OnModalDialog<TfrmSaveGroup>([](TfrmSaveGroup &dialog) { dialog.reject(); });
    groups->actSaveAsHalvexGroupExecute();
    QVERIFY(m_told.isEmpty());
  }

  // What the status bar offers is done once, goes by itself, and gives the keyboard back.
  void Offer() {
    QWidget bar;
    auto *field = new QLineEdit(&bar);
    auto *offer = new TStatusOffer(&bar);
    new QLineEdit(&bar);    // where the toolkit would go next
    offer->move(200, 200);  // away from the mouse
    bar.resize(400, 400);
    auto *button = offer->findChild<QToolButton *>(u"tbOffer"_s);
    bar.show();
    bar.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&bar));
    field->setFocus();
    int done = 0;
    offer->Show(u"One"_s, u"Undo"_s, [&done] { ++done; });
    offer->Show(u"Two"_s, u"Undo"_s, [&done] { done += 10; });
    button->setFocus();
    QTimer &time = *offer->findChild<QTimer *>();
    QCOMPARE(time.interval(), TStatusOffer::ShownFor);
    time.setInterval(1);
    time.start();
    QTest::keyClick(button, Qt::Key_Tab);
    QTRY_VERIFY(!offer->isVisible());
    field->setFocus();
    offer->Show(u"Two"_s, u"Undo"_s, [&done] { done += 10; });
    button->setFocus();
    const QSignalSpy expired(&time, &QTimer::timeout);
    time.start(1);
    QTRY_VERIFY(expired.size() > 1);
    QVERIFY(offer->isVisible());  // the keyboard is on it
    QTest::keyClick(button, Qt::Key_Space);
    QVERIFY(!offer->isVisible() && field->hasFocus());
    QCOMPARE(done, 10);
  }

  // A group that is saved before its pages have come keeps their addresses and locks.
  void SavesWhatIsOnItsWay() {
    const QString lines = u"a=%1\nb=*%2\nblank3=%3"_s.arg(Page(1), Page(2), Page(3));
    OpenLines(lines);
    const QString path = TGroupFolder::Path() + u"/copy.hgp"_s;
    queue->Stop();
    SaveAs(u"copy"_s);
    groups->actSaveAsHalvexGroupExecute();
    QCOMPARE(Lines(path), lines);
  }

  void AsksBeforeReplacing() {
    const QString path = Put(u"g.hgp"_s, u"old=1"_s);
    tabs->Tab(0)->SetStickyName(u"new"_s);
    for (const bool yes : {false, true}) {
      // The name is given without its extension; the question is about the file that is really there.
      Answer(yes);
      SaveAs(u"g"_s);
      groups->actSaveAsHalvexGroupExecute();
      QCOMPARE(Lines(path), yes ? u"new="_s : u"old=1"_s);
    }
    m_undo();
    QCOMPARE(Lines(path), u"old=1"_s);
  }

  void RefusedSave() {
    const QString path = TGroupFolder::Path() + u"/no-such-folder/g.hgp"_s;
    QDir().mkpath(QFileInfo(path).path());
    SaveAs(u"g"_s, u"no-such-folder"_s, [path] { QDir().rmdir(QFileInfo(path).path()); });
    groups->actSaveAsHalvexGroupExecute();
    const auto *box = window->findChild<QMessageBox *>();
    QVERIFY(box != nullptr);
    QVERIFY2(box->text().contains(u"g.hgp"_s) && !box->text().contains(u"%2"_s), qPrintable(box->text()));
    QCOMPARE(tabs->TabCount(), 1);
  }

  // A file that cannot be read must not be replaced by one with nothing but the new page.
  void AddsToUnreadableGroup() {
    const QString path = Put(u"g.hgp"_s, u"a=1"_s);
    QVERIFY(QFile::resize(path, (qint64(256) << 20) + 1));
    ChooseFile(path);
    groups->AddTabToHalvexGroup(tabs->Tab(0));
    QVERIFY(window->findChild<QMessageBox *>() != nullptr);
    QCOMPARE(QFileInfo(path).size(), (qint64(256) << 20) + 1);
  }

  // A tab that is dragged out is what a group keeps of it, and a link everywhere else.
  void DragsTabs() {
    new TTabDragOut(*tabs);
    auto *strip = pages->findChild<TTabBarView *>();
    Q_EMIT pages->DragOutWanted(tabs->Tab(0));
    QVERIFY(strip->findChild<QDrag *>() == nullptr);  // a blank one has no address
    Load(tabs->Tab(0), u"/page1"_s);
    tabs->Tab(0)->SetStickyName(u"m=e"_s);
    tabs->Tab(0)->SetLocked(true);
    Q_EMIT pages->DragOutWanted(tabs->Tab(0));
    const auto *drag = strip->findChild<QDrag *>();
    QVERIFY(drag != nullptr && !drag->supportedActions().testFlag(Qt::MoveAction));
    QCOMPARE(drag->mimeData()->urls(), QList<QUrl>{Page(1)});
    const QList<GroupDrag::TPage> dragged = GroupDrag::PagesIn(*drag->mimeData());
    QCOMPARE(dragged.size(), 1);
    QVERIFY(dragged.first().file.isEmpty());
    QCOMPARE(dragged.first().line.line, u"me=*%1"_s.arg(Page(1)));
  }

  void ItemMenu_data() {
    Columns<QString, bool, QString, QString>("item", "byKey", "command", "left");
    Row("rename a group", u"b"_s, true, u"Rename"_s, u"sub a.hgp c.hgp"_s);
    Row("rename a folder", u"sub"_s, false, u"Rename"_s, u"c a.hgp b.hgp"_s);
    Row("delete a group", u"a"_s, false, u"Delete"_s, u"sub b.hgp"_s);
    Row("delete a folder", u"sub"_s, true, u"Delete"_s, u"a.hgp b.hgp"_s);
  }
  // A group or folder in the groups menu has a menu of its own.
  void ItemMenu() {
    QFETCH(QString, item);
    QFETCH(bool, byKey);
    QFETCH(QString, command);
    for (const char *name : {"a.hgp", "b.hgp", "sub/x.hgp"}) QVERIFY(!Put(QLatin1String(name), u"p=1"_s).isEmpty());
    const auto onDisk = [] {
      return QDir(TGroupFolder::Path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::DirsFirst).join(u' ');
    };
    const QString before = onDisk();
    QMenu *menu = actions->Menu(TMenu::Groups);
    menu->popup(window->mapToGlobal(QPoint()));
    QAction *action = nullptr;
    for (QAction *one : menu->actions()) {
      if (one->text() == item) action = one;
    }
    QVERIFY(action != nullptr);
    if (byKey) {
      menu->setActiveAction(action);
      QTest::keyClick(menu, Qt::Key_F10, Qt::ShiftModifier);
    } else {
      QTest::mouseClick(menu, Qt::RightButton, {}, menu->actionGeometry(action).center());
    }
    auto *own = window->findChild<QMenu *>(u"pmGroupItem"_s);
    QVERIFY(own != nullptr && own->isVisible());
    QStringList texts;
    for (const QAction *one : own->actions()) texts.append(one->text());
    QCOMPARE(texts.size(), item == u"sub"_s ? 2 : 4);
    if (command == u"Rename"_s) {
      OnModalDialog<QInputDialog>([item](QInputDialog &dialog) {
        QCOMPARE(dialog.textValue(), item);
        dialog.setTextValue(u"c"_s);
        dialog.accept();
      });
    } else {
      Answer(true);
    }
    own->actions().at(texts.indexOf(language.Text("FOLDER_VIEW", command.toLatin1())))->trigger();
    QFETCH(QString, left);
    QTRY_COMPARE(onDisk(), left);
    QVERIFY(!menu->isVisible());
    if (command == u"Delete"_s) {
      QTRY_VERIFY(!m_told.isEmpty());
      m_undo();
      QCOMPARE(onDisk(), before);
    }
  }

 private:
  QString m_told;
  std::function<void()> m_undo;
};

ENGINE_MAIN(TestGroupSaving)
#include "test_group_saving.moc"
