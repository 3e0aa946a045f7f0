#include "browser/engine/halvex_browser.h"

#include <QAction>
#include <QApplication>
#include <QDesktopServices>
#include <QJsonArray>
#include <QJsonDocument>
#include <QVBoxLayout>
#include <QWebEngineHistory>
#include <QWebEngineNewWindowRequest>
#include <QWebEngineView>

#include "browser/engine/asked_window.h"
#include "browser/engine/engine_page.h"
#include "browser/engine/link_targets.h"
#include "browser/engine/own_scripts.h"
#include "browser/engine/page_finder.h"
#include "browser/engine/page_full_screen.h"
#include "browser/engine/page_printing.h"
#include "browser/engine/page_sleep.h"
#include "browser/engine/page_stack.h"
#include "browser/engine/page_zoom.h"
#include "browser/engine/policy.h"
#include "browser/engine/view_supply.h"
#include "browser/page/page_menu.h"
#include "browser/page/page_overlay.h"
#include "browser/page/page_prompts.h"
#include "browser/page/permission_bar.h"
#include "browser/page/question_sheet.h"
#include "config/language.h"

namespace {

// Runs a command of the engine when there is a page to run it on.
void Trigger(TEnginePage *page, QWebEnginePage::WebAction action) {
  if (page) page->triggerAction(action);
}

}  // namespace

THalvexBrowser::THalvexBrowser(QWidget *owner, TEngine &engine, TDownloadControlOptionSet options, QWidget *parent)
    : QWidget(parent),
      m_owner(owner),
      m_engine(engine),
      m_options(options),
      m_stack(new TPageStack(engine.Language(), this)),
      m_zoom(new TPageZoom(engine.SiteZoom(), this)) {
  setObjectName(QStringLiteral("THalvexBrowser"));
  auto *layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(m_stack);
  connect(m_zoom, &TPageZoom::Changed, this, &THalvexBrowser::ZoomChanged);
  connect(m_stack, &TPageStack::FocusReceived, this, &THalvexBrowser::FocusReceived);
  connect(m_stack, &TPageStack::NoticeChanged, this, &THalvexBrowser::OnNoticeChanged);
  connect(m_stack, &TPageStack::RetryWanted, this, &THalvexBrowser::Refresh);
  connect(m_stack, &TPageStack::OpenWanted, this, &THalvexBrowser::Navigate);
  connect(m_stack, &TPageStack::BackWanted, this, [this] { CanGoBack() ? GoBack() : ShowBlank(); });
  connect(m_stack, &TPageStack::GoOnWanted, this, [this](const QString &host) {
    m_engine.Certificates().Add(host);
    Refresh();
  });
}

THalvexBrowser::~THalvexBrowser() {
  if (!m_page) return;
  m_sheet->disconnect(this);
  DismissQuestions();
  delete m_asked;  // the page answers what it was asked when it goes
  m_page->disconnect(this);
  delete m_printing;
  delete m_view;
}

void THalvexBrowser::EnsureView() {
  if (!m_view) SetView(m_engine.Views().Take());
}

void THalvexBrowser::SetView(QWebEngineView *view) {
  m_blank = false;
  m_view = view;
  m_page = static_cast<TEnginePage *>(view->page());
  m_page->SetOwner(this);
  m_view->setContextMenuPolicy(Qt::CustomContextMenu);
  m_sheet = new TQuestionSheet(this);
  connect(m_sheet, &TQuestionSheet::OpenChanged, this, &THalvexBrowser::OnQuestion);
  m_page->ShowDialogsOn(m_sheet);
  auto *prompts = new TPagePrompts(m_page, m_sheet, this, m_engine.Language());
  auto *overlay = new TPageOverlay(this, m_stack);
  overlay->Add(prompts->Bar(), TPageOverlay::TSide::Leading);
  connect(m_page, &TEnginePage::UserActed, prompts, &TPagePrompts::AllowSignIns);
  connect(m_page, &TEnginePage::PermissionWanted, prompts, &TPagePrompts::AskPermission);
  connect(m_page, &TEnginePage::UserActed, m_sheet, &TQuestionSheet::Dismiss);
  m_finder = new TPageFinder(m_page, overlay, m_engine.Language(), this);
  m_fullScreen = new TPageFullScreen(m_view, prompts, this);
  m_printing = new TPagePrinting(m_engine, m_view, this);
  m_sleep = new TPageSleep(m_page, [this, prompts] {
    return !ShowsNotice() && !HasOpenQuestion() && !prompts->IsAsking() && !m_printing->IsBusy();
  });
  connect(prompts, &TPagePrompts::CaptureAllowed, m_sleep, &TPageSleep::NoteCapture);
  connect(m_sleep, &TPageSleep::AsleepChanged, this, &THalvexBrowser::AsleepChanged);
  m_page->WatchInput(m_view);
  m_page->SetDownloadControlOptions(m_options);
  if (m_tellsTargets) m_targets = new TLinkTargets(m_page);
  m_zoom->SetPage(m_page);
  ConnectPage();
  // A page begins with the room that it will have, shown or not; it would otherwise be laid out twice.
  if (const QWidget *outer = parentWidget(); outer && outer->layout()) outer->layout()->activate();
  layout()->activate();
  m_view->resize(m_stack->size());
  m_stack->SetView(m_view);
}

void THalvexBrowser::DismissQuestions() {
  if (!m_page) return;
  m_page->DismissDialogs();
  m_sheet->Dismiss();
}

bool THalvexBrowser::CameFromForm() const {
  return m_page && m_page->CameFromForm();
}

bool THalvexBrowser::HasOpenQuestion() const {
  return m_sheet && m_sheet->IsOpen();
}

// The page waits, and so does what the user types into it.
void THalvexBrowser::OnQuestion(bool open) {
  const bool hadFocus = m_sheet->hasFocus();
  m_stack->setEnabled(!open);
  setFocusProxy(open ? static_cast<QWidget *>(m_sheet) : m_stack->currentWidget());
  if (!open && hadFocus) m_stack->currentWidget()->setFocus();
  Q_EMIT QuestionOpenChanged(open);
}

void THalvexBrowser::AskToLeave() {
  // The page behind a local notice lives, and can be come back to.
  if (m_page && (!ShowsNotice() || IsLocalFailure())) {
    m_page->AskToLeave();
  } else {
    Q_EMIT LeaveAnswered(true);
  }
}

void THalvexBrowser::ForgetLeave() {
  if (m_page) m_page->ForgetLeave();
}

void THalvexBrowser::TakeWindow(QWebEngineNewWindowRequest *request, const QUrl &maker) {
  SetView(m_engine.Views().Make());
  m_asked = new TAskedWindow(m_page, m_stack, this);
  connect(m_asked, &TAskedWindow::CameToNothing, this, &THalvexBrowser::WindowCameToNothing);
  connect(m_asked, &TAskedWindow::NoticeShown, this, [this] {
    Q_EMIT AddressChanged(LocationUrl());
    RepeatTitle();
  });
  m_asked->Take(request, maker);
}

void THalvexBrowser::ConnectPage() {
  connect(m_page, &TEnginePage::BeforeNavigate, this, [this](TNavigation *navigation) {
    if (m_targets) m_targets->Fill(*navigation);
    Q_EMIT BeforeNavigate(navigation);
  });
  connect(m_page, &TEnginePage::AddressChanged, this, [this](const QString &address) {
    if (address != BlankPageAddress) m_lastPlace = address;
    if (!IsLocalFailure()) Q_EMIT AddressChanged(address);
  });
  connect(m_page, &TEnginePage::PageRequested, this, &THalvexBrowser::ShowPage);
  connect(m_page, &TEnginePage::Committed, this, &THalvexBrowser::OnCommitted);
  connect(m_page, &TEnginePage::Failed, this, &THalvexBrowser::ShowLoadFailure);
  connect(m_page, &TEnginePage::Finished, this, &THalvexBrowser::OnFinished);
  connect(m_page, &TEnginePage::Died, this, [this] { m_stack->ShowCrash(m_page->url()); });
  connect(m_page, &TEnginePage::EncryptionLevelChanged, this, &THalvexBrowser::UpdateEncryptionLevel);
  connect(m_page, &TEnginePage::UserActed, this, &THalvexBrowser::UserActed);
  connect(m_page, &TEnginePage::Touched, this, &THalvexBrowser::UserActed);
  connect(m_page, &TEnginePage::BringToFrontRequested, this, &THalvexBrowser::BringToFrontRequested);
  connect(m_page, &TEnginePage::ZoomWanted, m_zoom, &TPageZoom::Step);
  connect(m_page, &QWebEnginePage::loadProgress, this, [this](int progress) {
    if (m_page->IsUnderWay()) Q_EMIT ProgressChanged(progress, 100);
  });
  connect(m_page, &QWebEnginePage::titleChanged, this, [this](const QString &title) {
    if (!IsLocalFailure()) Q_EMIT TitleChanged(title);
  });
  connect(m_page, &QWebEnginePage::scrollPositionChanged, this, &THalvexBrowser::PlaceChanged);
  connect(m_page, &QWebEnginePage::iconChanged, this, [this](const QIcon &icon) {
    // The engine drops it as soon as a load sets out, which may come to nothing.
    if (icon.isNull()) return;
    m_icon = icon;
    m_iconHost = m_page->url().host();
    Q_EMIT IconChanged();
  });
  connect(m_page, &QWebEnginePage::linkHovered, this, &THalvexBrowser::StatusTextChanged);
  connect(m_page, &QWebEnginePage::newWindowRequested, this, &THalvexBrowser::OnNewWindow);
  connect(m_page, &TEnginePage::CloseRequested, this, &THalvexBrowser::CloseRequested);
  connect(m_page, &TEnginePage::LeaveAnswered, this, &THalvexBrowser::LeaveAnswered);
  connect(m_page, &TEnginePage::StayChosen, this, &THalvexBrowser::StayChosen);
  connect(m_page, &QWebEnginePage::printRequested, m_printing, &TPagePrinting::PrintForPage);
  connect(m_fullScreen, &TPageFullScreen::Changed, this, &THalvexBrowser::PageFullScreenRequested);
  connect(m_finder, &TPageFinder::Closed, this, &THalvexBrowser::GivePageTheFocus);
  connect(m_view, &QWidget::customContextMenuRequested, this, &THalvexBrowser::ShowPageMenu);
  for (const QWebEnginePage::WebAction action : {QWebEnginePage::Back, QWebEnginePage::Forward}) {
    connect(m_page->action(action), &QAction::changed, this, &THalvexBrowser::UpdateCommandStates);
  }
}

void THalvexBrowser::OnNewWindow(QWebEngineNewWindowRequest &request) {
  if (m_targets) {
    TNavigation navigation = m_targets->NavigationOf(request);
    Q_EMIT BeforeNavigate(&navigation);
    if (navigation.cancel) return;  // a request that nobody takes is given up by the engine
  }
  Q_EMIT NewWindowRequested(&request);
}

bool THalvexBrowser::HasLivePage() const {
  return m_page && !ShowsNotice();
}

bool THalvexBrowser::IsLocalFailure() const {
  return m_stack->Notice() == TPageStack::TNotice::LocalError ||
         m_stack->Notice() == TPageStack::TNotice::WrittenWindow;
}

void THalvexBrowser::GivePageTheFocus() {
  if (HasLivePage()) m_view->setFocus();
}

void THalvexBrowser::Navigate(const TAddress &address) {
  switch (address.Kind()) {
    case TAddress::TKind::Empty:
      return;
    case TAddress::TKind::Script:
      if (HasLivePage()) {
        m_page->NoteUserAction();
        m_page->runJavaScript(address.Script());
      }
      RepeatTitle();
      return;
    case TAddress::TKind::External:
      QDesktopServices::openUrl(address.Url());
      RepeatTitle();
      return;
    case TAddress::TKind::UnknownKind:
      ShowLocalFailure(address, m_engine.Language().Text("PAGES", "ErrorUnknownScheme"));
      return;
    case TAddress::TKind::Invalid:
      ShowLocalFailure(address, m_engine.Language().Text("PAGES", "ErrorInvalidAddress"));
      return;
    case TAddress::TKind::Url:
      break;
  }
  if (!m_page && AddressOf(address.Url()) == BlankPageAddress) {
    ShowBlank();
    return;
  }
  EnsureView();
  m_page->NoteUserAction();
  m_printing->Forgive();
  const QUrl before = m_page->url();
  if (IsLocalFailure()) m_stack->HideNotice();
  m_page->Open(address.Url());
  // A jump inside the page is no load that would report a title.
  if (address.Url().hasFragment() && before.matches(address.Url(), QUrl::RemoveFragment)) RepeatTitle();
}

QString THalvexBrowser::RestoreHistory(const QByteArray &history) {
  // The engine makes the page anew with its history; the view that is ready would be ready for nothing.
  if (!m_view) SetView(m_engine.Views().Make());
  if (IsLocalFailure()) m_stack->HideNotice();
  const QString address = m_page->RestoreHistory(history);
  if (!address.isEmpty()) m_stack->ShowView();
  return address;
}

QByteArray THalvexBrowser::History() const {
  return m_page ? m_page->History() : QByteArray();
}

void THalvexBrowser::ShowBlank() {
  if (m_page) {
    if (IsLocalFailure()) m_stack->HideNotice();
    DismissQuestions();
    m_page->Open(QUrl(BlankPageAddress));
    return;
  }
  m_stack->HideNotice();
  m_blank = true;
  // As with a page, the news comes after the call.
  QMetaObject::invokeMethod(
      this,
      [this] {
        if (!m_blank || m_page || ShowsNotice()) return;
        Q_EMIT AddressChanged(BlankPageAddress);
        Q_EMIT NavigateComplete(BlankPageAddress);
        Q_EMIT DocumentComplete(BlankPageAddress);
      },
      Qt::QueuedConnection);
}

void THalvexBrowser::GoBack() {
  if (IsLocalFailure()) {
    if (!CanGoBack()) return;
    m_stack->HideNotice();
    Q_EMIT StayChosen();
    return;
  }
  Trigger(m_page, QWebEnginePage::Back);
}

void THalvexBrowser::GoForward() {
  Trigger(m_page, QWebEnginePage::Forward);
}

void THalvexBrowser::ComeBack() {
  if (!m_page || m_lastPlace.isEmpty()) return;
  // Once the engine is done with the page that it has just begun.
  QMetaObject::invokeMethod(
      this,
      [this, place = m_lastPlace] {
        // The blank page may have taken the page's own place in the history.
        const QWebEngineHistoryItem before = m_page->history()->backItem();
        const bool isThere = before.isValid() && AddressOf(before.url()) == place;
        isThere ? m_page->history()->goToItem(before) : m_page->load(QUrl(place));
      },
      Qt::QueuedConnection);
}

void THalvexBrowser::Stop() {
  DismissQuestions();
  Trigger(m_page, QWebEnginePage::Stop);
}

void THalvexBrowser::Refresh() {
  if (IsLocalFailure()) {
    Navigate(TAddress(m_stack->FailedAddress()));
  } else {
    Trigger(m_page, QWebEnginePage::Reload);
  }
}

void THalvexBrowser::RefreshCompletely() {
  if (IsLocalFailure()) {
    Navigate(TAddress(m_stack->FailedAddress()));
  } else {
    Trigger(m_page, QWebEnginePage::ReloadAndBypassCache);
  }
}

void THalvexBrowser::ShowText(const QString &html) {
  if (!HasLivePage()) return;
  const QString text = QString::fromUtf8(QJsonDocument(QJsonArray{html}).toJson(QJsonDocument::Compact));
  // In a world of its own, so that it works where the page's own scripts may not run, too. What is written by opening
  // the document anew counts as a load, which would be taken for that of the page that is asked for next.
  m_page->runJavaScript(QStringLiteral("document.documentElement.innerHTML = %1[0];").arg(text), ScriptWorld::Own);
}

QUrl THalvexBrowser::Owner() const {
  return m_page ? m_page->OwnerOf(m_page->url()) : QUrl();
}

TSecurityZone THalvexBrowser::ZoneOf(const QString &address) const {
  const QString owner = m_page ? AddressOf(m_page->OwnerOf(QUrl(address))) : address;
  return m_engine.Policy().ZoneOf(owner.isEmpty() ? BlankPageAddress : owner);
}

QString THalvexBrowser::LocationUrl() const {
  if (IsLocalFailure()) return m_stack->FailedText();
  if (m_page) return m_page->Address();
  return m_blank ? BlankPageAddress : QString();
}

QString THalvexBrowser::LocationName() const {
  if (IsLocalFailure()) return m_stack->FailedText();
  if (m_page) return m_page->title();
  return m_blank ? BlankPageAddress : QString();
}

QIcon THalvexBrowser::Icon() const {
  return HasLivePage() ? m_icon : QIcon();
}

bool THalvexBrowser::ShowsNotice() const {
  return m_stack->Notice() != TPageStack::TNotice::None;
}

bool THalvexBrowser::CanGoBack() const {
  if (!m_page) return false;
  if (IsLocalFailure()) return !m_page->url().isEmpty();
  return m_page->action(QWebEnginePage::Back)->isEnabled();
}

bool THalvexBrowser::CanGoForward() const {
  return m_page && !IsLocalFailure() && m_page->action(QWebEnginePage::Forward)->isEnabled();
}

void THalvexBrowser::SetDownloadControlOptionSet(TDownloadControlOptionSet options) {
  m_options = options;
  if (m_page) m_page->SetDownloadControlOptions(options);
}

QWebEnginePage *THalvexBrowser::EnginePage() {
  EnsureView();
  return m_page;
}

QWebEnginePage *THalvexBrowser::EnginePageIfAny() const {
  return m_page;
}

void THalvexBrowser::FallAsleep() {
  if (m_sleep) m_sleep->FallAsleep();
}

bool THalvexBrowser::IsAsleep() const {
  return m_sleep && m_sleep->IsAsleep();
}

bool THalvexBrowser::HasPageFullScreen() const {
  return m_fullScreen && m_fullScreen->IsOn();
}

void THalvexBrowser::LeavePageFullScreen() {
  if (m_fullScreen) m_fullScreen->Leave();
}

void THalvexBrowser::ShowLoadFailure(const TLoadFailure &failure) {
  if (const std::optional<TCertificateProblem> problem = m_page->CertificateProblem()) {
    m_stack->ShowCertificateProblem(*problem, failure.url);
  } else {
    m_stack->ShowLoadFailure(failure);
  }
}

void THalvexBrowser::ShowLocalFailure(const TAddress &address, const QString &text) {
  Trigger(m_page, QWebEnginePage::Stop);
  m_blank = false;
  const bool isWords = address.Kind() == TAddress::TKind::Invalid && !address.Text().contains(QLatin1String("://"));
  m_stack->ShowLocalFailure(address, text, isWords ? m_engine.Policy().SearchFor(address.Text()) : TWordSearch());
  const QString shown = m_stack->FailedText();
  Q_EMIT AddressChanged(shown);
  Q_EMIT TitleChanged(shown);
  Q_EMIT DocumentComplete(shown);
}

void THalvexBrowser::OnNoticeChanged() {
  if (m_finder && ShowsNotice()) m_finder->CloseBar();
  UpdateEncryptionLevel();
  UpdateCommandStates();
  Q_EMIT IconChanged();
}

// Not before the request has gone out: showing the first page in a view takes the engine longer than sending it.
void THalvexBrowser::ShowPage() {
  if (!m_page->IsUnsettled()) m_stack->ShowView();
}

void THalvexBrowser::OnCommitted(const QString &address) {
  if (!m_sleep->HasSlept()) {
    m_icon = m_page->icon();
  } else if (m_page->url().host() != m_iconHost) {
    m_icon = {};  // that of the site stays the best there is
  }
  Q_EMIT IconChanged();
  ShowPage();
  if (!m_page->IsUnsettled()) m_stack->HideNotice();
  m_zoom->Apply();
  UpdateEncryptionLevel();
  Q_EMIT NavigateComplete(address);
}

void THalvexBrowser::OnFinished(const QString &address) {
  UpdateCommandStates();
  RepeatTitle();
  Q_EMIT DocumentComplete(IsLocalFailure() ? m_stack->FailedText() : address);
}

void THalvexBrowser::ShowPageMenu(const QPoint &position) {
  const QWebEngineContextMenuRequest *request = m_view->lastContextMenuRequest();
  if (!request) return;
  auto *menu = new TPageMenu(m_engine.Language(), TPageMenuPlace::Of(*request, *m_page), m_page, this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  connect(menu, &TPageMenu::OpenRequested, this, [this](const QString &address, bool background) {
    Q_EMIT OpenInNewTabRequested(TAddress::OfEngine(address), background);
  });
  connect(menu, &TPageMenu::CommandRequested, this, [this](TPageMenuCommand wanted) {
    static constexpr std::pair<TPageMenuCommand, void (THalvexBrowser::*)()> Commands[] = {
        {TPageMenuCommand::SaveAs, &THalvexBrowser::SaveAs},
        {TPageMenuCommand::Print, &THalvexBrowser::Print},
        {TPageMenuCommand::Find, &THalvexBrowser::FindOnPage},
        {TPageMenuCommand::ViewSource, &THalvexBrowser::ViewSource},
        {TPageMenuCommand::Properties, &THalvexBrowser::Properties},
    };
    for (const auto &[command, operation] : Commands) {
      if (command == wanted) (this->*operation)();
    }
  });
  menu->popup(m_view->mapToGlobal(position));
}

void THalvexBrowser::UpdateEncryptionLevel() {
  const bool known = HasLivePage() && !m_page->CertificateProblem();
  const TEncryptionLevel level = known ? m_page->EncryptionLevel() : TEncryptionLevel::None;
  if (level == m_encryptionLevel) return;
  m_encryptionLevel = level;
  Q_EMIT SecureLockIconChanged(level);
}

void THalvexBrowser::UpdateCommandStates() {
  if (const bool back = CanGoBack(); back != m_canGoBack) {
    m_canGoBack = back;
    Q_EMIT CommandStateChanged(static_cast<int>(TBrowserCommand::Back), back);
  }
  if (const bool forward = CanGoForward(); forward != m_canGoForward) {
    m_canGoForward = forward;
    Q_EMIT CommandStateChanged(static_cast<int>(TBrowserCommand::Forward), forward);
  }
}

void THalvexBrowser::RepeatTitle() {
  const QString title = LocationName();
  if (!title.isEmpty()) Q_EMIT TitleChanged(title);
}
