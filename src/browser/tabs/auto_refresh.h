#pragma once

#include <QObject>
#include <QTimer>

class TActions;
class TSettings;
class TTabStrip;

// The auto-refresh menu and its timer: none, or every 15, 30, 60, 120 or 300 seconds.
class TAutoRefresh final : public QObject {
  Q_OBJECT

 public:
  // All must outlive this object. Every start begins without auto-refresh, whatever is stored.
  TAutoRefresh(TActions &actions, TTabStrip &tabs, TSettings &settings);

  // Milliseconds, 0 for off: stored at once, kept, and the timer follows.
  void ChangeAutoRefresh(int interval);
  [[nodiscard]] int Interval() const { return m_interval; }
  // The interval is written and then, by switching off, 0: every start begins without auto-refresh, which is meant.
  void Save();

 private:
  TSettings &m_settings;
  QTimer m_timer{this};  // tmrRefresh
  int m_interval = 0;
};
