#include "app/startup_modes.h"

#include <QActionGroup>
#include <QPointer>

#include "actions/commands.h"
#include "app/last_open_sites.h"
#include "config/options.h"
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

TStartupModes::TStartupModes(TCommands &commands, TPageGroups &groups, TLastOpenSites &lastSites, TRegistryStore &store,
                             QObject *parent)
    : QObject(parent), m_commands(commands), m_groups(groups), m_lastSites(lastSites), m_store(store) {
  auto *group = new QActionGroup(this);
  for (const TMode &mode : Modes) {
    QAction *action = group->addAction(commands[mode.command]);
    connect(action, &QAction::triggered, this, [this, value = QString::fromLatin1(mode.value)] { Choose(value); });
  }
  ShowChosen();
}

bool TStartupModes::IsLast(TRegistryStore &store) {
  return TZVOptions(store).Get(Setting::StartupMode) == QLatin1String(Last);
}

void TStartupModes::FollowPages() {
  if (IsLast(m_store)) {
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
    TZVOptions options(m_store);
    options.Set(Setting::StartupMode, mode);
    if (!group.isEmpty()) options.Set(Setting::StartupHalvexGroup, group);
  }
  ShowChosen();
  FollowPages();
}

// Every other value of the setting means the page group.
void TStartupModes::ShowChosen() {
  const QString value = TZVOptions(m_store).Get(Setting::StartupMode);
  TCommand chosen = TCommand::StartGroup;
  for (const TMode &mode : Modes) {
    if (value == QLatin1String(mode.value)) chosen = mode.command;
  }
  m_commands[chosen]->setChecked(true);
}
