#include "app/startup_modes.h"

#include <QPointer>

#include "actions/actions.h"
#include "app/last_open_sites.h"
#include "config/settings.h"
#include "config/startup_mode.h"
#include "groups/page_groups.h"

namespace {

struct TMode {
  TCommand command;
  TStartupMode mode;
};

constexpr TMode Modes[] = {
    {TCommand::StartHome, TStartupMode::Home},
    {TCommand::StartBlank, TStartupMode::Blank},
    {TCommand::StartLast, TStartupMode::Last},
    {TCommand::StartGroup, TStartupMode::Group},
};

}  // namespace

TStartupModes::TStartupModes(TActions &actions, TPageGroups &groups, TLastOpenSites &lastSites, TSettings &settings)
    : m_actions(actions), m_groups(groups), m_lastSites(lastSites), m_settings(settings) {
  for (const TMode &mode : Modes) {
    connect(actions[mode.command], &QAction::triggered, this, [this, value = mode.mode] { Choose(value); });
  }
  settings.Apply(Setting::StartupMode, this, [this] { ShowChosen(); });
}

bool TStartupModes::IsLast() const {
  return StartupModeOf(m_settings.Get(Setting::StartupMode)) == TStartupMode::Last;
}

void TStartupModes::FollowPages() {
  m_lastSites.Begin();
  m_settings.Apply(Setting::StartupMode, this, [this] { KeepPages(); });
}

void TStartupModes::KeepPages() {
  if (IsLast()) {
    m_lastSites.Follow();
  } else {
    m_lastSites.StopFollowing();
  }
}

void TStartupModes::Choose(TStartupMode mode) {
  const QPointer<TStartupModes> self(this);
  const bool isGroup = mode == TStartupMode::Group;
  const QString group = isGroup ? m_groups.AskExistingFile() : QString();
  if (!self) return;
  if (!isGroup || !group.isEmpty()) {
    if (!group.isEmpty()) m_settings.Set(Setting::StartupHalvexGroup, group);
    m_settings.Set(Setting::StartupMode, NameOf(mode));
  }
  ShowChosen();
}

void TStartupModes::ShowChosen() {
  const TStartupMode chosen = StartupModeOf(m_settings.Get(Setting::StartupMode));
  for (const TMode &mode : Modes) {
    if (mode.mode == chosen) m_actions[mode.command]->setChecked(true);
  }
}

void TStartupModes::Save() {
  if (IsLast()) {
    m_lastSites.Write();
  } else {
    m_lastSites.Clear();
  }
}
