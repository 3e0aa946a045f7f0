#include "browser/tabs/tab_strip.h"

#include <algorithm>
#include <QCoreApplication>
#include <QUrl>
#include <QWebEngineNewWindowRequest>

#include "browser/engine/engine.h"
#include "browser/tabs/browser_tab.h"
#include "config/language.h"
#include "config/settings.h"

namespace {

// The four status images, in the order of TTabState, and that of a page that waits for an answer.
constexpr const char *StatusImages[] = {":/icons/tab_loading.svg", ":/icons/tab_unseen.svg", ":/icons/tab_arriving.svg",
                                        ":/icons/tab_locked.svg", ":/icons/tab_asks.svg"};

TBrowserTab *AsTab(QWidget *page) {
  return static_cast<TBrowserTab *>(page);
}

// As what does not answer looks elsewhere.
QIcon Dimmed(const QIcon &icon) {
  constexpr int Sides[] = {16, 32};  // as they are shown, on plain screens and on fine ones
  QIcon dimmed;
  for (const int side : Sides) dimmed.addPixmap(icon.pixmap(QSize(side, side), QIcon::Disabled));
  return dimmed;
}

}  // namespace

TTabStrip::TTabStrip(QWidget *owner, TZVPageControl *pages, TTabEnvironment &environment)
    : QObject(owner), m_owner(owner), m_pages(pages), m_environment(environment) {
  for (const char *name : StatusImages) m_images.append(QIcon(QString::fromLatin1(name)));
  pages->SetImages(m_images);
  m_plainPage = QIcon(QStringLiteral(":/icons/page.svg"));
  const TLanguage &language = environment.language;
  pages->SetButtonTexts(language.Text("MAIN", "TabCloseHint"), language.Text("MAIN", "TabScrollLeftHint"),
                        language.Text("MAIN", "TabScrollRightHint"));
  pages->SetDescriber([](const QWidget *page) { return static_cast<const TBrowserTab *>(page)->Description(); });
  pages->setAccessibleName(language.Text("MAIN", "TabListName"));

  environment.settings.Follow(Setting::LimitTitleLength, this, [this] {
    for (TBrowserTab *tab : Tabs()) tab->SetCaption(tab->Title());
  });

  connect(&environment.engine, &TEngine::NotificationClicked, this, &TTabStrip::BringSiteToFront);

  m_closeHidden.setObjectName(QStringLiteral("tmrCloseHidden"));
  m_closeHidden.setSingleShot(true);
  m_closeHidden.setInterval(CloseHiddenInterval);
  connect(&m_closeHidden, &QTimer::timeout, this, &TTabStrip::CloseHiddenTabs);

  connect(pages, &TZVPageControl::ActivePageChanged, this, &TTabStrip::OnActivePageChanged);
  connect(pages, &TZVPageControl::PageMoved, this, &TTabStrip::TabsChanged);
  connect(pages, &TZVPageControl::CloseRequested, this, [this](QWidget *page) { CloseByUser(AsTab(page)); });
  connect(pages, &TZVPageControl::LinkDropped, this, [this](const QString &address, QWidget *page) {
    (page != nullptr ? AsTab(page) : NewTab())->Navigate(TAddress::OfEngine(address));
  });
}

TTabStrip::~TTabStrip() {
  // The pages are the control's children and may outlive this object for a moment; they must not call back into it, and
  // none is shown for a moment because the one before it has gone.
  m_pages->disconnect(this);
  m_pages->hide();
  for (TBrowserTab *tab : Tabs()) {
    m_pages->RemovePage(tab);
    delete tab;
  }
  // Closed tabs wait for the event loop to be deleted; their pages must be gone before the engine's profile.
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// Tabs speak for themselves; the window hears of the active one.
void TTabStrip::Relay(TBrowserTab *tab) {
  const auto ifActive = [this, tab](auto signal) {
    return [this, tab, signal](const auto &...arguments) -> void {
      if (GetActivePage() == tab) Q_EMIT(this->*signal)(arguments...);
    };
  };
  connect(tab, &TBrowserTab::StatusTextChanged, this, ifActive(&TTabStrip::StatusTextChanged));
  connect(tab, &TBrowserTab::ProgressChanged, this, ifActive(&TTabStrip::ProgressChanged));
  connect(tab, &TBrowserTab::CommandStateChanged, this, ifActive(&TTabStrip::CommandStateChanged));
  connect(tab, &TBrowserTab::AddressChanged, this, ifActive(&TTabStrip::AddressChanged));
  connect(tab, &TBrowserTab::TitleChanged, this, ifActive(&TTabStrip::ActiveTitleChanged));
  connect(tab, &TBrowserTab::IndicatorsChanged, this, [this, tab] {
    if (GetActivePage() == tab) Q_EMIT IndicatorsChanged(tab);
  });
  connect(tab, &TBrowserTab::Changed, this, &TTabStrip::TabsChanged);
  connect(tab, &TBrowserTab::RecordChanged, this, [this, tab] { Q_EMIT TabRecordChanged(tab); });
  connect(tab, &TBrowserTab::PlaceChanged, this, [this, tab] { Q_EMIT TabPlaceChanged(tab); });
  connect(tab, &TBrowserTab::Closing, this, [this, tab] { Q_EMIT TabClosing(tab); });
  connect(tab, &TBrowserTab::Loaded, this, [this, tab] { Q_EMIT TabLoaded(tab); });
  connect(tab, &TBrowserTab::FellAsleep, this, [this, tab] { Q_EMIT TabFellAsleep(tab); });
  connect(tab, &TBrowserTab::PageSetsOut, this, &TTabStrip::PageSetsOut);
  connect(tab, &TBrowserTab::PageFullScreenRequested, this,
          [this, tab](bool on) { Q_EMIT PageFullScreenRequested(tab, on); });
  connect(tab, &TBrowserTab::WindowStopped, this,
          [this, tab](const QString &address) { Q_EMIT WindowStopped(tab, address); });
  connect(tab, &TBrowserTab::PopupRejected, this, [this, tab] { OnPopupRejected(tab); });
}

void TTabStrip::OnPopupRejected(TBrowserTab *tab) {
  // A page that asks for one window after the other does not put the closing off.
  if (!m_closeHidden.isActive()) m_closeHidden.start();
  Q_EMIT PopupRejected(tab);
}

int TTabStrip::PositionFor(TTabPlace place) const {
  const bool atEnd = place == TTabPlace::AtEnd || m_environment.settings.Get(Setting::OpenNewAtEnd);
  return atEnd ? m_pages->PageCount() : m_pages->ActivePageIndex() + 1;
}

TBrowserTab *TTabStrip::InsertTab(int position, bool hidden) {
  auto *tab = new TBrowserTab(m_owner, m_environment, *this, hidden);
  Relay(tab);
  m_pages->InsertPage(position, tab, !hidden);
  m_pages->SetPageIcon(tab, m_plainPage);
  tab->SetCaption(BlankPageAddress);
  m_pages->SetActivePage(tab);
  Q_EMIT TabOpened(tab);
  Q_EMIT TabsChanged();
  return tab;
}

TBrowserTab *TTabStrip::InsertInBackground(int position, bool hidden, bool staysBehind) {
  TBrowserTab *previous = GetActivePage();
  const TPresentationPause pause(*m_pages);
  // The tab is active for a moment, but nobody is told: the keyboard must not leave the page or box that has it.
  m_quiet = true;
  TBrowserTab *tab = InsertTab(position, hidden);
  if (staysBehind && previous != nullptr) m_pages->SetActivePage(previous);
  m_quiet = false;
  if (GetActivePage() != previous) OnActivePageChanged(GetActivePage());
  return tab;
}

TBrowserTab *TTabStrip::NewTab(TTabPlace place) {
  return InsertTab(PositionFor(place), false);
}

TBrowserTab *TTabStrip::NewBackgroundTab(TTabPlace place) {
  const bool inForeground = m_environment.settings.Get(Setting::OpenNewInForeground);
  TBrowserTab *tab = InsertInBackground(PositionFor(place), false, !inForeground);
  // Only what waits for the strip itself: this runs inside the engine's own events, where nothing else may be let in.
  QCoreApplication::sendPostedEvents(m_pages);
  return tab;
}

TBrowserTab *TTabStrip::NewTabAt(int position) {
  const bool isInside = position >= 0 && position < TabCount();
  return InsertInBackground(isInside ? position : TabCount(), false, true);
}

TBrowserTab *TTabStrip::NewHiddenTab() {
  const bool inForeground = m_environment.settings.Get(Setting::OpenNewInForeground);
  return InsertInBackground(PositionFor(TTabPlace::BySetting), true, !inForeground);
}

TBrowserTab *TTabStrip::GetActivePage() const {
  return AsTab(m_pages->ActivePage());
}

TBrowserTab *TTabStrip::Tab(int position) const {
  return AsTab(m_pages->Page(position));
}

int TTabStrip::TabCount() const {
  return m_pages->PageCount();
}

QList<TBrowserTab *> TTabStrip::Tabs() const {
  QList<TBrowserTab *> tabs;
  tabs.reserve(TabCount());
  for (int i = 0; i < TabCount(); ++i) tabs.append(Tab(i));
  return tabs;
}

int TTabStrip::ActiveTabIndex() const {
  return m_pages->ActivePageIndex();
}

QIcon TTabStrip::IconOf(const TBrowserTab *tab) const {
  if (tab->Image() >= 0) return m_images.value(tab->Image());
  return PageIconOf(tab);
}

QIcon TTabStrip::PageIconOf(const TBrowserTab *tab) const {
  const QIcon own = tab->Browser() != nullptr ? tab->Browser()->Icon() : QIcon();
  const QIcon &icon = own.isNull() ? m_plainPage : own;
  return tab->Asleep() ? Dimmed(icon) : icon;
}

void TTabStrip::Activate(TBrowserTab *tab) {
  m_pages->SetActivePage(tab);
}

void TTabStrip::BringToFront(TBrowserTab *tab) {
  Activate(tab);
  Q_EMIT FrontWanted();
}

// Which of a site's pages it came from the engine does not tell: the one in front, if it is one, or else the first.
void TTabStrip::BringSiteToFront(const QUrl &origin) {
  const auto isOf = [&origin](const TBrowserTab *tab) {
    if (tab == nullptr || tab->Hidden()) return false;
    const QUrl page(tab->GetLocationUrl());
    return page.scheme() == origin.scheme() && page.host() == origin.host() && page.port() == origin.port();
  };
  const QList<TBrowserTab *> all = Tabs();
  const auto found = std::ranges::find_if(all, isOf);
  if (found != all.end() && !isOf(GetActivePage())) Activate(*found);
  Q_EMIT FrontWanted();
}

void TTabStrip::MakeMeActiveTab(int position) {
  if (TBrowserTab *tab = Tab(position)) m_pages->SetActivePage(tab);
}

void TTabStrip::ActivateVisible(int number) {
  constexpr int LastTab = 9;
  TBrowserTab *found = nullptr;
  int seen = 0;
  for (int i = 0; i < TabCount(); ++i) {
    TBrowserTab *tab = Tab(i);
    if (!m_pages->IsPageVisible(tab)) continue;
    found = tab;
    if (++seen == number && number != LastTab) break;
  }
  if (found != nullptr && (number == LastTab || seen == number)) m_pages->SetActivePage(found);
}

void TTabStrip::ActivateNeighbourOf(const TBrowserTab *tab) {
  if (GetActivePage() != tab) return;
  bool first = true;
  for (int i = 0; i < m_pages->IndexOf(tab); ++i) first = first && !m_pages->IsPageVisible(m_pages->Page(i));
  m_pages->SelectNextPage(!first);
}

void TTabStrip::CloseByUser(TBrowserTab *tab) {
  if (m_closingLocked) return;
  m_leaving.Ask(tab, [this, tab](bool mayGo) {
    if (mayGo && !m_closingLocked) tab->Close();
  });
}

void TTabStrip::CloseActive() {
  CloseByUser(GetActivePage());
}

void TTabStrip::CloseHiddenTabs() {
  for (TBrowserTab *tab : Tabs()) {
    if (tab->Blocked()) tab->Close();
  }
}

void TTabStrip::StopAll() {
  for (TBrowserTab *tab : Tabs()) tab->Stop();
}

void TTabStrip::RefreshAll() {
  // A page that waits for its turn has nothing yet that could be refreshed, and one that sleeps comes anew anyway.
  for (TBrowserTab *tab : Tabs()) {
    if (!tab->Announced() && !tab->Asleep()) tab->Refresh();
  }
}

void TTabStrip::RefreshUnattended() {
  for (TBrowserTab *tab : Tabs()) {
    const THalvexBrowser *browser = tab->Browser();
    const bool wouldAsk = browser != nullptr && (browser->CameFromForm() || browser->HasOpenQuestion());
    if (!tab->Announced() && !tab->Asleep() && !wouldAsk) tab->Refresh();
  }
}

void TTabStrip::ShowAdjacent(bool forward) {
  m_pages->SelectNextPage(forward);
}

void TTabStrip::OpenFromPage(const TAddress &address, bool background) {
  (background ? NewBackgroundTab() : NewTab())->Navigate(address);
}

void TTabStrip::OpenWindowsOf(THalvexBrowser *browser, const std::shared_ptr<TWindowBudget> &windows) {
  connect(browser, &THalvexBrowser::NewWindowRequested, this, [=, this](QWebEngineNewWindowRequest *request) {
    if (windows->Take(request->isUserInitiated())) {
      NewHiddenTab()->TakeWindow(request, browser->Owner(), nullptr, windows);
    } else {
      TellStopped(AddressOf(request->requestedUrl()));
    }
  });
  // Nobody can fill the empty windows of a page that is gone.
  connect(browser, &THalvexBrowser::NavigateComplete, this, [this] { CloseEmptyWindowsOf(nullptr); });
}

void TTabStrip::TellStopped(const QString &address) {
  if (TBrowserTab *tab = GetActivePage()) Q_EMIT WindowStopped(tab, address);
}

void TTabStrip::ShowTab(TBrowserTab *tab) {
  m_pages->SetPageVisible(tab, true);
  if (m_environment.settings.Get(Setting::OpenNewInForeground)) m_pages->SetActivePage(tab);
  Q_EMIT TabsChanged();
}

void TTabStrip::Remove(TBrowserTab *tab) {
  m_pages->DeletePage(tab);
  Q_EMIT TabsChanged();
}

void TTabStrip::CloseEmptyWindowsOf(const TBrowserTab *opener) {
  for (TBrowserTab *tab : Tabs()) {
    if (tab->Hidden() && tab->Opener() == opener) tab->Close();
  }
}

void TTabStrip::OnActivePageChanged(QWidget *page) {
  TBrowserTab *tab = AsTab(page);
  if (tab == nullptr || m_quiet) return;
  tab->MarkSeen();
  // Whoever walks along the strip by keyboard stays there.
  if (m_environment.focusPage && tab->Browser() != nullptr && m_owner->isActiveWindow() && !m_pages->StripHasFocus()) {
    tab->Browser()->setFocus();
  }
  Q_EMIT ActiveTabChanged(tab);
}
