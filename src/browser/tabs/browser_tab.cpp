#include "browser/tabs/browser_tab.h"

#include <QGuiApplication>
#include <QVBoxLayout>
#include <QWebEngineNewWindowRequest>
#include <utility>

#include "browser/engine/address.h"
#include "browser/tabs/home_page.h"
#include "browser/tabs/tab_caption.h"
#include "browser/tabs/tab_strip.h"
#include "config/language.h"
#include "config/settings.h"
#include "ui/input_box.h"
#include "ui/shown_text.h"

namespace {

quint64 lastId = 0;

constexpr int StickyNameWidth = 60;      // characters
constexpr int LongestListCaption = 250;  // characters; more fits on no screen

bool IsHttps(const QString &address) {
  // Exact and case-sensitive: the engine always gives schemes in lower case.
  return address.startsWith(QLatin1String("https"));
}

}  // namespace

TBrowserTab::TBrowserTab(QWidget *owner, TTabEnvironment &environment, TTabStrip &strip, bool hidden)
    : m_environment(environment),
      m_strip(strip),
      m_id(++lastId),
      m_windows(std::make_shared<TWindowBudget>(environment.windowSpan)),
      m_gate(hidden ? TPopupGate::Untested : TPopupGate::None) {
  m_browser = new THalvexBrowser(owner, environment.engine, AllDownloadControlOptions, this);
  auto *layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(m_browser);
  m_browser->setFocusPolicy(Qt::StrongFocus);
  setFocusProxy(m_browser);
  ConnectBrowser();
  m_secureZone = ZoneOf({});
}

TBrowserTab::~TBrowserTab() = default;

void TBrowserTab::ConnectBrowser() {
  connect(m_browser, &THalvexBrowser::StatusTextChanged, this, &TBrowserTab::StatusTextChanged);
  connect(m_browser, &THalvexBrowser::ProgressChanged, this, &TBrowserTab::OnProgress);
  connect(m_browser, &THalvexBrowser::CommandStateChanged, this, &TBrowserTab::OnCommandState);
  connect(m_browser, &THalvexBrowser::TitleChanged, this, &TBrowserTab::SetCaption);
  connect(m_browser, &THalvexBrowser::IconChanged, this,
          [this] { m_strip.Pages().SetPageIcon(this, m_strip.PageIconOf(this)); });
  connect(m_browser, &THalvexBrowser::UserActed, this, [this] {
    // What he does here is for this tab alone.
    if (m_windows.use_count() > 1) m_windows = std::make_shared<TWindowBudget>(*m_windows);
    m_windows->Renew();
  });
  connect(m_browser, &THalvexBrowser::ZoomChanged, this, &TBrowserTab::IndicatorsChanged);
  connect(m_browser, &THalvexBrowser::PlaceChanged, this, &TBrowserTab::PlaceChanged);
  connect(m_browser, &THalvexBrowser::BeforeNavigate, this, &TBrowserTab::OnBeforeNavigate);
  connect(m_browser, &THalvexBrowser::NewWindowRequested, this, &TBrowserTab::OnNewWindowRequested);
  connect(m_browser, &THalvexBrowser::NavigateComplete, this, &TBrowserTab::OnNavigateComplete);
  connect(m_browser, &THalvexBrowser::DocumentComplete, this, &TBrowserTab::OnDocumentComplete);
  connect(m_browser, &THalvexBrowser::AddressChanged, this, [this](const QString &address) {
    Q_EMIT AddressChanged(address);
    Q_EMIT Changed();
  });
  connect(m_browser, &THalvexBrowser::SecureLockIconChanged, this, [this](TEncryptionLevel level) {
    m_secureLock = level;
    Q_EMIT IndicatorsChanged();
  });
  connect(m_browser, &THalvexBrowser::OpenInNewTabRequested, this,
          [this](const TAddress &address, bool background) { m_strip.OpenFromPage(address, background); });
  connect(m_browser, &THalvexBrowser::ViewSourceRequested, this,
          [this](const TAddress &address) { m_strip.NewTab()->Navigate(address); });
  connect(m_browser, &THalvexBrowser::PageFullScreenRequested, this, &TBrowserTab::PageFullScreenRequested);
  connect(m_browser, &THalvexBrowser::WindowCameToNothing, this, &TBrowserTab::CloseByScript);
  connect(m_browser, &THalvexBrowser::CloseRequested, this, &TBrowserTab::CloseByScript);
  connect(m_browser, &THalvexBrowser::StayChosen, this, &TBrowserTab::ShowOwnPage);
  connect(m_browser, &THalvexBrowser::QuestionOpenChanged, this, [this](bool open) {
    // A window that nobody sees has nobody to ask.
    if (open && (Hidden() || Blocked())) m_browser->DismissQuestions();
    ShowImage();
  });
  connect(m_browser, &THalvexBrowser::AsleepChanged, this, [this](bool asleep) {
    m_strip.Pages().SetPageIcon(this, m_strip.PageIconOf(this));
    m_strip.Pages().TellDescription(this);
    if (asleep) Q_EMIT FellAsleep();
  });
  connect(m_browser, &THalvexBrowser::BringToFrontRequested, this, [this] { m_strip.BringToFront(this); });
}

bool TBrowserTab::IsActive() const {
  return m_strip.GetActivePage() == this;
}

void TBrowserTab::Navigate(const TAddress &address) {
  if (!m_browser) return;
  if (address.Text().isEmpty()) {
    MakeBlank();
    return;
  }
  if (Locked() && !KeepsPage(address)) {
    m_strip.NewBackgroundTab()->Navigate(address);
    return;
  }
  if (Announced() && (address.Kind() == TAddress::TKind::Script || address.Kind() == TAddress::TKind::External)) {
    // Neither is what a tab could be for: it goes on waiting.
    m_browser->Navigate(address);
    return;
  }
  // What it said was about the page that goes.
  Q_EMIT StatusTextChanged(QString());
  // The page that the tab was left with stays behind the new one.
  if (!m_history.isEmpty() && address.Kind() == TAddress::TKind::Url) RestoreHistory();
  m_history.clear();
  m_isStopped = false;
  m_url = address;
  // A load that is under way goes on until the new one takes its place; a jump inside the page is none.
  if (m_load != TLoad::Loading) {
    const bool isLoad = m_url.Kind() == TAddress::TKind::Url && !(m_url.Url().hasFragment() && IsOwnPage(m_url.Url()));
    m_load = isLoad ? TLoad::Waiting : Settled();
  }
  if (!Locked()) SetCaption(Url());
  if (Url() == BlankPageAddress) {
    MakeBlank();
  } else {
    Q_EMIT PageSetsOut();
    m_wish = AddressOf(m_url.Url());
    m_browser->Navigate(m_url);
  }
  ShowAwaitedAddress();
  Q_EMIT Changed();
}

void TBrowserTab::Announce(const TAddress &address) {
  if (!m_browser) return;
  m_url = address;
  m_history.clear();
  const bool wasBusy = Busy();
  m_load = TLoad::Announced;
  if (!Locked()) SetCaption(Url());
  ShowAwaitedAddress();
  Q_EMIT Changed();
  if (!wasBusy) return;
  // Nothing is heard any more of the load that was under way.
  ShowState(TTabState::None);
  Q_EMIT IndicatorsChanged();
}

bool TBrowserTab::KeepsPage(const TAddress &address) const {
  // The rest is asked about when the engine sets out for it.
  const bool isShownAtOnce = address.IsBlankPage() || address.Kind() == TAddress::TKind::UnknownKind ||
                             address.Kind() == TAddress::TKind::Invalid;
  return !isShownAtOnce || address.Text() == GetLocationUrl();
}

void TBrowserTab::ShowOwnPage() {
  if (!m_browser || Announced()) return;
  if (m_load == TLoad::Waiting || m_load == TLoad::Failed) m_load = Settled();
  if (m_load == TLoad::Shown) {
    m_secure = m_isPageSecure;
    m_secureZone = ZoneOf(GetLocationUrl());
    Q_EMIT IndicatorsChanged();
  }
  if (const QString title = GetLocationName(); !title.isEmpty()) SetCaption(title);
  Q_EMIT AddressChanged(AddressToSave());
  Q_EMIT Changed();
}

void TBrowserTab::ShowAwaitedAddress() {
  const QString address = AddressToSave();
  if (address == Url()) Q_EMIT AddressChanged(address);
}

TLoad TBrowserTab::Settled() const {
  if (m_browser->ShowsNotice()) return TLoad::Failed;
  const QString shown = GetLocationUrl();
  return shown.isEmpty() || shown == BlankPageAddress ? TLoad::Blank : TLoad::Shown;
}

void TBrowserTab::NavigateStored() {
  // A tab that was left on its way was for another address than its page's. One with a notice in its page's place has
  // nothing that could be loaded again first: its coming would take the notice away.
  if (m_url.Kind() != TAddress::TKind::Url) m_history.clear();
  if (!m_history.isEmpty() && RestoreHistory() == Url()) return;
  if (!Url().isEmpty()) Navigate(m_url);
}

QString TBrowserTab::RestoreHistory() {
  const QByteArray history = std::exchange(m_history, {});
  m_load = TLoad::Waiting;
  return m_browser->RestoreHistory(history);
}

void TBrowserTab::GoHome() {
  Navigate(HomePage::Address(m_environment.store, m_environment.product));
}

void TBrowserTab::GoBack() {
  if (m_browser && m_backEnabled) m_browser->GoBack();
}

void TBrowserTab::GoForward() {
  if (m_browser && m_forwardEnabled) m_browser->GoForward();
}

void TBrowserTab::Refresh() {
  Reload(QGuiApplication::queryKeyboardModifiers().testFlag(Qt::ControlModifier));
}

void TBrowserTab::Reload(bool passCache) {
  if (!m_browser) return;
  if (Announced()) {
    NavigateStored();
  } else if (passCache) {
    m_browser->RefreshCompletely();
  } else {
    m_browser->Refresh();
  }
}

void TBrowserTab::Stop() {
  if (!m_browser) return;
  const bool isOnItsWay = m_load == TLoad::Waiting || m_load == TLoad::Loading;
  const bool isFirstPage = isOnItsWay && AddressToSave() == Url() && GetLocationUrl() != Url();
  m_isStopped = isOnItsWay;
  m_browser->Stop();
  // What was typed is not lost because nothing of it has come: that is what the tab is still for.
  if (isFirstPage) KeepAsked();
}

void TBrowserTab::KeepAsked() {
  const QByteArray history = m_browser->History();
  Announce(TAddress(m_url));
  m_history = history;
}

void TBrowserTab::MakeBlank() {
  if (!m_browser) return;
  if (!Busy()) m_load = TLoad::Blank;
  m_browser->ShowBlank();
  SetCaption(BlankPageAddress);
  Q_EMIT Changed();
}

QString TBrowserTab::GetLocationUrl() const {
  return m_browser ? m_browser->LocationUrl() : QString();
}

QString TBrowserTab::GetLocationName() const {
  return m_browser ? m_browser->LocationName() : QString();
}

QString TBrowserTab::AddressToSave() const {
  // The page that a tab was emptied of may be there for a moment more.
  const QString shown = m_leavesPage ? BlankPageAddress : GetLocationUrl();
  // A tab whose first page is still on its way is saved by what it was asked to open.
  const bool isOnItsWay = m_load == TLoad::Announced || m_load == TLoad::Waiting || m_load == TLoad::Loading;
  return isOnItsWay && !Url().isEmpty() && (shown.isEmpty() || shown == BlankPageAddress) ? Url() : shown;
}

QString TBrowserTab::ListCaption() const {
  const QString &name = m_stickyName.isEmpty() ? m_title : m_stickyName;
  if (name.isEmpty() || name == BlankPageAddress) return m_environment.language.Global("Blank");
  return name.size() > LongestListCaption ? name.left(LongestListCaption) + QChar(0x2026) : name;
}

void TBrowserTab::SetCaption(const QString &given) {
  const QString title = OneLine(given);
  const bool isNew = m_title != title;
  m_title = title;
  const QString caption = TabCaption(title, m_stickyName, m_environment.settings.Get(Setting::LimitTitleLength),
                                     m_environment.language.Global("Blank"));
  m_strip.Pages().SetPageHint(this, title == BlankPageAddress ? m_environment.language.Global("Blank") : title);
  m_strip.Pages().SetPageCaption(this, caption);
  Q_EMIT TitleChanged(ListCaption());
  if (isNew) Q_EMIT RecordChanged();
}

void TBrowserTab::SetStickyName(const QString &name) {
  m_stickyName = name;
  SetCaption(m_title);
  Q_EMIT RecordChanged();
}

void TBrowserTab::AskStickyName() {
  if (!m_browser) return;
  const QString title = OneLine(GetLocationName());
  // The engine calls a page without a title by its address, with or without the scheme.
  const QString address = GetLocationUrl();
  const bool isUntitled = title == address || title == address.section(QLatin1String("://"), 1);
  const TLanguage &language = m_environment.language;
  const QPointer<TBrowserTab> self(this);
  const auto name = AskText(window(), language,
                            {.caption = language.Global("StickyNameTitle"),
                             .prompt = language.Global("StickyNamePrompt"),
                             .text = isUntitled ? QString() : title,
                             .width = StickyNameWidth});
  if (name && self) SetStickyName(*name);
}

void TBrowserTab::SetLocked(bool locked) {
  if (Locked() == locked) return;
  m_lock = locked ? TLock::Locked : TLock::Open;
  ShowState(locked ? TTabState::Locked : TTabState::None);
  Q_EMIT RecordChanged();
}

void TBrowserTab::SetLockPending(bool pending) {
  if (Locked() || LockPending() == pending) return;
  m_lock = pending ? TLock::Pending : TLock::Open;
  // Of a tab that waits the lock is all there is to be seen.
  if (Announced()) ShowState(TTabState::None);
  Q_EMIT RecordChanged();
}

void TBrowserTab::ResetToBlank() {
  m_gate = TPopupGate::None;
  SetLockPending(false);
  SetLocked(false);
  m_restored = false;
  m_openedAsNewWindow = false;
  m_isPageWindow = false;
  m_opener = nullptr;
  m_popupUrl.clear();
  m_stickyName.clear();
  m_leavesPage = m_browser && m_browser->EnginePageIfAny() != nullptr;
  m_history.clear();
  MakeBlank();
  m_url = {};
  SetHideFromCloseAll(false);
  SetKeptAwake(false);
}

void TBrowserTab::Close() {
  if (!m_browser) return;
  Q_EMIT Closing();
  if (IsActive() && m_strip.Pages().VisiblePageCount() == 1) {
    ResetToBlank();
    return;
  }
  if (m_browser->HasPageFullScreen()) Q_EMIT PageFullScreenRequested(false);
  m_strip.CloseEmptyWindowsOf(this);
  m_strip.ActivateNeighbourOf(this);
  THalvexBrowser *browser = m_browser;
  m_browser = nullptr;
  browser->Stop();
  browser->disconnect(this);
  browser->hide();
  // Closing may be asked from inside one of the browser's own events, so it goes when the event is done.
  browser->deleteLater();
  m_strip.Remove(this);
}

void TBrowserTab::CloseByScript() {
  // A tab that the user opened or locked is his.
  if (m_isPageWindow && !Locked()) Close();
}

void TBrowserTab::MarkSeen() {
  if (!Busy() && !Locked() && m_state == TTabState::FinishedInBackground) ShowState(TTabState::None);
}

void TBrowserTab::ShowState(TTabState state) {
  if (Locked() || (Announced() && LockPending())) state = TTabState::Locked;
  m_state = state;
  ShowImage();
}

// That a page waits for the user is no state of a load: a locked tab says so, too.
int TBrowserTab::Image() const {
  if (m_browser && m_browser->HasOpenQuestion()) return QuestionImage;
  return static_cast<int>(m_state) - 1;
}

void TBrowserTab::ShowImage() {
  m_strip.Pages().SetPageImage(this, Image());
}

void TBrowserTab::OnProgress(int progress, int maximum) {
  m_progress = maximum > 0 ? progress * 100 / maximum : 100;
  Q_EMIT ProgressChanged(m_progress);
}

void TBrowserTab::OnCommandState(int command, bool enabled) {
  if (command == static_cast<int>(TBrowserCommand::Forward)) {
    m_forwardEnabled = enabled;
  } else if (command == static_cast<int>(TBrowserCommand::Back)) {
    m_backEnabled = enabled;
  } else {
    Q_EMIT IndicatorsChanged();
  }
  Q_EMIT CommandStateChanged(m_backEnabled, m_forwardEnabled);
}

void TBrowserTab::OnBeforeNavigate(TNavigation *navigation) {
  if (!m_browser) {
    navigation->cancel = true;
    return;
  }
  if (navigation->address.startsWith(QLatin1String("javascript"))) return;
  if (Blocked()) {
    navigation->cancel = true;
    return;
  }
  if (Hidden()) {
    // A frame counts too: a window may stay at its empty page and fill itself with one.
    if (navigation->address == BlankPageAddress) return;
    TestHiddenTab(navigation);
    if (navigation->cancel) return;
    // What is let in goes on as any navigation does: the tab turns busy below.
  } else if (Locked()) {
    // Frames fill themselves in place unless the user clicked; a locked page full of frames must not spawn tabs. The
    // page itself may reload, by itself too, and what an allowed load is sent on to belongs to that load.
    const bool inPlace = navigation->reload || ComesBack(*navigation) ||
                         (navigation->redirect && (Busy() || IsOwnPage(QUrl(navigation->address)))) ||
                         (!navigation->mainFrame && !navigation->linkClicked);
    if (!inPlace) {
      SendAway(navigation);
      return;
    }
  }
  if (navigation->mainFrame) m_wish.clear();
  if (!navigation->mainFrame || Busy() || Announced()) return;
  Q_EMIT PageSetsOut();
  m_nonHttpsSeen = false;
  m_load = TLoad::Loading;
  ShowState(TTabState::Started);
  Q_EMIT StatusTextChanged(QString());  // what it said was about the page that goes
  Q_EMIT IndicatorsChanged();
}

bool TBrowserTab::ComesBack(const TNavigation &navigation) {
  return navigation.mainFrame && std::exchange(m_comesBack, false) &&
         (navigation.historyMove || navigation.address == m_browser->LastPlace());
}

bool TBrowserTab::IsOwnPage(const QUrl &url) const {
  return url.matches(QUrl(GetLocationUrl()), QUrl::RemoveFragment);
}

void TBrowserTab::TestHiddenTab(TNavigation *navigation) {
  m_popupUrl = navigation->address;
  m_gate = TPopupGate::None;
  if (m_environment.engine.Policy().IsPopup(navigation->address)) {
    navigation->cancel = true;
    m_gate = TPopupGate::Rejected;
    Q_EMIT PopupRejected();
    return;
  }
  m_strip.ShowTab(this);
  SetCaption(m_environment.language.Global("Loading"));
}

bool TBrowserTab::StopsWindow(const QString &address, bool userActed) {
  if (m_windows->Take(userActed)) return false;
  Q_EMIT WindowStopped(address);
  return true;
}

void TBrowserTab::SendAway(TNavigation *navigation) {
  navigation->cancel = true;
  ShowOwnPage();
  // What the page's script does by itself is a window that it opens, and tested like one.
  const bool isWish = !m_wish.isEmpty() && navigation->address == m_wish;
  if (isWish) m_wish.clear();
  const bool byScript = !navigation->linkClicked && !isWish;
  if (byScript && m_environment.engine.Policy().IsPopup(navigation->address)) {
    Q_EMIT WindowStopped(navigation->address);
    return;
  }
  if (byScript && StopsWindow(navigation->address, false)) return;
  TBrowserTab *tab = m_strip.NewBackgroundTab();
  tab->m_openedAsNewWindow = true;
  tab->Navigate(TAddress::OfEngine(navigation->address));
  if (byScript) tab->m_windows = m_windows;
}

void TBrowserTab::OnNewWindowRequested(QWebEngineNewWindowRequest *request) {
  if (StopsWindow(AddressOf(request->requestedUrl()), request->isUserInitiated())) return;
  m_strip.NewHiddenTab()->TakeWindow(request, m_browser->Owner(), this, m_windows);
}

void TBrowserTab::TakeWindow(QWebEngineNewWindowRequest *request, const QUrl &maker, TBrowserTab *opener,
                             const std::shared_ptr<TWindowBudget> &windows) {
  if (!m_browser) return;  // A request that nobody opens is cancelled by the engine.
  m_openedAsNewWindow = true;
  m_isPageWindow = true;
  m_opener = opener;
  // Windows that open windows are no way around it.
  m_windows = windows;
  m_browser->TakeWindow(request, maker);
}

void TBrowserTab::OnNavigateComplete(const QString &address) {
  m_leavesPage = false;
  // While the tab waits for its turn only the blank page that it was left with can have something to say.
  if (!m_browser || Announced()) return;
  if (Locked() && address == BlankPageAddress) {
    // The engine does not ask about this one, so all that can be done is to come back from it.
    m_comesBack = true;
    m_browser->ComeBack();
    if (!StopsWindow(address, false)) m_strip.NewBackgroundTab()->MakeBlank();
    return;
  }
  // The blank page that a tab is left with before it opens something is not the page to keep.
  if (LockPending() && (address != BlankPageAddress || Url() == BlankPageAddress)) SetLocked(true);
  if (!IsHttps(address)) m_nonHttpsSeen = true;
  // Nobody can fill the empty windows of a page that is gone.
  m_strip.CloseEmptyWindowsOf(this);
  Q_EMIT AddressChanged(address);
  if (m_openedAsNewWindow && IsActive()) {
    m_openedAsNewWindow = false;
    if (m_environment.focusPage) m_browser->setFocus();
  }
  if (!Busy()) return;
  if (m_restored) {
    m_restored = false;
    ShowState(m_wasActiveAtCompletion ? TTabState::None : TTabState::FinishedInBackground);
  } else {
    ShowState(TTabState::Arriving);
  }
  m_secure = !m_nonHttpsSeen;
  m_secureZone = ZoneOf(address);
  m_isPageSecure = m_secure;
  Q_EMIT IndicatorsChanged();
  m_nonHttpsSeen = false;
}

TSecurityZone TBrowserTab::ZoneOf(const QString &address) const {
  return m_browser->ZoneOf(address);
}

void TBrowserTab::RefreshZone() {
  if (!m_browser || std::exchange(m_secureZone, ZoneOf(GetLocationUrl())) == m_secureZone) return;
  Q_EMIT IndicatorsChanged();
}

void TBrowserTab::ShowNobodysPage(const QString &address) {
  m_secure = false;
  m_secureZone = ZoneOf(address);
  Q_EMIT IndicatorsChanged();
}

void TBrowserTab::OnDocumentComplete(const QString &address) {
  if (!m_browser || Announced()) return;
  // The engine may tell the address of a page that is on its way as if it were there, until it is stopped.
  if (std::exchange(m_isStopped, false) && Settled() == TLoad::Blank && !Url().isEmpty() && !m_url.IsBlankPage()) {
    KeepAsked();
    return;
  }
  const bool active = IsActive();
  const bool wasBusy = Busy();
  // The blank page that a tab is left with before it opens something may still be about to finish.
  const bool isAwaitedStill = m_load == TLoad::Waiting && address == BlankPageAddress && Url() != BlankPageAddress;
  if (!isAwaitedStill) m_load = Settled();
  Q_EMIT AddressChanged(address);
  Q_EMIT RecordChanged();
  // A sheet or a notice is nobody's page.
  if (m_load == TLoad::Blank || m_load == TLoad::Failed) ShowNobodysPage(address);
  if (!wasBusy) return;
  m_wasActiveAtCompletion = active;
  ShowState(active ? TTabState::None : TTabState::FinishedInBackground);
  Q_EMIT IndicatorsChanged();
  Q_EMIT Loaded();
}
