#include "search/visit_recorder.h"

#include "browser/tabs/browser_tab.h"
#include "browser/tabs/tab_strip.h"
#include "platform/history_store.h"

TVisitRecorder::TVisitRecorder(TTabStrip &tabs, THistoryStore &history, QObject *parent)
    : QObject(parent), m_history(history) {
  connect(&tabs, &TTabStrip::TabOpened, this, &TVisitRecorder::Follow);
  for (TBrowserTab *tab : tabs.Tabs()) Follow(tab);
}

void TVisitRecorder::Follow(TBrowserTab *tab) {
  THalvexBrowser *browser = tab->Browser();
  if (browser == nullptr) return;
  m_last.insert(browser, {});
  connect(browser, &QObject::destroyed, this, [this, browser] { m_last.remove(browser); });
  connect(browser, &THalvexBrowser::DocumentComplete, this,
          [this, browser](const QString &address) { OnLoaded(browser, address); });
  connect(browser, &THalvexBrowser::TitleChanged, this, [this, browser] { OnTitle(browser); });
}

void TVisitRecorder::OnLoaded(THalvexBrowser *browser, const QString &address) {
  // What could not be loaded was not visited, and neither is a page again that reloads itself.
  if (browser->ShowsNotice() || m_last.value(browser).address == address) return;
  const QString title = browser->LocationName();
  m_last.insert(browser, {address, title});
  m_history.AddVisit(address, title == address ? QString() : title);
}

void TVisitRecorder::OnTitle(THalvexBrowser *browser) {
  TLast &last = m_last[browser];
  const QString title = browser->LocationName();
  if (last.address.isEmpty() || last.address != browser->LocationUrl() || title.isEmpty() || title == last.title)
    return;
  last.title = title;
  if (title != last.address && !browser->ShowsNotice()) m_history.SetTitle(last.address, title);
}
