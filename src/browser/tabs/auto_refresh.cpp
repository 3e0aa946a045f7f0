#include "browser/tabs/auto_refresh.h"

#include <QActionGroup>
#include <QMenu>

#include "config/language.h"
#include "config/options.h"

namespace {

struct TChoice {
  const char *name;
  int interval;  // milliseconds
  TTextKey text;
};

constexpr TChoice Choices[] = {
    {"pmARefNo", 0, TTextKey{"MAIN", "AutoRefreshNone"}},
    {"pmARef15", 15000, TTextKey{"MAIN", "AutoRefresh15"}},
    {"pmARef30", 30000, TTextKey{"MAIN", "AutoRefresh30"}},
    {"pmARef60", 60000, TTextKey{"MAIN", "AutoRefresh60"}},
    {"pmARef120", 120000, TTextKey{"MAIN", "AutoRefresh120"}},
    {"pmARef300", 300000, TTextKey{"MAIN", "AutoRefresh300"}},
};

}  // namespace

TAutoRefresh::TAutoRefresh(const TLanguage &language, TRegistryStore &store, QObject *parent)
    : QObject(parent), m_store(store), m_language(language), m_group(new QActionGroup(this)) {
  m_timer.setObjectName(QStringLiteral("tmrRefresh"));
  connect(&m_timer, &QTimer::timeout, this, &TAutoRefresh::Tick);
  for (const TChoice &choice : Choices) {
    auto *action = new QAction(m_language.Text(choice.text), m_group);
    action->setObjectName(QString::fromLatin1(choice.name));
    action->setCheckable(true);
    action->setChecked(choice.interval == 0);
    connect(action, &QAction::triggered, this, [this, interval = choice.interval] { ChangeAutoRefresh(interval); });
  }
}

void TAutoRefresh::FillMenu(QMenu *menu) {
  menu->addActions(m_group->actions());
}

void TAutoRefresh::ChangeAutoRefresh(int interval) {
  TZVOptions(m_store).Set(Setting::AutoRefresh, interval);
  m_interval = interval;
  m_timer.setInterval(interval);
  if (interval != 0) {
    m_timer.start();
  } else {
    m_timer.stop();
  }
}
