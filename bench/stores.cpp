// Measures what is looked up while the user types or a page opens a window, with far more data than anybody has.
//   bench_stores folder    keeps the filled history in this folder, for the next time

#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>

#include "config/named_address.h"
#include "history/history_reader.h"
#include "history/history_store.h"
#include "history/url_history.h"
#include "popups/popup_patterns.h"
#include "security/zone_map.h"
#include "table.h"

namespace {

constexpr int Repeats = 15;

constexpr int Visits = 1'000'000;
constexpr int VisitsAtOnce = 20'000;
constexpr int FlushTries = 120;         // each waits a second at the most
constexpr int Suggestions = 12;         // as many as the address bar offers
constexpr double CompletionLimit = 30;  // milliseconds
constexpr double FindLimit = 50;        // milliseconds, until the first pages that are found are there
constexpr int FoundAtMost = 1000;
constexpr int PagesOfAPiece = 300;

constexpr std::array PatternCounts{10, 1'000, 100'000};
constexpr int TestsAtOnce = 200;
constexpr double PopupLimit = 10;  // microseconds
constexpr int ZoneMappings = 50'000;
constexpr double ZoneLimit = 20;  // microseconds

// The median time of one call of `work`, in milliseconds.
template <typename TWork>
double Time(int callsAtOnce, TWork work) {
  std::vector<double> milliseconds;
  for (int repeat = 0; repeat < Repeats; ++repeat) {
    QElapsedTimer clock;
    clock.start();
    for (int call = 0; call < callsAtOnce; ++call) work();
    milliseconds.push_back(double(clock.nsecsElapsed()) / 1e6 / callsAtOnce);
  }
  return Median(milliseconds);
}

// Words in a fixed but scattered order, some far more often than others.
QString Word(quint32 number) {
  static constexpr std::array Syllables{"ka", "lo", "mi",  "ren", "tu", "sol", "ver", "an",
                                        "do", "pe", "gri", "ba",  "nu", "fe",  "xi",  "hol"};
  number = number * 2'654'435'761U >> 8;
  // The smaller of two draws: the first syllables are in many words.
  const auto draw = [&number] {
    const quint32 a = number % 16;
    const quint32 b = number / 16 % 16;
    number = number / 5 + 977;
    return QLatin1String(Syllables[std::min(a, b)]);
  };
  const QString first = draw();
  const QString second = draw();
  return first + second + draw();
}

class THistoryBench final {
 public:
  // What is filled in is told by the name: other contents need another one.
  explicit THistoryBench(const QString &folder) : m_file(folder + QStringLiteral("/history-1000000.sqlite")) {}

  bool Run() {
    if (!IsFilled() && !Fill()) {
      std::fprintf(stderr, "bench: %s could not be filled\n", qPrintable(m_file));
      return false;
    }
    struct TQuery {
      const char *name;
      QString text;
      bool isFound;
    };
    const TQuery queries[] = {
        {"1 character", QStringLiteral("k"), true},
        {"1 character of few pages", QStringLiteral("h"), true},
        {"1 character of none", QStringLiteral("q"), false},
        {"3 characters", QStringLiteral("kal"), true},
        {"3 characters of few pages", QStringLiteral("hol"), true},
        {"8 characters of one page", QStringLiteral("page4711"), true},
        {"8 characters of every page", QStringLiteral("https://"), true},
        {"a whole address", Address(4711), true},
        {"two words", QStringLiteral("kaka lo"), true},
        {"two words of few pages", QStringLiteral("h xi"), true},
        {"two words that never meet", QStringLiteral("page4711 page4712"), false},
        {"words that never meet", QStringLiteral("ka lo mi ren tu sol"), false},
        {"no match", QStringLiteral("zzyzx"), false},
        {"no match for the second word", QStringLiteral("kaka zzyzx"), false},
    };
    bool isGood = true;
    const THistoryStore store(m_file);
    for (const TQuery &query : queries) {
      qsizetype found = 0;
      Add(query.name, Time(1, [&] { found = store.Search(query.text, Suggestions).size(); }));
      if ((found > 0) == query.isFound) continue;
      std::fprintf(stderr, "bench: %d pages found for %s\n", int(found), qPrintable(query.text));
      isGood = false;
    }
    // What the first keystroke after a start waits for, too.
    Add("first of a start", Time(1, [this] { (void)THistoryStore(m_file).Search(QStringLiteral("h"), Suggestions); }));
    const QString row = QStringLiteral("completion: %1").arg(QLatin1String(m_slowestName));
    isGood = PrintValue(row, m_slowest, "ms", CompletionLimit) && isGood;
    isGood = Find() && isGood;
    Lists();
    return isGood;
  }

 private:
  // What somebody looks for in the history, by a text that counts as it stands and by words.
  bool Find() const {
    THistoryStore store(m_file);
    TUrlHistory history(store);
    QEventLoop loop;
    std::optional<qint64> first;
    QElapsedTimer clock;
    QObject::connect(&history, &TUrlHistory::Found, &loop, [&] {
      if (!first) first = clock.nsecsElapsed();
    });
    QObject::connect(&history, &TUrlHistory::Finished, &loop, &QEventLoop::quit);
    std::vector<double> firsts;
    std::vector<double> wholes;
    const auto run = [&](auto begin) {
      first.reset();
      clock.start();
      begin();
      loop.exec();
      wholes.push_back(double(clock.nsecsElapsed()) / 1e6);
      firsts.push_back(double(first.value_or(clock.nsecsElapsed())) / 1e6);
    };
    for (const char *text : {"ka", "lo", "an"}) {
      run([&] { history.Enumerate(QLatin1String(text), 0); });
    }
    for (const char *text : {"h", "page ka", "kaka lo"}) {
      run([&] { history.EnumerateWords(QLatin1String(text), FoundAtMost); });
    }
    const bool isGood = PrintValue(QStringLiteral("find in history: first results"), *std::ranges::max_element(firsts),
                                   "ms", FindLimit);
    PrintValue(QStringLiteral("find in history: all results"), *std::ranges::max_element(wholes), "ms", 0);
    run([&] { history.Enumerate(QStringLiteral("zzyzx"), 0); });
    PrintValue(QStringLiteral("find in history: no match"), wholes.back(), "ms", 0);
    return isGood;
  }

  // What the history's tree and lists read when a part of them opens, on a thread of their own.
  void Lists() const {
    THistoryReader reader(m_file);
    const QDate today = QDateTime::fromSecsSinceEpoch(1'600'000'000 + Visits).date();
    QList<THistoryPeriod> periods;
    PrintValue(QStringLiteral("history: days, weeks and months"),
               Time(1, [&] { periods = reader.Periods(today, Qt::Monday).value_or(periods); }), "ms", 0);
    qsizetype sites = 0;
    PrintValue(QStringLiteral("history: sites of the fullest day"),
               Time(1,
                    [&] {
                      const THistoryPeriod &day = periods.at(1);
                      sites = reader.Sites({.from = day.From(), .until = day.Until()}).value_or(QStringList()).size();
                    }),
               "ms", 0);
    PrintValue(QStringLiteral("history: a piece by number of visits"),
               Time(1, [&] { (void)reader.Pages({}, THistoryOrder::MostVisited, PagesOfAPiece); }), "ms", 0);
  }

  void Add(const char *name, double milliseconds) {
    if (milliseconds <= m_slowest) return;
    m_slowest = milliseconds;
    m_slowestName = name;
  }

  static QString Address(int visit) {
    const quint32 site = quint32(visit) / 50;
    return QStringLiteral("https://www.%1%2.example/page%3").arg(Word(site)).arg(site % 400).arg(visit);
  }

  qsizetype Count() const {
    const auto pages = THistoryReader(m_file).Pages({}, THistoryOrder::LastVisit, Visits + 1);
    return pages ? pages->size() : -1;
  }

  bool IsFilled() const {
    if (!QFile::exists(m_file)) return false;
    THistoryStore store(m_file);
    // A file of an earlier version is brought up to date first.
    return Count() == Visits || (Written(store) && Count() == Visits);
  }

  bool Fill() {
    std::fprintf(stderr, "bench: filling a history with %d visits, once\n", Visits);
    const QString unfinished = m_file + QStringLiteral(".new");
    for (const char *ending : {"", "-wal", "-shm"}) QFile::remove(unfinished + QLatin1String(ending));
    {
      THistoryStore store(unfinished);
      const QDateTime first = QDateTime::fromSecsSinceEpoch(1'600'000'000);
      for (int visit = 0; visit < Visits; ++visit) {
        const quint32 number = quint32(visit);
        const QString title = QStringLiteral("%1 %2 %3").arg(Word(number * 3), Word(number * 7), Word(number * 11));
        // Few pages are visited often.
        const int count = visit % 100 == 0 ? 1 + visit / 100 % 9 : 1;
        for (int again = 0; again < count; ++again) store.AddVisit(Address(visit), title, first.addSecs(visit + again));
        if (visit % VisitsAtOnce == VisitsAtOnce - 1 && !Written(store)) return false;
      }
      if (!Written(store)) return false;
    }
    QFile::remove(m_file);
    return QFile::rename(unfinished, m_file) && IsFilled();
  }

  static bool Written(THistoryStore &store) {
    for (int tries = 0; tries < FlushTries; ++tries) {
      if (store.Flush()) return true;
    }
    return false;
  }

  QString m_file;
  double m_slowest = 0;
  const char *m_slowestName = "";
};

// A list as it grows over years: sites, sites with a star for their servers, and parts of addresses.
QStringList PopupPatterns(int count) {
  QStringList patterns;
  for (int i = 0; i < count; ++i) {
    switch (i % 4) {
      case 0:
        patterns += QStringLiteral("http://ads%1.example/").arg(i);
        break;
      case 1:
        patterns += QStringLiteral("https://*.banner%1.example/*").arg(i);
        break;
      case 2:
        patterns += QStringLiteral("http*://*/popup?%1/*").arg(i);
        break;
      default:
        patterns += QStringLiteral("https://www.site%1.example/offers/").arg(i);
        break;
    }
  }
  return patterns;
}

bool PopupTest() {
  bool isGood = true;
  for (const int count : PatternCounts) {
    TPopupPatterns list;
    list.Set(PopupPatterns(count));
    struct TAddress {
      QString text;
      int match;
    };
    const int last = count - count % 4;  // a multiple of 4, so that what is added tells the kind of pattern
    const TAddress addresses[] = {
        {QStringLiteral("https://www.nowhere.example/news/index.html"), -1},
        {QStringLiteral("http://ads%1.example/show?id=7").arg(last - 4), last - 4},
        {QStringLiteral("https://cdn7.banner%1.example/now").arg(last - 3), last - 3},
        {QStringLiteral("https://cdn7.banner.example/now"), -1},
        {QStringLiteral("https://cdn7.other.example/popup/%1/show").arg(last - 2), last - 2},
        {QStringLiteral("https://www.site%1.example/prices/").arg(last - 1), -1},
        {QStringLiteral("https://www.long.example/popup?") + QString(2000, u'x'), -1},
    };
    double slowest = 0;
    for (const TAddress &address : addresses) {
      int match = -1;
      slowest = std::max(slowest, Time(TestsAtOnce, [&] { match = list.FirstMatch(address.text); }));
      if (match == address.match) continue;
      std::fprintf(stderr, "bench: pattern %d instead of %d stopped %s\n", match, address.match,
                   qPrintable(address.text.left(80)));
      isGood = false;
    }
    isGood =
        PrintValue(QStringLiteral("pop-up test, %1 patterns").arg(count), slowest * 1000, "us", PopupLimit) && isGood;
  }
  return isGood;
}

// What a start pays for the list before its first page may open a window.
void PopupReading() {
  const QStringList patterns = PopupPatterns(PatternCounts.back());
  TNamedAddresses lines;
  for (qsizetype i = 0; i < patterns.size(); ++i) {
    lines.append({QStringLiteral("url%1").arg(i + 1), patterns[i]});
  }
  const double reading = Time(1, [&] {
    QStringList read;
    for (const TNamedAddress &line : lines) read.append(line.WebAddress());
  });
  PrintValue(QStringLiteral("pop-up list: lines read, %1 patterns").arg(patterns.size()), reading, "ms", 0);
  TPopupPatterns list;
  const double arranging = Time(1, [&] { list.Set(patterns); });
  PrintValue(QStringLiteral("pop-up list: arranged, %1 patterns").arg(patterns.size()), arranging, "ms", 0);
}

bool ZoneLookUp() {
  QList<TZoneMapping> mappings;
  for (int i = 0; i < ZoneMappings; ++i) {
    const char *form = i % 3 == 0   ? "http://www.site%1.example"
                       : i % 3 == 1 ? "*.domain%1.example"
                                    : "https://*.b%1.test";
    mappings.append({QString::fromLatin1(form).arg(i), i % 3 == 0 ? 2 : 4});
  }
  TZoneMap map;
  const double arranging = Time(1, [&] { map.Set(mappings); });
  PrintValue(QStringLiteral("zones: arranged, %1 mappings").arg(ZoneMappings), arranging, "ms", 0);
  const std::pair<QString, int> addresses[] = {
      {QStringLiteral("https://www.nowhere.example/news/index.html"), 3},
      {QStringLiteral("http://www.site49998.example/show?id=7"), 2},
      {QStringLiteral("https://a.b.c.domain49999.example/now"), 4},
      {QStringLiteral("https://x.b2.test:8443/"), 4},
      {QStringLiteral("https://b\u00fccher.nowhere.example/news/index.html"), 3},
      {QStringLiteral("https://") + QStringLiteral("a.").repeated(100) + QStringLiteral("example/"), 3},
  };
  bool isGood = true;
  double slowest = 0;
  double plain = 0;
  for (const auto &[address, expected] : addresses) {
    int zone = -1;
    slowest = std::max(slowest, Time(TestsAtOnce, [&, &text = address] { zone = map.ZoneOf(text); }));
    if (plain == 0) plain = slowest;
    if (zone == expected) continue;
    std::fprintf(stderr, "bench: zone %d instead of %d for %s\n", zone, expected, qPrintable(address.left(80)));
    isGood = false;
  }
  PrintValue(QStringLiteral("zones: a plain address"), plain * 1000, "us", 0);
  return PrintValue(QStringLiteral("zones: the slowest address"), slowest * 1000, "us", ZoneLimit) && isGood;
}

}  // namespace

int main(int argc, char **argv) {
  QCoreApplication application(argc, argv);
  if (argc != 2) {
    std::fprintf(stderr, "usage: bench_stores folder\n");
    return 2;
  }
  std::printf("\nMedians of %d times, the slowest of several questions (completion: over %d visits).\n\n", Repeats,
              Visits);
  const bool patternsAreGood = PopupTest();
  PopupReading();
  const bool zonesAreGood = ZoneLookUp();
  const bool historyIsGood = THistoryBench(QString::fromLocal8Bit(argv[1])).Run();
  return patternsAreGood && zonesAreGood && historyIsGood ? 0 : 1;
}
