#include "browser/tabs/load_queue.h"

#include <algorithm>
#include <utility>

#include "browser/engine/address.h"
#include "browser/tabs/browser_tab.h"
#include "browser/tabs/tab_record.h"
#include "browser/tabs/tab_strip.h"

namespace {

// Milliseconds that a tab must stay in front before its page no longer waits for a free place: whoever walks along the
// strip does not start every page on the way.
constexpr int Dwell = 100;

// A script would run in whatever page the tab still shows, and a list of mail addresses would start a program for each.
bool IsPage(const TAddress &address) {
  switch (address.Kind()) {
    case TAddress::TKind::Empty:
    case TAddress::TKind::Script:
    case TAddress::TKind::External:
      return false;
    default:
      return true;
  }
}

}  // namespace

TLoadQueue::TLoadQueue(TTabStrip &tabs, QObject *parent) : QObject(parent), m_tabs(tabs) {
  m_turn.setSingleShot(true);
  m_turn.setInterval(0);
  connect(&m_turn, &QTimer::timeout, this, &TLoadQueue::StartNext);
  m_dwell.setSingleShot(true);
  m_dwell.setInterval(Dwell);
  connect(&m_dwell, &QTimer::timeout, this, &TLoadQueue::StartActive);
  connect(&tabs, &TTabStrip::ActiveTabChanged, this, &TLoadQueue::Wake);
}

void TLoadQueue::Navigate(TBrowserTab *tab, const TAddress &address) {
  if (tab == nullptr || tab->Browser() == nullptr) return;
  const qsizetype place = PlaceOf(tab);
  if (place >= 0) m_waiting.removeAt(place);
  if (!address.Text().isEmpty()) tab->Announce(address);
  if (IsPage(address)) {
    if (place < 0) connect(tab, &QObject::destroyed, this, &TLoadQueue::ForgetClosed, Qt::UniqueConnection);
    m_waiting.append({tab});
    m_turn.start();
  }
  Tell();
}

void TLoadQueue::Wait(TBrowserTab *tab, const TTabRecord &record) {
  tab->Announce(record);
  if (!IsPage(tab->Asked())) return;
  connect(tab, &QObject::destroyed, this, &TLoadQueue::ForgetClosed, Qt::UniqueConnection);
  m_waiting.append({tab, true});
}

int TLoadQueue::ToCome() const {
  const auto waiting = std::count_if(m_waiting.cbegin(), m_waiting.cend(), [](const TEntry &e) { return !e.stopped; });
  return int(waiting + m_holds.size());
}

void TLoadQueue::Stop() {
  for (TEntry &entry : m_waiting) entry.stopped = true;
  Tell();
}

qsizetype TLoadQueue::PlaceOf(const TBrowserTab *tab) const {
  const auto found =
      std::find_if(m_waiting.cbegin(), m_waiting.cend(), [tab](const TEntry &entry) { return entry.tab == tab; });
  return found == m_waiting.cend() ? -1 : found - m_waiting.cbegin();
}

void TLoadQueue::Wake(TBrowserTab *tab) {
  const qsizetype place = PlaceOf(tab);
  if (place < 0) return;
  // Turning to a tab is reason enough to open it, stopped or not.
  m_waiting[place].stopped = false;
  m_waiting.move(place, 0);
  m_turn.start();
  m_dwell.start();
  Tell();
}

void TLoadQueue::StartNext() {
  while (m_holds.size() < AtOnce) {
    qsizetype next = PlaceOf(m_tabs.GetActivePage());
    if (next < 0 || m_waiting.at(next).stopped) {
      const auto free =
          std::find_if(m_waiting.cbegin(), m_waiting.cend(), [](const TEntry &entry) { return !entry.stopped; });
      if (free == m_waiting.cend()) break;
      next = free - m_waiting.cbegin();
    }
    if (Start(next)) {
      // Making a page takes its time; what the user does meanwhile comes before the next one.
      m_turn.start();
      break;
    }
  }
  Tell();
}

void TLoadQueue::StartActive() {
  const qsizetype place = PlaceOf(m_tabs.GetActivePage());
  if (place >= 0) Start(place);
  Tell();
}

bool TLoadQueue::Start(qsizetype place) {
  const TEntry entry = m_waiting.takeAt(place);
  // The tab may have gone, or may have been sent somewhere meanwhile.
  if (!entry.tab || entry.tab->Browser() == nullptr || !entry.tab->Announced()) return false;
  auto *hold = new QTimer(this);
  hold->setSingleShot(true);
  connect(hold, &QTimer::timeout, this, [this, hold] { Finish(hold); });
  connect(entry.tab, &QObject::destroyed, hold, [this, hold] { Finish(hold); });
  connect(entry.tab->Browser(), &THalvexBrowser::DocumentComplete, hold,
          [this, hold, isBlank = entry.tab->Asked().IsBlankPage()](const QString &address) {
            // A tab that was made blank before may still be about to say so.
            if (isBlank || address != BlankPageAddress) Finish(hold);
          });
  m_holds.append(hold);
  hold->start(LongestHold);
  entry.tab->NavigateStored();
  return true;
}

void TLoadQueue::Finish(QTimer *hold) {
  if (!m_holds.removeOne(hold)) return;
  hold->disconnect(this);
  hold->deleteLater();
  m_turn.start();
  Tell();
}

void TLoadQueue::ForgetClosed() {
  m_waiting.removeIf([](const TEntry &entry) { return entry.tab.isNull(); });
  Tell();
}

void TLoadQueue::Tell() {
  const int pages = ToCome();
  if (std::exchange(m_told, pages) != pages) Q_EMIT ToComeChanged(pages);
}
