#include "search/address_search.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QUrl>

#include "actions/actions.h"
#include "browser/engine/address.h"
#include "browser/tabs/browser_tab.h"
#include "browser/tabs/tab_strip.h"
#include "config/language.h"
#include "config/settings.h"
#include "history/visit_recorder.h"
#include "search/address_bar.h"
#include "search/quick_search.h"
#include "search/search_lists.h"
#include "ui/message_box.h"

namespace {

constexpr qsizetype LongestShownFormat = 300;  // characters

}  // namespace

TAddressSearch::TAddressSearch(QWidget *window, TActions &actions, TAddressBar &bar, TTabStrip &tabs,
                               TSearchLists &lists, THistoryStore &history)
    : m_window(window),
      m_language(tabs.Environment().language),
      m_bar(bar),
      m_tabs(tabs),
      m_settings(tabs.Environment().settings),
      m_lists(lists) {
  m_recorder = new TVisitRecorder(history, this);
  connect(&tabs, &TTabStrip::TabOpened, this, &TAddressSearch::Record);
  for (TBrowserTab *tab : tabs.Tabs()) Record(tab);
  connect(&bar, &TAddressBar::OpenRequested, this, &TAddressSearch::Open);
  connect(&bar, &TAddressBar::Left, this, [this] {
    if (TBrowserTab *tab = m_tabs.GetActivePage()) tab->setFocus();
  });
  connect(actions[TCommand::Go], &QAction::triggered, &bar, &TAddressBar::Go);
  connect(actions[TCommand::EditAddress], &QAction::triggered, this, &TAddressSearch::EditAddress);
  connect(actions[TCommand::ClearAddresses], &QAction::triggered, &bar, &TAddressBar::ClearAddressHistory);
  connect(&lists, &TSearchLists::EngineChosen, this, &TAddressSearch::OpenEngine);
  connect(actions[TCommand::GoSearch], &QAction::triggered, this, [this] {
    // Without a search page of his own the user can search from the address bar.
    m_lists.DefaultSearchPage().isEmpty() ? EditAddress() : OpenEngine(m_lists.DefaultSearchPage());
  });
}

void TAddressSearch::EditAddress() {
  if (!m_bar.isVisible()) m_settings.Set(Setting::ViewAddressBar, true);
  if (m_bar.isVisible()) m_bar.FocusAll();
}

void TAddressSearch::Save() {
  m_settings.Keep(Setting::AddressNewWin);
  m_settings.Keep(Setting::QuickSearchNewWin);
  // By its number, so that a text that names none of the styles becomes the one for none.
  const QString style = TZVOptions::AutoCompleteStyleOf(m_settings.AutoCompleteMode());
  m_settings.Leave(Setting::AutoCompleteStyle, style, m_settings.Get(Setting::AutoCompleteStyle) != style);
}

void TAddressSearch::Record(TBrowserTab *tab) {
  const THalvexBrowser *browser = tab->Browser();
  if (browser == nullptr) return;
  // What could not be loaded was not visited.
  connect(browser, &THalvexBrowser::DocumentComplete, m_recorder, [this, browser](const QString &address) {
    if (!browser->ShowsNotice()) m_recorder->Loaded(browser, address, browser->LocationName());
  });
  connect(browser, &THalvexBrowser::TitleChanged, m_recorder, [this, browser] {
    if (!browser->ShowsNotice()) m_recorder->Titled(browser, browser->LocationUrl(), browser->LocationName());
  });
}

bool TAddressSearch::Open(const QString &text, bool newTab) {
  const TQuickSearch search = TQuickSearch::Of(text, m_lists.QuickSearches());
  switch (search.kind) {
    case TQuickSearch::TKind::None:
      OpenAddress(text, newTab || m_settings.Get(Setting::AddressNewWin));
      break;
    case TQuickSearch::TKind::Address:
      OpenAddress(search.address, newTab || m_settings.Get(Setting::QuickSearchNewWin));
      break;
    case TQuickSearch::TKind::BadFormat: {
      m_bar.ForgetTypedAddress();
      const QString format = search.format.left(LongestShownFormat);
      ShowWarning(m_window, m_language,
                  search.fault == QuickSearchFormat::TFault::SeveralPlaces
                      ? m_language.Text("QUICK_SEARCH", "FormatSeveral").arg(search.keyword, format)
                      : m_language.Text("QUICK_SEARCH", "FormatBad").arg(search.keyword, format));
      return false;
    }
  }
  return true;
}

void TAddressSearch::OpenAddress(const TAddress &address, bool newTab) {
  TBrowserTab *tab = newTab ? m_tabs.NewTab() : m_tabs.GetActivePage();
  if (tab == nullptr) return;
  FileWhenItStarts(tab, address);
  tab->Navigate(address);
  // A script or an address for another program leaves the page, and with it the address that the box shows.
  if (address.Kind() != TAddress::TKind::Url) m_bar.ShowAddress(tab->AddressToSave());
  tab->setFocus();
}

// A typed address is filed when its tab sets out for it, in the spelling that the engine has for it, and only then: one
// that cannot be opened, or that a locked tab sends away, is not, and neither is what the page does in its place.
void TAddressSearch::FileWhenItStarts(TBrowserTab *tab, const TAddress &address) {
  delete m_typed;
  // The engine opens the blank page without being asked about it.
  const bool isAsked = address.Kind() == TAddress::TKind::Url && !address.IsBlankPage();
  if (!isAsked || tab->Browser() == nullptr) {
    m_bar.ForgetTypedAddress();
    return;
  }
  m_typed = new QObject(this);
  // Of a page's source the engine asks about the page.
  const QString source = address.Url().scheme() == QLatin1String("view-source") ? AddressOf(address.Url()) : QString();
  connect(tab->Browser(), &THalvexBrowser::BeforeNavigate, m_typed, [this, tab, source](const TNavigation *navigation) {
    if (!navigation->mainFrame || navigation->linkClicked || navigation->historyMove || navigation->redirect) return;
    if (navigation->cancel) {
      m_bar.ForgetTypedAddress();
    } else {
      File(tab, source.isEmpty() ? navigation->address : source);
    }
    m_typed->deleteLater();
  });
  connect(tab->Browser(), &THalvexBrowser::StayChosen, m_typed, [this] {
    m_bar.ForgetTypedAddress();
    m_typed->deleteLater();
  });
  // A jump inside the page is never asked about.
  connect(tab->Browser(), &THalvexBrowser::AddressChanged, m_typed,
          [this, tab, url = address.Url()](const QString &shown) {
            if (!url.hasFragment() || QUrl(shown) != url) return;
            File(tab, shown);
            m_typed->deleteLater();
          });
}

void TAddressSearch::File(TBrowserTab *tab, const QString &address) {
  if (tab == m_tabs.GetActivePage()) {
    m_bar.AddTypedAddress(address);
  } else {
    m_bar.FileTypedAddress(address);
  }
}

void TAddressSearch::OpenEngine(const QString &address) {
  m_bar.ForgetTypedAddress();
  if (QFileInfo(address).isFile()) {
    QDesktopServices::openUrl(QUrl::fromLocalFile(address));
  } else {
    OpenAddress(address, m_settings.Get(Setting::SearchNewWin));
  }
}
