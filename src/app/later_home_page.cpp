#include "app/later_home_page.h"

#include <QTimer>
#include <utility>

#include "browser/tabs/browser_tab.h"
#include "browser/tabs/tab_strip.h"

namespace {

constexpr int LongestWait = 1000;  // milliseconds

}  // namespace

TLaterHomePage::TLaterHomePage(TTabStrip &tabs, TBrowserTab *tab) : QObject(tab), m_tab(tab) {
  connect(&tabs, &TTabStrip::TabLoaded, this, &TLaterHomePage::Open);
  // The tab that is made beside it takes the front within the same turn of the event loop.
  QTimer::singleShot(0, this, [this, &tabs, tab] {
    if (tabs.GetActivePage() == tab) Open();
    connect(&tabs, &TTabStrip::ActiveTabChanged, this, [this, tab](const TBrowserTab *active) {
      if (active == tab) Open();
    });
  });
  QTimer::singleShot(LongestWait, this, &TLaterHomePage::Open);
}

void TLaterHomePage::Open() {
  if (std::exchange(m_opened, true)) return;
  deleteLater();
  if (m_tab->Url().isEmpty()) m_tab->GoHome();
}
