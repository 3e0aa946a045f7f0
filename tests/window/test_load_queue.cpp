#include <algorithm>
#include <QAction>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

#include "browser/tabs/tab_menu.h"
#include "window/groups_fixture.h"

// The queue that opens the pages of many tabs, with the real engine and groups of pages.
class TestLoadQueue final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { m_f.Prepare(); }
  void init() { m_f.Begin(); }
  void cleanup() { m_f.End(); }

  void LoadsAFewAtATime() {
    int most = 0;
    QStringList order;
    connect(m_f.tabs.get(), &TTabStrip::TabsChanged, m_f.queue.get(), [&] {
      int open = 0;
      for (const TBrowserTab *tab : m_f.tabs->Tabs()) {
        if (tab->Busy()) ++open;
        if (tab->Browser()->EnginePageIfAny() != nullptr && !order.contains(tab->StickyName())) {
          order.append(tab->StickyName());
        }
      }
      most = qMax(most, open);
    });
    const QSignalSpy told(m_f.queue.get(), &TLoadQueue::ToComeChanged);
    m_f.groups->OpenHalvexGroup(m_f.Put(QStringLiteral("g.hgp"), m_f.LinesOf(20)), true);
    QCOMPARE(m_f.queue->ToCome(), 20);
    m_f.tabs->MakeMeActiveTab(7);
    QTRY_VERIFY_WITH_TIMEOUT(AllLoaded(), m_f.LoadTime);
    QVERIFY2(most <= TLoadQueue::AtOnce, qPrintable(QString::number(most)));
    QCOMPARE(order.first(), QStringLiteral("n7"));
    order.removeFirst();
    QStringList sorted = order;
    std::sort(sorted.begin(), sorted.end(),
              [](const QString &a, const QString &b) { return a.mid(1).toInt() < b.mid(1).toInt(); });
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
  void SilentPagesHoldNobody() {
    OpenBehindSilentPages(QStringLiteral("end=%1").arg(m_f.Page(1)));
    TBrowserTab *last = m_f.tabs->Tab(m_f.tabs->TabCount() - 1);
    QCOMPARE(last->Browser()->EnginePageIfAny(), nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(last->GetLocationName(), QStringLiteral("Page 1"), m_f.LoadTime);
    QTRY_COMPARE_WITH_TIMEOUT(m_f.queue->ToCome(), 0, m_f.LoadTime);
  }

  // The page that the user turns to comes next, even while others take all places.
  void TurningToATab() {
    OpenBehindSilentPages(m_f.LinesOf(5));
    QElapsedTimer timer;
    timer.start();
    m_f.tabs->MakeMeActiveTab(TLoadQueue::AtOnce + 3);
    QTRY_COMPARE_WITH_TIMEOUT(m_f.tabs->GetActivePage()->GetLocationName(), QStringLiteral("Page 3"), m_f.LoadTime);
    QVERIFY(timer.elapsed() < TLoadQueue::LongestHold);
    QCOMPARE(m_f.server.RequestCount("/page0"), 0);
  }

  void StopsLoading() {
    m_f.groups->OpenHalvexGroup(m_f.Put(QStringLiteral("g.hgp"), m_f.LinesOf(30)), true);
    QTRY_VERIFY_WITH_TIMEOUT(m_f.queue->ToCome() < 29, m_f.LoadTime);
    m_f.queue->Stop();
    QVERIFY(m_f.queue->ToCome() <= TLoadQueue::AtOnce);
    QTRY_COMPARE_WITH_TIMEOUT(m_f.queue->ToCome(), 0, m_f.LoadTime);
    TBrowserTab *last = m_f.tabs->Tab(29);
    QVERIFY(last->Browser()->EnginePageIfAny() == nullptr);
    QCOMPARE(last->AddressToSave(), m_f.Page(29));
    m_f.tabs->Activate(last);
    QTRY_COMPARE_WITH_TIMEOUT(last->GetLocationName(), QStringLiteral("Page 29"), m_f.LoadTime);
    // Refreshing all pages leaves those alone that were never opened; a single one it opens.
    m_f.tabs->RefreshAll();
    QVERIFY(m_f.tabs->Tab(28)->Browser()->EnginePageIfAny() == nullptr);
    m_f.tabs->Tab(28)->Refresh();
    QTRY_COMPARE_WITH_TIMEOUT(m_f.tabs->Tab(28)->GetLocationName(), QStringLiteral("Page 28"), m_f.LoadTime);
    // A page that was stopped is locked once it is there.
    TBrowserTab *locked = m_f.tabs->Tab(27);
    m_f.tabs->Activate(locked);
    m_f.tabMenu->Open(locked, {});
    m_f.window->findChild<QAction *>(QStringLiteral("pmTabLocked"))->trigger();
    QVERIFY(!locked->Locked());
    QTRY_VERIFY_WITH_TIMEOUT(locked->Locked(), m_f.LoadTime);
    QTRY_COMPARE_WITH_TIMEOUT(locked->GetLocationName(), QStringLiteral("Page 27"), m_f.LoadTime);
    QCOMPARE(m_f.tabs->TabCount(), 30);
    // What is opened after that loads again.
    TBrowserTab *other = m_f.tabs->NewBackgroundTab();
    m_f.queue->Navigate(other, m_f.Page(50));
    QTRY_COMPARE_WITH_TIMEOUT(other->GetLocationName(), QStringLiteral("Page 50"), m_f.LoadTime);
  }

  void TabsThatDropOut() {
    m_f.groups->OpenHalvexGroup(m_f.Put(QStringLiteral("g.hgp"), m_f.LinesOf(20)), true);
    m_f.tabs->Tab(19)->Navigate(m_f.Page(60));
    m_f.tabs->Tab(18)->MakeBlank();
    m_f.tabs->Tab(18)->Navigate(m_f.Page(61));
    for (int i = 17; i >= 5; --i) m_f.tabs->Tab(i)->Close();
    QTRY_COMPARE_WITH_TIMEOUT(m_f.queue->ToCome(), 0, m_f.LoadTime);
    QTRY_VERIFY_WITH_TIMEOUT(AllLoaded(), m_f.LoadTime);
    QCOMPARE(m_f.tabs->TabCount(), 7);
    QCOMPARE(m_f.tabs->Tab(6)->GetLocationUrl(), m_f.Page(60));
    for (const char *path : {"/page19", "/page18", "/page10"}) QCOMPARE(m_f.server.RequestCount(path), 0);

    // Everything closed in the middle of it.
    m_f.groups->OpenHalvexGroup(m_f.Put(QStringLiteral("g.hgp"), m_f.LinesOf(20)), true);
    QTRY_VERIFY_WITH_TIMEOUT(m_f.queue->ToCome() < 19, m_f.LoadTime);
    m_f.closeAll->CloseAll(true);
    QTRY_COMPARE_WITH_TIMEOUT(m_f.queue->ToCome(), 0, m_f.LoadTime);
    QCOMPARE(m_f.tabs->TabCount(), 1);
  }

 private:
  // Opens a group whose first pages take all places and never come.
  void OpenBehindSilentPages(QString lines) {
    for (int i = 0; i < TLoadQueue::AtOnce; ++i) {
      // Different addresses: the engine lets requests for one and the same wait for each other.
      lines.prepend(QStringLiteral("s%1=%2?%1\n").arg(QString::number(i), m_f.server.Url(QStringLiteral("/silent"))));
    }
    m_f.groups->OpenHalvexGroup(m_f.Put(QStringLiteral("g.hgp"), lines), true);
    QTRY_VERIFY_WITH_TIMEOUT(m_f.server.RequestCount("/silent") == TLoadQueue::AtOnce, m_f.LoadTime);
  }
  [[nodiscard]] bool AllLoaded() const {
    const QList<TBrowserTab *> tabs = m_f.tabs->Tabs();
    return m_f.queue->ToCome() == 0 && std::none_of(tabs.begin(), tabs.end(), [](TBrowserTab *tab) {
             return tab->Busy() || tab->GetLocationUrl() != tab->Url();
           });
  }

  TGroupsFixture m_f;
};

int main(int argc, char **argv) {
  return RunWithEngine<TestLoadQueue>(argc, argv);
}

#include "test_load_queue.moc"
