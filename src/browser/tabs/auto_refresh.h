#pragma once

#include <QObject>
#include <QTimer>

#include "actions/command_table.h"

class TActions;
class TSettings;
class TTabStrip;

// The auto-refresh menu and its timer: none, or every 15, 30, 60, 120 or 300 seconds.
class TAutoRefresh final : public QObject {
  Q_OBJECT

 public:
  struct TInterval {
    TCommand command;
    int milliseconds;  // 0 for off
  };
  // What there is to choose from.
  static constexpr TInterval Intervals[] = {
      {TCommand::AutoRefreshNone, 0},   {TCommand::AutoRefresh15, 15000},   {TCommand::AutoRefresh30, 30000},
      {TCommand::AutoRefresh60, 60000}, {TCommand::AutoRefresh120, 120000}, {TCommand::AutoRefresh300, 300000},
  };

  // All must outlive this object. Every start begins without auto-refresh, whatever is stored.
  TAutoRefresh(TActions &actions, TTabStrip &tabs, TSettings &settings);

  // Milliseconds, 0 for off: stored at once, kept, and the timer follows; so it does whoever sets it here.
  void ChangeAutoRefresh(int interval);
  [[nodiscard]] int Interval() const { return m_interval; }
  // The interval is written and then, by switching off, 0: every start begins without auto-refresh, which is meant.
  void Save();

 private:
  void Take();

  TActions &m_actions;
  TSettings &m_settings;
  QTimer m_timer{this};  // tmrRefresh
  int m_interval = 0;
};
