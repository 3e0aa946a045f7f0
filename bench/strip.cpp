// Measures the tab strip with far more tabs than anybody has open: what one change costs until the strip is laid out
// again, what painting costs, and what opening and closing all of them costs.

#include <algorithm>
#include <cstdio>
#include <QApplication>
#include <QElapsedTimer>
#include <vector>

#include "browser/strip/page_control.h"
#include "table.h"

namespace {

constexpr int Tabs = 5'000;
constexpr int Repeats = 101;
// The most that each may take, in milliseconds.
constexpr double ChangeLimit = 1;
constexpr double PaintLimit = 16;
constexpr double AllLimit = 1'000;

struct TResult {
  QString what;
  double milliseconds = 0;
  double limit = 0;
};

class TStripBench final {
 public:
  // Keeps the slower of what was there before and what is measured here.
  TStripBench(bool multiple, std::vector<TResult> &results) : m_results(results) {
    m_control.resize(1200, 800);
    m_control.SetMultipleLines(multiple);
    m_control.show();
    QCoreApplication::processEvents();
  }

  void Run() {
    OpenAll("open 5,000 tabs at once", false);
    CloseAll("close 5,000 tabs at once", false);
    OpenAll("open 5,000 tabs one by one", true);
    const int middle = Tabs / 2;
    m_control.SetActivePage(m_control.Page(middle));
    QCoreApplication::processEvents();
    int number = 0;
    Change("rename one of 5,000 tabs", [&] { Caption(m_control.Page(middle), QString(5 + ++number % 7, u'm')); });
    Change("... open and close one", [&] {
      auto *page = new QWidget;
      m_control.InsertPage(middle, page);
      Caption(page, QStringLiteral("new"));
      delete page;
    });
    Change("... move one to the front and back", [&] {
      m_control.MovePage(middle, 0);
      m_control.MovePage(0, middle);
    });
    Change("... change the image of one", [&] { m_control.SetPageImage(m_control.Page(middle), ++number % 2); });
    Time("... paint the strip", PaintLimit, [&] { m_strip->repaint(); });
    m_control.SetActivePage(m_control.Page(0));
    CloseAll("close 5,000 tabs one by one", true);
  }

 private:
  void Caption(QWidget *page, const QString &text) { m_control.SetPageCaption(page, text); }

  void Add(const char *what, double milliseconds, double limit) {
    const auto same = std::ranges::find(m_results, QLatin1String(what), &TResult::what);
    if (same == m_results.end()) {
      m_results.push_back({QLatin1String(what), milliseconds, limit});
    } else {
      same->milliseconds = std::max(same->milliseconds, milliseconds);
    }
  }

  // The median time of `work`; the rest of a turn of the event loop, painting among it, is not counted.
  template <typename TWork>
  void Time(const char *what, double limit, TWork work) {
    std::vector<double> milliseconds;
    for (int repeat = 0; repeat < Repeats; ++repeat) {
      QElapsedTimer clock;
      clock.start();
      work();
      milliseconds.push_back(double(clock.nsecsElapsed()) / 1e6);
      QCoreApplication::processEvents();
    }
    Add(what, Median(milliseconds), limit);
  }

  // With the tab looked up afterwards, by its number and by its place.
  template <typename TWork>
  void Change(const char *what, TWork work) {
    Time(what, ChangeLimit, [&] {
      work();
      const bool isFound = m_control.Page(m_control.IndexOf(m_control.ActivePage())) == m_control.ActivePage();
      if (!isFound || m_control.TabRect(m_control.ActivePage()).isEmpty()) std::fprintf(stderr, "bench: no tab\n");
    });
  }

  // What the strip takes of opening, where that is worst: in the middle. The pages are there before, and painting is
  // left out: that costs the same however many tabs there are.
  void OpenAll(const char *what, bool oneByOne) {
    std::vector<QWidget *> pages;
    for (int i = 0; i < Tabs; ++i) pages.push_back(new QWidget);
    Total(what, pages, oneByOne, [this](QWidget *page) {
      const int count = m_control.PageCount();
      m_control.InsertPage((count + 1) / 2, page);
      Caption(page, QStringLiteral("Caption %1").arg(count));
    });
  }

  void CloseAll(const char *what, bool oneByOne) {
    std::vector<QWidget *> pages;
    for (int i = 1; i < m_control.PageCount(); ++i) pages.push_back(m_control.Page(i));
    pages.push_back(m_control.Page(0));
    Total(what, pages, oneByOne, [](const QWidget *page) { delete page; });
  }

  template <typename TWork>
  void Total(const char *what, const std::vector<QWidget *> &pages, bool oneByOne, TWork work) {
    m_control.setUpdatesEnabled(false);
    QElapsedTimer clock;
    clock.start();
    for (QWidget *page : pages) {
      work(page);
      if (oneByOne) QCoreApplication::processEvents();
    }
    QCoreApplication::processEvents();
    const double milliseconds = double(clock.nsecsElapsed()) / 1e6;
    m_control.setUpdatesEnabled(true);
    Add(what, milliseconds, AllLimit);
  }

  TZVPageControl m_control;
  QWidget *m_strip = m_control.findChild<QWidget *>(QStringLiteral("tabBar"));
  std::vector<TResult> &m_results;
};

}  // namespace

int main(int argc, char **argv) {
  QApplication application(argc, argv);
  std::printf("\nThe strip with %d tabs: medians of %d times, the slower of one row and several rows.\n\n", Tabs,
              Repeats);
  std::vector<TResult> results;
  for (const bool multiple : {true, false}) TStripBench(multiple, results).Run();
  bool isGood = true;
  for (const TResult &result : results) isGood &= PrintValue(result.what, result.milliseconds, "ms", result.limit);
  return isGood ? 0 : 1;
}
