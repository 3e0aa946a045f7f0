#include "browser/tabs/auto_refresh.h"

#include "actions/actions.h"
#include "browser/tabs/tab_strip.h"
#include "config/settings.h"

namespace {

struct TInterval {
  TCommand command;
  int milliseconds;
};

constexpr TInterval Intervals[] = {
    {TCommand::AutoRefreshNone, 0},   {TCommand::AutoRefresh15, 15000},   {TCommand::AutoRefresh30, 30000},
    {TCommand::AutoRefresh60, 60000}, {TCommand::AutoRefresh120, 120000}, {TCommand::AutoRefresh300, 300000},
};

}  // namespace

TAutoRefresh::TAutoRefresh(TActions &actions, TTabStrip &tabs, TSettings &settings)
    : QObject(&tabs), m_settings(settings) {
  m_timer.setObjectName(QStringLiteral("tmrRefresh"));
  connect(&m_timer, &QTimer::timeout, &tabs, &TTabStrip::RefreshUnattended);
  for (const TInterval &interval : Intervals) {
    connect(actions[interval.command], &QAction::triggered, this,
            [this, milliseconds = interval.milliseconds] { ChangeAutoRefresh(milliseconds); });
  }
  actions[TCommand::AutoRefreshNone]->setChecked(true);
}

void TAutoRefresh::ChangeAutoRefresh(int interval) {
  m_settings.Set(Setting::AutoRefresh, interval);
  m_interval = interval;
  m_timer.setInterval(interval);
  if (interval != 0) {
    m_timer.start();
  } else {
    m_timer.stop();
  }
}

void TAutoRefresh::Save() {
  m_settings.Set(Setting::AutoRefresh, m_interval);
  ChangeAutoRefresh(0);
}
