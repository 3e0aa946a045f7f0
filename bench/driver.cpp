// Measures the program against a bare engine view built in the same tree, in one run, and prints ratios.
//   bench_driver [--bare-only] [--rounds N] [--screen PLATFORM]

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
#include "config/registry_paths.h"
#include "page_server.h"
#include "store/registry_store.h"
#include "subject.h"
#include "table.h"

namespace {

// The most that a row may be: without a screen, and on one.
struct TLimits {
  TWanted offscreen{};
  TWanted onScreen{};
};

constexpr TLimits FromAddress{{.ratio = 1.30}, {.ratio = 1.15}};
constexpr TLimits Restored{{.ratio = 1.30}, {.ratio = 1.10}};
constexpr TLimits VeryFirst{{}, {.ratio = 1.35}};
constexpr TLimits SideBar{{.ratio = 1.05}, {.ratio = 1.05}};
constexpr TLimits OneTabMemory{{.ratio = 1.15}, {.ratio = 1.08}};
constexpr TLimits ManyTabs{{.ratio = 1.15}, {.ratio = 1.20}};
constexpr TLimits TabMemory{{.ratio = 1.15}, {.ratio = 1.15}};
constexpr TLimits Group{{}, {.ratio = 1.15}};
constexpr TLimits AtRest{{.ratio = 0.30}, {.ratio = 0.30}};
constexpr TLimits HandedOff{{.ratio = 2.20}, {.value = 45}};
constexpr TLimits None{};

constexpr std::array TabCounts{1, 20, 100};
constexpr int GroupPages = 100;
constexpr int HandOffsEachRound = 3;
constexpr int Calm = 300;            // milliseconds, for what a page still does once it is painted
constexpr int RestMinutes = 1;       // the setting SleepMinutes
constexpr int UntilAsleep = 80'000;  // milliseconds: that long, and two looks of the program at its tabs
constexpr int UntilSpare = 2000;     // the same, for the next view that is kept ready
constexpr int HomePageInNewTab = 2;  // the setting NewAction
constexpr const char *Offscreen = "offscreen";
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
  // `platform` is the toolkit's name of the screen; the rows go into `toBare` and, what is compared with the libraries
  // alone, into `toLibraries`.
  TBench(const QString &folder, const QString &platform, bool bareOnly, int rounds, TComparison &toBare,
         TComparison &toLibraries)
      : m_bare(QStringLiteral("bare view"), folder + QStringLiteral("/bare_view"), platform),
        m_libraries(QStringLiteral("libraries"), folder + QStringLiteral("/libraries_alone"), platform),
        m_zarvela(QStringLiteral("zarvela"), folder + QStringLiteral("/../zarvela"), platform),
        m_isOnScreen(platform != QLatin1String(Offscreen)),
        m_bareOnly(bareOnly),
        m_rounds(rounds),
        m_toBare(toBare),
        m_toLibraries(toLibraries) {}

  int Run() {
    if (!m_server.isListening()) {
      std::fprintf(stderr, "bench: no port on 127.0.0.1 to listen on\n");
      return 1;
    }
    Libraries();
    FirstPage();
    Tabs();
    if (!m_bareOnly) {
      if (m_isOnScreen) NewTabByKey();
      GroupHandedOver();
      HandOff();
    }
    return m_failed ? 1 : 0;
  }

 private:
  int TabRounds() const { return std::min(m_rounds, MostTabRounds); }

  const TWanted &Wanted(const TLimits &limits) const { return m_isOnScreen ? limits.onScreen : limits.offscreen; }
  void Add(const QString &what, double base, double measured, const TLimits &limits) {
    m_toBare.Add(what, base, measured, Wanted(limits));
  }

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
    Add(QStringLiteral("libraries alone, ms"), Median(series.milliseconds), 0, None);
  }

  QStringList Addresses(int pages) const {
    QStringList addresses;
    for (int page = 1; page <= pages; ++page) addresses += m_server.Address(page);
    return addresses;
  }

  // The settings of a user who has answered the questions already.
  void WriteSettings(const QString &mode, const QStringList &addresses, bool sideBar = false) {
    TRegistryStore store(m_zarvela.RegistryFile());
    TZVOptions options(store);
    options.Set(Setting::AskDefaultBrowser, false);
    options.Set(Setting::ConfirmShutdown, false);
    options.Set(Setting::StartupMode, mode);
    options.Set(Setting::ViewHalvexBar, sideBar);
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
  TCost StartWithAddress(bool sideBar = false) {
    m_server.BeginRun();
    WriteSettings(QStringLiteral("Home"), {}, sideBar);
    return m_zarvela.Start(Addresses(1), m_server, 1, TReport::Painted, false);
  }

  void FirstPage() {
    TSeries bare;
    TSeries restored;
    TSeries withAddress;
    TSeries veryFirst;
    TSeries withSideBar;
    for (int round = 0; round <= m_rounds; ++round) {
      const TCost bareCost = StartBare(1, TReport::Painted, false);
      if (!Good(bareCost)) return;
      if (round > 0) bare.Add(bareCost);
      const QSize bareViewport = m_server.Viewport();
      if (m_bareOnly) continue;
      const TCost addressCost = StartWithAddress();
      const TCost sideBarCost = StartWithAddress(true);
      const TCost restoredCost = StartRestored(1, TReport::Painted, false);
      if (!Good(addressCost) || !Good(sideBarCost) || !Good(restoredCost)) return;
      const QSize viewport = m_server.Viewport();
      m_zarvela.ForgetProfile();
      const TCost firstCost = StartWithAddress();
      if (!Good(firstCost)) return;
      if (round == 0) continue;
      if (round == 1) AddViewports(bareViewport, viewport);
      withAddress.Add(addressCost);
      withSideBar.Add(sideBarCost);
      restored.Add(restoredCost);
      veryFirst.Add(firstCost);
    }
    const double bareMedian = Median(bare.milliseconds);
    Add(QStringLiteral("first page painted, from an address, ms"), bareMedian, Median(withAddress.milliseconds),
        FromAddress);
    if (m_bareOnly) return;
    Add(QStringLiteral("first page painted, restored, ms"), bareMedian, Median(restored.milliseconds), Restored);
    // Both columns are the program here.
    Add(QStringLiteral("the same, side bar closed and open, ms"), Median(withAddress.milliseconds),
        Median(withSideBar.milliseconds), SideBar);
    Add(QStringLiteral("very first start, from an address, ms"), bareMedian, Median(veryFirst.milliseconds), VeryFirst);
  }

  void AddViewports(QSize bare, QSize zarvela) {
    Add(QStringLiteral("room for the page, thousand pixels"), bare.width() * bare.height() / 1000.0,
        zarvela.width() * zarvela.height() / 1000.0, None);
  }

  void Tabs() {
    TSeries firstBare;
    TSeries firstZarvela;
    for (const int pages : TabCounts) {
      TSeries bare;
      TSeries zarvela;
      TSeries group;
      TSeries withSpare;
      for (int round = 0; round < TabRounds(); ++round) {
        const TCost bareCost = StartBare(pages, TReport::Loaded, true);
        if (!Good(bareCost)) return;
        bare.Add(bareCost);
        if (m_bareOnly) continue;
        const TCost cost = StartRestored(pages, TReport::Loaded, true);
        if (!Good(cost)) return;
        zarvela.Add(cost);
        if (pages == 1) {
          const TCost spareCost = StartAndWaitForSpare();
          if (!Good(spareCost)) return;
          withSpare.Add(spareCost);
        }
        if (pages != GroupPages) continue;
        const TCost groupCost = StartGroup();
        if (!Good(groupCost)) return;
        group.Add(groupCost);
      }
      AddTabs(pages, bare, zarvela);
      if (pages == GroupPages && !m_bareOnly) AddGroupAtRest(bare);
      if (pages == 1) {
        firstBare = bare;
        firstZarvela = zarvela;
        Add(QStringLiteral("1 tab: memory with the view kept ready, MiB"), Median(bare.mebibytes),
            Median(withSpare.mebibytes), None);
      } else {
        AddEachFurther(pages, bare, zarvela, firstBare, firstZarvela);
      }
      if (!group.milliseconds.empty()) AddGroup(bare, group);
    }
  }

  // The memory once the program has had the time to make the next view.
  TCost StartAndWaitForSpare() {
    if (!OpenFirstPage()) return {.trouble = QStringLiteral("no first page")};
    Pause(UntilSpare);
    const TCost cost = m_zarvela.Memory();
    m_zarvela.Close();
    return cost;
  }

  void AddTabs(int pages, const TSeries &bare, const TSeries &zarvela) {
    const QString tabs = QStringLiteral("%1 tab%2: ").arg(pages).arg(QLatin1String(pages == 1 ? "" : "s"));
    Add(tabs + QLatin1String("all loaded, ms"), Median(bare.milliseconds), Median(zarvela.milliseconds),
        pages == 1 ? FromAddress : ManyTabs);
    Add(tabs + QLatin1String("memory in all, MiB"), Median(bare.mebibytes), Median(zarvela.mebibytes),
        pages == 1 ? OneTabMemory : TabMemory);
    Add(tabs + QLatin1String("processes"), bare.processes, zarvela.processes, None);
  }

  void AddEachFurther(int pages, const TSeries &bare, const TSeries &zarvela, const TSeries &firstBare,
                      const TSeries &firstZarvela) {
    const auto further = [&](const std::vector<double> &all, const std::vector<double> &first) {
      return all.empty() ? 0 : (Median(all) - Median(first)) / (pages - 1);
    };
    const QString tabs = QStringLiteral("%1 tabs: ").arg(pages);
    Add(tabs + QLatin1String("each further one, ms"), further(bare.milliseconds, firstBare.milliseconds),
        further(zarvela.milliseconds, firstZarvela.milliseconds), ManyTabs);
    Add(tabs + QLatin1String("memory of each further one, MiB"), further(bare.mebibytes, firstBare.mebibytes),
        further(zarvela.mebibytes, firstZarvela.mebibytes), TabMemory);
  }

  void AddGroup(const TSeries &bare, const TSeries &group) {
    const QString name = QStringLiteral("group of %1 pages: ").arg(GroupPages);
    Add(name + QLatin1String("all loaded, ms"), Median(bare.milliseconds), Median(group.milliseconds), Group);
    Add(name + QLatin1String("memory in all, MiB"), Median(bare.mebibytes), Median(group.mebibytes), None);
  }

  // Once, since it takes its time.
  void AddGroupAtRest(const TSeries &bare) {
    m_server.BeginRun();
    WriteSettings(QStringLiteral("Last"), {});
    {
      TRegistryStore store(m_zarvela.RegistryFile());
      TZVOptions(store).Set(Setting::SleepMinutes, RestMinutes);
    }
    if (!Good(WriteGroup(Addresses(GroupPages)))) return;
    if (!Good(m_zarvela.Open({GroupFile()}, m_server, 1, TReport::Loaded))) return;
    if (!Good(m_zarvela.Await(m_server, GroupPages, TReport::Loaded))) return;
    Pause(UntilAsleep);
    const TCost cost = m_zarvela.Memory();
    m_zarvela.Close();
    TRegistryStore store(m_zarvela.RegistryFile());
    TZVOptions(store).Set(Setting::SleepMinutes, Setting::SleepMinutes.fallback);
    if (!Good(cost)) return;
    const QString name = QStringLiteral("group of %1 pages at rest: ").arg(GroupPages);
    Add(name + QLatin1String("memory, MiB"), Median(bare.mebibytes), cost.mebibytes, AtRest);
    Add(name + QLatin1String("processes"), bare.processes, cost.processes, None);
  }

  // From the key that opens a new tab with an address to that page's first painted frame.
  void NewTabByKey() {
    TSeries bare;
    TSeries zarvela;
    m_server.BeginRun();
    if (!Good(m_bare.Open({QStringLiteral("--more"), m_server.Address(1)}, m_server, 1, TReport::Painted))) return;
    for (int page = 2; page < m_rounds + 2; ++page) {
      Pause(UntilSpare);
      const QString line = QStringLiteral("+%1\n").arg(m_server.Address(page));
      const TCost cost = m_bare.Tell(line.toLatin1(), m_server, page, TReport::Painted);
      if (!Good(cost)) return;
      bare.Add(cost);
    }
    m_bare.Close();
    if (!OpenFirstPage()) return;
    for (int page = 2; page < m_rounds + 2; ++page) {
      Pause(UntilSpare);
      {
        TRegistryStore store(m_zarvela.RegistryFile());
        TZVOptions(store).Set(Setting::NewAction, HomePageInNewTab);
        store.Write(TRegistryHive::CurrentUser, QString::fromLatin1(RegistryKey::SystemBrowser),
                    QStringLiteral("Start Page"), m_server.Address(page));
      }
      const TCost cost = m_zarvela.Press(QStringLiteral("ctrl+t"), m_server, page, TReport::Painted);
      if (!Good(cost)) return;
      zarvela.Add(cost);
    }
    m_zarvela.Close();
    Add(QStringLiteral("Ctrl+T to the page's first frame, ms"), Median(bare.milliseconds), Median(zarvela.milliseconds),
        None);
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
    Add(QStringLiteral("group of %1 pages: the window answers, ms").arg(GroupPages), Median(bare.milliseconds),
        Median(zarvela.milliseconds), None);
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
    Pause(UntilSpare);
    for (int round = 0; round <= m_rounds * HandOffsEachRound; ++round) {
      const TCost librariesCost = m_libraries.RunToEnd({});
      const int page = round + 2;
      const TCost cost = m_zarvela.HandOver({m_server.Address(page)}, m_server, page, TReport::Requested);
      if (!Good(librariesCost) || !Good(cost)) return;
      Pause(UntilSpare);
      if (round == 0) continue;
      libraries.Add(librariesCost);
      zarvela.Add(cost);
    }
    m_zarvela.Close();
    m_toLibraries.Add(QStringLiteral("hand-off: the running window asks, ms"), Median(libraries.milliseconds),
                      Median(zarvela.milliseconds), Wanted(HandedOff));
  }

  TPageServer m_server;
  TSubject m_bare;
  TSubject m_libraries;
  TSubject m_zarvela;
  bool m_isOnScreen;
  bool m_bareOnly;
  int m_rounds;
  TComparison &m_toBare;
  TComparison &m_toLibraries;
  bool m_failed = false;
};

}  // namespace

int main(int argc, char **argv) {
  QCoreApplication application(argc, argv);
  QCommandLineParser parser;
  const QCommandLineOption bareOnly(QStringLiteral("bare-only"), QStringLiteral("Measure only the bare view."));
  const QCommandLineOption rounds(QStringLiteral("rounds"), QStringLiteral("Starts of each program."),
                                  QStringLiteral("number"), QString::number(DefaultRounds));
  const QCommandLineOption screen(QStringLiteral("screen"),
                                  QStringLiteral("Measure on this platform of the toolkit too; empty for its own."),
                                  QStringLiteral("platform"));
  parser.addOptions({bareOnly, rounds, screen});
  parser.addHelpOption();
  parser.process(application);
  const QString folder = QCoreApplication::applicationDirPath();
  if (!parser.isSet(bareOnly) && !QFileInfo(folder + QStringLiteral("/../zarvela")).isExecutable()) {
    std::fprintf(stderr, "bench: the program is not built\n");
    return 1;
  }
  QStringList names{QStringLiteral("without a screen")};
  QStringList platforms{QLatin1String(Offscreen)};
  if (parser.isSet(screen)) {
    names += QStringLiteral("on screen");
    platforms += parser.value(screen);
  }
  const int most = std::clamp(parser.value(rounds).toInt(), 1, 100);
  TComparison toBare(names);
  TComparison toLibraries(names);
  int code = 0;
  for (qsizetype i = 0; i < platforms.size(); ++i) {
    std::fprintf(stderr, "bench: measuring %s\n", qPrintable(names[i]));
    toBare.BeginScreen(i);
    toLibraries.BeginScreen(i);
    code = std::max(code, TBench(folder, platforms[i], parser.isSet(bareOnly), most, toBare, toLibraries).Run());
  }
  std::printf("Medians of %d starts (tabs: of %d), each program with folders of its own.\n\n", most,
              std::min(most, MostTabRounds));
  toBare.Print("bare view", "zarvela");
  if (!parser.isSet(bareOnly)) {
    std::printf("\n");
    toLibraries.Print("libraries", "zarvela");
  }
  return code;
}
