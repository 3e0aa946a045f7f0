#include "search/side_search.h"

#include <QApplication>
#include <QFile>
#include <QMenu>
#include <QScopedValueRollback>
#include <QToolButton>
#include <QVBoxLayout>
#include <utility>

#include "actions/actions.h"
#include "browser/engine/policy.h"
#include "browser/engine/search_page.h"
#include "browser/tabs/browser_tab.h"
#include "browser/tabs/tab_strip.h"
#include "config/language.h"
#include "config/settings.h"
#include "config/system_browser.h"
#include "platform/product_info.h"
#include "platform/web_address.h"
#include "search/search_lists.h"
#include "ui/flow_layout.h"
#include "ui/input_box.h"
#include "ui/message_box.h"
#include "ui/shown_text.h"

namespace {

constexpr int NameWidth = 50;  // characters of the input box

// A page of the list may be marked like a link in the panel.
QString WithoutMark(const QString &address) {
  const QString marked = TSearchRouting::MarkedAddress(address);
  return marked.isNull() ? address : marked;
}

// Its words and colours are the same in every language and on every desktop; that is meant.
QString LoadingPage() {
  QFile file(QStringLiteral(":/pages/search_loading.html"));
  return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

}  // namespace

TSideSearch::TSideSearch(QWidget *window, TTabStrip &tabs, TSearchLists &lists, QWidget *parent)
    : QWidget(parent),
      m_window(window),
      m_tabs(tabs),
      m_environment(tabs.Environment()),
      m_lists(lists),
      m_windows(std::make_shared<TWindowBudget>(tabs.Environment().windowSpan)) {
  MakeButtons();
  MakeMenu();
  setFocusProxy(m_choose);
  connect(&lists, &TSearchLists::SearchPageChosen, this,
          [this](const QString &address) { Open(TAddress(WithoutMark(address))); });
  // The engine goes soon after the tabs.
  connect(&tabs, &QObject::destroyed, this, [this] { delete m_browser; });
}

TSideSearch::~TSideSearch() = default;

bool TSideSearch::IsAvailable(const TRegistryStore &store) {
  return SystemBrowser::HasSearch(store);
}

QToolButton *TSideSearch::AddButton(const char *name, const char *icon, const QString &hint) {
  auto *button = new QToolButton(this);
  button->setObjectName(QLatin1String(name));
  button->setIcon(CommandIcon(icon));
  button->setAutoRaise(true);
  button->setFocusPolicy(Qt::TabFocus);
  button->setToolTip(TLanguage::ShortHint(hint));
  button->setStatusTip(TLanguage::LongHint(hint));
  button->setAccessibleName(button->toolTip());
  return button;
}

void TSideSearch::MakeButtons() {
  const TLanguage &language = m_environment.language;
  m_choose = AddButton("tbSearchBar", "search", language.Text("SIDE_SEARCH", "ChooseHint"));
  m_pages = AddButton("tbSearchFavs", "tab_list", language.Text("SIDE_SEARCH", "PagesHint"));
  m_back = AddButton("tbSearchBack", "back", language.Text("MAIN", "MenuGoBackHint"));
  m_forward = AddButton("tbSearchForward", "forward", language.Text("MAIN", "MenuGoForwardHint"));
  m_stop = AddButton("tbSearchStop", "stop", language.Text("MAIN", "MenuViewStopHint"));
  m_refresh = AddButton("tbSearchRefresh", "refresh", language.Text("MAIN", "MenuViewRefreshHint"));
  for (QToolButton *button : {m_back, m_forward, m_stop}) button->setEnabled(false);
  // A narrow bar has no room for all of them side by side.
  auto *buttons = new TFlowLayout(0);
  for (QToolButton *button : {m_choose, m_pages, m_back, m_forward, m_stop, m_refresh}) buttons->addWidget(button);
  auto *layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addLayout(buttons);
  layout->addStretch();

  connect(m_choose, &QToolButton::clicked, this, &TSideSearch::tbChooseSearchBarClick);
  using TOperation = void (THalvexBrowser::*)();
  const std::pair<QToolButton *, TOperation> rows[] = {
      {m_back, &THalvexBrowser::GoBack}, {m_forward, &THalvexBrowser::GoForward}, {m_stop, &THalvexBrowser::Stop}};
  for (const auto &[button, operation] : rows) {
    connect(button, &QToolButton::clicked, this, [this, operation = operation] {
      if (m_browser) (m_browser->*operation)();
    });
  }
  connect(m_refresh, &QToolButton::clicked, this, [this] {
    if (!m_browser) return;
    const bool passCache = QGuiApplication::queryKeyboardModifiers().testFlag(Qt::ControlModifier);
    passCache ? m_browser->RefreshCompletely() : m_browser->Refresh();
  });
}

void TSideSearch::MakeMenu() {
  const TLanguage &language = m_environment.language;
  auto *menu = new QMenu(this);
  menu->setObjectName(QStringLiteral("pmSearchFavs"));
  const auto add = [this, menu](const QString &text, const char *name, auto handler) {
    QAction *action = menu->addAction(text);
    action->setObjectName(QLatin1String(name));
    connect(action, &QAction::triggered, this, handler);
  };
  // The pages of the list follow at once: the menu has these three entries and no others.
  add(language.Text("SIDE_SEARCH", "AddPage"), "pmSearchFavsAdd", [this] { pmSearchFavsAddClick(); });
  add(language.Text("SIDE_SEARCH", "SetHome"), "pmSearchHomeSet", [this] { pmSearchHomeSetClick(); });
  add(language.Text("SIDE_SEARCH", "Organize"), "pmSearchFavsOrg",
      [this] { (void)m_lists.Organize(TSearchList::SearchBar); });
  m_lists.FillSearchBarMenu(menu);
  m_pages->setMenu(menu);
  m_pages->setPopupMode(QToolButton::InstantPopup);
}

void TSideSearch::MakeBrowser() {
  m_browser = new THalvexBrowser(m_window, m_environment.engine, AllDownloadControlOptions, this);
  m_browser->setAccessibleName(m_environment.language.Text("SIDE_SEARCH", "PageName"));
  m_browser->setFocusPolicy(Qt::StrongFocus);
  m_browser->TellTargets();
  auto *column = static_cast<QVBoxLayout *>(layout());
  delete column->takeAt(column->count() - 1);
  column->addWidget(m_browser, 1);
  setFocusProxy(m_browser);

  connect(m_browser, &THalvexBrowser::BeforeNavigate, this, &TSideSearch::SearchBrowserBeforeNavigate2);
  m_tabs.OpenWindowsOf(m_browser, m_windows);
  connect(m_browser, &THalvexBrowser::NavigateComplete, this, [this] { m_hasArrived = true; });
  connect(m_browser, &THalvexBrowser::DocumentComplete, this, [this] { SetUnderWay(false); });
  connect(m_browser, &THalvexBrowser::StayChosen, this, [this] { m_routing.ForgetPass(); });
  connect(m_browser, &THalvexBrowser::CommandStateChanged, this, [this](int command, bool enabled) {
    if (command == static_cast<int>(TBrowserCommand::Back)) m_back->setEnabled(enabled);
    if (command == static_cast<int>(TBrowserCommand::Forward)) m_forward->setEnabled(enabled);
  });
  connect(m_browser, &THalvexBrowser::UserActed, this, [this] { m_windows->Renew(); });
  connect(m_browser, &THalvexBrowser::StatusTextChanged, this, &TSideSearch::StatusTextChanged);
  connect(m_browser, &THalvexBrowser::BringToFrontRequested, this, &TSideSearch::ShowWanted);
  connect(m_browser, &THalvexBrowser::OpenInNewTabRequested, this,
          [this](const TAddress &address, bool background) { m_tabs.OpenFromPage(address, background); });
  connect(m_browser, &THalvexBrowser::ViewSourceRequested, this,
          [this](const TAddress &address) { m_tabs.NewTab()->Navigate(address); });
  // The screen is for what the tabs show.
  connect(m_browser, &THalvexBrowser::PageFullScreenRequested, m_browser, [this](bool on) {
    if (on) m_browser->LeavePageFullScreen();
  });
}

void TSideSearch::showEvent(QShowEvent *event) {
  QWidget::showEvent(event);
  if (std::exchange(m_wasShown, true)) return;
  MakeBrowser();
  // The blank page first, as a page of the engine's: it is what stands there while the other comes.
  connect(
      m_browser, &THalvexBrowser::DocumentComplete, this,
      [this] {
        OpenFirst();
        m_environment.settings.Follow(Setting::SearchBar, this, [this] {
          if (!m_setsHome) OpenFirst();
        });
      },
      static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
  (void)m_browser->EnginePage();
  m_browser->ShowBlank();
}

THalvexBrowser *TSideSearch::Browser() const {
  return m_browser;
}

THalvexBrowser *TSideSearch::FocusedBrowser() const {
  const QWidget *focus = QApplication::focusWidget();
  const bool has = m_browser && focus != nullptr && (focus == m_browser || m_browser->isAncestorOf(focus));
  return has ? m_browser.data() : nullptr;
}

void TSideSearch::Save() {
  m_environment.settings.Keep(Setting::SearchBar);
}

QString TSideSearch::PageAddress(bool makersFirst) const {
  const QString makers = m_environment.product.searchPanelPage;
  const QString home = m_environment.settings.Get(Setting::SearchBar);
  const auto listed = m_lists.Load(TSearchList::SearchBar);
  const QString first = listed && !listed->isEmpty() ? listed->first().address : QString();
  return WithoutMark(SearchPage::First({makersFirst ? makers : home, makersFirst ? home : makers, first}));
}

void TSideSearch::Open(const TAddress &address, TPlaceholder placeholder) {
  if (!m_browser) return;
  m_browser->Stop();
  // The engine neither asks about the blank page nor about a place in the page that is there.
  const bool isJump =
      address.Url().hasFragment() && address.Url().matches(QUrl(m_browser->LocationUrl()), QUrl::RemoveFragment);
  const bool isAsked = address.Kind() == TAddress::TKind::Url && !address.IsBlankPage() && !isJump;
  if (isAsked && placeholder == TPlaceholder::Loading) m_browser->ShowText(LoadingPage());
  if (isAsked) m_routing.PassNext();
  m_browser->Navigate(address);
}

void TSideSearch::OpenFirst() {
  Open(TAddress(PageAddress(false)), TPlaceholder::Loading);
}

void TSideSearch::tbChooseSearchBarClick() {
  Open(TAddress(PageAddress(true)), TPlaceholder::Loading);
}

void TSideSearch::pmSearchFavsAddClick() {
  if (!m_browser) return;
  const TLanguage &language = m_environment.language;
  // As it is now: the page may go on while the question is open.
  const QString address = m_browser->LocationUrl();
  const QPointer<TSideSearch> self(this);
  const auto name = AskText(m_window, language,
                            {.caption = QApplication::applicationDisplayName(),
                             .prompt = language.Text("MAIN", "SideSearchFavsPrompt"),
                             .text = OneLine(m_browser->LocationName()),
                             .width = NameWidth});
  if (!self || !name) return;
  if (!m_lists.AddSearchPage({*name, address})) {
    ShowWarning(m_window, language, language.Text("MAIN", "StoreNotKept"));
  }
}

void TSideSearch::pmSearchHomeSetClick() {
  // What could not be opened is no page to come back to, and no page stands for none.
  if (!m_browser || m_browser->ShowsNotice()) return;
  const QString address = m_browser->LocationUrl();
  const QScopedValueRollback sets(m_setsHome, true);
  m_environment.settings.Set(Setting::SearchBar, address == BlankPageAddress ? QString() : address);
}

bool TSideSearch::TakesOwnPage(TNavigation *navigation) {
  if (m_browser->LocationUrl() != QLatin1String(SearchPage::Address)) return false;
  const auto words = SearchPage::WordsOf(navigation->address);
  const bool isList = navigation->address == QLatin1String(SearchPage::ListAddress);
  if (!words && !isList) return false;
  navigation->cancel = true;
  // Outside of the engine's own event.
  QMetaObject::invokeMethod(
      this,
      [this, words] {
        if (!m_browser) return;
        const TWordSearch search = words ? m_environment.engine.Policy().SearchFor(*words) : TWordSearch();
        if (!search.address.isEmpty()) return OpenInMain(TAddress(search.address), true);
        const QPointer<TSideSearch> self(this);
        (void)m_lists.Organize(TSearchList::QuickSearch);
        // It says which search there is.
        if (self && m_browser) m_browser->Refresh();
      },
      Qt::QueuedConnection);
  return true;
}

void TSideSearch::SearchBrowserBeforeNavigate2(TNavigation *navigation) {
  if (TakesOwnPage(navigation)) return;
  // Pages that were here stay here, and what an accepted navigation is sent on to belongs to that.
  const bool goesOn =
      navigation->historyMove || navigation->reload || (navigation->redirect && m_isUnderWay && !m_hasArrived);
  // Frames that a page fills by itself are parts of it.
  const bool isPart = !navigation->mainFrame && !navigation->linkClicked;
  TSearchRoute route;
  if (navigation->newWindow) {
    route = TSearchRouting::BeforeWindow(navigation->address, navigation->target);
  } else if (!goesOn && isPart) {
    // The pass is for the panel's own navigation, which may still be waiting for the page to be left.
    route = TSearchRouting::BeforeWindow(navigation->address, navigation->target);
  } else if (!goesOn) {
    route = m_routing.BeforeNavigate(navigation->address, navigation->target, navigation->baseTarget);
  }
  if (route.kind == TSearchRoute::TKind::Stays) {
    if (navigation->mainFrame && !navigation->newWindow) SetUnderWay(true);
    return;
  }
  navigation->cancel = true;
  const bool inPanel = route.kind == TSearchRoute::TKind::OpensInPanel;
  const bool byUser = navigation->linkClicked;
  // A page could go on opening tabs without end.
  if (!inPanel && !m_windows->Take(byUser)) return m_tabs.TellStopped(route.address);
  // Outside of the engine's own event.
  QMetaObject::invokeMethod(
      this,
      [this, inPanel, byUser, text = route.address] {
        if (!m_browser) return;
        const TAddress address = inPanel ? TAddress(text) : TAddress::OfEngine(text);
        // What newer engines say of a link that is a script; there is nothing to be seen in it.
        if (!inPanel && address.IsBlankPage()) return;
        if (!MayOpen(address, byUser)) return;
        inPanel ? Open(address) : OpenInMain(address, byUser);
      },
      Qt::QueuedConnection);
}

// What the engine keeps from pages is not to be had by way of the program: it takes each of its own navigations for the
// user's.
bool TSideSearch::MayOpen(const TAddress &address, bool byUser) const {
  switch (address.Kind()) {
    case TAddress::TKind::Script:
    case TAddress::TKind::Empty:
      return false;
    case TAddress::TKind::External:
      return byUser;
    case TAddress::TKind::UnknownKind:
    case TAddress::TKind::Invalid:
      return byUser;  // shown as an address that cannot be opened
    case TAddress::TKind::Url:
      break;
  }
  return WebAddress::Is(address.Url()) || address.IsBlankPage() ||
         (!m_browser->ShowsNotice() && address.Url().scheme() == QUrl(m_browser->LocationUrl()).scheme());
}

void TSideSearch::OpenInMain(const TAddress &address, bool byUser) {
  // What another program opens needs no tab.
  const bool isPage = address.Kind() != TAddress::TKind::External;
  TBrowserTab *tab =
      isPage && m_environment.settings.Get(Setting::SearchNewWin) ? m_tabs.NewTab() : m_tabs.GetActivePage();
  if (tab == nullptr) return;
  tab->Navigate(address);
  if (isPage && byUser) tab->setFocus();
}

void TSideSearch::SetUnderWay(bool underWay) {
  m_isUnderWay = underWay;
  m_hasArrived = !underWay;
  m_stop->setEnabled(underWay);
}
