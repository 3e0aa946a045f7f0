#include <QDialog>
#include <QPushButton>

#include "browser/page/script_dialog.h"
#include "support/data_row.h"
#include "support/modal_dialogs.h"
#include "window/page_click.h"
#include "window/tabs_fixture.h"

// Pages with unsaved input are asked before they are closed, once each, and may be kept.
class TestLeaving final : public QObject, private TTabsFixture {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    Prepare();
    server.RoutePage("/plain", "Plain");
    server.RoutePage("/form", "Form", "<script>onbeforeunload = e => e.returnValue = 'x'</script>");
    server.RoutePage("/hangs", "Hangs", "<script>onbeforeunload = () => { for (;;); }</script>");
  }
  void init() { Begin(); }
  void cleanup() { End(); }

  void CloseTab_data() {
    Columns<QString, bool, int, bool>("path", "touched", "questions", "stays");
    Row("nothing to lose", "/plain", true, 0, false);
    Row("never touched", "/form", false, 0, false);
    Row("leave", "/form", true, 1, false);
    Row("stay", "/form", true, 1, true);
    Row("gives no answer", "/hangs", true, 0, false);
  }
  void CloseTab() {
    QFETCH(QString, path);
    QFETCH(bool, touched);
    QFETCH(int, questions);
    QFETCH(bool, stays);
    TBrowserTab *tab = Open(path, touched);
    tabs->NewTab();
    int asked = 0;
    if (questions > 0) AnswerQuestion(!stays, asked, tab);
    tabs->CloseByUser(tab);
    QCOMPARE(asked, questions);
    QCOMPARE(tabs->Tabs().contains(tab), stays);
    if (!stays) return;
    // It is asked again the next time.
    AnswerQuestion(true, asked, tab);
    tabs->CloseByUser(tab);
    QCOMPARE(asked, 2);
    QVERIFY(!tabs->Tabs().contains(tab));
  }

  // Kept instead of going where the user wanted: the page is what is shown again.
  void StayOnAWay() {
    TBrowserTab *tab = Open("/form", true);
    const QSignalSpy shown(tabs.get(), &TTabStrip::AddressChanged);
    int asked = 0;
    AnswerQuestion(false, asked, tab);
    tab->Navigate(server.Url(u"/plain"_s));
    QTRY_COMPARE_WITH_TIMEOUT(asked, 1, LoadTime);
    QTRY_COMPARE(tab->Load(), TLoad::Shown);
    QCOMPARE(tab->Title(), u"painted"_s);
    QCOMPARE(shown.last().first().toString(), server.Url(u"/form"_s));
  }

  // The last tab is made blank instead, which is no second reason to ask.
  void LastTab() {
    TBrowserTab *tab = Open("/form", true);
    int asked = 0;
    AnswerQuestion(true, asked, tab);
    tabs->CloseByUser(tab);
    QTRY_COMPARE_WITH_TIMEOUT(tab->GetLocationUrl(), u"about:blank"_s, LoadTime);
    QCOMPARE(asked, 1);
  }

  void CloseAll() {
    TBrowserTab *first = Open("/form", true);
    tabs->NewTab();
    TBrowserTab *plain = Open("/plain", true);
    tabs->NewTab();
    TBrowserTab *second = Open("/form", true);
    int asked = 0;
    OnModalDialog<TScriptDialog>([&](TScriptDialog &dialog) {
      QCOMPARE(tabs->GetActivePage(), first);
      ++asked;
      AnswerQuestion(false, asked, second);
      dialog.accept();
    });
    closeAll->CloseAll(true);
    QCOMPARE(asked, 2);
    QVERIFY(!tabs->Tabs().contains(plain));
    QCOMPARE(tabs->Tabs(), QList<TBrowserTab *>{second});
    QCOMPARE(second->Title(), u"painted"_s);
  }

  // One page that stays keeps the program, and the ones before it are as if they had not been asked.
  void AllMayGo() {
    TBrowserTab *first = Open("/form", true);
    tabs->NewTab();
    TBrowserTab *second = Open("/form", true);
    int asked = 0;
    OnModalDialog<TScriptDialog>([&](TScriptDialog &dialog) {
      ++asked;
      AnswerQuestion(false, asked, second);
      dialog.accept();
    });
    QVERIFY(!tabs->Leaving().AllMayGo({first, second}));
    QCOMPARE(asked, 2);
    AnswerQuestion(true, asked, first);
    tabs->CloseByUser(first);
    QCOMPARE(asked, 3);
  }

 private:
  // Opens a page in the active tab; `touched`: the user clicks into it.
  TBrowserTab *Open(const QString &path, bool touched) {
    TBrowserTab *tab = tabs->GetActivePage();
    Load(tab, path);
    if (!touched) return tab;
    // A page that has just come may still miss a click.
    const auto isKnown = [tab] {
      ClickPage(*tab->Browser(), QPoint(200, 20));
      return AnswerOf(*tab->Browser()->EnginePage(), u"navigator.userActivation.hasBeenActive"_s).toBool();
    };
    [&] { QTRY_VERIFY_WITH_TIMEOUT(isKnown(), LoadTime); }();
    return tab;
  }

  void AnswerQuestion(bool leave, int &asked, const TBrowserTab *inFront) {
    OnModalDialog<TScriptDialog>([=, this, &asked](TScriptDialog &dialog) {
      ++asked;
      QCOMPARE(tabs->GetActivePage(), inFront);
      QVERIFY(dialog.findChild<QPushButton *>(u"cmdCancel"_s)->isDefault());
      leave ? dialog.accept() : dialog.reject();
    });
  }
};

ENGINE_MAIN(TestLeaving)

#include "test_leaving.moc"
