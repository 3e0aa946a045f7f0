#include <QProgressBar>

#include "browser/page/page_menu.h"
#include "groups/group_folder.h"
#include "support/data_row.h"
#include "window/command_rows.h"
#include "window/page_click.h"

// Every command of the program in a real window with real pages: what each must cause, by each of its keys and from
// each of its menus. All share one window, which is put back in order between them: one tab, on /a.
class TestCommands final : public QObject, private TCommandRows {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { Prepare(); }
  void init() {
    m_asked = false;
    QFile::remove(MailFile());
    QDir(favorites).removeRecursively();
    PutInOrder();
  }
  void cleanupTestCase() {
    m_f.End();
    QDir(TGroupFolder::Path()).removeRecursively();
  }

  void EveryCommandHasItsRow() {
    const QList<TRow> rows = Rows();
    for (const TCommandRow &command : CommandRows()) {
      const bool isThere = std::ranges::any_of(rows, [&](const TRow &row) { return row.command == command.command; });
      QVERIFY2(isThere, command.name);
    }
  }

  void HintsAreShown() {
    QCOMPARE(Action(TCommand::Find)->toolTip(), u"Find (Ctrl+F)"_s);
    QCOMPARE(Action(TCommand::Find)->statusTip(), u"Find text on this page"_s);
    QCOMPARE(Action(TCommand::ClearAddresses)->toolTip(), u"Clear typed addresses"_s);  // has no key
  }

  void Effects_data() {
    Columns<int, QString, TMenu>("row", "key", "menu");
    const QList<TRow> rows = Rows();
    for (int i = 0; i < rows.size(); ++i) {
      const TCommandRow &command = CommandRows()[static_cast<size_t>(rows.at(i).command)];
      const QByteArray name = QByteArray::number(i) + ' ' + command.name;
      bool isReached = false;
      for (const QString &key : QString::fromLatin1(command.keys).split(u"; "_s, Qt::SkipEmptyParts)) {
        QTest::newRow(qPrintable(QString::fromLatin1(name + " by ") + key)) << i << key << TMenu::Count;
        isReached = true;
      }
      for (const TMenuRow &menu : MenuRows()) {
        // The pop-up menu of a tab also stands in the menu bar.
        const QList<QAction *> items = Window().Actions().Menu(menu.menu)->actions();
        if (menu.menu == TMenu::Tab || command.traits.menu != TMenu::Count || !items.contains(Action(command.command)))
          continue;
        QTest::newRow((name + " from " + menu.name).constData()) << i << QString() << menu.menu;
        isReached = true;
      }
      if (!isReached) QTest::newRow((name + " by its button").constData()) << i << QString() << TMenu::Count;
    }
  }
  void Effects() {
    QFETCH(int, row);
    QFETCH(QString, key);
    QFETCH(TMenu, menu);
    const TRow chosen = Rows().at(row);
    chosen.prepare();
    if (QTest::currentTestFailed()) return;
    if (!key.isEmpty()) {
      Press(key);
    } else if (menu != TMenu::Count) {
      Choose(menu, chosen.command);
    } else {
      ClickButton(chosen.command);
    }
    if (!QTest::currentTestFailed()) chosen.effect();
  }

  void CtrlPassesTheCacheBy() {
    for (const auto &[command, menu, ctrl] : {std::tuple(TCommand::Refresh, TMenu::View, true),
                                              {TCommand::TabRefresh, TMenu::ThisTab, true},
                                              {TCommand::RefreshAll, TMenu::View, true},
                                              {TCommand::RefreshAll, TMenu::View, false}}) {
      m_f.server.ForgetRequests();
      if (ctrl) QTest::keyPress(&Window(), Qt::Key_Control, Qt::ControlModifier);
      if (!ctrl) QTest::keyRelease(&Window(), Qt::Key_Control);
      Choose(menu, command);
      SOON(m_f.server.RequestCount("/a"), 1);
      QCOMPARE(CacheHeader("/a"), ctrl ? "no-cache"_ba : "max-age=0"_ba);
      QTRY_VERIFY_WITH_TIMEOUT(!Active()->Busy(), m_f.LoadTime);
    }
  }

  void WhatTheStatusBarShows() {
    TTestServer secure;
    QVERIFY(secure.ListenWithTls());
    secure.RoutePage("/s", "Secret");
    auto *lock = Window().findChild<QToolButton *>(u"tbEncryption"_s);
    auto *progress = Window().findChild<QProgressBar *>();
    auto *mark = Window().findChild<QAction *>(u"actConnection"_s);
    QTRY_VERIFY(!lock->isVisible() && !progress->isVisible() && !Active()->Secure());
    m_f.server.Route("/slow", TTestResponse{.body = QByteArray(4000, 'x'), .stopAfterBytes = 2000});
    Active()->Navigate(Url(u"/slow"_s));
    QTRY_VERIFY_WITH_TIMEOUT(progress->isVisible() && progress->value() > 0, m_f.LoadTime);
    Active()->Stop();
    QTRY_VERIFY_WITH_TIMEOUT(!progress->isVisible(), m_f.LoadTime);

    Active()->Navigate(secure.Url(u"/s"_s));
    const auto button = [this] { return Active()->findChild<QPushButton *>(u"cmdNoticeSecondary"_s); };
    QTRY_VERIFY_WITH_TIMEOUT(button() != nullptr && button()->isEnabled(), m_f.LoadTime);
    button()->click();
    SOON(Active()->GetLocationName(), u"Secret"_s);
    QTRY_VERIFY_WITH_TIMEOUT(Active()->Secure() && lock->isVisible(), m_f.LoadTime);
    QCOMPARE(lock->text(), Window().Language().Text("MAIN", "EncryptionUnknown"));
    lock->click();
    Opens("TPropertiesDialog")();
    Dialog("TPropertiesDialog")->close();
    QVERIFY(mark->isVisible());
    QCOMPARE(mark->toolTip(), lock->text());
    mark->trigger();
    Opens("TPropertiesDialog")();
    Dialog("TPropertiesDialog")->close();
    // A notice in its place is nobody's page, and the page behind it is what it was.
    Active()->Navigate(u"no address"_s);
    QTRY_VERIFY(!lock->isVisible() && !Active()->Secure() && !mark->isVisible());
    Active()->GoBack();
    QTRY_VERIFY(lock->isVisible() && Active()->Secure());
    Load(u"/a"_s);
    QTRY_VERIFY(!lock->isVisible() && !Active()->Secure());
    QTRY_COMPARE(mark->toolTip(), Window().Language().Text("MAIN", "ConnectionPlain"));
    QVERIFY(mark->isVisible());
  }

  void PageMenu_data() {
    Columns<QString, QString>("item", "dialog");
    Row("save", "SaveAs", "dlgSaveAs");
    Row("print", "Print", "QPrintDialog");
    Row("properties", "Properties", "TPropertiesDialog");
    Row("source", "ViewSource", "");
    Row("find", "Find", "");
  }
  void PageMenu() {
    QFETCH(QString, item);
    QFETCH(QString, dialog);
    const auto menu = [] { return qobject_cast<TPageMenu *>(QApplication::activePopupWidget()); };
    // A click that comes before the page has been drawn is lost.
    for (int attempt = 0; attempt < 4 && menu() == nullptr; ++attempt) {
      ClickPage(*Active()->Browser(), QPoint(200, 150), Qt::RightButton);
      std::ignore = QTest::qWaitFor([&] { return menu() != nullptr; }, m_f.LoadTime / 4);
    }
    QVERIFY(menu() != nullptr);
    menu()->findChild<QAction *>(item)->trigger();
    if (menu() != nullptr) menu()->close();
    if (!dialog.isEmpty()) Opens(qPrintable(dialog))();
    if (item == u"ViewSource"_s) SOON(State(), u"2:1 view-source:/a"_s);
    if (item == u"Find"_s) QVERIFY(Active()->findChild<TFindBar *>()->isVisible());
  }

  // With Alt+letter off the titles have no letters; on and off at any time.
  void LettersOfTheMenus() {
    const QList<QAction *> menus = Window().menuBar()->actions();
    for (const bool off : {false, true, false, true, false}) {
      Settings().Set(Setting::DisableALTShortcuts, off);
      for (const QAction *menu : menus) QCOMPARE(QKeySequence::mnemonic(menu->text()).isEmpty(), off);
      QCOMPARE(menus.first()->text(), off ? u"File"_s : u"&File"_s);
    }
  }
};

int main(int argc, char **argv) {
  return RunWithEngine<TestCommands>(argc, argv);
}
#include "test_commands.moc"
