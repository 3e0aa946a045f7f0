#include <QMessageBox>

#include "history/history_store.h"
#include "search/address_search.h"
#include "search/search_lists.h"
#include "support/data_row.h"
#include "support/visit_count.h"
#include "window/address_bar_fixture.h"
#include "window/tabs_fixture.h"

// What is typed in the address bar, opened in tabs that load real pages.
class TestAddressOpening final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    m_f.Prepare();
    m_f.server.RoutePage("/a", "Page A");
    m_f.server.RoutePage("/b", "Page B");
    m_f.server.RoutePage("/find", "Found");
  }

  void init() {
    m_f.Begin();
    m_history = std::make_unique<THistoryStore>(m_f.Path("history.sqlite"));
    TZVOptions(*m_f.store).Set(Setting::AutoCompleteStyle, "none");
  }

  void cleanup() {
    m_search.reset();
    m_lists.reset();
    m_f.End();
    m_history.reset();
  }

  void TypedAddressReachesTabAndList() {
    Make();
    const QString address = m_f.server.Url("/a");
    m_box.Enter(address);
    QTRY_COMPARE_WITH_TIMEOUT(m_box.Entries(), QStringList(address), m_f.LoadTime);
    QTRY_COMPARE_WITH_TIMEOUT(m_f.tabs->GetActivePage()->GetLocationUrl(), address, m_f.LoadTime);
    QCOMPARE(m_f.tabs->TabCount(), 1);
    // A page that the tab goes to by itself is not filed.
    m_f.tabs->GetActivePage()->Navigate(m_f.server.Url("/b"));
    QTRY_COMPARE_WITH_TIMEOUT(m_box.Edit()->text(), m_f.server.Url("/b"), m_f.LoadTime);
    QCOMPARE(m_box.Entries(), QStringList(address));
    m_box.Enter(m_f.server.Url("/find"), Qt::AltModifier);
    QTRY_COMPARE_WITH_TIMEOUT(m_box.Entries().value(0), m_f.server.Url("/find"), m_f.LoadTime);
    QCOMPARE(m_f.tabs->TabCount(), 2);
    TZVOptions(*m_f.store).Set(Setting::AddressNewWin, true);
    QVERIFY(m_search->Open(m_f.server.Url("/a"), false));
    QCOMPARE(m_f.tabs->TabCount(), 3);
    Q_EMIT m_lists->EngineChosen(m_f.server.Url("/b"));
    QCOMPARE(m_f.tabs->TabCount(), 4);
  }

  void PageSource() {
    Make();
    m_box.Enter("view-source:" + m_f.server.Url("/a"));
    QTRY_COMPARE_WITH_TIMEOUT(m_box.Entries(), QStringList("view-source:" + m_f.server.Url("/a")), m_f.LoadTime);
  }

  // What goes into the list is the engine's own spelling, not the typed one.
  void FiledAsOpened() {
    Make();
    m_f.Load(m_f.tabs->GetActivePage(), "/a");
    const QString host = m_f.server.Url(QString());
    m_box.Enter(host.mid(7));
    QTRY_COMPARE_WITH_TIMEOUT(m_box.Entries(), QStringList(host + '/'), m_f.LoadTime);
    m_box.Enter(host + "/x/../a?q='x'#here");
    QTRY_COMPARE_WITH_TIMEOUT(m_box.Entries().value(0), host + "/a?q=%27x%27#here", m_f.LoadTime);
  }

  void LeadsNowhere_data() {
    Columns<QString, bool, QStringList>("typed", "isLocked", "filed");
    QTest::newRow("no address") << "two words" << false << QStringList();
    QTest::newRow("unknown scheme") << "nosuch:thing" << false << QStringList();
    QTest::newRow("script") << "javascript:void 0" << false << QStringList();
    QTest::newRow("away from a locked tab") << m_f.server.Url("/b") << true << QStringList();
    // The tab has set out for it; only on the way it turned out that nobody is there.
    QTest::newRow("nobody answers") << "127.0.0.1:1/" << false << QStringList("http://127.0.0.1:1/");
  }
  void LeadsNowhere() {
    QFETCH(QString, typed);
    QFETCH(bool, isLocked);
    Make();
    TBrowserTab *tab = m_f.tabs->GetActivePage();
    m_f.Load(tab, "/a");
    tab->SetLocked(isLocked);
    m_box.Enter(typed);
    QTRY_COMPARE(m_f.tabs->TabCount(), isLocked ? 2 : 1);
    QFETCH(QStringList, filed);
    QTRY_COMPARE(m_box.Entries(), filed);
    if (typed.startsWith("javascript:")) QCOMPARE(m_box.Edit()->text(), m_f.server.Url("/a"));
    tab->SetLocked(false);
    // What is opened next from elsewhere was not typed.
    m_f.tabs->Activate(tab);
    TZVOptions(*m_f.store).Set(Setting::SearchNewWin, false);
    Q_EMIT m_lists->EngineChosen(m_f.server.Url("/find"));
    QTRY_COMPARE_WITH_TIMEOUT(tab->GetLocationUrl(), m_f.server.Url("/find"), m_f.LoadTime);
    QCOMPARE(m_box.Entries(), filed);
  }

  void RecordsVisits() {
    Make();
    m_f.server.Route("/late",
                     TTestResponse::Page("<title>Early</title><script>setTimeout(() => document.title = 'Late', 50)"
                                         "</script>"));
    const auto recorded = [&](const QString &address) {
      (void)m_history->Flush();
      return m_history->Find(address);
    };
    TBrowserTab *tab = m_f.tabs->GetActivePage();
    tab->Navigate(m_f.server.Url("/a"));
    QTRY_VERIFY_WITH_TIMEOUT(recorded(m_f.server.Url("/a")).has_value(), m_f.LoadTime);
    QCOMPARE(recorded(m_f.server.Url("/a"))->title, "Page A");
    m_f.tabs->NewBackgroundTab()->Navigate(m_f.server.Url("/late"));
    QTRY_VERIFY_WITH_TIMEOUT(recorded(m_f.server.Url("/late")).has_value(), m_f.LoadTime);
    QTRY_COMPARE_WITH_TIMEOUT(recorded(m_f.server.Url("/late"))->title, "Late", m_f.LoadTime);

    // A reload is no further visit, coming back is.
    QSignalSpy loaded(m_f.tabs.get(), &TTabStrip::TabLoaded);
    tab->Refresh();
    QTRY_COMPARE_WITH_TIMEOUT(loaded.size(), 1, m_f.LoadTime);
    tab->Navigate(m_f.server.Url("/b"));
    QTRY_VERIFY_WITH_TIMEOUT(recorded(m_f.server.Url("/b")).has_value(), m_f.LoadTime);
    QCOMPARE(recorded(m_f.server.Url("/a"))->visits, 1);
    tab->Navigate(m_f.server.Url("/a"));
    QTRY_COMPARE_WITH_TIMEOUT(recorded(m_f.server.Url("/a"))->visits, 2, m_f.LoadTime);

    // What cannot be loaded was not visited.
    loaded.clear();
    const QString nobody = "http://127.0.0.1:1/";
    tab->Navigate(nobody);
    QTRY_VERIFY_WITH_TIMEOUT(!loaded.isEmpty(), m_f.LoadTime);
    QVERIFY(tab->Browser()->ShowsNotice() && tab->GetLocationUrl() == nobody);
    QVERIFY(!recorded(nobody));
    QVERIFY(m_history->Flush());
    QCOMPARE(VisitCount(m_history->FilePath()), 3);
  }

  void QuickSearch() {
    TZVOptions(*m_f.store).SetQuickSearchEntries({{"f", m_f.server.Url("/find?q=%s")}});
    Make();
    for (const bool newWin : {false, true}) {
      m_f.settings->Set(Setting::QuickSearchNewWin, newWin);
      m_f.server.ForgetRequests();
      m_box.Enter("F two words");
      QTRY_COMPARE_WITH_TIMEOUT(m_f.server.RequestCount("/find"), 1, m_f.LoadTime);
      QCOMPARE(m_f.server.Requests("/find").first().query, "q=two%20words");
      QCOMPARE(m_f.tabs->TabCount(), newWin ? 2 : 1);
    }
  }

  void FaultyQuickSearch() {
    TZVOptions(*m_f.store).SetQuickSearchEntries({{"f", m_f.server.Url("/find?q=%s&r=%20")}});
    Make();
    m_box.Enter("f word");
    auto *box = m_f.window->findChild<QMessageBox *>();
    QVERIFY(box != nullptr);
    QVERIFY2(box->text().contains(QString::fromUtf8("“f”")) && box->text().contains("r=%20"), qPrintable(box->text()));
    QCOMPARE(m_f.tabs->TabCount(), 1);
    QCOMPARE(m_f.tabs->GetActivePage()->Url(), "");
    box->close();
    // What the tab shows next was not typed.
    m_box.bar->AddTypedAddress("http://a.example/");
    QCOMPARE(m_box.bar->count(), 0);
  }

 private:
  // After the settings, which the bar reads when it is made.
  void Make() {
    m_box.Make(*m_f.window, m_f.language, *m_f.settings, *m_history);
    m_lists = std::make_unique<TSearchLists>(m_f.language, *m_f.store, *m_f.actions, nullptr);
    m_search =
        std::make_unique<TAddressSearch>(m_f.window.get(), *m_f.actions, *m_box.bar, *m_f.tabs, *m_lists, *m_history);
    connect(m_f.tabs.get(), &TTabStrip::AddressChanged, m_box.bar, &TAddressBar::ShowAddress);
  }

  TTabsFixture m_f;
  TAddressBarFixture m_box;
  std::unique_ptr<THistoryStore> m_history;
  std::unique_ptr<TSearchLists> m_lists;
  std::unique_ptr<TAddressSearch> m_search;
};

int main(int argc, char **argv) {
  return RunWithEngine<TestAddressOpening>(argc, argv);
}

#include "test_address_opening.moc"
