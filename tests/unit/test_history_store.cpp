#include <sqlite3.h>
#include <future>
#include <QtTest>

#include "history/history_store.h"
#include "history/visit_words.h"
#include "support/data_row.h"
#include "support/store_trouble.h"
#include "support/visit_count.h"

// The pages that were visited, and how they are found.
class TTestHistoryStore final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    m_folder = std::make_unique<QTemporaryDir>();
    m_file = m_folder->filePath("data/history.sqlite");
  }

  void CountsVisits() {
    {
      THistoryStore store(m_file);
      QVERIFY(!QFileInfo::exists(m_file));
      QVERIFY(store.Search("a", 5).isEmpty());
      QVERIFY(store.Flush());
      store.AddVisit("http://a.example/", "First", At(10));
      store.AddVisit("http://a.example/", QString(), At(30));
      store.AddVisit("http://a.example/", "Late\nnews", At(20));
    }
    // The end of the store writes what it still held.
    const THistoryStore again(m_file);
    QCOMPARE(VisitCount(m_file), 1);
    const auto page = again.Find("http://a.example/");
    QVERIFY(page.has_value());
    QCOMPARE(page->visits, 3);
    QCOMPARE(page->title, QString("Late news"));
    QCOMPARE(page->firstVisit, At(10));
    QCOMPARE(page->lastVisit, At(30));
    QVERIFY(!again.Find("http://A.example/"));
    QCOMPARE(QFile::permissions(m_file) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
  }

  void TitleFollows() {
    THistoryStore store(m_file);
    store.AddVisit("http://a.example/", "Old words");
    store.SetTitle("http://a.example/", "New words");
    store.SetTitle("http://never.example/", "Never");
    QVERIFY(store.Flush());
    QCOMPARE(Addresses(store, "new"), QStringList("http://a.example/"));
    QVERIFY(Addresses(store, "old").isEmpty());
    QCOMPARE(VisitCount(m_file), 1);
    QCOMPARE(store.Find("http://a.example/")->visits, 1);
  }

  void WhatIsRecorded() {
    THistoryStore store(m_file);
    for (const QString &address : QStringList{"about:blank", "zarvela:start", "javascript:x", "data:text/html,x",
                                              "view-source:http://a/", "VIEW-SOURCE:http://a/", "blob:http://a/1", "",
                                              "no address", ":", "http://a.example/" + QString(100000, 'x')}) {
      store.AddVisit(address, "t");
      store.SetTitle(address, "t");
    }
    QVERIFY(store.Flush());
    QCOMPARE(VisitCount(m_file), 0);
    for (const char *address : {"http://a.example/", "https://a.example/", "file:///a", "ftp://a.example/"}) {
      store.AddVisit(address, "t");
    }
    QVERIFY(store.Flush());
    QCOMPARE(VisitCount(m_file), 4);
  }

  void RemovesAndClears() {
    THistoryStore store(m_file);
    for (int i = 0; i < 5; ++i) store.AddVisit(QString("http://%1.example/").arg(i), "Page");
    store.Remove("http://3.example/");
    QVERIFY(store.Flush());
    QCOMPARE(Addresses(store, "page").size(), 4);
    QVERIFY(Addresses(store, "3").isEmpty());
    store.Clear();
    store.AddVisit("http://new.example/", "Page");
    QVERIFY(store.Flush());
    QCOMPARE(Addresses(store, "page"), QStringList("http://new.example/"));
  }

  void Finds_data() {
    Columns<QString, bool>("text", "found");
    const auto row = [](const char *text, bool found) { QTest::newRow(text) << QString(text) << found; };
    row("news", true);
    row("NE", true);
    row("ews", false);
    row("weather news", true);
    row("example.org/new", true);
    row("http://www.example.org/news/", true);
    row("https://www.example.org", false);
    row("example.net", false);
    row("news example", true);
    row("strasse", true);
    row("straße", true);
    row("bucher", true);
    row("索の", true);
    row("索検", false);
    row("übung", true);
    row("c++", true);  // finds any word that begins with "c"
    row("\" OR words*", false);
    row("  ", false);
    row("", false);
  }
  void Finds() {
    THistoryStore store(m_file);
    store.AddVisit(
        "http://www.example.org/news/%C3%9Cbung?id=1",
        "Weather & News – Stra\u00DFe, B\u00FCcher \u30AF\u30A4\u30C3\u30AF\u691C\u7D22\u306E\u6574\u7406 City");
    QVERIFY(store.Flush());
    QFETCH(QString, text);
    QTEST(!store.Search(text, 5).isEmpty(), "found");
  }

  void MostUsedFirst() {
    THistoryStore store(m_file);
    const auto visit = [&](const char *name, int times, int last) {
      for (int i = 0; i < times; ++i) store.AddVisit(QString("http://%1.example/").arg(name), "Page", At(last));
    };
    visit("rare", 1, 50);
    visit("often", 5, 10);
    visit("older", 2, 20);
    visit("newer", 2, 30);
    QVERIFY(store.Flush());
    QCOMPARE(Addresses(store, "page"), QStringList({"http://often.example/", "http://newer.example/",
                                                    "http://older.example/", "http://rare.example/"}));
    QCOMPARE(Addresses(store, "page", 2).size(), 2);
    QVERIFY(Addresses(store, "page", 0).isEmpty());
  }

  // More pages than are looked through at once: rare words are found all the same, wherever they stand, common ones
  // give a full answer, and the most used page comes first.
  void FindsAmongMany() {
    constexpr int Many = 12000;
    THistoryStore store(m_file);
    for (int i = 0; i < Many; ++i) {
      const QString address = QString("http://www.example.org/page%1").arg(i);
      store.AddVisit(address, i % 4000 == 17 ? "A needle in it" : "Some title");
      if (i % 3 == 0) store.AddVisit(address, QString());
      for (int again = 0; i == 8017 && again < 5; ++again) store.AddVisit(address, QString());
    }
    QTRY_VERIFY_WITH_TIMEOUT(store.Flush(), 30000);
    QCOMPARE(VisitCount(m_file), Many);
    QCOMPARE(Addresses(store, "need"),
             QStringList({"http://www.example.org/page8017", "http://www.example.org/page4017",
                          "http://www.example.org/page17"}));
    QCOMPARE(Addresses(store, "some title page11999"), QStringList("http://www.example.org/page11999"));
    QCOMPARE(Addresses(store, "example page").size(), 20);
    QCOMPARE(store.Search("example page", 1).first().address, QString("http://www.example.org/page8017"));
  }

  void DamagedFileIsSetAside() {
    QVERIFY(QDir().mkpath(QFileInfo(m_file).path()));
    QFile file(m_file);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("SQLite format 3 and rubbish") > 0);
    file.close();
    THistoryStore store(m_file);
    QVERIFY(store.Search("a", 5).isEmpty());
    store.AddVisit("http://a.example/", "A");
    QVERIFY(store.Flush() && QFileInfo::exists(store.SetAsideFile()));
    QCOMPARE(Addresses(store, "a"), QStringList("http://a.example/"));
  }

  // Another program writes over the file while the store is at work.
  void DamageInUse() {
    THistoryStore store(m_file);
    for (int i = 0; i < 3000; ++i) store.AddVisit(QString("http://a.example/%1").arg(i), "Page");
    QTRY_VERIFY_WITH_TIMEOUT(store.Flush(), 30000);
    {
      sqlite3 *other = nullptr;
      QCOMPARE(sqlite3_open(QFile::encodeName(m_file).constData(), &other), SQLITE_OK);
      QCOMPARE(sqlite3_exec(other, "PRAGMA wal_checkpoint(TRUNCATE)", nullptr, nullptr, nullptr), SQLITE_OK);
      sqlite3_close(other);
    }
    QFile file(m_file);
    QVERIFY(file.open(QIODevice::ReadWrite) && file.seek(100));
    QVERIFY(file.write(QByteArray(file.size() - 100, '\x55')) > 0);
    file.close();
    const auto works = [&] {
      store.AddVisit("http://after.example/", "After");
      (void)store.Search("page needle", 5);
      return store.Flush() && Addresses(store, "after") == QStringList("http://after.example/");
    };
    QTRY_VERIFY_WITH_TIMEOUT(works(), 20000);
    QVERIFY(QFileInfo::exists(store.SetAsideFile()));
  }

  void SeveralProcesses() {
    THistoryStore one(m_file);
    THistoryStore two(m_file);
    for (int i = 0; i < 50; ++i) {
      one.AddVisit("http://both.example/", "Both");
      two.AddVisit("http://both.example/", "Both");
      if (i % 10 == 0) QVERIFY(one.Flush());
    }
    QVERIFY(one.Flush() && two.Flush());
    QCOMPARE(one.Find("http://both.example/")->visits, 100);
    QCOMPARE(Addresses(two, "both"), QStringList("http://both.example/"));
  }

  // A visit is not lost because somebody else keeps the file for a while.
  void LockedByAnother() {
    THistoryStore store(m_file);
    store.AddVisit("http://a.example/", "Page");
    QVERIFY(store.Flush());
    sqlite3 *other = nullptr;
    QCOMPARE(sqlite3_open(QFile::encodeName(m_file).constData(), &other), SQLITE_OK);
    QCOMPARE(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
    store.AddVisit("http://b.example/", "Page");
    QVERIFY(!store.Flush());
    QCOMPARE(Addresses(store, "page"), QStringList("http://a.example/"));
    QCOMPARE(sqlite3_exec(other, "ROLLBACK", nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(other);
    QTRY_VERIFY_WITH_TIMEOUT(store.Flush(), 10000);
    QCOMPARE(Addresses(store, "page").size(), 2);
  }

  // Visits wait, but not all of them without end; what is to be gone does.
  void TooMuchWaits() {
    THistoryStore store(m_file);
    store.AddVisit("http://secret.example/", "Page");
    QVERIFY(store.Flush());
    std::optional<TStoreLock> lock(std::in_place, m_file);
    store.Remove("http://secret.example/");
    for (int i = 0; i < 10100; ++i) store.AddVisit("http://a.example/", "Page");
    QVERIFY(!store.Flush(1000));
    lock.reset();
    QTRY_VERIFY_WITH_TIMEOUT(store.Flush(), 20000);
    QVERIFY(!store.Find("http://secret.example/"));
    QVERIFY(store.Find("http://a.example/")->visits < 10100);
  }

  // The end waits for somebody who keeps the file locked, but not for ever.
  void LockedAtTheEnd() {
    auto store = std::make_unique<THistoryStore>(m_file);
    store->AddVisit("http://a.example/", "Page");
    QVERIFY(store->Flush());
    std::optional<TStoreLock> lock(std::in_place, m_file);
    store->AddVisit("http://b.example/", "Page");
    auto end = std::async(std::launch::async, [&store] { store.reset(); });
    // Longer than any writer takes by itself.
    QVERIFY(end.wait_for(std::chrono::milliseconds(2500)) == std::future_status::timeout);
    lock.reset();
    end.get();
    QCOMPARE(VisitCount(m_file), 2);

    store = std::make_unique<THistoryStore>(m_file);
    lock.emplace(m_file);
    store->AddVisit("http://c.example/", "Page");
    QElapsedTimer timer;
    timer.start();
    QVERIFY(!store->Flush(300));
    store.reset();
    QVERIFY(timer.elapsed() < 2000);
  }

  void DiskIsFull() {
    THistoryStore store(m_file);
    store.AddVisit("http://a.example/", "Page");
    QVERIFY(store.Flush());
    {
      const TSmallFiles limit(50000);
      for (int i = 0; i < 100; ++i) store.AddVisit(QString("http://%1.example/").arg(i), QString(1000, u'x'));
      QVERIFY(!store.Flush(300));
    }
    QTRY_VERIFY(store.Flush());
    QCOMPARE(VisitCount(m_file), 101);
  }

  // What the user wants to be gone waits where it cannot be written, which is told once, and goes when it can.
  void RemovalIsNeverLost_data() {
    Columns<bool, QString>("isFull", "what");
    for (const char *what : {"page", "span", "all"}) {
      Row(qPrintable(QString("disk is full, ") + what), true, QString(what));
      Row(qPrintable(QString("nothing can be written, ") + what), false, QString(what));
    }
  }
  void RemovalIsNeverLost() {
    QFETCH(bool, isFull);
    QFETCH(QString, what);
    THistoryStore store(m_file);
    store.AddVisit("http://secret.example/", "Page");
    QVERIFY(store.Flush());
    int told = 0;
    connect(&store, &THistoryStore::Troubled, this,
            [&](THistoryTrouble trouble) { told += trouble == THistoryTrouble::RemovalFails ? 1 : 0; });
    std::optional<TSmallFiles> full;
    std::optional<TMissingFolder> missing;
    for (int i = 1; i <= 2; ++i) {
      isFull ? void(full.emplace(1)) : void(missing.emplace(QFileInfo(m_file).path()));
      if (what == "page") store.Remove("http://secret.example/");
      if (what == "span") store.RemoveSpan({.site = "secret.example"});
      if (what == "all") store.Clear();
      QTRY_COMPARE(told, i);
      QVERIFY(store.Removal().isGoing && store.Removal().isFailing);
      QVERIFY(!store.Flush(500));
      QCoreApplication::processEvents();
      QCOMPARE(told, i);
      full.reset();
      missing.reset();
      // By itself, however long it has been tried.
      QTRY_VERIFY_WITH_TIMEOUT(!store.Removal().isGoing, 20000);
      QVERIFY(!store.Removal().isFailing);
      QVERIFY(store.Flush());
      QCOMPARE(VisitCount(m_file), 0);
      store.AddVisit("http://secret.example/", "Page");
      QVERIFY(store.Flush());
    }
  }

  // The pauses between tries in vain double.
  void TriesLessAndLessOften() {
    THistoryStore store(m_file);
    store.AddVisit("http://a.example/", "Page");
    QVERIFY(store.Flush());
    const TSmallFiles limit(1);
    static std::atomic_int tries;
    tries = 0;
    ::signal(SIGXFSZ, [](int) { ++tries; });
    QElapsedTimer clock;
    clock.start();
    store.Remove("http://a.example/");
    QTRY_VERIFY_WITH_TIMEOUT(tries >= 5, 20000);
    QVERIFY2(clock.elapsed() >= 1500, qPrintable(QString::number(clock.elapsed())));
  }

  void PlacesOfWords_data() {
    Columns<QString, QString, QString>("text", "query", "marked");
    const auto row = [](const char *name, const QString &text, const QString &query, const QString &marked) {
      Row(name, text, query, marked);
    };
    row("where words begin", "News from renewed Newark", "ne", "[Ne]ws from renewed [Ne]wark");
    row("accents", "In Z\u00FCrich", "zur", "In [Z\u00FCr]ich");
    row("accents apart", "In Zu\u0308rich", "zur", "In [Zu\u0308r]ich");
    row("an accent at the end", "caf\u0065\u0301 x", "cafe", "[caf\u0065\u0301] x");
    row("one letter for two", "Stra\u00DFen", "strass", "[Stra\u00DF]en");
    row("several parts, one in another", "newspaper daily", "news d new", "[news]paper [d]aily");
    row("across punctuation", "http://my-site.example/", "my-site", "http://[my-site].example/");
    row("without blanks", "\u6771\u4EAC\u90FD", "\u4EAC\u90FD", "\u6771[\u4EAC\u90FD]");
    row("behind a pair", "\U0001F600 new", "new", "\U0001F600 [new]");
    row("nothing", "news", "paper", "news");
  }
  // The places are shown in brackets.
  void PlacesOfWords() {
    QFETCH(QString, text);
    QFETCH(QString, query);
    const QList<VisitWords::TPlace> places = VisitWords::Places(text, VisitWords::Query(query));
    for (auto place = places.rbegin(); place != places.rend(); ++place) {
      text.insert(place->start + place->length, ']').insert(place->start, '[');
    }
    QTEST(text, "marked");
  }

  void FolderThatTakesNothing() {
    QFile inTheWay(m_folder->filePath("data"));
    QVERIFY(inTheWay.open(QIODevice::WriteOnly));
    THistoryStore store(m_file);
    store.AddVisit("http://a.example/", "Page");
    QVERIFY(store.Flush());
    QVERIFY(store.Search("page", 5).isEmpty());
    QCOMPARE(VisitCount(m_file), 0);
  }

 private:
  [[nodiscard]] static QStringList Addresses(const THistoryStore &store, const QString &text, int limit = 20) {
    QStringList addresses;
    for (const TVisitedPage &page : store.Search(text, limit)) addresses.append(page.address);
    return addresses;
  }
  [[nodiscard]] static QDateTime At(int second) { return QDateTime::fromSecsSinceEpoch(1700000000 + second); }

  std::unique_ptr<QTemporaryDir> m_folder;
  QString m_file;
};

QTEST_GUILESS_MAIN(TTestHistoryStore)
#include "test_history_store.moc"
