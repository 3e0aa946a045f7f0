#pragma once

#include <functional>
#include <QHash>
#include <QObject>
#include <QTimer>

class TAutoRefresh;
class TBrowserTab;
class TSettings;
class TTabStrip;

// Has the pages of tabs fall asleep that nobody has looked at for as long as the setting SleepMinutes says, and when
// memory is short within seconds. Pages that have something to lose (TPageSleep), or that the user spares, stay awake;
// none sleeps while all are refreshed by themselves. Tabs that were never loaded are none of its business.
class TSleepingTabs final : public QObject {
  Q_OBJECT

 public:
  using TClock = std::function<qint64()>;  // milliseconds since some moment
  using TMemory = std::function<bool()>;   // whether it is short

  // All must outlive this object.
  TSleepingTabs(TTabStrip &tabs, TSettings &settings, const TAutoRefresh &autoRefresh);

  void SetClock(const TClock &clock) { m_clock = clock; }
  void SetMemory(const TMemory &memoryIsShort) { m_memoryIsShort = memoryIsShort; }
  // Has those fall asleep whose time has come. Done by a timer.
  void Look();

 private:
  void OnActiveTab(const TBrowserTab *tab);
  void Follow();

  TTabStrip &m_tabs;
  TSettings &m_settings;
  const TAutoRefresh &m_autoRefresh;
  TClock m_clock;
  TMemory m_memoryIsShort;
  QHash<quint64, qint64> m_since;  // by tab: when it was last in front, loaded, or found to have something to lose
  quint64 m_inFront = 0;
  QTimer m_look{this};    // tmrSleep
  QTimer m_tidyUp{this};  // tmrTidyUp; after what pages leave that have gone to sleep
};
