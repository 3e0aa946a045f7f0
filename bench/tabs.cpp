// Measures what it costs the window to add a tab, to turn to another and to close one with many tabs open whose pages
// sleep, against the same with a few: the time of its own thread, with all that follows at once, as painting the strip;
// and by itself what it costs to write down which tabs are open, once for all changes of half a second.

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
constexpr int Repeats = 31;
constexpr int Aftermath = 120;             // milliseconds after each change that count to it
constexpr int UntilWritten = 700;          // milliseconds until the list of tabs is written
constexpr int LongestWait = 30'000;        // milliseconds for a page
constexpr int LongestUntilAsleep = 3'000;  // the same for its sleep
constexpr int Look = 10;                   // milliseconds between looks at what is waited for
constexpr double Limit = 1.5;
constexpr double WriteLimit = 8;  // milliseconds: half of what one picture on the screen has
enum TChange { Add, Turn, Wake, Close, Write };
constexpr int Near = 5;  // tabs around the one in front that are awake
constexpr std::array Names{"add a tab", "turn to another", "turn to one that sleeps", "close one",
                           "move one, and write down all"};
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
      if (!PutToSleep(tab)) ++m_awake;
    }
    return true;
  }

  // Pages that were asked to sleep and did not.
  [[nodiscard]] int Awake() const { return m_awake; }

  TCosts Run() {
    TTabStrip &tabs = m_window.Tabs();
    // What a page costs to come back is the page's own: the ones that are turned to are awake, with few tabs as with
    // many, or sleep, with few as with many.
    for (int i = 0; i < Near; ++i) WakeUp(i);
    const int inFront = Near / 2;
    TCosts costs{};
    for (int repeat = 0; repeat < Repeats; ++repeat) {
      Activate(inFront);
      costs[Add] += Cost([&] { tabs.NewTab(); });
      Pause(UntilWritten);
      costs[Close] += Cost([&] { tabs.CloseActive(); });
      Activate(inFront);
      costs[Turn] += Cost([&] { tabs.MakeMeActiveTab(inFront + 1); });
      Activate(inFront);
      if (!PutToSleep(tabs.Tab(inFront - 1))) ++m_awake;
      costs[Wake] += Cost([&] { tabs.MakeMeActiveTab(inFront - 1); });
      WakeUp(inFront - 1);
      Activate(inFront);
      costs[Write] += Cost([&] { tabs.Pages().MovePage(0, 1); }, UntilWritten);
      tabs.Pages().MovePage(0, 1);
    }
    for (double &cost : costs) cost /= Repeats;
    return costs;
  }

 private:
  // False where it stays awake.
  static bool PutToSleep(TBrowserTab *tab) {
    // What the engine knows of the page comes a moment after its end.
    return WaitFor(
        [tab] {
          tab->FallAsleep();
          return tab->Asleep();
        },
        LongestUntilAsleep);
  }

  void WakeUp(int position) {
    TBrowserTab *tab = m_window.Tabs().Tab(position);
    m_window.Tabs().MakeMeActiveTab(position);
    WaitFor([tab] { return !tab->Asleep() && !tab->Busy(); });
    Pause(Aftermath);
  }

  // Nothing is put off any more.
  void Activate(int position) {
    m_window.Tabs().MakeMeActiveTab(position);
    Pause(UntilWritten);
  }

  template <typename TWork>
  static double Cost(TWork work, int aftermath = Aftermath) {
    const double before = SpentTime();
    work();
    Pause(aftermath);
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
    const bool isWrite = i == Write;
    comparison.Add(QStringLiteral("%1, ms").arg(QLatin1String(Names[i])), costs[0][i], costs[1][i],
                   isWrite ? TWanted{.ratio = 0, .value = WriteLimit} : TWanted{.ratio = Limit, .value = 0});
    isGood &= costs[1][i] <= (isWrite ? WriteLimit : Limit * costs[0][i]);
  }
  comparison.Print("few", "many");
  return isGood ? 0 : 1;
}
