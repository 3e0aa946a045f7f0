#include "app/startup_modes.h"

#include <QPointer>

#include "actions/actions.h"
#include "app/last_open_sites.h"
#include "config/settings.h"
#include "groups/page_groups.h"

namespace {

constexpr const char *Last = "Last";
constexpr const char *Group = "HalvexGroup";

struct TMode {
  TCommand command;
  const char *value;
};

constexpr TMode Modes[] = {
    {TCommand::StartHome, "Home"},
    {TCommand::StartBlank, "Blank"},
    {TCommand::StartLast, Last},
    {TCommand::StartGroup, Group},
};

}  // namespace

TStartupModes::TStartupModes(TActions &actions, TPageGroups &groups, TLastOpenSites &lastSites, TSettings &settings)
    : m_actions(actions), m_groups(groups), m_lastSites(lastSites), m_settings(settings) {
  for (const TMode &mode : Modes) {
    connect(actions[mode.command], &QAction::triggered, this,
            [this, value = QString::fromLatin1(mode.value)] { Choose(value); });
  }
  settings.Apply(Setting::StartupMode, this, [this] { ShowChosen(); });
}

bool TStartupModes::IsLast() const {
  return m_settings.Get(Setting::StartupMode) == QLatin1String(Last);
}

void TStartupModes::FollowPages() {
  m_settings.Apply(Setting::StartupMode, this, [this] { KeepPages(); });
}

void TStartupModes::KeepPages() {
  if (IsLast()) {
    m_lastSites.Follow();
  } else {
    m_lastSites.StopFollowing();
  }
}

void TStartupModes::Choose(const QString &mode) {
  const QPointer<TStartupModes> self(this);
  const QString group = mode == QLatin1String(Group) ? m_groups.AskExistingFile() : QString();
  if (!self) return;
  if (mode != QLatin1String(Group) || !group.isEmpty()) {
    if (!group.isEmpty()) m_settings.Set(Setting::StartupHalvexGroup, group);
    m_settings.Set(Setting::StartupMode, mode);
  }
  ShowChosen();
}

// Every other value of the setting means the page group.
void TStartupModes::ShowChosen() {
  const QString value = m_settings.Get(Setting::StartupMode);
  TCommand chosen = TCommand::StartGroup;
  for (const TMode &mode : Modes) {
    if (value == QLatin1String(mode.value)) chosen = mode.command;
  }
  m_actions[chosen]->setChecked(true);
}

void TStartupModes::Save() {
  m_lastSites.StopFollowing();
  if (IsLast()) {
    m_lastSites.Write(true);
  } else {
    TLastOpenSites::Clear(m_settings.Store());
  }
}
