#include "app/last_open_sites.h"

#include "browser/tabs/browser_tab.h"
#include "browser/tabs/tab_strip.h"
#include "platform/profile_folder.h"
#include "store/registry_store.h"

namespace {

// Milliseconds. Long enough that a burst of changes is one write, short enough that a crash costs next to nothing.
constexpr int FollowDelay = 400;
// The engine takes a second to know how far a page was scrolled.
constexpr int CalmDelay = 1500;

}  // namespace

TLastOpenSites::TLastOpenSites(TTabStrip &tabs, TRegistryStore &store, int window, QObject *parent)
    : QObject(parent), m_tabs(tabs), m_store(store), m_kept(store, window, &TProfileFolder::IsInUse) {
  for (QTimer *timer : {&m_delay, &m_calm}) {
    timer->setSingleShot(true);
    connect(timer, &QTimer::timeout, this, [this] {
      // What waits already must not gather.
      m_store.IsWaiting() ? m_delay.start() : Write();
    });
  }
  m_delay.setInterval(FollowDelay);
  m_calm.setInterval(CalmDelay);
}

QList<TKeptTabs::TOpenTab> TLastOpenSites::OpenTabs() const {
  QList<TKeptTabs::TOpenTab> open;
  const QList<TBrowserTab *> tabs = m_tabs.Tabs();
  for (qsizetype i = 0; i < tabs.size(); ++i) {
    const TBrowserTab *tab = tabs.at(i);
    // A window that never showed has no place that it could come back to.
    if (tab->Blocked() || tab->Hidden()) continue;
    const QString address = tab->AddressToSave();
    if (address.isEmpty()) continue;
    // The number counts hidden pages too, so numbers may have gaps.
    TKeptTabs::TOpenTab kept{.id = tab->Id(), .position = int(i) + 1, .address = address};
    const auto told = m_addresses.constFind(tab->Id());
    if (told == m_addresses.cend() || *told != address || m_changed.contains(tab->Id())) kept.record = tab->Record();
    open.append(std::move(kept));
  }
  return open;
}

void TLastOpenSites::Begin() {
  m_mayWrite = true;
  m_mustLeave = m_store.HasMissedReads();
}

void TLastOpenSites::Follow() {
  StopFollowing();
  connect(&m_tabs, &TTabStrip::TabsChanged, &m_delay, [this] { WriteSoon(); });
  connect(&m_tabs, &TTabStrip::ActiveTabChanged, &m_delay, [this] { WriteSoon(); });
  connect(&m_tabs, &TTabStrip::TabRecordChanged, &m_delay, [this](const TBrowserTab *tab) {
    m_changed.insert(tab->Id());
    WriteSoon();
  });
  connect(&m_tabs, &TTabStrip::TabPlaceChanged, &m_delay, [this](const TBrowserTab *tab) {
    m_changed.insert(tab->Id());
    if (!m_calm.isActive()) m_calm.start();
  });
  m_delay.start();
}

void TLastOpenSites::WriteSoon() {
  // Not started anew while it runs: a page that changes its address all the time must not put the write off for ever.
  if (!m_delay.isActive()) m_delay.start();
}

void TLastOpenSites::StopFollowing() {
  m_delay.stop();
  m_calm.stop();
  m_tabs.disconnect(&m_delay);
  // What changes from now on is not heard of, so the next write tells all.
  m_kept.Forget();
  m_addresses.clear();
  m_changed.clear();
}

void TLastOpenSites::Write() {
  if (!m_mayWrite) return;
  m_mustLeave = m_mustLeave && !m_kept.LeaveStored();
  if (m_mustLeave) {
    if (m_store.IsWritable()) m_delay.start();
    return;
  }
  const QList<TKeptTabs::TOpenTab> tabs = OpenTabs();
  const TBrowserTab *front = m_tabs.GetActivePage();
  const bool isWritten = m_kept.Write(tabs, front != nullptr ? front->Id() : 0);
  m_addresses.clear();
  if (isWritten) {
    for (const TKeptTabs::TOpenTab &tab : tabs) m_addresses.insert(tab.id, tab.address);
    m_changed.clear();
  } else if (m_store.IsWritable()) {
    m_delay.start();  // What is kept must not stay behind the tabs.
  }
}

void TLastOpenSites::Clear() {
  if (!m_store.HasMissedReads()) m_kept.Clear();
}
