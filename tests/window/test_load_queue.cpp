#include <algorithm>
#include <QAction>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

#include "browser/tabs/tab_menu.h"
#include "window/groups_fixture.h"

// The queue that opens the pages of many tabs, with the real engine and groups of pages.
class TestLoadQueue final : public QObject, private TGroupsFixture {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { Prepare(); }
  void init() { Begin(); }
  void cleanup() { End(); }

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
};

ENGINE_MAIN(TestLoadQueue)
#include "test_load_queue.moc"
