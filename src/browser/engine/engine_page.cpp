#include "browser/engine/engine_page.h"

#include <QCoreApplication>
#include <QDataStream>
#include <QPointer>
#include <QWebEngineCertificateError>
#include <QWebEngineHistory>
#include <QWebEngineLoadingInfo>
#include <QWebEngineProfile>
#include <QWebEngineSettings>
#include <QWidget>
#include <utility>

#include "browser/downloads/page_downloads.h"
#include "browser/engine/address.h"
#include "browser/engine/content_filter.h"
#include "browser/engine/halvex_browser.h"
#include "browser/engine/hang_watch.h"
#include "browser/engine/input_watch.h"
#include "browser/engine/page_rules.h"
#include "browser/engine/page_scripts.h"
#include "browser/engine/policy.h"
#include "browser/engine/script_calls.h"
#include "browser/engine/view_supply.h"
#include "browser/page/origin_text.h"
#include "browser/page/question_sheet.h"
#include "browser/page/script_dialog.h"
#include "browser/page/script_dialogs.h"
#include "config/language.h"
#include "platform/process_end.h"
#include "platform/web_address.h"
#include "ui/confirm_dialog.h"
#include "ui/dialog_gate.h"

namespace {

// Until its first bytes are there a load reports this much at most.
constexpr int ProgressBeforeContent = 10;

// A page that takes longer than these to say whether it may go hangs.
constexpr int LeaveInterval = 1000;  // milliseconds
constexpr int MostLeaveTries = 5;
constexpr int WantInterval = 100;  // milliseconds
constexpr int MostWantTries = 10;
constexpr int LongestWant = 5000;  // milliseconds until the engine asks the page

const QUrl BlankPage(QStringLiteral("about:blank"));

// Of the lists of pages that are kept from one start to the next, whatever the toolkit is then.
constexpr QDataStream::Version HistoryVersion = QDataStream::Qt_6_4;

// A page's source is asked for under the page's own address.
QUrl WithoutViewSource(const QUrl &url) {
  if (url.scheme() != QLatin1String("view-source")) return url;
  return QUrl(url.toString(QUrl::FullyEncoded).mid(QLatin1String("view-source:").size()));
}

bool IsFromPage(QWebEnginePage::NavigationType type) {
  return type == QWebEnginePage::NavigationTypeLinkClicked || type == QWebEnginePage::NavigationTypeFormSubmitted ||
         type == QWebEnginePage::NavigationTypeRedirect || type == QWebEnginePage::NavigationTypeOther;
}

}  // namespace

TEnginePage::TEnginePage(TEngine &engine, QObject *parent)
    : QWebEnginePage(&engine.Profile(), parent), m_engine(engine) {
  m_filter = new TContentFilter(engine, this);
  setUrlRequestInterceptor(m_filter);
  m_dialogs = new TScriptDialogs(engine.Language(), this);
  m_downloads = new TPageDownloads(
      this, [this] { return m_input != nullptr && m_input->UserJustActed() ? m_input->Acts() : 0; },
      [this] { return isVisible(); });
  m_scripts = new TPageScripts(engine, this);
  m_rules = new TPageRules(engine, this);
  connect(m_rules, &TPageRules::PermissionWanted, this, &TEnginePage::PermissionWanted);
  connect(m_downloads, &TPageDownloads::Asked, this, &TEnginePage::AskForDownloads);
  connect(m_downloads, &TPageDownloads::Came, this, [this](const QUrl &address, const QString &type) {
    // With plug-ins it would have been a page.
    if (address == m_pending && type == QLatin1String("application/pdf")) m_rules->AskAboutDocument(address);
  });
  engine.ScriptCalls().Connect(*this, *m_dialogs);
  connect(m_dialogs, &TScriptDialogs::BringToFrontRequested, this, &TEnginePage::BringToFrontRequested);
  connect(m_filter, &TContentFilter::InsecurePartRequested, this, [this] {
    if (m_insecureParts) return;
    m_insecureParts = true;
    Q_EMIT EncryptionLevelChanged();
  });
  connect(m_filter, &TContentFilter::DocumentRequested, m_downloads, &TPageDownloads::NoteAsked);
  connect(m_filter, &TContentFilter::PageRequested, this, &TEnginePage::PageRequested, Qt::QueuedConnection);
  connect(this, &QWebEnginePage::urlChanged, this, &TEnginePage::OnUrlChanged);
  connect(this, &QWebEnginePage::loadProgress, this, &TEnginePage::OnProgress);
  connect(this, &QWebEnginePage::loadingChanged, this, &TEnginePage::OnLoadingChanged);
  connect(this, &QWebEnginePage::certificateError, this, &TEnginePage::OnCertificateError);
  connect(this, &QWebEnginePage::renderProcessTerminated, this, &TEnginePage::OnRendererDied);
  connect(this, &QWebEnginePage::windowCloseRequested, this, [this] {
    if (m_leaveWait.isActive()) {
      AnswerLeave(true);
    } else if (!std::exchange(m_answersLate, false)) {
      Q_EMIT CloseRequested();
    }
  });
  m_wantAgain.setInterval(WantInterval);
  connect(&m_wantAgain, &QTimer::timeout, this, [this] {
    if (!m_wanted || ++m_wantTries > MostWantTries) return m_wantAgain.stop();
    // It goes as soon as it sets out.
    const std::function<void()> begin = m_wanted;
    begin();
  });
  m_leaveWait.setObjectName(QStringLiteral("tmrLeave"));
  m_leaveWait.setInterval(LeaveInterval);
  connect(&m_leaveWait, &QTimer::timeout, this, [this] {
    if (m_dialogs->IsOpen()) return;
    if (++m_leaveTries >= MostLeaveTries) {
      m_answersLate = bool(m_whenSaved);
      AnswerLeave(!m_whenSaved);
    } else {
      // The engine does not take a request while it still deals with the answer to the one before.
      QWebEnginePage::triggerAction(RequestClose);
    }
  });
}

TEnginePage::~TEnginePage() {
  setUrlRequestInterceptor(nullptr);
}

void TEnginePage::WatchInput(QWidget *view) {
  m_input = new TInputWatch(view, this);
  connect(m_input, &TInputWatch::ZoomWanted, this, &TEnginePage::ZoomWanted);
  m_hangs = new THangWatch(this, [this] {
    return m_leaveWait.isActive() || m_leaveQuestion != nullptr || m_dialogs->IsOpen() ||
           m_engine.ScriptCalls().Waits(renderProcessPid());
  });
  connect(m_input, &TInputWatch::Acted, m_hangs, &THangWatch::NoteAct);
  connect(m_input, &TInputWatch::Acted, this, &TEnginePage::Touched);
  // From now on it is the page that may begin something.
  connect(m_input, &TInputWatch::Acted, this, [this] { m_wanted = {}; });
  connect(m_hangs, &THangWatch::Hangs, this, &TEnginePage::OfferToEnd);
}

void TEnginePage::ShowDialogsOn(TQuestionSheet *sheet) {
  m_sheet = sheet;
  m_dialogs->SetSheet(sheet);
}

void TEnginePage::AskForDownloads() {
  if (m_sheet == nullptr || DialogGate::IsClosed()) return m_downloads->Answer(false);
  const TLanguage &language = m_engine.Language();
  auto *question =
      new TfrmConfirm({.firstLine = language.Text("DOWNLOADS", "MorePrompt").arg(OriginText(url(), language)),
                       .secondText = language.Text("DOWNLOADS", "MoreNote"),
                       .ok = language.Text("PERMISSIONS", "Allow"),
                       .cancel = language.Text("PERMISSIONS", "Deny"),
                       .isRisky = true});
  m_sheet->Ask(question, [downloads = QPointer(m_downloads)](bool allow) {
    if (downloads) downloads->Answer(allow);
  });
}

void TEnginePage::OfferToEnd() {
  if (m_sheet == nullptr || DialogGate::IsClosed()) return;
  const TLanguage &language = m_engine.Language();
  const QPointer<TfrmConfirm> question(new TfrmConfirm({.firstLine = language.Text("PAGES", "HangTitle"),
                                                        .secondText = language.Text("PAGES", "HangText"),
                                                        .ok = language.Text("PAGES", "EndPage"),
                                                        .cancel = language.Text("PAGES", "Wait"),
                                                        .isRisky = true}));
  connect(m_hangs, &THangWatch::Recovered, question, &QDialog::reject);
  m_sheet->Ask(question, [self = QPointer(this), renderer = renderProcessPid()](bool end) {
    if (!self) return;
    if (end && renderer == self->renderProcessPid()) {
      // The notice for a dead renderer follows.
      EndProcess(renderer);
    } else {
      // The next time that the user does something, the page has as long again.
      self->m_hangs->BeginPage();
    }
  });
}

void TEnginePage::AskToSendAgain(WebAction reload) {
  NoteUserAction();
  if (m_sheet == nullptr || DialogGate::IsClosed()) return;
  const TLanguage &language = m_engine.Language();
  auto *question = new TfrmConfirm({.firstLine = language.Text("PAGES", "SendAgainTitle"),
                                    .secondText = language.Text("PAGES", "SendAgainText"),
                                    .ok = language.Text("PAGES", "SendAgain"),
                                    .cancel = language.Global("Cancel"),
                                    .isRisky = true});
  m_sheet->Ask(question, [self = QPointer(this), reload](bool send) {
    if (self && send) self->QWebEnginePage::triggerAction(reload);
  });
}

void TEnginePage::NoteUserAction() {
  // A script that waits for its answer would hold up whatever the user has begun.
  m_dialogs->Dismiss();
  m_dialogs->Reset();
  m_downloads->ExpectOne();
  m_askedToLeave = false;
  Q_EMIT UserActed();
}

void TEnginePage::AskToLeave() {
  m_leaveForgotten = false;
  m_whenSaved = {};  // what the page answers is for the user now
  if (m_leaveWait.isActive() || m_leaveQuestion != nullptr) return;
  m_dialogs->Dismiss();
  if (m_leaveGranted || !m_input || !m_input->UserHasActed() || renderProcessPid() == 0) {
    AnswerLeave(true);
    return;
  }
  NoteUserAction();
  m_leaveTries = 0;
  m_leaveWait.start();
  QWebEnginePage::triggerAction(RequestClose);
}

void TEnginePage::AskIfSaved(const std::function<void(bool)> &done) {
  if (m_leaveWait.isActive() || m_leaveQuestion != nullptr || m_dialogs->IsOpen()) return;
  if (!m_input || !m_input->UserHasActed()) return done(true);
  m_whenSaved = done;
  m_leaveTries = 0;
  m_leaveWait.start();
  QWebEnginePage::triggerAction(RequestClose);
}

void TEnginePage::ForgetLeave() {
  m_leaveGranted = false;
  m_leaveForgotten = m_leaveWait.isActive();
  if (m_leaveQuestion != nullptr) m_leaveQuestion->reject();
}

void TEnginePage::AnswerLeave(bool mayGo) {
  m_leaveWait.stop();
  if (m_whenSaved) {
    // Once the engine is done with the question.
    QMetaObject::invokeMethod(
        this, [done = std::exchange(m_whenSaved, {}), mayGo] { done(mayGo); }, Qt::QueuedConnection);
    return;
  }
  m_leaveGranted = mayGo && !m_leaveForgotten;
  Q_EMIT LeaveAnswered(mayGo);
}

// The engine is told that the page stays, so that it goes on for all others, and asked again when the user wants to
// leave. What a page's own script or link begins cannot be begun again from here: the engine waits for that answer.
bool TEnginePage::IsAskedOnSheet(const QUrl &origin) {
  const bool closes = m_leaveWait.isActive();
  // A way back inside the page does not set out either, and is not what is asked about long after.
  if (m_sinceWanted.isValid() && m_sinceWanted.hasExpired(LongestWant)) m_wanted = {};
  if ((!closes && !m_wanted) || m_sheet == nullptr || DialogGate::IsClosed()) return false;
  if (m_leaveQuestion != nullptr) return true;
  m_leaveWait.stop();
  m_sinceStay.start();
  const TLanguage &language = m_engine.Language();
  auto *question = new TScriptDialog(TScriptDialog::TKind::BeforeUnload,
                                     language.Text("SCRIPT_DIALOG", "LeaveCaption").arg(OriginText(origin, language)),
                                     language.Text("SCRIPT_DIALOG", "LeavePrompt"), language);
  m_leaveQuestion = question;
  m_sheet->Ask(question, [self = QPointer(this), closes, wanted = std::exchange(m_wanted, {})](bool leave) {
    if (!self) return;
    self->m_leaveQuestion.clear();
    if (closes) return self->AnswerLeave(leave);
    self->m_leaveGranted = leave;
    if (!leave) {
      Q_EMIT self->StayChosen();
    } else if (wanted) {
      self->Want(wanted);
    }
  });
  return true;
}

void TEnginePage::SetDownloadControlOptions(TDownloadControlOptionSet options) {
  m_rules->LimitContent(options);
}

void TEnginePage::BecomeWindow(const QUrl &maker) {
  m_isUnsettled = true;
  m_rules->SetMaker(maker);
}

QUrl TEnginePage::OwnerOf(const QUrl &url) const {
  return m_rules->OwnerOf(url);
}

void TEnginePage::Open(const QUrl &url) {
  m_rules->SetMaker({});
  Want([this, url] { load(url); });
}

void TEnginePage::Want(const std::function<void()> &begin) {
  m_wanted = begin;
  m_sinceWanted.start();
  begin();
  // Until it is through with a page that stays, the engine takes what is new for what it was to give up.
  m_wantTries = 0;
  if (m_sinceStay.isValid() && !m_sinceStay.hasExpired(WantInterval * MostWantTries)) m_wantAgain.start();
}

QByteArray TEnginePage::History() const {
  const bool isEmpty = history()->count() == 0 || (history()->count() == 1 && url() == BlankPage);
  if (m_isUnsettled || isEmpty) return {};
  QByteArray bytes;
  QDataStream stream(&bytes, QIODevice::WriteOnly);
  stream.setVersion(HistoryVersion);
  stream << *history();
  return bytes;
}

QString TEnginePage::RestoreHistory(const QByteArray &bytes) {
  QDataStream stream(bytes);
  stream.setVersion(HistoryVersion);
  stream >> *history();
  // The engine makes its inner page anew for it, and forgets who looks at the requests.
  setUrlRequestInterceptor(m_filter);
  if (stream.status() != QDataStream::Ok || history()->count() == 0) return {};
  return AddressOf(history()->currentItem().url());
}

void TEnginePage::DismissDialogs() {
  m_dialogs->Dismiss();
}

TEncryptionLevel TEnginePage::EncryptionLevel() const {
  if (url().scheme() != QLatin1String("https")) return TEncryptionLevel::None;
  if (m_certificates.contains(url().host())) return TEncryptionLevel::Unknown;
  return m_insecureParts ? TEncryptionLevel::Mixed : TEncryptionLevel::Bits128;
}

QSslCertificate TEnginePage::Certificate() const {
  return m_certificates.value(url().host());
}

QString TEnginePage::PendingAddress() const {
  return AddressOf(m_pending);
}

void TEnginePage::triggerAction(WebAction action, bool checked) {
  if (action == DownloadLinkToDisk || action == DownloadImageToDisk || action == DownloadMediaToDisk) {
    m_downloads->ExpectOne();
  }
  // The engine shows images that it has in its memory, whatever it is told.
  if (action == Reload && settings()->testAttribute(QWebEngineSettings::AutoLoadImages) && !m_rules->Of(url()).images) {
    action = ReloadAndBypassCache;
  }
  // The engine would begin these without noticing that the page is not there, or only bring it back as it was.
  const bool wakes = action == Back || action == Forward || action == ReloadAndBypassCache;
  if (wakes && lifecycleState() == LifecycleState::Discarded) setLifecycleState(LifecycleState::Active);
  if (m_fromForm && (action == Reload || action == ReloadAndBypassCache)) return AskToSendAgain(action);
  if (action == Back || action == Forward || action == Reload || action == ReloadAndBypassCache) {
    NoteUserAction();
    return Want([this, action] { QWebEnginePage::triggerAction(action); });
  }
  QWebEnginePage::triggerAction(action, checked);
}

bool TEnginePage::acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame) {
  TNavigation navigation;
  navigation.address = AddressOf(url);
  navigation.mainFrame = isMainFrame;
  navigation.linkClicked =
      (type == NavigationTypeLinkClicked || type == NavigationTypeFormSubmitted) && m_input && m_input->UserJustActed();
  navigation.reload = type == NavigationTypeReload;
  navigation.historyMove = type == NavigationTypeBackForward;
  navigation.redirect = type == NavigationTypeRedirect;
  const QPointer<TEnginePage> self(this);
  Q_EMIT BeforeNavigate(&navigation);
  if (!self) return false;
  // What a site's worker answers comes without a request.
  m_downloads->NoteAsked(url);
  if (!isMainFrame) return !navigation.cancel && m_rules->MayFrameSetOut();
  if (navigation.cancel) {
    m_wanted = {};
    m_cancelled = url;
    return false;
  }
  if (!IsEngineScheme(url.scheme())) {
    // The engine hands it to the desktop and reports nothing, so the end is reported from here.
    if (!m_underWay) {
      QMetaObject::invokeMethod(
          this,
          [this] {
            if (!m_underWay) Q_EMIT Finished(AddressOf(this->url()));
          },
          Qt::QueuedConnection);
    }
    return true;
  }
  if (this->url().isLocalFile() && WebAddress::Is(url) && IsFromPage(type)) {
    // The engine keeps a page from the disk away from the network, and its links with it. A link that is followed is
    // the user's own navigation, so it is begun anew as one.
    m_cancelled = url;
    QMetaObject::invokeMethod(
        this, [this, url] { load(url); }, Qt::QueuedConnection);
    return false;
  }
  m_cancelled.clear();
  // A redirect belongs to what set out.
  if (type != NavigationTypeRedirect) m_setOutByForm = type == NavigationTypeFormSubmitted;
  Begin(url, IsFromPage(type) && url != this->url());
  return true;
}

void TEnginePage::Begin(const QUrl &url, bool byPage) {
  m_wanted = {};
  m_engine.Views().PutOff();
  m_underWay = true;
  m_committed = false;
  m_pending = url;
  m_filter->ForgetRequest();
  m_problem.reset();
  m_filter->SetAllowed(m_rules->Limits());
  m_rules->Begin(url, byPage);
}

void TEnginePage::OnUrlChanged(const QUrl &url) {
  // A jump inside the page does not set out.
  if (url.hasFragment()) m_wanted = {};
  m_spelledUrl.clear();
  m_spelled.clear();
  const QPointer<TEnginePage> self(this);
  Q_EMIT AddressChanged(AddressOf(url));
  // A window that another page asked for tells its first address before there is anything of it.
  if (self && !m_isUnsettled) CommitIfPending();
}

void TEnginePage::OnProgress(int progress) {
  // A reload keeps the address, so that only the arriving bytes tell of its start.
  // All of it may also mean that a window came to nothing, which only the end of its load tells apart.
  if (progress <= ProgressBeforeContent || (m_isUnsettled && progress == 100)) return;
  const QPointer<TEnginePage> self(this);
  CommitIfPending();
  // Pages may take as long as they like to be whole.
  if (self && m_underWay && m_committed) m_rules->AskAtStart(url());
}

void TEnginePage::CommitIfPending() {
  if (!m_underWay || m_committed || WithoutViewSource(url()) != m_pending) return;
  m_committed = true;
  m_rules->Commit(m_pending);
  m_answersLate = false;
  ForgetLeave();
  m_fromForm = m_filter->SawRequest() ? m_filter->SentForm() : m_setOutByForm;
  m_dialogs->BeginPage();
  m_downloads->BeginPage();
  if (m_hangs) m_hangs->BeginPage();
  if (m_input) m_input->BeginPage();
  if (!url().isEmpty() && url().scheme() != BlankPage.scheme()) m_isUnsettled = false;
  m_insecureParts = false;
  Q_EMIT Committed(Address());
}

void TEnginePage::OnLoadingChanged(const QWebEngineLoadingInfo &info) {
  if (info.status() == QWebEngineLoadingInfo::LoadStartedStatus) {
    // Some addresses (about:blank) are loaded without being asked about.
    const QUrl url = WithoutViewSource(info.url());
    if (!m_cancelled.isEmpty() && url == m_cancelled) return;
    m_cancelled.clear();
    if (!m_underWay) Begin(url, false);
    return;
  }
  const bool stopped = info.status() == QWebEngineLoadingInfo::LoadStoppedStatus;
  if (stopped && !m_cancelled.isEmpty()) {
    m_cancelled.clear();
    if (m_committed && isLoading()) return;
  }
  if (!m_underWay) return;
  // The end of the blank page that was shown for a moment, while another load has set out already.
  if (!stopped && !m_committed && info.url() == BlankPage && m_pending != BlankPage) return;
  // The end of a load that another one has replaced.
  if (stopped && isLoading() && WithoutViewSource(info.url()) != m_pending) return;
  const QPointer<TEnginePage> self(this);
  if (!stopped) {
    m_pending = WithoutViewSource(url());
    CommitIfPending();
    if (!self) return;
  }
  if (info.status() == QWebEngineLoadingInfo::LoadFailedStatus && info.isErrorPage()) {
    if (info.errorDomain() != QWebEngineLoadingInfo::CertificateErrorDomain) m_problem.reset();
    const QString host = url().host();
    if (m_engine.Certificates().IsTakenBack(host)) m_problem = m_engine.Certificates().Problem(host);
    Q_EMIT Failed(TLoadFailure::Of(url(), info));
    if (!self) return;
  }
  Finish();
  if (self && m_committed && !info.isErrorPage()) m_rules->AskAtEnd(url());
}

QString TEnginePage::Address() const {
  // While it sleeps it stays what it is.
  if (!m_spelled.isEmpty() && lifecycleState() == LifecycleState::Discarded) return m_spelled;
  if (const QUrl current = url(); current != m_spelledUrl) {
    m_spelledUrl = current;
    m_spelled = AddressOf(current);
  }
  return m_spelled;
}

void TEnginePage::Finish() {
  if (!m_underWay) return;
  m_underWay = false;
  // The page that might be left has stayed, and what is typed into it from now on is not given up yet.
  if (!m_committed) {
    m_leaveGranted = false;
    m_rules->GiveUp(WithoutViewSource(url()));
  }
  m_engine.Views().PutOff();
  Q_EMIT Finished(Address());
}

void TEnginePage::OnCertificateError(QWebEngineCertificateError error) {
  const QUrl url = error.url();
  const TCertificateProblem problem = TCertificateProblem::Of(error);
  if (error.isOverridable() && m_engine.Certificates().Has(url.host())) {
    m_engine.Certificates().NoteProblem(url.host(), problem);
    m_certificates.insert(url.host(), problem.chain.value(0));
    error.acceptCertificate();
    return;
  }
  // Only the page itself is worth a question; parts of a page with a bad certificate stay away. The first page of a
  // run may count as committed already: its address is told before anything of it.
  if (m_underWay && url.host() == m_pending.host() && url.port() == m_pending.port()) {
    m_problem = problem;
  }
  error.rejectCertificate();
}

void TEnginePage::OnRendererDied() {
  const QPointer<TEnginePage> self(this);
  m_dialogs->Dismiss();
  if (m_leaveWait.isActive()) AnswerLeave(true);
  if (self && m_leaveQuestion != nullptr) m_leaveQuestion->accept();
  if (!self) return;
  // Engines from 6.8 on also tell of the renderer that a page gives up to fall asleep, which is no death.
  if (lifecycleState() != LifecycleState::Discarded) Q_EMIT Died();
  if (self) Finish();
}

void TEnginePage::javaScriptAlert(const QUrl &origin, const QString &message) {
  m_dialogs->Alert(m_owner, origin, message);
}

bool TEnginePage::javaScriptConfirm(const QUrl &origin, const QString &message) {
  if (m_engine.ScriptCalls().IsWord(message)) return true;
  if (const std::optional<bool> may = m_scripts->MayRun(message)) return *may;
  // The engine asks whether to leave a page through the same call and tells it apart by nothing but its own words. A
  // page could borrow them, so they are believed once and after that only when the user has acted again.
  const QString leaveQuestion = QCoreApplication::translate(
      "QWebEnginePage", "Are you sure you want to leave this page? Changes that you made may not be saved.");
  if (message == leaveQuestion && m_whenSaved) {
    AnswerLeave(false);
    return false;
  }
  if (message == leaveQuestion && m_leaveGranted) return true;
  if (message == leaveQuestion && IsAskedOnSheet(origin)) return false;
  if (message == leaveQuestion && !m_askedToLeave) {
    m_askedToLeave = true;
    const QPointer<TEnginePage> self(this);
    const bool mayGo = m_dialogs->BeforeUnload(m_owner, origin);
    if (self && !mayGo) Q_EMIT StayChosen();
    return mayGo;
  }
  return m_dialogs->Confirm(m_owner, origin, message);
}

bool TEnginePage::javaScriptPrompt(const QUrl &origin, const QString &message, const QString &defaultValue,
                                   QString *result) {
  return m_dialogs->Prompt(m_owner, origin, message, defaultValue, result);
}

// What a page writes to its console is for its author, not for the program's error output.
void TEnginePage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString &message, int line,
                                           const QString &source) {
  if (level == ErrorMessageLevel) m_scripts->Hear(message, line, source);
  Q_EMIT ConsoleWritten(message);
}
