// Measures the program against a bare engine view built in the same tree, in one run, and prints ratios.
//   bench_driver [--bare-only] [--rounds N]

#include <algorithm>
#include <array>
#include <cstdio>
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QSize>
#include <vector>

#include "config/options.h"
#include "page_server.h"
#include "store/registry_store.h"
#include "subject.h"
#include "table.h"

namespace {

constexpr double FirstPageLimit = 1.30;
constexpr double TabLimit = 1.15;
constexpr double HandOffLimit = 2.20;
constexpr std::array TabCounts{1, 20, 100};
constexpr int GroupPages = 100;
constexpr int HandOffsEachRound = 3;
constexpr int Calm = 300;  // milliseconds, for what a page still does once it is painted
constexpr int DefaultRounds = 5;
constexpr int MostTabRounds = 3;
constexpr QSize WindowSize(780, 720);  // leaves pages the room that they have in the bare view

using TReport = TPageServer::TReport;

// The starts of one program in one measurement.
struct TSeries {
  std::vector<double> milliseconds;
  std::vector<double> mebibytes;
  int processes = 0;

  void Add(const TCost &cost) {
    milliseconds.push_back(cost.milliseconds);
    mebibytes.push_back(cost.mebibytes);
    processes = cost.processes;
  }
};

class TBench final {
 public:
  TBench(const QString &folder, bool bareOnly, int rounds)
      : m_bare(QStringLiteral("bare view"), folder + QStringLiteral("/bare_view")),
        m_libraries(QStringLiteral("libraries"), folder + QStringLiteral("/libraries_alone")),
        m_zarvela(QStringLiteral("zarvela"), folder + QStringLiteral("/../zarvela")),
        m_bareOnly(bareOnly),
        m_rounds(rounds) {}

  int Run() {
    if (!m_server.isListening()) {
      std::fprintf(stderr, "bench: no port on 127.0.0.1 to listen on\n");
      return 1;
    }
    std::printf("Medians of %d starts (tabs: of %d), each program with folders of its own.\n\n", m_rounds, TabRounds());
    PrintHead("bare view", "zarvela");
    Libraries();
    FirstPage();
    Tabs();
    if (!m_bareOnly) {
      GroupHandedOver();
      std::printf("\n");
      PrintHead("libraries", "zarvela");
      HandOff();
    }
    return m_failed ? 1 : 0;
  }

 private:
  int TabRounds() const { return std::min(m_rounds, MostTabRounds); }

  // False, with the reason on stderr, when there are no numbers.
  bool Good(const TCost &cost) {
    if (cost.trouble.isEmpty()) return true;
    std::fprintf(stderr, "bench: %s\n", qPrintable(cost.trouble));
    m_failed = true;
    return false;
  }

  void Libraries() {
    TSeries series;
    for (int round = 0; round <= m_rounds; ++round) {
      const TCost cost = m_libraries.RunToEnd({});
      if (!Good(cost)) return;
      if (round > 0) series.Add(cost);  // The first start brings the files into memory.
    }
    PrintRatio(QStringLiteral("libraries alone"), Median(series.milliseconds), 0, "ms", 0);
  }

  QStringList Addresses(int pages) const {
    QStringList addresses;
    for (int page = 1; page <= pages; ++page) addresses += m_server.Address(page);
    return addresses;
  }

  // The settings of a user who has answered the questions already.
  void WriteSettings(const QString &mode, const QStringList &addresses) {
    TRegistryStore store(m_zarvela.RegistryFile());
    TZVOptions options(store);
    options.Set(Setting::AskDefaultBrowser, false);
    options.Set(Setting::ConfirmShutdown, false);
    options.Set(Setting::StartupMode, mode);
    options.Set(Setting::Left, 0);
    options.Set(Setting::Top, 0);
    options.Set(Setting::Width, WindowSize.width());
    options.Set(Setting::Height, WindowSize.height());
    // The list is opened from its end to its start.
    TNamedAddresses sites;
    for (qsizetype place = addresses.size(); place > 0; --place) {
      sites.append({QStringLiteral("url%1").arg(place), addresses[place - 1]});
    }
    options.SetLastOpenSites(sites);
  }

  TCost StartBare(int pages, TReport report, bool memory) {
    m_server.BeginRun();
    return m_bare.Start(Addresses(pages), m_server, pages, report, memory);
  }

  TCost StartRestored(int pages, TReport report, bool memory) {
    m_server.BeginRun();
    WriteSettings(QStringLiteral("Last"), Addresses(pages));
    return m_zarvela.Start({}, m_server, pages, report, memory);
  }

  // Started as by a link in another program: the home page opens too.
  TCost StartWithAddress() {
    m_server.BeginRun();
    WriteSettings(QStringLiteral("Home"), {});
    return m_zarvela.Start(Addresses(1), m_server, 1, TReport::Painted, false);
  }

  void FirstPage() {
    TSeries bare;
    TSeries restored;
    TSeries withAddress;
    for (int round = 0; round <= m_rounds; ++round) {
      const TCost bareCost = StartBare(1, TReport::Painted, false);
      if (!Good(bareCost)) return;
      if (round > 0) bare.Add(bareCost);
      const QSize bareViewport = m_server.Viewport();
      if (m_bareOnly) continue;
      const TCost addressCost = StartWithAddress();
      const TCost restoredCost = StartRestored(1, TReport::Painted, false);
      if (!Good(addressCost) || !Good(restoredCost)) return;
      if (round == 0) continue;
      if (round == 1) PrintViewports(bareViewport, m_server.Viewport());
      withAddress.Add(addressCost);
      restored.Add(restoredCost);
    }
    const double bareMedian = Median(bare.milliseconds);
    PrintRatio(QStringLiteral("first page painted, from an address"), bareMedian, Median(withAddress.milliseconds),
               "ms", FirstPageLimit);
    if (m_bareOnly) return;
    PrintRatio(QStringLiteral("first page painted, restored"), bareMedian, Median(restored.milliseconds), "ms",
               FirstPageLimit);
  }

  static void PrintViewports(QSize bare, QSize zarvela) {
    std::printf("%-*s %6d x %d  %6d x %d\n", FirstColumn, "room for the page", bare.width(), bare.height(),
                zarvela.width(), zarvela.height());
  }

  void Tabs() {
    TSeries firstBare;
    TSeries firstZarvela;
    for (const int pages : TabCounts) {
      TSeries bare;
      TSeries zarvela;
      TSeries group;
      for (int round = 0; round < TabRounds(); ++round) {
        const TCost bareCost = StartBare(pages, TReport::Loaded, true);
        if (!Good(bareCost)) return;
        bare.Add(bareCost);
        if (m_bareOnly) continue;
        const TCost cost = StartRestored(pages, TReport::Loaded, true);
        if (!Good(cost)) return;
        zarvela.Add(cost);
        if (pages != GroupPages) continue;
        const TCost groupCost = StartGroup();
        if (!Good(groupCost)) return;
        group.Add(groupCost);
      }
      PrintTabs(pages, bare, zarvela);
      if (pages == 1) {
        firstBare = bare;
        firstZarvela = zarvela;
      } else {
        PrintEachFurther(pages, bare, zarvela, firstBare, firstZarvela);
      }
      if (!group.milliseconds.empty()) PrintGroup(bare, group);
    }
  }

  static void PrintTabs(int pages, const TSeries &bare, const TSeries &zarvela) {
    const QString tabs = QStringLiteral("%1 tab%2: ").arg(pages).arg(QLatin1String(pages == 1 ? "" : "s"));
    PrintRatio(tabs + QLatin1String("all loaded"), Median(bare.milliseconds), Median(zarvela.milliseconds), "ms",
               pages == 1 ? FirstPageLimit : TabLimit);
    PrintRatio(tabs + QStringLiteral("memory in all (%1/%2 processes)").arg(bare.processes).arg(zarvela.processes),
               Median(bare.mebibytes), Median(zarvela.mebibytes), "MiB", TabLimit);
  }

  static void PrintEachFurther(int pages, const TSeries &bare, const TSeries &zarvela, const TSeries &firstBare,
                               const TSeries &firstZarvela) {
    const auto further = [&](const std::vector<double> &all, const std::vector<double> &first) {
      return all.empty() ? 0 : (Median(all) - Median(first)) / (pages - 1);
    };
    const QString tabs = QStringLiteral("%1 tabs: ").arg(pages);
    PrintRatio(tabs + QLatin1String("each further one"), further(bare.milliseconds, firstBare.milliseconds),
               further(zarvela.milliseconds, firstZarvela.milliseconds), "ms", TabLimit);
    PrintRatio(tabs + QLatin1String("memory of each further one"), further(bare.mebibytes, firstBare.mebibytes),
               further(zarvela.mebibytes, firstZarvela.mebibytes), "MiB", TabLimit);
  }

  static void PrintGroup(const TSeries &bare, const TSeries &group) {
    const QString name = QStringLiteral("group of %1 pages: ").arg(GroupPages);
    PrintRatio(name + QLatin1String("all loaded"), Median(bare.milliseconds), Median(group.milliseconds), "ms", 0);
    PrintRatio(name + QLatin1String("memory in all"), Median(bare.mebibytes), Median(group.mebibytes), "MiB", 0);
  }

  QString GroupFile() const { return m_zarvela.Folder() + QStringLiteral("/pages.hgp"); }

  // Only its trouble counts.
  TCost WriteGroup(const QStringList &addresses) {
    QFile file(GroupFile());
    QByteArray lines = "[HalvexGroup]\n";
    int number = 0;
    for (const QString &address : addresses) {
      lines += "blank" + QByteArray::number(++number) + '=' + address.toLatin1() + '\n';
    }
    TCost cost;
    if (!file.open(QFile::WriteOnly) || file.write(lines) != lines.size() || !file.flush()) {
      cost.trouble = file.fileName() + QStringLiteral(": ") + file.errorString();
    }
    return cost;
  }

  TCost StartGroup() {
    m_server.BeginRun();
    WriteSettings(QStringLiteral("Last"), {});
    if (const TCost written = WriteGroup(Addresses(GroupPages)); !written.trouble.isEmpty()) return written;
    return m_zarvela.Start({GroupFile()}, m_server, GroupPages, TReport::Loaded, true);
  }

  // Page 1 is open; then come the group and, right behind it, one page more. The window answers when it asks for that.
  // In the end all must have come.
  void GroupHandedOver() {
    TSeries bare;
    TSeries zarvela;
    constexpr int Last = GroupPages + 2;
    for (int round = 0; round < TabRounds(); ++round) {
      m_server.BeginRun();
      const QString group = Addresses(GroupPages + 1).mid(1).join(u' ');
      if (!Good(m_bare.Open({QStringLiteral("--more"), m_server.Address(1)}, m_server, 1, TReport::Painted))) return;
      Pause(Calm);
      const QString lines = QStringLiteral("%1\n%2\n").arg(group, m_server.Address(Last));
      const TCost bareCost = m_bare.Tell(lines.toLatin1(), m_server, Last, TReport::Requested);
      if (!Good(bareCost) || !Good(m_bare.Await(m_server, Last, TReport::Loaded))) return;
      m_bare.Close();
      bare.Add(bareCost);

      if (!OpenFirstPage() || !Good(WriteGroup(Addresses(GroupPages + 1).mid(1)))) return;
      const TCost cost = m_zarvela.HandOver({GroupFile(), m_server.Address(Last)}, m_server, Last, TReport::Requested);
      if (!Good(cost) || !Good(m_zarvela.Await(m_server, Last, TReport::Loaded))) return;
      m_zarvela.Close();
      zarvela.Add(cost);
    }
    PrintRatio(QStringLiteral("group of %1 pages: the window answers").arg(GroupPages), Median(bare.milliseconds),
               Median(zarvela.milliseconds), "ms", 0);
  }

  // The program with page 1 of a new run, and calm.
  bool OpenFirstPage() {
    m_server.BeginRun();
    WriteSettings(QStringLiteral("Last"), Addresses(1));
    const bool isGood = Good(m_zarvela.Open({}, m_server, 1, TReport::Painted));
    Pause(Calm);
    return isGood;
  }

  void HandOff() {
    TSeries libraries;
    TSeries zarvela;
    if (!OpenFirstPage()) return;
    for (int round = 0; round <= m_rounds * HandOffsEachRound; ++round) {
      const TCost librariesCost = m_libraries.RunToEnd({});
      const int page = round + 2;
      const TCost cost = m_zarvela.HandOver({m_server.Address(page)}, m_server, page, TReport::Requested);
      if (!Good(librariesCost) || !Good(cost)) return;
      Pause(Calm);
      if (round == 0) continue;
      libraries.Add(librariesCost);
      zarvela.Add(cost);
    }
    m_zarvela.Close();
    PrintRatio(QStringLiteral("hand-off: the running window asks for it"), Median(libraries.milliseconds),
               Median(zarvela.milliseconds), "ms", HandOffLimit);
  }

  TPageServer m_server;
  TSubject m_bare;
  TSubject m_libraries;
  TSubject m_zarvela;
  bool m_bareOnly;
  int m_rounds;
  bool m_failed = false;
};

}  // namespace

int main(int argc, char **argv) {
  QCoreApplication application(argc, argv);
  QCommandLineParser parser;
  const QCommandLineOption bareOnly(QStringLiteral("bare-only"), QStringLiteral("Measure only the bare view."));
  const QCommandLineOption rounds(QStringLiteral("rounds"), QStringLiteral("Starts of each program."),
                                  QStringLiteral("number"), QString::number(DefaultRounds));
  parser.addOptions({bareOnly, rounds});
  parser.addHelpOption();
  parser.process(application);
  const QString folder = QCoreApplication::applicationDirPath();
  if (!parser.isSet(bareOnly) && !QFileInfo(folder + QStringLiteral("/../zarvela")).isExecutable()) {
    std::fprintf(stderr, "bench: the program is not built\n");
    return 1;
  }
  return TBench(folder, parser.isSet(bareOnly), std::clamp(parser.value(rounds).toInt(), 1, 100)).Run();
}
