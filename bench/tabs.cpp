// Measures what it costs the window to add a tab, to turn to another and to close one with many tabs open whose pages
// sleep, against the same with a few: the time of its own thread, with all that follows a moment later (painting the
// strip, writing down which tabs are open).

#include <array>
#include <cstdio>
#include <ctime>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

#include "app/main_window.h"
#include "browser/engine/engine.h"
#include "browser/tabs/browser_tab.h"
#include "browser/tabs/tab_strip.h"
#include "config/options.h"
#include "page_server.h"
#include "store/registry_store.h"
#include "table.h"

namespace {

constexpr int Few = 5;
constexpr int Many = 500;
constexpr int Repeats = 41;
constexpr int Aftermath = 120;             // milliseconds after each change, in which what is put off is done
constexpr int LongestWait = 30'000;        // milliseconds for a page
constexpr int LongestUntilAsleep = 3'000;  // the same for its sleep
constexpr int Look = 10;                   // milliseconds between looks at what is waited for
constexpr double Limit = 1.5;
constexpr std::array Names{"add a tab", "turn to another", "close one"};
using TCosts = std::array<double, Names.size()>;  // milliseconds

// Of this thread, in milliseconds.
double SpentTime() {
  timespec time{};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

void Pause(int milliseconds) {
  QEventLoop loop;
  QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
  loop.exec();
}

template <typename TCondition>
bool WaitFor(TCondition condition, int longest = LongestWait) {
  QElapsedTimer clock;
  clock.start();
  // Not until the next event: where nothing is shown there may be none for long.
  while (!condition() && clock.elapsed() < longest) Pause(Look);
  return condition();
}

class TTabsBench final {
 public:
  explicit TTabsBench(TRegistryStore &store) : m_window(store) {
    m_window.resize(1200, 800);
    m_window.show();
    Pause(1000);
  }

  // False when the pages did not come.
  bool OpenUpTo(int count) {
    TTabStrip &tabs = m_window.Tabs();
    while (tabs.TabCount() < count) {
      TBrowserTab *tab = tabs.NewBackgroundTab(TTabPlace::AtEnd);
      tab->Navigate(m_server.Address(tabs.TabCount()));
      if (!WaitFor([tab] { return tab->Load() == TLoad::Shown; })) return false;
      // What the engine knows of the page comes a moment after its end.
      const auto sleeps = [tab] {
        tab->FallAsleep();
        return tab->Asleep();
      };
      if (!WaitFor(sleeps, LongestUntilAsleep)) ++m_awake;
    }
    return true;
  }

  // Pages that were asked to sleep and did not.
  [[nodiscard]] int Awake() const { return m_awake; }

  TCosts Run() {
    TTabStrip &tabs = m_window.Tabs();
    tabs.MakeMeActiveTab(0);
    Pause(3000);
    TCosts costs{};
    for (int repeat = 0; repeat < Repeats; ++repeat) {
      costs[0] += Cost([&] { tabs.NewTab(); });
      tabs.NewTab();
      Pause(Aftermath);
      costs[1] += Cost([&] { tabs.ShowAdjacent(repeat % 2 == 0); });
      tabs.ShowAdjacent(repeat % 2 != 0);
      Pause(Aftermath);
      costs[2] += Cost([&] { tabs.CloseActive(); });
      tabs.CloseActive();
      Pause(Aftermath);
    }
    for (double &cost : costs) cost /= Repeats;
    return costs;
  }

 private:
  template <typename TWork>
  static double Cost(TWork work) {
    const double before = SpentTime();
    work();
    Pause(Aftermath);
    return SpentTime() - before;
  }

  TPageServer m_server;
  int m_awake = 0;
  TfrmMain m_window;
};

}  // namespace

int main(int argc, char **argv) {
  const QTemporaryDir folder;
  for (const char *name : {"CONFIG_HOME", "DATA_HOME", "CACHE_HOME", "RUNTIME_DIR"}) {
    const QString path = folder.filePath(QString::fromLatin1(name).toLower());
    QDir().mkpath(path);
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv(QByteArray("XDG_").append(name).constData(), QFile::encodeName(path));
  }
  TEngine::RegisterSchemes();
  QApplication application(argc, argv);
  const QString data = qEnvironmentVariable("XDG_DATA_HOME") + QStringLiteral("/zarvela");
  QDir().mkpath(data);
  QFile::link(QStringLiteral(ZV_SOURCE_DIR "/Languages"), data + QStringLiteral("/Languages"));
  TRegistryStore store(folder.filePath(QStringLiteral("registry.sqlite")));
  TZVOptions options(store);
  options.Set(Setting::StartupMode, QStringLiteral("Last"));
  options.Set(Setting::AskDefaultBrowser, false);
  options.Set(Setting::ConfirmShutdown, false);
  options.Set(Setting::NewAction, 0);

  TTabsBench bench(store);
  std::array<TCosts, 2> costs{};
  for (size_t i = 0; i < costs.size(); ++i) {
    if (!bench.OpenUpTo(i == 0 ? Few : Many)) {
      std::fprintf(stderr, "bench: the pages did not come\n");
      return 1;
    }
    costs[i] = bench.Run();
  }
  std::printf("\n%d tabs whose pages sleep, and %d (%d of them awake): the window's own time, means of %d times.\n\n",
              Few, Many, bench.Awake(), Repeats);
  TComparison comparison({QStringLiteral("without a screen")});
  bool isGood = true;
  for (size_t i = 0; i < Names.size(); ++i) {
    comparison.Add(QStringLiteral("%1, ms").arg(QLatin1String(Names[i])), costs[0][i], costs[1][i], {.ratio = Limit});
    isGood &= costs[1][i] <= Limit * costs[0][i];
  }
  comparison.Print("few", "many");
  return isGood ? 0 : 1;
}
