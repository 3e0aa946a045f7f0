#include "browser/tabs/first_page_wait.h"

#include "browser/tabs/browser_tab.h"
#include "browser/tabs/tab_strip.h"

namespace {

constexpr int LongestWait = 3000;  // milliseconds, for a first page that does not come
constexpr int PaintTime = 150;     // milliseconds from its end until it is painted: it is not to be kept from that

}  // namespace

TFirstPageWait::TFirstPageWait(TTabStrip &tabs) : m_tabs(tabs) {
  m_timer.setSingleShot(true);
  connect(&m_timer, &QTimer::timeout, this, &TFirstPageWait::Over);
}

void TFirstPageWait::Begin() {
  const TBrowserTab *tab = m_tabs.GetActivePage();
  const bool isToCome = tab != nullptr && tab->Load() != TLoad::Blank;
  const auto waitForPicture = [this] {
    if (m_timer.isActive()) m_timer.start(PaintTime);
  };
  connect(&m_tabs, &TTabStrip::TabLoaded, &m_timer, waitForPicture, Qt::SingleShotConnection);
  m_timer.start(isToCome ? LongestWait : 0);
}
