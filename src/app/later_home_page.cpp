#include "app/later_navigation.h"

#include <QTimer>

#include "browser/tabs/browser_tab.h"
#include "browser/tabs/tab_strip.h"

namespace {

constexpr int LongestWait = 1000;  // milliseconds

}  // namespace

TLaterNavigation::TLaterNavigation(TTabStrip &tabs, TBrowserTab *tab, std::function<void()> navigate)
    : QObject(tab), m_tab(tab), m_navigate(std::move(navigate)) {
  connect(&tabs, &TTabStrip::TabLoaded, this, &TLaterNavigation::Run);
  // The tab that is made beside it takes the front within the same turn of the event loop.
  QTimer::singleShot(0, this, [this, &tabs, tab] {
    if (tabs.GetActivePage() == tab) Run();
    connect(&tabs, &TTabStrip::ActiveTabChanged, this, [this, tab](const TBrowserTab *active) {
      if (active == tab) Run();
    });
  });
  QTimer::singleShot(LongestWait, this, &TLaterNavigation::Run);
}

void TLaterNavigation::Run() {
  if (!m_navigate) return;
  const std::function<void()> navigate = std::exchange(m_navigate, nullptr);
  deleteLater();
  if (m_tab->Url().isEmpty()) navigate();
}
