#include <QCheckBox>
#include <QDialog>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>

#include "browser/tabs/tab_list_menu.h"
#include "window/answering_policy.h"
#include "window/tabs_fixture.h"

namespace {

using TLifetime = TCookie::TLifetime;

// What the page tells once it knows that neither its video nor its sound plays: they were kept from it, or there is
// nothing to play.
constexpr const char *Parts =
    "<img src='/i.png'><script>let missing = 0; function miss() {"
    "if (++missing == 2) document.title = navigator.pdfViewerEnabled ? 'plug-ins' : 'no plug-ins' }</script>"
    "<video src='/v.mp4' preload='auto' onerror='miss()'></video>"
    "<audio src='/s.mp3' preload='auto' onerror='miss()'></audio>";

}  // namespace

// Tabs with the real engine behind them, against a local server, and what the policy's answers do to their pages.
class TestTabs final : public QObject, private TTabsFixture {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    Prepare();
    server.RoutePage("/a", "Page A", "<a id='link' href='/b'>b</a><a id='anchor' href='#down'>down</a>");
    server.RoutePage("/b", "Page B");
    server.RoutePage("/c", "Page <C> & co");
    server.RoutePage("/frames", "Frames", "<iframe id='f' src='/c' style='height:300px'></iframe>Text");
    server.RoutePage("/inner", "Inner", "<a href='/b' style='display:block;height:200px'>b</a>");
    server.RoutePage("/parts", "Parts", Parts);
    server.RoutePage("/other", "Other", Parts);
    server.RoutePage("/opener", "Opener", "<a id='link' href='/b' target='_blank'>new window</a>");
  }

  void init() { Begin(); }
  void cleanup() { End(); }

  void InsertPosition_data() {
    Columns<int, bool, TTabPlace, QStringList>("active", "atEnd", "place", "names");
    Row("after the last", 2, false, TTabPlace::BySetting, QStringList{"A", "B", "C", "D"});
    Row("after the active one", 1, false, TTabPlace::BySetting, QStringList{"A", "B", "D", "C"});
    Row("at the end by the setting", 0, true, TTabPlace::BySetting, QStringList{"A", "B", "C", "D"});
    Row("at the end in any case", 0, false, TTabPlace::AtEnd, QStringList{"A", "B", "C", "D"});
  }

  void InsertPosition() {
    QFETCH(int, active);
    QFETCH(bool, atEnd);
    QFETCH(TTabPlace, place);
    OpenNamed("ABC");
    tabs->MakeMeActiveTab(active);
    settings->Set(Setting::OpenNewAtEnd, atEnd);
    TBrowserTab *tab = tabs->NewTab(place);
    tab->SetStickyName(u"D"_s);
    QTEST(Names(), "names");
    QCOMPARE(pages->IndexOf(tabs->NewBackgroundTab(place)), pages->IndexOf(tab) + 1);
    tabs->MakeMeActiveTab(99);
    tabs->MakeMeActiveTab(-1);
    QCOMPARE(tabs->GetActivePage(), tab);
  }

  // A page in the background is not laid out anew when the user turns to it.
  void RoomOfAPageInTheBackground() {
    server.RoutePage("/room", "Room", "<script>fetch('/width' + innerWidth)</script>");
    tabs->NewBackgroundTab()->Navigate(server.Url(u"/room"_s));
    const QByteArray width = "/width" + QByteArray::number(tabs->GetActivePage()->width());
    QTRY_VERIFY_WITH_TIMEOUT(server.RequestCount(width) > 0, LoadTime);
  }

  void ClosingHandsOver() {
    OpenNamed("ABCD");
    const auto close = [this](int position) {
      tabs->MakeMeActiveTab(position);
      tabs->CloseActive();
      return tabs->GetActivePage()->StickyName();
    };
    QCOMPARE(close(1), u"C"_s);  // the next one
    QCOMPARE(close(0), u"D"_s);  // the first hands over backwards, round the end
    tabs->MakeMeActiveTab(1);
    tabs->Tab(0)->Close();  // one in the background changes nothing
    QCOMPARE(Names(), QStringList{u"D"_s});
  }

  void ClosingTheOnlyTab() {
    TBrowserTab *tab = OpenPage(u"/a"_s);
    tab->SetStickyName(u"Mine"_s);
    tab->SetHideFromCloseAll(true);
    tab->SetLocked(true);
    tabs->CloseActive();
    QCOMPARE(tabs->TabCount(), 1);
    QCOMPARE(tabs->GetActivePage(), tab);
    QCOMPARE(pages->PageCaption(tab), language.Global("Blank"));
    QVERIFY(!tab->Locked() && tab->StickyName().isEmpty() && !tab->HideFromCloseAll() && tab->Url().isEmpty());
    QCOMPARE(pages->PageImage(tab), -1);
    QTRY_COMPARE(tab->GetLocationUrl(), u"about:blank"_s);
    QTRY_COMPARE(pages->PageCaption(tab), language.Global("Blank"));
  }

  void TitleAndStates() {
    TBrowserTab *front = OpenPage(u"/c"_s);
    QCOMPARE(pages->PageCaption(front), u"Page <C> && co"_s);
    QCOMPARE(front->State(), TTabState::None);
    TBrowserTab *back = tabs->NewBackgroundTab();
    QSignalSpy loaded(tabs.get(), &TTabStrip::TabLoaded);
    // A tab says all of itself; what is passed on is about the one in front.
    const QSignalSpy address(back, &TBrowserTab::AddressChanged);
    const QSignalSpy shownAddress(tabs.get(), &TTabStrip::AddressChanged);
    const QSignalSpy indicators(tabs.get(), &TTabStrip::IndicatorsChanged);
    QList<TTabState> seen;
    QList<TLoad> course{back->Load()};
    const auto look = [&] {
      seen.append(back->State());
      if (back->Load() != course.last()) course.append(back->Load());
    };
    connect(back, &TBrowserTab::Changed, this, look);
    connect(back, &TBrowserTab::IndicatorsChanged, this, look);
    back->Announce(server.Url(u"/b"_s));
    back->NavigateStored();
    QTRY_VERIFY(!loaded.isEmpty());
    QCOMPARE(back->State(), TTabState::FinishedInBackground);
    QCOMPARE(pages->PageImage(back), 1);
    QVERIFY(seen.contains(TTabState::Started));
    QVERIFY(!address.isEmpty() && shownAddress.isEmpty() && indicators.isEmpty());
    tabs->Activate(back);
    QCOMPARE(back->State(), TTabState::None);
    back->Navigate(u"no address"_s);
    QVERIFY(!shownAddress.isEmpty());
    back->MakeBlank();
    QTRY_COMPARE(back->GetLocationUrl(), u"about:blank"_s);
    QCOMPARE(course, (QList<TLoad>{TLoad::Blank, TLoad::Announced, TLoad::Waiting, TLoad::Loading, TLoad::Shown,
                                   TLoad::Failed, TLoad::Blank}));
    back->disconnect(this);
  }

  void LockedTabSendsLinksAway() {
    TBrowserTab *locked = OpenPage(u"/a"_s);
    locked->SetLocked(true);
    QCOMPARE(pages->PageImage(locked), 3);

    Run(locked, u"document.getElementById('anchor').click()"_s);
    QTRY_VERIFY(locked->GetLocationUrl().endsWith(u"#down"_s));
    QCOMPARE(tabs->TabCount(), 1);

    Run(locked, u"document.getElementById('link').click()"_s);
    QTRY_COMPARE(tabs->TabCount(), 2);
    QTRY_COMPARE(tabs->Tab(1)->GetLocationUrl(), server.Url(u"/b"_s));
    QVERIFY(tabs->Tab(1)->OpenedAsNewWindow());
    QCOMPARE(tabs->GetActivePage(), locked);
    QVERIFY(locked->GetLocationUrl().startsWith(server.Url(u"/a"_s)));

    // A reload is not leaving.
    const int before = server.RequestCount("/a");
    locked->Refresh();
    QTRY_COMPARE(server.RequestCount("/a"), before + 1);
    QCOMPARE(tabs->TabCount(), 2);
    QCOMPARE(pages->PageImage(locked), 3);
  }

  // Nothing takes the place of its page, and nothing but its page is shown as what it has.
  void LockedTabKeepsItsPage_data() {
    Columns<QString, QString>("typed", "script");
    Row("another page", "%1/b", "");
    Row("blank page, typed", "about:blank", "");
    Row("no address", "no address", "");
    Row("unknown kind", "nothing-knows://this", "");
    Row("blank page, by a link", "", "let a = document.createElement('a'); a.href = 'about:blank'; a.click()");
    Row("blank page, by a script", "", "location = 'about:blank'");
    Row("blank page, in the page's place", "", "location.replace('about:blank')");
  }
  void LockedTabKeepsItsPage() {
    QFETCH(QString, typed);
    QFETCH(QString, script);
    TBrowserTab *locked = OpenPage(u"/a"_s);
    locked->SetLocked(true);
    const QSignalSpy shown(tabs.get(), &TTabStrip::AddressChanged);
    if (script.isEmpty()) {
      locked->Navigate(typed.replace(u"%1"_s, server.Url({})));
    } else {
      Run(locked, script);
    }
    QTRY_COMPARE(tabs->TabCount(), 2);
    QTRY_VERIFY_WITH_TIMEOUT(!tabs->Tab(1)->Busy(), LoadTime);
    QTRY_COMPARE(locked->GetLocationUrl(), server.Url(u"/a"_s));
    // One that the blank page had taken the place of is loaded anew.
    QTRY_COMPARE_WITH_TIMEOUT(locked->Title(), u"Page A"_s, LoadTime);
    QVERIFY(shown.isEmpty() || shown.last().first() == locked->GetLocationUrl());
    QCOMPARE(AnswerOf(*locked->Browser()->EnginePage(), u"location.pathname"_s).toString(), u"/a"_s);
  }

  // What the page does with its frames stays in them; a link that the user clicks in one leads out of the tab.
  void LockedTabKeepsItsFrames() {
    TBrowserTab *locked = tabs->GetActivePage();
    locked->SetLockPending(true);
    QVERIFY(!locked->Locked());
    Load(locked, u"/frames"_s);
    QVERIFY(locked->Locked());
    Run(locked, QStringLiteral("let f = document.getElementById('f'); f.src = '/inner';"
                               "f.onload = () => document.title = 'frame changed'"));
    QTRY_COMPARE(locked->Title(), u"frame changed"_s);
    QCOMPARE(tabs->TabCount(), 1);

    ClickPage(*locked->Browser(), QPoint(60, 100));
    QTRY_COMPARE(tabs->TabCount(), 2);
    QTRY_COMPARE(tabs->Tab(1)->GetLocationUrl(), server.Url(u"/b"_s));
    QCOMPARE(locked->GetLocationUrl(), server.Url(u"/frames"_s));
    QCOMPARE(server.RequestCount("/b"), 1);
  }

  void StickyName() {
    TBrowserTab *tab = OpenPage(u"/b"_s);
    tab->SetStickyName(u"My tab"_s);
    QCOMPARE(pages->PageCaption(tab), u"My tab"_s);
    Load(tab, u"/a"_s);
    QCOMPARE(pages->PageCaption(tab), u"My tab"_s);
    QCOMPARE(tab->Title(), u"Page A"_s);
    tab->SetStickyName(QString());
    QCOMPARE(pages->PageCaption(tab), u"Page A"_s);
  }

  void WindowOfAPage() {
    TBrowserTab *opener = tabs->GetActivePage();
    TAnsweringPolicy policy;
    policy.AnswerFor(Engine());
    Load(opener, u"/opener"_s);
    const QString click = u"document.getElementById('link').click()"_s;
    Run(opener, click);
    QTRY_COMPARE(pages->VisiblePageCount(), 2);
    QCOMPARE(tabs->GetActivePage(), opener);
    const TBrowserTab *opened = tabs->Tab(1);
    QTRY_COMPARE(opened->Title(), u"Page B"_s);
    QCOMPARE(policy.tested, QStringList{server.Url(u"/b"_s)});
    QCOMPARE(opened->PopupUrl(), policy.tested.first());
    // A rejected one is never asked of the server, never seen, and in no list.
    policy.isPopup = [](const QString &) { return true; };
    Run(opener, click);
    QTRY_COMPARE(tabs->TabCount(), 3);
    QTRY_VERIFY(tabs->Tab(1)->Blocked());
    QCOMPARE(pages->VisiblePageCount(), 2);
    QMenu menu;
    const TTabListMenu list(&menu, *tabs);
    Q_EMIT menu.aboutToShow();
    QCOMPARE(menu.actions().size(), 2);
    QCOMPARE(tabs->TabCount(), 2);
    QCOMPARE(server.RequestCount("/b"), 1);
  }

  // A page of its site comes to the front; nobody knows which one has shown it.
  void NotificationIsClicked() {
    TBrowserTab *first = OpenPage(u"/a"_s);
    TBrowserTab *other = tabs->NewTab();
    other->Navigate(server.Url(u"/b"_s, u"localhost"_s));
    QTRY_COMPARE_WITH_TIMEOUT(other->Title(), u"Page B"_s, LoadTime);
    tabs->NewTab();
    TBrowserTab *last = OpenPage(u"/b"_s);
    const QSignalSpy front(tabs.get(), &TTabStrip::FrontWanted);
    const auto click = [this](const QString &host) {
      Q_EMIT Engine().NotificationClicked(QUrl(server.Url(u"/"_s, host)));
      return tabs->GetActivePage();
    };
    QCOMPARE(click(u"127.0.0.1"_s), last);
    QCOMPARE(click(u"localhost"_s), other);
    QCOMPARE(click(u"127.0.0.1"_s), first);
    QCOMPARE(click(u"gone.localhost"_s), first);
    QCOMPARE(front.size(), 4);
  }

  void EmptyWindowStaysHidden() {
    TBrowserTab *opener = OpenPage(u"/opener"_s);
    Run(opener, u"window.w = window.open('about:blank')"_s);
    QTRY_COMPARE(tabs->TabCount(), 2);
    QCOMPARE(pages->VisiblePageCount(), 1);
    QVERIFY(tabs->Tab(1)->Hidden());
    Run(opener, u"window.w.location = '/b'"_s);
    QTRY_COMPARE(pages->VisiblePageCount(), 2);
    QTRY_COMPARE(tabs->Tab(1)->Title(), u"Page B"_s);
  }

  void HostileTitle() {
    TBrowserTab *tab = tabs->GetActivePage();
    tab->SetCaption(u"a\tb\u202Ec\nd"_s);
    QCOMPARE(tab->Title(), u"a b c d"_s);
    QCOMPARE(pages->PageCaption(tab), u"a b c d"_s);
  }

  void CloseAll_data() {
    Columns<int, QStringList>("spared", "left");
    QTest::newRow("nothing spared") << -1 << QStringList{""};
    QTest::newRow("first") << 0 << QStringList{"A"};
    QTest::newRow("middle") << 1 << QStringList{"B"};
    QTest::newRow("last") << 2 << QStringList{"C"};
  }

  void CloseAll() {
    QFETCH(int, spared);
    OpenNamed("ABC");
    tabs->Tab(0)->SetLocked(true);
    if (spared >= 0) tabs->Tab(spared)->SetHideFromCloseAll(true);
    closeAll->CloseAll(true);
    QTEST(Names(), "left");
    QCOMPARE(tabs->Tab(0)->Locked(), spared == 0);
    if (spared < 0) QCOMPARE(pages->PageCaption(tabs->Tab(0)), language.Global("Blank"));
  }

  void CloseAllAsks() {
    OpenNamed("AB");
    OnModalDialog<QDialog>([](QDialog &dialog) {
      dialog.findChild<QCheckBox *>(u"chkConfirm"_s)->setChecked(true);
      dialog.findChild<QPushButton *>(u"cmdCancel"_s)->click();
    });
    closeAll->CloseAll(false);
    QCOMPARE(tabs->TabCount(), 2);
    QVERIFY(!TZVOptions(*store).Get(Setting::ConfirmCloseAll));
    closeAll->KeepOnly(tabs->GetActivePage());  // asks no more
    QCOMPARE(Names(), QStringList{u"B"_s});
    QVERIFY(!tabs->GetActivePage()->HideFromCloseAll());
  }

  // From the menu of a tab that is not in front.
  void CloseAllButThis() {
    TZVOptions(*store).Set(Setting::ConfirmCloseAll, false);
    OpenNamed("ABC");
    Q_EMIT pages->TabMenuRequested(tabs->Tab(0), QPoint());
    (*actions)[TCommand::TabCloseAllKeepCurrent]->trigger();
    QCOMPARE(Names(), QStringList{u"A"_s});
  }

  void CloseAllFromList() {
    OpenNamed("ABC");
    tabs->Tab(2)->SetHideFromCloseAll(true);
    OnModalDialog<QDialog>([](QDialog &dialog) { dialog.reject(); });
    closeAll->ShowList();
    QCOMPARE(tabs->TabCount(), 3);
    OnModalDialog<QDialog>([](QDialog &dialog) {
      dialog.findChild<QListWidget *>(u"CheckListBox1"_s)->item(1)->setCheckState(Qt::Unchecked);
      dialog.findChild<QPushButton *>(u"cmdClose"_s)->click();
    });
    closeAll->ShowList();
    QCOMPARE(Names(), QStringList{u"B"_s});  // being spared plays no part here
  }

  void ClosingLock() {
    TZVOptions(*store).Set(Setting::ConfirmCloseAll, false);
    OpenNamed("AB");
    tabs->SetClosingLocked(true);
    tabs->CloseActive();
    closeAll->CloseAll(false);
    Q_EMIT pages->CloseRequested(tabs->Tab(0));
    QCOMPARE(tabs->TabCount(), 2);
    tabs->SetClosingLocked(false);
    tabs->CloseActive();
    QCOMPARE(tabs->TabCount(), 1);
  }

  void TabListMenu() {
    tabs->Tab(0)->SetStickyName(u"Fish & chips"_s);
    tabs->NewTab();
    QMenu menu;
    const TTabListMenu list(&menu, *tabs);
    Q_EMIT menu.aboutToShow();
    Q_EMIT menu.aboutToShow();
    QCOMPARE(menu.actions().size(), 2);
    QCOMPARE(menu.actions().at(0)->text(), u"Fish && chips"_s);
    QCOMPARE(menu.actions().at(1)->text(), language.Global("Blank"));
    menu.actions().at(0)->trigger();
    QCOMPARE(tabs->GetActivePage(), tabs->Tab(0));
  }

  void TabMenuShowsTheTab() {
    TBrowserTab *first = tabs->Tab(0);
    Load(first, u"/a"_s);
    tabs->NewTab();
    for (const bool on : {false, true}) {
      first->SetLocked(on);
      first->SetHideFromCloseAll(on);
      first->SetStickyName(on ? u"A"_s : QString());
      tabMenu->Open(first, QPoint(0, 0));
      QCOMPARE((*actions)[TCommand::TabLocked]->isChecked(), on);
      QCOMPARE((*actions)[TCommand::TabSpared]->isChecked(), on);
      QCOMPARE((*actions)[TCommand::TabName]->text(), language.Global(on ? "StickyNameClear" : "StickyNameSet"));
      tabMenu->Menu()->close();
    }
    QVERIFY((*actions)[TCommand::TabHome]->isEnabled());
    tabMenu->Open(first, QPoint(0, 0));
    (*actions)[TCommand::TabClose]->trigger();
    QVERIFY(tabs->TabCount() == 1 && tabs->Tab(0) != first);
  }

  void Permissions_data() {
    Columns<TPagePermissions, QString, QStringList>("permissions", "title", "fetched");
    const QString all = u"plug-ins"_s;
    const QStringList parts{"/i.png", "/s.mp3", "/v.mp4"};
    QTest::newRow("all") << TPagePermissions{} << all << parts;
    QTest::newRow("no images") << TPagePermissions{.images = false} << all << QStringList{"/s.mp3", "/v.mp4"};
    QTest::newRow("no sounds") << TPagePermissions{.sounds = false} << all << QStringList{"/i.png", "/v.mp4"};
    QTest::newRow("no videos") << TPagePermissions{.videos = false} << all << QStringList{"/i.png", "/s.mp3"};
    QTest::newRow("no plug-ins") << TPagePermissions{.plugIns = false} << u"no plug-ins"_s << parts;
    QTest::newRow("no scripts") << TPagePermissions{.scripts = false} << u"Parts"_s << parts;
  }
  void Permissions() {
    QFETCH(TPagePermissions, permissions);
    QFETCH(QString, title);
    QFETCH(QStringList, fetched);
    TAnsweringPolicy policy;
    policy.permissions = permissions;
    policy.restrictedPath = u"/parts"_s;
    policy.AnswerFor(Engine());
    TBrowserTab *tab = OpenPage(u"/parts"_s);
    QTRY_COMPARE(tab->Title(), title);
    QTRY_COMPARE(Fetched(), fetched);
    QCOMPARE(tab->SecureZone(), TSecurityZone::Restricted);
    // What is asked of the page from outside is answered all the same.
    QString type;
    tab->Browser()->CollectProperties([&type](const TPageProperties &properties) { type = properties.contentType; });
    QTRY_COMPARE(type, u"text/html"_s);
    // Another page is another question.
    server.ForgetRequests();
    Load(tab, u"/other"_s);
    QTRY_COMPARE(tab->Title(), u"plug-ins"_s);
    QCOMPARE(Fetched(), (QStringList{"/i.png", "/s.mp3", "/v.mp4"}));
    QCOMPARE(tab->SecureZone(), TSecurityZone::Internet);
    Engine().SetPolicy(nullptr);
    Load(tab, u"/parts"_s);
    QTRY_COMPARE(tab->Title(), u"plug-ins"_s);
    QCOMPARE(tab->SecureZone(), TSecurityZone::LocalMachine);
  }

  void Cookies_data() {
    Columns<bool, TLifetime, QString>("allowed", "refused", "kept");
    QTest::newRow("all") << true << TLifetime::NotTold << "script=1; session=1; stored=1";
    QTest::newRow("none") << false << TLifetime::NotTold << "";
    // One that was to be stored is kept as long as the others.
    QTest::newRow("for the session") << true << TLifetime::Stored << "script=1; session=1; stored=1";
    QTest::newRow("stored ones") << true << TLifetime::Session << "stored=1";
  }
  void Cookies() {
    QFETCH(bool, allowed);
    QFETCH(TLifetime, refused);
    QFETCH(QString, kept);
    // The profile outlives the row, so every row has a folder of its own.
    const QByteArray folder = '/' + QByteArray(QTest::currentDataTag()).replace(' ', '_');
    server.Route(folder + "/set",
                 TTestResponse{.body = "<title>Set</title><script>document.cookie='script=1'</script>",
                               .headers = {{"Set-Cookie", "session=1"}, {"Set-Cookie", "stored=1; Max-Age=9999"}}});
    server.RoutePage(folder + "/sent", "Sent");
    TAnsweringPolicy policy;
    policy.cookies = allowed;
    policy.refused = refused;
    policy.AnswerFor(Engine());
    OpenPage(QString::fromLatin1(folder + "/set"));
    // The engine tells of a cookie's lifetime a moment after it was set.
    const auto sent = [&] {
      OpenPage(QString::fromLatin1(folder + "/sent"));
      QStringList cookies = QString::fromLatin1(server.Requests(folder + "/sent").last().Header("cookie")).split("; ");
      cookies.sort();
      return cookies.join("; ");
    };
    QTRY_COMPARE(sent(), kept);
    QCOMPARE(sent(), kept);
  }

  void UserAgent() {
    TAnsweringPolicy policy;
    policy.token = u"Token/1"_s;
    for (const bool isAsked : {true, false}) {
      Engine().SetPolicy(isAsked ? &policy : nullptr);
      OpenPage(u"/other"_s);
      QCOMPARE(server.Requests("/other").last().Header("user-agent").contains("; Token/1)"), isAsked);
    }
  }

 private:
  // The parts that the server was asked for, each once.
  [[nodiscard]] QStringList Fetched() const {
    QStringList paths;
    for (const char *path : {"/i.png", "/s.mp3", "/v.mp4"}) {
      if (server.RequestCount(path) > 0) paths.append(QString::fromLatin1(path));
    }
    return paths;
  }
  // Tabs of these names; the first is the one that is there.
  void OpenNamed(const char *names) {
    for (const char *name = names; *name != 0; ++name) {
      (name == names ? tabs->Tab(0) : tabs->NewTab())->SetStickyName(QChar::fromLatin1(*name));
    }
  }
};

ENGINE_MAIN(TestTabs)
#include "test_tabs.moc"
