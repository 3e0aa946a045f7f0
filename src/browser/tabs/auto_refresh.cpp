#include "browser/tabs/auto_refresh.h"

#include "actions/actions.h"
#include "browser/tabs/tab_strip.h"
#include "config/settings.h"

TAutoRefresh::TAutoRefresh(TActions &actions, TTabStrip &tabs, TSettings &settings)
    : QObject(&tabs), m_actions(actions), m_settings(settings) {
  m_timer.setObjectName(QStringLiteral("tmrRefresh"));
  connect(&m_timer, &QTimer::timeout, &tabs, &TTabStrip::RefreshUnattended);
  for (const TInterval &interval : Intervals) {
    connect(actions[interval.command], &QAction::triggered, this,
            [this, milliseconds = interval.milliseconds] { ChangeAutoRefresh(milliseconds); });
  }
  actions[TCommand::AutoRefreshNone]->setChecked(true);
  settings.Follow(Setting::AutoRefresh, this, [this] { Take(); });
}

void TAutoRefresh::ChangeAutoRefresh(int interval) {
  m_settings.Set(Setting::AutoRefresh, interval);
}

void TAutoRefresh::Take() {
  m_interval = m_settings.Get(Setting::AutoRefresh);
  for (const TInterval &interval : Intervals) {
    if (interval.milliseconds == m_interval) m_actions[interval.command]->setChecked(true);
  }
  m_timer.setInterval(m_interval);
  if (m_interval != 0) {
    m_timer.start();
  } else {
    m_timer.stop();
  }
}

void TAutoRefresh::Save() {
  m_settings.Set(Setting::AutoRefresh, m_interval);
  ChangeAutoRefresh(0);
}
