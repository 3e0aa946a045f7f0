#include "content/content_switches.h"

#include <QEvent>
#include <QWidget>

#include "actions/actions.h"
#include "browser/tabs/tab_strip.h"
#include "store/registry_store.h"

namespace {

constexpr int UntilNextTry = 200;  // milliseconds; of reading what could not be read

TCommand CommandOf(TContentSwitch which) {
  switch (which) {
    case TContentSwitch::Images:
      return TCommand::LoadImages;
    case TContentSwitch::Videos:
      return TCommand::LoadVideos;
    case TContentSwitch::Sounds:
      return TCommand::LoadSounds;
    case TContentSwitch::Animations:
      break;
  }
  return TCommand::LoadAnimations;
}

}  // namespace

TContentSwitches::TContentSwitches(QWidget *window, TActions &actions, TTabStrip &tabs, TRegistryStore &store)
    : m_actions(actions), m_tabs(tabs), m_store(store) {
  m_on.fill(true);
  m_stored = m_on;
  for (const TContentSwitch which : ContentSwitches) {
    QAction *action = m_actions[CommandOf(which)];
    action->setChecked(true);
    // The item, or the button that goes with it, has turned its mark by then.
    connect(action, &QAction::triggered, this, [this, which](bool on) { Choose(which, on); });
  }
  m_again.setObjectName(QStringLiteral("tmrContent"));
  m_again.setSingleShot(true);
  m_again.setInterval(UntilNextTry);
  connect(&m_again, &QTimer::timeout, this, &TContentSwitches::Look);
  Look();
  window->installEventFilter(this);
}

void TContentSwitches::Apply(TContentSwitch which, bool on) {
  TIEOptions options(m_store);
  const std::optional<TContentStates> stored = options.KnownStates();
  if (!stored || stored->at(size_t(which)) != on) {
    // What the store refuses holds for this run.
    if (options.Set(which, on)) m_stored.at(size_t(which)) = on;
    Q_EMIT SettingChanged(QString::fromLatin1(TIEOptions::Area));
  }
  m_on.at(size_t(which)) = on;
  m_actions[CommandOf(which)]->setChecked(on);
}

// Reloading pages although nothing changes is meant: another window may have changed it before.
void TContentSwitches::Choose(TContentSwitch which, bool on) {
  Apply(which, on);
  m_tabs.RefreshAll();
}

void TContentSwitches::Look() {
  const quint64 revision = m_store.Revision();
  const std::optional<TContentStates> stored = TIEOptions(m_store).KnownStates();
  m_isKnown = m_isKnown || stored.has_value();
  if (!m_isKnown) m_again.start();
  if (!stored) return;
  m_seen = revision;
  for (const TContentSwitch which : ContentSwitches) {
    const size_t place = size_t(which);
    if (stored->at(place) == m_stored.at(place)) continue;
    m_stored.at(place) = m_on.at(place) = stored->at(place);
    m_actions[CommandOf(which)]->setChecked(stored->at(place));
  }
}

TContentStates TContentSwitches::States() {
  if (!m_isKnown || m_store.Revision() != m_seen) Look();
  return m_on;
}

void TContentSwitches::Set(const TContentStates &on) {
  if (on == States()) return;
  for (const TContentSwitch which : ContentSwitches) {
    if (on.at(size_t(which)) != m_on.at(size_t(which))) Apply(which, on.at(size_t(which)));
  }
  m_tabs.RefreshAll();
}

bool TContentSwitches::eventFilter(QObject *watched, QEvent *event) {
  if (event->type() == QEvent::WindowActivate) Look();
  return QObject::eventFilter(watched, event);
}
