#include <QElapsedTimer>
#include <QNetworkCookie>
#include <QPushButton>
#include <QWebEngineCookieStore>
#include <QWebEngineProfile>

#include "browser/page/script_dialog.h"
#include "support/data_row.h"
#include "window/groups_fixture.h"
#include "window/page_click.h"

// Pages with unsaved input are asked before they are closed, once each, and may be kept.
class TestLeaving final : public QObject, private TGroupsFixture {
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
    tabs->CloseByUser(tab);
    if (stays) {
      QTRY_COMPARE_WITH_TIMEOUT(asked, 1, LoadTime);
      QTRY_VERIFY(!tab->Browser()->HasOpenQuestion());
      QVERIFY(tabs->Tabs().contains(tab));
      // It is asked again the next time.
      AnswerQuestion(true, asked, tab);
      tabs->CloseByUser(tab);
    }
    QTRY_VERIFY_WITH_TIMEOUT(!tabs->Tabs().contains(tab), LoadTime);
    QCOMPARE(asked, questions + (stays ? 1 : 0));
  }

  // Whatever else the user wants he can do while he is asked.
  void OthersGoOn() {
    TBrowserTab *asking = Open("/form", true);
    const QPointer<TBrowserTab> other(tabs->NewTab());
    tabs->CloseByUser(asking);
    QTRY_VERIFY_WITH_TIMEOUT(asking->Browser()->HasOpenQuestion(), LoadTime);
    QCOMPARE(tabs->GetActivePage(), asking);
    QCOMPARE(QApplication::activeModalWidget(), nullptr);
    tabs->Activate(other);
    Load(other, "/plain");
    QCOMPARE(AnswerOf(*other->Browser()->EnginePage(), u"1 + 1"_s).toInt(), 2);
    tabs->CloseByUser(other);
    QVERIFY(!tabs->Tabs().contains(other));
    QVERIFY(tabs->Tabs().contains(asking));
    asking->findChild<TScriptDialog *>()->reject();
    QTRY_VERIFY(!asking->Browser()->HasOpenQuestion());
    QCOMPARE(AnswerOf(*asking->Browser()->EnginePage(), u"1 + 1"_s).toInt(), 2);
  }

  // Pages that do not answer are given up together, not one after the other.
  void HangingPagesTogether() {
    TLeaveQuestion::TTabs hanging;
    for (int i = 0; i < 3; ++i) {
      hanging.append(Open("/hangs", true));
      tabs->NewTab();
    }
    QElapsedTimer watch;
    watch.start();
    QVERIFY(tabs->Leaving().AllMayGo(hanging));
    constexpr int OneAfterTheOther = 15000;  // ms
    QVERIFY2(watch.elapsed() < OneAfterTheOther * 2 / 3, qPrintable(QString::number(watch.elapsed())));
  }

  // The user goes where he wanted, in whichever way he wanted it.
  void LeaveOnAWay_data() {
    Columns<std::function<void(TBrowserTab *)>, QString>("go", "path");
    const auto row = [](const char *name, std::function<void(TBrowserTab *)> go, const char *path) {
      Row(name, go, QString::fromLatin1(path));
    };
    row(
        "to an address", [this](TBrowserTab *tab) { tab->Navigate(server.Url(u"/plain?2"_s)); }, "/plain?2");
    row(
        "back", [](TBrowserTab *tab) { tab->GoBack(); }, "/plain");
    row(
        "anew", [](TBrowserTab *tab) { tab->Reload(false); }, "/form");
    row(
        "blank", [](TBrowserTab *tab) { tab->MakeBlank(); }, nullptr);
  }
  void LeaveOnAWay() {
    QFETCH(std::function<void(TBrowserTab *)>, go);
    QFETCH(QString, path);
    Open("/plain", true);
    TBrowserTab *tab = Open("/form", true);
    int asked = 0;
    AnswerQuestion(true, asked, tab);
    const QSignalSpy loaded(tabs.get(), &TTabStrip::TabLoaded);
    go(tab);
    QTRY_COMPARE_WITH_TIMEOUT(asked, 1, LoadTime);
    if (!path.isEmpty()) QTRY_COMPARE_WITH_TIMEOUT(loaded.size(), 1, LoadTime);
    QTRY_COMPARE(tab->GetLocationUrl(), path.isEmpty() ? u"about:blank"_s : server.Url(path));
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
    AnswerQuestion(true, asked, first);
    AnswerQuestion(false, asked, second);
    closeAll->CloseAll(true);
    QCOMPARE(asked, 2);
    QVERIFY(!tabs->Tabs().contains(plain));
    QCOMPARE(tabs->Tabs(), QList<TBrowserTab *>{second});
    QCOMPARE(second->Title(), u"painted"_s);
  }

  // What was allowed holds for what the user wanted then, and for nothing later.
  void StoppedOnTheWay() {
    TBrowserTab *tab = Open("/form", true);
    int asked = 0;
    AnswerQuestion(true, asked, tab);
    tab->Navigate(server.Url(u"/silent"_s));
    QTRY_VERIFY_WITH_TIMEOUT(server.RequestCount("/silent") > 0, LoadTime);
    tab->Stop();
    QTRY_VERIFY(!tab->Busy());
    tabs->NewTab();
    AnswerQuestion(false, asked, tab);
    tabs->CloseByUser(tab);
    QTRY_COMPARE_WITH_TIMEOUT(asked, 2, LoadTime);
    QVERIFY(tabs->Tabs().contains(tab));
  }

  // A page that takes its time to say whether it may sleep is given up, and is not closed by what it says then.
  void LateAnswerAboutSleep() {
    server.RoutePage("/late", "Late",
                     "<script>onbeforeunload = () => { while (!document.cookie.includes('go')); }</script>");
    TBrowserTab *tab = Open("/late", true);
    QWebEnginePage *page = tab->Browser()->EnginePage();
    const QSignalSpy answers(page, &QWebEnginePage::windowCloseRequested);
    const QSignalSpy closed(tab->Browser(), &THalvexBrowser::CloseRequested);
    auto *wait = page->findChild<QTimer *>(u"tmrLeave"_s);
    wait->setInterval(20);
    const QSignalSpy tries(wait, &QTimer::timeout);
    tabs->NewTab();
    QTRY_VERIFY(page->recommendedState() != QWebEnginePage::LifecycleState::Active);
    tab->FallAsleep();
    QTRY_VERIFY_WITH_TIMEOUT(!tries.isEmpty() && !wait->isActive(), LoadTime);
    QVERIFY(answers.isEmpty());
    Engine().Profile().cookieStore()->setCookie(QNetworkCookie("go", "1"), QUrl(server.Url()));
    QTRY_COMPARE_WITH_TIMEOUT(answers.size(), 1, LoadTime);
    QVERIFY(closed.isEmpty() && !tab->Asleep());
    QCOMPARE(AnswerOf(*page, u"1 + 1"_s).toInt(), 2);
  }

  // It can be come back to.
  void BehindANotice() {
    TBrowserTab *tab = Open("/form", true);
    tab->Navigate(u"no address"_s);
    QTRY_COMPARE(tab->Load(), TLoad::Failed);
    tabs->NewTab();
    int asked = 0;
    AnswerQuestion(false, asked, tab);
    tabs->CloseByUser(tab);
    QTRY_COMPARE_WITH_TIMEOUT(asked, 1, LoadTime);
    QVERIFY(tabs->Tabs().contains(tab));
    tab->GoBack();
    QTRY_COMPARE(tab->Load(), TLoad::Shown);
    QCOMPARE(tab->Title(), u"painted"_s);
  }

  // A group that opens in the place of all tabs leaves out the one that the user has just kept.
  void GroupInThePlaceOfAll() {
    TBrowserTab *tab = Open("/form", true);
    tabs->NewTab();
    int asked = 0;
    AnswerQuestion(false, asked, tab);
    OpenLines(u"one="_s + Page(1));
    QCOMPARE(asked, 1);
    QCOMPARE(tabs->TabCount(), 2);
    QTRY_COMPARE_WITH_TIMEOUT(tabs->Tab(1)->GetLocationName(), u"Page 1"_s, LoadTime);
    QCOMPARE(tab->Title(), u"painted"_s);
  }

  // One page that stays keeps the program, and the ones before it are as if they had not been asked.
  void AllMayGo() {
    TBrowserTab *first = Open("/form", true);
    tabs->NewTab();
    TBrowserTab *second = Open("/form", true);
    int asked = 0;
    const QPointer<QTimer> answer = AnswerQuestion(true, asked, first);
    AnswerQuestion(false, asked, second);
    QVERIFY(!tabs->Leaving().AllMayGo({first, second}));
    // The one in front may have been the only one that was answered.
    delete answer;
    QTRY_VERIFY(!first->Browser()->HasOpenQuestion());
    asked = 0;
    AnswerQuestion(true, asked, first);
    tabs->CloseByUser(first);
    QTRY_VERIFY_WITH_TIMEOUT(!tabs->Tabs().contains(first), LoadTime);
    QCOMPARE(asked, 1);
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

  // As soon as the tab has come to the front with its question; the timer goes then.
  QTimer *AnswerQuestion(bool leave, int &asked, TBrowserTab *tab) {
    auto *timer = new QTimer(tab);
    connect(timer, &QTimer::timeout, tab, [=, this, &asked] {
      auto *dialog = tab->findChild<TScriptDialog *>();
      if (dialog == nullptr || !dialog->isVisible() || tabs->GetActivePage() != tab) return;
      timer->stop();
      timer->deleteLater();
      ++asked;
      QVERIFY(!dialog->isWindow() && QApplication::activeModalWidget() == nullptr);
      QVERIFY(dialog->findChild<QPushButton *>(u"cmdCancel"_s)->isDefault());
      leave ? dialog->accept() : dialog->reject();
    });
    timer->start(10);
    return timer;
  }
};

ENGINE_MAIN(TestLeaving)

#include "test_leaving.moc"
