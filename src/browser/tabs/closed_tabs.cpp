#include "browser/tabs/closed_tabs.h"

#include <algorithm>
#include <utility>

#include "actions/actions.h"
#include "browser/tabs/browser_tab.h"
#include "browser/tabs/load_queue.h"
#include "browser/tabs/tab_strip.h"

TClosedTabs::TClosedTabs(TActions &actions, TTabStrip &tabs, TLoadQueue &queue)
    : m_actions(actions), m_tabs(tabs), m_queue(queue) {
  connect(&tabs, &TTabStrip::TabClosing, this, &TClosedTabs::Remember);
  connect(actions[TCommand::ReopenTab], &QAction::triggered, this, &TClosedTabs::Reopen);
  actions[TCommand::ReopenTab]->setEnabled(false);
}

TClosedTabs::TTogether::TTogether(TClosedTabs &closed) : m_closed(closed) {
  if (m_closed.m_togetherDepth++ == 0) m_closed.m_inFront = m_closed.m_tabs.GetActivePage();
}

TClosedTabs::TTogether::~TTogether() {
  if (--m_closed.m_togetherDepth == 0) m_closed.Keep(std::exchange(m_closed.m_together, {}));
}

void TClosedTabs::Remember(TBrowserTab *tab) {
  if (tab->Hidden() || tab->Blocked()) return;
  TTabRecord record = tab->Record();
  if (record.address.isEmpty() || record.address == BlankPageAddress) return;
  const TBrowserTab *inFront = m_togetherDepth > 0 ? m_inFront : m_tabs.GetActivePage();
  const TClosed closed{std::move(record), m_tabs.Pages().IndexOf(tab), tab == inFront};
  if (m_togetherDepth > 0) {
    m_together.append(closed);
  } else {
    Keep({closed});
  }
}

void TClosedTabs::Keep(TClosing &&closing) {
  if (closing.isEmpty()) return;
  std::ranges::stable_sort(closing, {}, &TClosed::position);
  m_closings.append(std::move(closing));
  if (m_closings.size() > Most) m_closings.removeFirst();
  m_actions[TCommand::ReopenTab]->setEnabled(true);
}

TBrowserTab *TClosedTabs::FreeTab() const {
  TBrowserTab *tab = m_tabs.GetActivePage();
  const bool isFree = tab != nullptr && m_tabs.Pages().VisiblePageCount() == 1 && tab->Load() == TLoad::Blank &&
                      !tab->Locked() && tab->StickyName().isEmpty();
  return isFree ? tab : nullptr;
}

void TClosedTabs::Reopen() {
  if (m_closings.isEmpty()) return;
  const TClosing closing = m_closings.takeLast();
  m_actions[TCommand::ReopenTab]->setEnabled(!m_closings.isEmpty());
  const TPresentationPause pause(m_tabs.Pages());
  TBrowserTab *free = FreeTab();
  TBrowserTab *front = nullptr;
  for (const TClosed &closed : closing) {
    TBrowserTab *tab = free != nullptr ? std::exchange(free, nullptr) : m_tabs.NewTabAt(closed.position);
    m_queue.Wait(tab, closed.record);
    if (front == nullptr || closed.inFront) front = tab;
  }
  m_tabs.Activate(front);
  m_queue.Wake(front);
}

void TClosedTabs::StopFollowing() {
  m_tabs.disconnect(this);
}
