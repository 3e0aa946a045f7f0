#include <QAction>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QWebEngineHistory>

#include "browser/tabs/close_all_dialog.h"
#include "browser/tabs/closed_tabs.h"
#include "browser/tabs/tab_record.h"
#include "support/data_row.h"
#include "support/modal_dialogs.h"
#include "ui/confirm_dialog.h"
#include "window/main_window_fixture.h"
#include "window/page_click.h"

using namespace Qt::StringLiterals;

// Tabs that come back as they were: after a start, and when one that was closed is wanted again.
class TestKeptTabs final : public QObject, private TMainWindowFixture {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    Prepare();
    for (const char *path : {"/a", "/b", "/c", "/d"}) server.RoutePage(path, path, "<body style='height:5000px'>");
    server.Route("/silent", TTestResponse{.neverAnswer = true});
  }
  void init() {
    Begin();
    TZVOptions(*store).Set(Setting::StartupMode, u"Last"_s);
    Open();
  }
  void cleanup() { End(); }

  void AsTheyWere() {
    // In the middle of a history, scrolled, named, locked, spared; another one in front.
    TBrowserTab *tab = Active();
    for (const char *path : {"/a", "/b", "/c"}) Load(tab, path);
    tab->GoBack();
    QTRY_COMPARE(Titles(), QStringList{"/b"});
    Scroll(tab, 1234);
    tab->SetStickyName(u"Mine"_s);
    tab->SetLocked(true);
    tab->SetHideFromCloseAll(true);
    Load(Tabs().NewTab(), "/d");
    Load(Tabs().NewTab(), "/a");
    Tabs().MakeMeActiveTab(1);
    // Twice, and the first of them is only looked at the second time.
    for (int again = 0; again < 2; ++again) {
      Open();
      QCOMPARE(Active(), Tabs().Tab(1));
      QTRY_VERIFY_WITH_TIMEOUT(Active()->Load() == TLoad::Shown, LoadTime);
      QTRY_COMPARE(Titles(), (QStringList{"Mine", "/d", "/a"}));
      for (const int waiting : {0, 2}) QVERIFY(Tabs().Tab(waiting)->Browser()->EnginePageIfAny() == nullptr);
      QCOMPARE(Tabs().Tab(0)->State(), TTabState::Locked);
    }
    tab = Tabs().Tab(0);
    Tabs().Activate(tab);
    ExpectTab(tab);
    // The page it goes on to is a page of its own history.
    tab->SetLocked(false);
    tab->GoForward();
    QTRY_COMPARE_WITH_TIMEOUT(tab->GetLocationName(), u"/c"_s, LoadTime);
    QCOMPARE(tab->Browser()->EnginePage()->history()->count(), 3);
  }

  void NoticeInThePlaceOfAPage() {
    Load(Active(), "/a");
    Active()->Navigate(u"no address"_s);
    Load(Tabs().NewTab(), "/b");
    Open();
    TBrowserTab *tab = Tabs().Tab(0);
    QVERIFY(tab->Announced());
    Tabs().Activate(tab);
    QTRY_COMPARE(tab->Load(), TLoad::Failed);
    // And stays: nothing else is on its way.
    QTRY_VERIFY(!tab->Browser()->EnginePage()->isLoading());
    QCOMPARE(tab->GetLocationUrl(), u"no address"_s);
  }

  // What was closed last comes back first, to its place.
  void Reopens_data() {
    Columns<TCommand, int>("close", "left");
    Row("one", TCommand::CloseTab, 2);
    Row("all", TCommand::CloseAll, 1);
    Row("the others", TCommand::CloseAllKeepCurrent, 1);
  }
  void Reopens() {
    QFETCH(TCommand, close);
    QFETCH(int, left);
    TZVOptions(*store).Set(Setting::ConfirmCloseAll, false);
    QVERIFY(!Action(TCommand::ReopenTab)->isEnabled());
    TBrowserTab *tab = Active();
    Load(tab, "/a");
    Load(Tabs().NewTab(), "/c");
    tab = Tabs().NewTab();
    Tabs().Pages().MovePage(2, 1);
    for (const char *path : {"/a", "/b", "/c"}) Load(tab, path);
    tab->GoBack();
    QTRY_COMPARE(Titles(), (QStringList{"/a", "/b", "/c"}));
    Scroll(tab, 1234);
    tab->SetStickyName(u"Mine"_s);
    tab->SetLocked(true);
    Action(close)->trigger();
    QCOMPARE(Tabs().TabCount(), left);
    server.ForgetRequests();
    Action(TCommand::ReopenTab)->trigger();
    QVERIFY(!Action(TCommand::ReopenTab)->isEnabled());
    QTRY_COMPARE(Titles(), (QStringList{"/a", "Mine", "/c"}));
    if (close == TCommand::CloseAllKeepCurrent) return;
    QCOMPARE(Active(), Tabs().Tab(1));
    ExpectTab(Active(), false);
    QCOMPARE(server.RequestCount("/a"), 0);
  }

  void ReopensChosenOnesInTheirPlaces() {
    for (const char *path : {"/b", "/c", "/d", "/a"}) Tabs().NewTab()->Announce(TAddress(server.Url(path)));
    const QStringList before = Titles();
    OnModalDialog<TfrmCloseAll>([](TfrmCloseAll &dialog) {
      auto *list = dialog.findChild<QListWidget *>(u"CheckListBox1"_s);
      for (const int staying : {0, 4}) list->item(staying)->setCheckState(Qt::Unchecked);
      dialog.findChild<QPushButton *>(u"cmdClose"_s)->click();
    });
    Action(TCommand::CloseAllShowList)->trigger();
    QCOMPARE(Titles(), (QStringList{before.first(), before.last()}));
    Action(TCommand::ReopenTab)->trigger();
    QCOMPARE(Titles(), before);
  }

  void ReopensTheLastOnes() {
    for (int i = 0; i < TClosedTabs::Most + 2; ++i) {
      TBrowserTab *tab = Tabs().NewTab();
      tab->Announce(TAddress(server.Url(u"/a?%1"_s.arg(i))));
      tab->Close();
    }
    Tabs().NewTab()->Close();  // a blank one is not worth it
    for (int i = TClosedTabs::Most + 1; i > 1; --i) {
      QVERIFY(Action(TCommand::ReopenTab)->isEnabled());
      Action(TCommand::ReopenTab)->trigger();
      QVERIFY(Active()->Url().endsWith(u"/a?%1"_s.arg(i)));
    }
    QVERIFY(!Action(TCommand::ReopenTab)->isEnabled());
  }

  void CloseAllSaysHowMany() {
    for (int i = 0; i < 3; ++i) Tabs().NewTab();
    Active()->SetHideFromCloseAll(true);
    QString asked;
    OnModalDialog<TfrmConfirm>([&](TfrmConfirm &dialog) {
      asked = dialog.findChild<QLabel *>(u"lblTitle"_s)->text();
      dialog.reject();
    });
    Action(TCommand::CloseAll)->trigger();
    QVERIFY2(asked.contains(u'3'), qPrintable(asked));
  }

  // What the user has typed is kept though its page has not come.
  void StoppedBeforeTheFirstByte() {
    TBrowserTab *tab = Active();
    const QString address = server.Url(u"/silent"_s);
    tab->Navigate(address);
    QTRY_VERIFY_WITH_TIMEOUT(server.RequestCount("/silent") > 0, LoadTime);
    tab->Stop();
    QTRY_VERIFY(!tab->Busy());
    QCOMPARE(tab->AddressToSave(), address);
    QTRY_COMPARE(TZVOptions(*store).LastOpenSites()->value(0).address, address);
    tab->Refresh();
    QTRY_VERIFY_WITH_TIMEOUT(server.RequestCount("/silent") > 1, LoadTime);
  }

  void EmptiedTab() {
    Load(Active(), "/a");
    Active()->ResetToBlank();
    QCOMPARE(Active()->AddressToSave(), BlankPageAddress);
  }

 private:
  [[nodiscard]] TTabStrip &Tabs() const { return window->Tabs(); }
  [[nodiscard]] TBrowserTab *Active() const { return Tabs().GetActivePage(); }
  [[nodiscard]] QAction *Action(TCommand command) const { return window->Actions()[command]; }
  [[nodiscard]] QStringList Titles() const {
    QStringList titles;
    for (const TBrowserTab *tab : Tabs().Tabs()) titles.append(tab->ListCaption());
    return titles;
  }
  void Load(TBrowserTab *tab, const QString &path) {
    tab->Navigate(server.Url(path));
    QTRY_VERIFY_WITH_TIMEOUT(tab->GetLocationName() == path && !tab->Busy(), LoadTime);
  }
  // The page at /b, until the engine has it in its history. A title is there before the page has its height.
  static void Scroll(TBrowserTab *tab, int y) {
    QWebEnginePage &page = *tab->Browser()->EnginePage();
    QTRY_COMPARE_WITH_TIMEOUT(AnswerOf(page, u"location.pathname + document.readyState"_s).toString(), u"/bcomplete"_s,
                              LoadTime);
    const QByteArray before = tab->Record().history;
    (void)AnswerOf(page, u"scrollTo(0, %1)"_s.arg(y));
    QTRY_VERIFY_WITH_TIMEOUT(tab->Record().history != before, LoadTime);
  }
  // The tab that both tests make: /b between /a and /c, scrolled, named and locked.
  void ExpectTab(TBrowserTab *tab, bool spared = true) {
    QTRY_VERIFY_WITH_TIMEOUT(tab->GetLocationName() == u"/b"_s && !tab->Busy(), LoadTime);
    QTRY_COMPARE_WITH_TIMEOUT(tab->Browser()->EnginePage()->scrollPosition().y(), 1234.0, LoadTime);
    QVERIFY(tab->Locked() && tab->BackEnabled() && tab->ForwardEnabled());
    QCOMPARE(tab->HideFromCloseAll(), spared);
  }
};

ENGINE_MAIN(TestKeptTabs)
#include "test_kept_tabs.moc"
