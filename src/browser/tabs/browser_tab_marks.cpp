// What the user has set for a tab, what is kept of it, and how it is told.

#include <utility>

#include "browser/tabs/browser_tab.h"
#include "browser/tabs/tab_record.h"
#include "browser/tabs/tab_strip.h"
#include "config/language.h"

TTabRecord TBrowserTab::Record() const {
  return {.address = AddressToSave(),
          .title = m_title,
          .stickyName = m_stickyName,
          .locked = Locked() || LockPending(),
          .spared = m_hideFromCloseAll,
          .keptAwake = m_keptAwake,
          .history = Announced() || !m_browser ? m_history : m_browser->History()};
}

void TBrowserTab::Announce(const TTabRecord &record) {
  m_stickyName = record.stickyName;
  m_hideFromCloseAll = record.spared;
  m_keptAwake = record.keptAwake;
  Announce(TAddress(record.address));
  m_history = record.history;
  if (!record.title.isEmpty()) SetCaption(record.title);
  SetLockPending(record.locked);
}

void TBrowserTab::SetHideFromCloseAll(bool hide) {
  if (std::exchange(m_hideFromCloseAll, hide) == hide) return;
  m_strip.Pages().TellDescription(this);
  Q_EMIT RecordChanged();
}

void TBrowserTab::SetKeptAwake(bool keep) {
  if (std::exchange(m_keptAwake, keep) == keep) return;
  m_strip.Pages().TellDescription(this);
  Q_EMIT RecordChanged();
}

void TBrowserTab::FallAsleep() {
  // What has not come yet, or has failed, could not come back as it was.
  if (m_browser && m_load == TLoad::Shown && !m_keptAwake && !Hidden() && !Blocked() && !IsActive()) {
    m_browser->FallAsleep();
  }
}

QString TBrowserTab::Description() const {
  const TLanguage &language = m_environment.language;
  QString description = m_title == BlankPageAddress ? language.Global("Blank") : m_title;
  const auto add = [&](bool holds, const QString &text) {
    if (holds) description = language.Text("MAIN", "TabDescription").arg(description, text);
  };
  add(m_browser && m_browser->HasOpenQuestion(), language.Text("MAIN", "TabAsks"));
  add(Locked() || LockPending(), language.Text("MAIN", "TabIsLocked"));
  add(m_hideFromCloseAll, language.Text("MAIN", "TabIsSpared"));
  add(m_keptAwake, language.Text("MAIN", "TabIsKeptAwake"));
  add(Asleep(), language.Text("MAIN", "TabSleeps"));
  add(m_state == TTabState::FinishedInBackground, language.Text("MAIN", "TabIsUnseen"));
  add(Busy(), language.Text("MAIN", "TabIsLoading"));
  return description;
}
