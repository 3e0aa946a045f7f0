#include "browser/tabs/sleeping_tabs.h"

#include <algorithm>
#include <QDeadlineTimer>
#include <QThreadPool>

#include "browser/tabs/auto_refresh.h"
#include "browser/tabs/browser_tab.h"
#include "browser/tabs/tab_strip.h"
#include "config/settings.h"
#include "platform/memory.h"

namespace {

// As far back as the system's report on memory looks.
constexpr int LookInterval = 10'000;  // milliseconds
constexpr qint64 Minute = 60'000;     // milliseconds
// Until the engine knows the place and the fields of a page that was left, which are what it comes back with.
constexpr qint64 SettleTime = 10'000;  // milliseconds
constexpr int GoingTime = 5'000;       // milliseconds, until all is gone of the last page that fell asleep

}  // namespace

TSleepingTabs::TSleepingTabs(TTabStrip &tabs, TSettings &settings, const TAutoRefresh &autoRefresh)
    : QObject(&tabs),
      m_tabs(tabs),
      m_settings(settings),
      m_autoRefresh(autoRefresh),
      m_clock([] { return QDeadlineTimer::current().deadline(); }),
      m_memoryIsShort([] { return MemoryIsUnderPressure(); }) {
  m_look.setObjectName(QStringLiteral("tmrSleep"));
  m_look.setTimerType(Qt::VeryCoarseTimer);
  m_look.setInterval(LookInterval);
  connect(&m_look, &QTimer::timeout, this, &TSleepingTabs::Look);
  connect(&tabs, &TTabStrip::ActiveTabChanged, this, &TSleepingTabs::OnActiveTab);
  connect(&tabs, &TTabStrip::TabLoaded, this, [this](const TBrowserTab *tab) { m_since[tab->Id()] = m_clock(); });
  connect(&tabs, &TTabStrip::TabClosing, this, [this](const TBrowserTab *tab) { m_since.remove(tab->Id()); });
  settings.Apply(Setting::SleepMinutes, this, [this] { Follow(); });
  m_tidyUp.setObjectName(QStringLiteral("tmrTidyUp"));
  m_tidyUp.setSingleShot(true);
  m_tidyUp.setInterval(GoingTime);
  connect(&tabs, &TTabStrip::TabFellAsleep, this, [this] { m_tidyUp.start(); });
  // What a hundred pages leave is scattered over the program, half of what it holds, and nothing else takes it up.
  connect(&m_tidyUp, &QTimer::timeout, this, [] { QThreadPool::globalInstance()->start(&ReturnFreedMemory); });
}

void TSleepingTabs::Follow() {
  if (m_settings.Get(Setting::SleepMinutes) > 0) {
    m_look.start();
  } else {
    m_look.stop();
  }
}

void TSleepingTabs::OnActiveTab(const TBrowserTab *tab) {
  if (m_inFront != 0) m_since[m_inFront] = m_clock();
  m_inFront = tab->Id();
}

void TSleepingTabs::Look() {
  const qint64 rest = m_settings.Get(Setting::SleepMinutes) * Minute;
  if (rest <= 0 || m_autoRefresh.Interval() != 0) return;
  const bool isShort = m_memoryIsShort();
  const qint64 now = m_clock();
  QHash<quint64, qint64> since;
  for (TBrowserTab *tab : m_tabs.Tabs()) {
    const qint64 last = m_since.value(tab->Id(), now);
    const bool isDue = now - last >= (isShort ? std::min(SettleTime, rest) : rest);
    // One that has something to lose now is not asked again before it has been at rest as long once more.
    since.insert(tab->Id(), isDue ? now : last);
    if (isDue && !tab->Asleep()) tab->FallAsleep();
  }
  m_since = since;
}
