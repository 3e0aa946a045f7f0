#include <QtTest>

#include "history/history_store.h"
#include "history/url_history.h"
#include "support/data_row.h"
#include "support/store_trouble.h"
#include "support/visit_count.h"

// What is found in the history.
class TTestUrlHistory final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    m_folder = std::make_unique<QTemporaryDir>();
    m_store = std::make_unique<THistoryStore>(m_folder->filePath("history.sqlite"));
    m_history = std::make_unique<TUrlHistory>(*m_store);
    m_finished = std::make_unique<QSignalSpy>(m_history.get(), &TUrlHistory::Finished);
  }
  void cleanup() {
    m_history.reset();
    m_store.reset();
  }

  void KeepsByText_data() {
    Columns<QString, int, QStringList>("text", "mode", "kept");
    const QStringList all{"both", "title", "address", "none"};
    Row("no text, mode 0", "", 0, all);
    Row("no text, mode 1", "", 1, all);
    Row("no text, mode 2", "", 2, all);
    Row("mode 0", "News", 0, QStringList{"both"});
    Row("mode 1", "News", 1, QStringList{"both", "title"});
    Row("mode 2", "News", 2, QStringList{"both"});
    Row("an unknown mode asks the title", "News", 3, QStringList{"both", "title"});
    Row("case counts", "news", 1, QStringList());
    Row("inside a word", "ews", 2, QStringList{"both"});
    Row("blanks count", " News", 1, QStringList{"title"});
  }
  void KeepsByText() {
    struct TPage {
      const char *name;
      const char *address;
      const char *title;
    };
    QFETCH(QString, text);
    QFETCH(int, mode);
    QStringList kept;
    for (const auto &[name, address, title] : {TPage{"both", "http://a.example/News", "News"},
                                               {"title", "http://a.example/b", "The News"},
                                               {"address", "http://a.example/News/2", "Other"},
                                               {"none", "http://c.example/", "Nothing"}}) {
      if (TUrlHistory::IsKept(address, title, text, mode)) kept.append(name);
    }
    QTEST(kept, "kept");
  }

  // The test above is the one that the search goes by, and everything that is known of a page is told.
  void TellsAndAsks() {
    m_store->AddVisit("http://a.example/News", "News", At(10));
    m_store->AddVisit("http://b.example/News", "Old", At(20));
    m_store->AddVisit("http://d.example/", "News", At(25));
    m_store->AddVisit("http://c.example/News", "News", At(30));
    m_store->AddVisit("http://c.example/News", "News", At(40));
    QVERIFY(m_store->Flush());
    QStringList asked;
    m_history->SetDays(10);
    m_history->SetAccept([&](const QString &address, const QString &title, const QDateTime &visited,
                             const QDateTime &updated, const QDateTime &expires, bool &isAccepted) {
      QVERIFY(isAccepted && visited == updated && expires == visited.addDays(10));
      asked.append(address + u' ' + title + u' ' + QString::number(visited.toSecsSinceEpoch() % 100));
      isAccepted = !address.contains("a.example");
    });
    m_history->Enumerate("News", 0);
    QVERIFY(m_history->IsSearching());
    QTRY_COMPARE(m_finished->count(), 1);
    QVERIFY(!m_history->IsSearching());
    QCOMPARE(asked, QStringList({"http://c.example/News News 40", "http://a.example/News News 10"}));
    QCOMPARE(Addresses(), QStringList("http://c.example/News"));
    QCOMPARE(m_history->Entries().first().visits, 2);
    // Without a limit nothing expires.
    m_history->SetDays(0);
    m_history->SetAccept({});
    m_history->Enumerate("", 0);
    QTRY_COMPARE(m_finished->count(), 2);
    QCOMPARE(m_history->Entries().size(), 4);
    QVERIFY(!m_history->Entries().first().expires.isValid());
  }

  void SortsByKey_data() {
    Columns<int, bool, QString>("key", "ascending", "order");
    using TKey = TUrlHistory::TKey;
    Row("title", int(TKey::Title), true, "a c b");
    Row("title down", int(TKey::Title), false, "b c a");
    Row("address", int(TKey::Address), true, "a b c");
    Row("address down", int(TKey::Address), false, "c b a");
    Row("last visit", int(TKey::LastVisited), true, "b c a");
    Row("last visit down", int(TKey::LastVisited), false, "a c b");
    Row("visits", int(TKey::Visits), true, "c b a");
    Row("visits down, equal ones as they came", int(TKey::Visits), false, "b a c");
  }
  void SortsByKey() {
    for (const auto &[name, title, last] : {std::tuple("a", "alpha", 30), {"b", "Gamma", 10}, {"c", "Beta", 20}}) {
      m_store->AddVisit(QString("http://%1.example/").arg(name), title, At(last));
      if (*name != 'c') m_store->AddVisit(QString("http://%1.example/").arg(name), title, At(last));
    }
    QVERIFY(m_store->Flush());
    m_history->Enumerate("", 0);
    QTRY_COMPARE(m_finished->count(), 1);
    QFETCH(int, key);
    QFETCH(bool, ascending);
    m_history->Sort(TUrlHistory::TKey(key), ascending ? Qt::AscendingOrder : Qt::DescendingOrder);
    QStringList order;
    for (const QString &address : Addresses()) order.append(address.mid(7, 1));
    QTEST(order.join(u' '), "order");
  }

  // Over many pages, in pieces: each once, a later search ends the one before, and one that was ended says no more.
  void ComesInPieces() {
    constexpr int Many = 20000;
    for (int i = 0; i < Many; ++i) m_store->AddVisit(QString("http://a.example/%1").arg(i), "Page", At(i));
    QTRY_VERIFY_WITH_TIMEOUT(m_store->Flush(), 30000);
    QSignalSpy found(m_history.get(), &TUrlHistory::Found);
    m_history->Enumerate("", 0);
    m_history->Enumerate("a", 0);
    m_history->EnumerateWords("pag exam", Many + 1);
    QTRY_COMPARE_WITH_TIMEOUT(m_finished->count(), 1, 20000);
    QCOMPARE(m_history->Entries().size(), Many);
    const QStringList all = Addresses();
    QCOMPARE(QSet<QString>(all.begin(), all.end()).size(), Many);
    QVERIFY(found.count() >= 2);
    // The words of a page may stand in any order, but all must be there; no word at all finds nothing.
    m_history->EnumerateWords("PAGE 17", 3);
    QTRY_COMPARE(m_finished->count(), 2);
    QCOMPARE(m_history->Entries().size(), 3);
    QVERIFY(Addresses().first().contains("/17"));
    m_history->EnumerateWords(" ?! ", 3);
    QTRY_COMPARE(m_finished->count(), 3);
    QVERIFY(m_history->Entries().isEmpty());
    // Another one from within the first piece, when more pieces are on their way.
    const auto other = connect(m_history.get(), &TUrlHistory::Found, m_history.get(), [this] {
      QTest::qSleep(100);
      m_history->EnumerateWords("nowhere", 3);
    });
    m_history->Enumerate("", 0);
    QTRY_COMPARE(m_finished->count(), 4);
    QVERIFY(m_history->Entries().isEmpty());
    disconnect(other);
    connect(m_history.get(), &TUrlHistory::Found, m_history.get(), [this] { m_history->Cancel(); });
    m_history->Enumerate("", 0);
    QTRY_VERIFY(!m_history->IsSearching());
    QVERIFY(m_history->Entries().size() < Many);
    m_history->EnumerateWords("nowhere", 3);
    QTRY_COMPARE(m_finished->count(), 5);
  }

  // A history that cannot be read is not one in which nothing is found; the store is told of a damaged one.
  void TellsThatItHasFailed_data() {
    Columns<QString, bool, qsizetype>("state", "hasFailed", "found");
    Row("not there yet", "none", false, qsizetype(0));
    Row("locked", "locked", true, qsizetype(0));
    Row("damaged", "damaged", true, qsizetype(0));
    Row("damaged further on", "damaged inside", true, qsizetype(1));
  }
  void TellsThatItHasFailed() {
    QFETCH(QString, state);
    const QString path = m_store->FilePath();
    const int many = state == "none" ? 0 : state == "damaged inside" ? 5000 : 1;
    for (int i = 0; i < many; ++i) m_store->AddVisit(QString("http://a.example/%1").arg(i), "Page", At(i));
    QVERIFY(m_store->Flush(20000));
    m_history.reset();
    m_store.reset();
    if (state.startsWith("damaged")) {
      QFile file(path);
      QVERIFY(file.open(QIODevice::ReadWrite) && file.seek(many > 1 ? file.size() * 2 / 5 : 0));
      QVERIFY(file.write(QByteArray(many > 1 ? file.size() / 5 : file.size(), 'x')) > 0);
    }
    std::optional<TStoreLock> lock;
    if (state == "locked") lock.emplace(path, TStoreLock::TKind::Unreadable);
    m_store = std::make_unique<THistoryStore>(path);
    m_history = std::make_unique<TUrlHistory>(*m_store);
    m_finished = std::make_unique<QSignalSpy>(m_history.get(), &TUrlHistory::Finished);
    m_history->Enumerate("", 0);
    QTRY_COMPARE(m_finished->count(), 1);
    QTEST(m_history->HasFailed(), "hasFailed");
    QFETCH(qsizetype, found);
    QCOMPARE(std::min<qsizetype>(m_history->Entries().size(), 1), found);
    QVERIFY(m_history->Entries().size() < std::max(many, 1));
    if (state == "damaged") QTRY_VERIFY(!m_store->SetAsideFile().isEmpty());
    lock.reset();
    if (state == "damaged inside") return;
    m_history->Enumerate("", 0);
    QTRY_COMPARE(m_finished->count(), 2);
    QVERIFY(!m_history->HasFailed());
    QCOMPARE(m_history->Entries().size(), state == "locked" ? 1 : 0);
  }

  void TakesOut() {
    for (const char *name : {"a", "b", "c"}) m_store->AddVisit(QString("http://%1.example/").arg(name), "Page");
    QVERIFY(m_store->Flush());
    m_history->Enumerate("", 0);
    QTRY_COMPARE(m_finished->count(), 1);
    m_history->Remove("http://b.example/");
    QCOMPARE(Addresses(), QStringList({"http://c.example/", "http://a.example/"}));
    QVERIFY(m_store->Flush());
    QCOMPARE(VisitCount(m_store->FilePath()), 2);
    m_history->Clear();
    QVERIFY(m_history->Entries().isEmpty());
    QVERIFY(m_store->Flush());
    QCOMPARE(VisitCount(m_store->FilePath()), 0);
  }

 private:
  [[nodiscard]] QStringList Addresses() const {
    QStringList addresses;
    for (const TUrlHistoryEntry &entry : m_history->Entries()) addresses.append(entry.address);
    return addresses;
  }
  [[nodiscard]] static QDateTime At(int second) { return QDateTime::fromSecsSinceEpoch(1700000000 + second); }

  std::unique_ptr<QTemporaryDir> m_folder;
  std::unique_ptr<THistoryStore> m_store;
  std::unique_ptr<TUrlHistory> m_history;
  std::unique_ptr<QSignalSpy> m_finished;
};

QTEST_GUILESS_MAIN(TTestUrlHistory)
#include "test_url_history.moc"
