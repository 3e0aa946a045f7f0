#include "app/last_open_sites.h"

#include "browser/tabs/browser_tab.h"
#include "browser/tabs/tab_strip.h"
#include "config/options.h"

namespace {

// Long enough that a burst of changes is one write, short enough that a crash costs next to nothing.
constexpr int FollowDelay = 400;  // milliseconds

}  // namespace

TLastOpenSites::TLastOpenSites(TTabStrip &tabs, TRegistryStore &store, QObject *parent)
    : QObject(parent), m_tabs(tabs), m_store(store) {
  m_delay.setSingleShot(true);
  m_delay.setInterval(FollowDelay);
  connect(&m_delay, &QTimer::timeout, this, [this] { Write(false); });
}

QStringList TLastOpenSites::Read(TRegistryStore &store) {
  QStringList addresses;
  const TNamedAddresses sites = TZVOptions(store).LastOpenSites();
  for (auto site = sites.crbegin(); site != sites.crend(); ++site) {
    if (const QString address = site->WebAddress(); !address.isEmpty()) addresses.append(address);
  }
  return addresses;
}

TNamedAddresses TLastOpenSites::Sites(bool close) const {
  TNamedAddresses sites;
  const QList<TBrowserTab *> tabs = m_tabs.Tabs();
  for (qsizetype i = tabs.size() - 1; i >= 0; --i) {
    TBrowserTab *tab = tabs.at(i);
    // A window that never showed has no place that it could come back to.
    if (tab->Blocked() || tab->Hidden()) continue;
    const QString address = tab->AddressToSave();
    if (address.isEmpty()) continue;
    // The number counts hidden pages too, so numbers may have gaps.
    sites.append({QStringLiteral("url%1").arg(i + 1), address});
    if (close) tab->Close();
  }
  return sites;
}

void TLastOpenSites::Follow() {
  StopFollowing();
  // Another window may have written its own list meanwhile.
  m_written.clear();
  // The timer is not started anew while it runs: a page that changes its address all the time must not put the write
  // off for ever.
  connect(&m_tabs, &TTabStrip::TabsChanged, &m_delay, [this] {
    if (!m_delay.isActive()) m_delay.start();
  });
  m_delay.start();
}

void TLastOpenSites::StopFollowing() {
  m_delay.stop();
  m_tabs.disconnect(&m_delay);
}

void TLastOpenSites::Write(bool close) {
  const TNamedAddresses sites = Sites(close);
  if (sites == m_written && !close) return;
  if (TZVOptions(m_store).SetLastOpenSites(sites)) {
    m_written = sites;
  } else if (!close && m_store.IsWritable()) {
    m_delay.start();  // The store was busy for long; the list must not stay behind the tabs.
  }
}

void TLastOpenSites::Clear(TRegistryStore &store) {
  TZVOptions(store).SetLastOpenSites({});
}
