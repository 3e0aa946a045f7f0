#include "browser/page/page_prompts.h"

#include <algorithm>
#include <array>
#include <QApplication>
#include <QAuthenticator>
#include <QInputDialog>
#include <QSslCertificate>
#include <QWebEngineClientCertificateSelection>
#include <QWebEngineQuotaRequest>
#include <QWebEngineRegisterProtocolHandlerRequest>
#include <QWebEngineView>
#include <QWidget>

#include "browser/page/full_screen_notice.h"
#include "browser/page/origin_text.h"
#include "browser/page/permission_bar.h"
#include "browser/page/question_sheet.h"
#include "browser/page/sign_in_dialog.h"
#include "browser/page/site_permissions.h"
#include "config/language.h"
#include "ui/dialog_gate.h"
#include "ui/input_box.h"

namespace {

constexpr int MostPermissionRequests = 16;                 // a page that asks for more at a time gets no answer
constexpr qint64 LargestQuota = qint64(64) * 1024 * 1024;  // bytes that a page may store without being asked about
constexpr int LongestCertificateName = 80;
constexpr int MostSignInsRefused = 2;

struct TPermissionText {
  TPermission permission;
  TTextKey question;
};

constexpr std::array PermissionTexts{
    TPermissionText{TPermission::Notifications, {"PERMISSIONS", "Notifications"}},
    TPermissionText{TPermission::Location, {"PERMISSIONS", "Location"}},
    TPermissionText{TPermission::Microphone, {"PERMISSIONS", "Microphone"}},
    TPermissionText{TPermission::Camera, {"PERMISSIONS", "Camera"}},
    TPermissionText{TPermission::CameraAndMicrophone, {"PERMISSIONS", "CameraAndMicrophone"}},
    TPermissionText{TPermission::MouseLock, {"PERMISSIONS", "MouseLock"}},
    TPermissionText{TPermission::Clipboard, {"PERMISSIONS", "Clipboard"}},
    TPermissionText{TPermission::Screen, {"PERMISSIONS", "Screen"}},
    TPermissionText{TPermission::ScreenAndSound, {"PERMISSIONS", "ScreenAndSound"}},
    TPermissionText{TPermission::Scripts, {"PERMISSIONS", "Scripts"}},
    TPermissionText{TPermission::PlugIns, {"PERMISSIONS", "PlugIns"}},
    TPermissionText{TPermission::StoredCookies, {"PERMISSIONS", "StoredCookies"}},
    TPermissionText{TPermission::SessionCookies, {"PERMISSIONS", "SessionCookies"}},
};

const TTextKey &QuestionFor(TPermission permission) {
  return std::find_if(PermissionTexts.begin(), PermissionTexts.end(),
                      [permission](const TPermissionText &text) { return text.permission == permission; })
      ->question;
}

bool IsCapture(TPermission permission) {
  switch (permission) {
    case TPermission::Microphone:
    case TPermission::Camera:
    case TPermission::CameraAndMicrophone:
    case TPermission::Screen:
    case TPermission::ScreenAndSound:
      return true;
    default:
      return false;
  }
}

std::optional<bool> AllowedBy(TPermissionDecision decision) {
  if (decision == TPermissionDecision::Ask) return std::nullopt;
  return IsAllowed(decision);
}

bool AsksFor(const TPermissionRequest &request, const QUrl &origin, TPermission permission) {
  return request.origin == origin && request.permission == permission;
}

}  // namespace

TPagePrompts::TPagePrompts(QWebEnginePage *page, TQuestionSheet *sheet, QWidget *owner, const TLanguage &language)
    : QObject(page),
      m_page(page),
      m_sheet(sheet),
      m_language(language),
      m_bar(new TPermissionBar(language, owner)),
      m_decisions(TPermissionDecisions::Of(*page->profile())),
      m_requests(new TPermissionRequests(page)) {
  connect(m_bar, &TPermissionBar::Answered, this, &TPagePrompts::FinishPermission);
  connect(m_requests, &TPermissionRequests::Asked, this, &TPagePrompts::AskPermission);
  connect(&m_decisions, &TPermissionDecisions::Changed, this, &TPagePrompts::FollowDecision);
  connect(m_requests, &TPermissionRequests::Withdrawn, this, [this](const QUrl &origin, TPermission permission) {
    m_permissionRequests.removeIf([&](const auto &request) { return AsksFor(request, origin, permission); });
    AskNextPermission();
  });
  connect(page, &QWebEnginePage::loadStarted, this, [this] {
    ForgetPermissionRequests();
    m_askers.clear();
    if (!std::exchange(m_reloadsForSignIn, false)) m_signIns.clear();
  });
  // A page looks at what it may do before it asks.
  connect(page, &QWebEnginePage::urlChanged, this, [this](const QUrl &url) {
    // Where a load takes another's place, the engine does not tell of its start.
    const QUrl site = url.adjusted(QUrl::RemovePath | QUrl::RemoveQuery | QUrl::RemoveFragment);
    if (std::exchange(m_site, site) != site) ForgetPermissionRequests();
    for (const TPermission permission : m_decisions.Decided(url)) {
      m_requests->Settle(url, permission, AllowedBy(m_decisions.Find(url, permission)));
    }
  });
  connect(page, &QWebEnginePage::renderProcessTerminated, this, &TPagePrompts::ForgetPermissionRequests);
  connect(page, &QWebEnginePage::authenticationRequired, this,
          [this](const QUrl &url, QAuthenticator *authenticator) { SignIn(url, {}, authenticator); });
  connect(page, &QWebEnginePage::proxyAuthenticationRequired, this,
          [this](const QUrl &url, QAuthenticator *authenticator, const QString &proxyHost) {
            SignIn(url, proxyHost, authenticator);
          });
  connect(page, &QWebEnginePage::registerProtocolHandlerRequested, this,
          [](QWebEngineRegisterProtocolHandlerRequest request) { request.reject(); });
#if QT_VERSION < QT_VERSION_CHECK(6, 5, 0)
  connect(page, &QWebEnginePage::quotaRequested, this, [](QWebEngineQuotaRequest request) {
    request.requestedSize() <= LargestQuota ? request.accept() : request.reject();
  });
#endif
  connect(page, &QWebEnginePage::selectClientCertificate, this, &TPagePrompts::SelectClientCertificate);
}

TPagePrompts::~TPagePrompts() {
  delete m_bar;
}

TPermissionBar *TPagePrompts::Bar() const {
  return m_bar;
}

void TPagePrompts::ShowFullScreenNotice(QWidget *over, const QUrl &origin) {
  HideFullScreenNotice();
  m_notice = new TFullScreenNotice(m_language.Text("FULL_SCREEN", "Notice").arg(OriginText(origin, m_language)), over);
}

void TPagePrompts::HideFullScreenNotice() {
  delete m_notice;
}

void TPagePrompts::AskPermission(const TPermissionRequest &request) {
  if (!m_askers.contains(request.origin) && m_askers.size() < MostPermissionRequests) m_askers.append(request.origin);
  const std::optional<bool> decided = AllowedBy(m_decisions.Find(request.origin, request.permission));
  if (decided) return Answer(request, *decided ? TPermissionAnswer::Allow : TPermissionAnswer::Deny);
  const bool waits = std::any_of(
      m_permissionRequests.cbegin(), m_permissionRequests.cend(),
      [&](const TPermissionRequest &waiting) { return AsksFor(waiting, request.origin, request.permission); });
  if (waits || m_permissionRequests.size() >= MostPermissionRequests) return;
  m_permissionRequests.append(request);
  if (m_permissionRequests.size() == 1) AskNextPermission();
}

void TPagePrompts::Answer(const TPermissionRequest &request, TPermissionAnswer answer) {
  request.answer(answer);
  if (answer == TPermissionAnswer::Allow && IsCapture(request.permission)) Q_EMIT CaptureAllowed();
}

void TPagePrompts::AskNextPermission() {
  if (m_bar.isNull()) return;
  if (m_permissionRequests.isEmpty()) {
    // The toolkit would hand the keyboard on to the next part of the window.
    QWebEngineView *view = m_bar->isAncestorOf(QApplication::focusWidget()) ? QWebEngineView::forPage(m_page) : nullptr;
    m_bar->hide();
    if (view != nullptr) view->setFocus();
    return;
  }
  const TPermissionRequest &request = m_permissionRequests.first();
  m_bar->Ask(m_language.Text(QuestionFor(request.permission)).arg(OriginText(request.origin, m_language)),
             TPermissionDecisions::CanLast(request.permission));
}

void TPagePrompts::FinishPermission(TPermissionDecision decision) {
  if (m_permissionRequests.isEmpty()) return;
  const TPermissionRequest request = m_permissionRequests.takeFirst();
  if (decision != TPermissionDecision::Ask) m_decisions.Remember(request.origin, request.permission, decision);
  const std::optional<bool> allowed = AllowedBy(decision);
  Answer(request, !allowed ? TPermissionAnswer::NotNow : *allowed ? TPermissionAnswer::Allow : TPermissionAnswer::Deny);
  AskNextPermission();
}

void TPagePrompts::FollowDecision(const QUrl &site, TPermission permission, TPermissionDecision decision) {
  m_requests->Settle(site, permission, AllowedBy(decision));
  if (m_permissionRequests.isEmpty()) return;
  // The same page in other tabs has asked as well, and one question may be of several permissions.
  const auto isOpen = [this](const TPermissionRequest &request) {
    return m_decisions.Find(request.origin, request.permission) == TPermissionDecision::Ask;
  };
  const bool staysInFront = isOpen(m_permissionRequests.first());
  const auto decided = std::stable_partition(m_permissionRequests.begin(), m_permissionRequests.end(), isOpen);
  const QList<TPermissionRequest> answered(decided, m_permissionRequests.end());
  m_permissionRequests.erase(decided, m_permissionRequests.end());
  for (const TPermissionRequest &request : answered) AskPermission(request);
  if (!staysInFront) AskNextPermission();
}

QList<TSitePermissions *> TPagePrompts::SitePermissions(QWidget *parent) {
  const auto originOf = [](const QUrl &url) { return url.scheme() + url.authority(QUrl::FullyEncoded); };
  const QUrl own = m_page->url();
  QList<QUrl> sites = m_askers;
  sites.removeIf([&](const QUrl &site) { return originOf(site) == originOf(own); });
  sites.prepend(own);
  QList<TSitePermissions *> lists;
  for (const QUrl &site : std::as_const(sites)) {
    if (m_decisions.Decided(site).isEmpty()) continue;
    lists.append(new TSitePermissions(site, m_decisions, m_language, parent));
  }
  return lists;
}

void TPagePrompts::ForgetPermissionRequests() {
  m_permissionRequests.clear();
  AskNextPermission();
}

// The engine would stand still, with all its pages, until this call is answered. So nobody is let in at first, and the
// page is loaded again when the user has signed in.
void TPagePrompts::SignIn(const QUrl &url, const QString &proxyHost, QAuthenticator *authenticator) {
  using TState = TSignIn::TState;
  const QString place = (proxyHost.isEmpty() ? OriginText(url, m_language) : proxyHost) + '\n' + authenticator->realm();
  TSignIn &known = m_signIns[place];
  // One answer holds for everything that a page loads from one place: a page of many pictures asks once. An address
  // that comes again did not like the answer.
  if (known.state == TState::Given && !known.addresses.contains(url)) {
    known.addresses.insert(url);
    authenticator->setUser(known.user);
    authenticator->setPassword(known.password);
    return;
  }
  const QString realm = authenticator->realm();
  *authenticator = QAuthenticator();
  if (known.state == TState::Asking || known.state == TState::Refused) return;
  AskSignIn(place, url, proxyHost, realm, std::exchange(known, {}).user);
}

void TPagePrompts::AskSignIn(const QString &place, const QUrl &url, const QString &proxyHost, const QString &realm,
                             const QString &refusedUser) {
  using TState = TSignIn::TState;
  // A page that comes back for more after having been refused twice is not heard before the user does something.
  if (m_signInsRefused >= MostSignInsRefused || DialogGate::IsClosed() || m_sheet == nullptr) {
    m_signIns[place].state = TState::Refused;
    return;
  }
  m_signIns[place].state = TState::Asking;
  const bool proxy = !proxyHost.isEmpty();
  const QString prompt = proxy ? m_language.Text("SIGN_IN", "ProxyPrompt").arg(proxyHost)
                               : m_language.Text("SIGN_IN", "Prompt").arg(OriginText(url, m_language));
  // What passes between the browser and a proxy is not encrypted, whatever the page itself is.
  auto *dialog = new TSignInDialog(prompt, realm, !proxy && url.scheme() == "https", m_language);
  if (!refusedUser.isEmpty()) dialog->SetRefused(refusedUser);
  m_sheet->Ask(dialog, [self = QPointer(this), dialog, place](bool accepted) {
    if (!self) return;
    TSignIn &asked = self->m_signIns[place];
    if (asked.state != TState::Asking) return;
    asked.state = accepted ? TState::Given : TState::Refused;
    if (!accepted) {
      ++self->m_signInsRefused;
      return;
    }
    self->m_signInsRefused = 0;
    asked.user = dialog->User();
    asked.password = dialog->Password();
    // Once the dialog is done: whatever else the page asks goes with this load of it.
    QMetaObject::invokeMethod(
        self,
        [self] {
          self->m_reloadsForSignIn = true;
          self->m_signIns.removeIf([](const auto &other) { return other.value().state == TState::Asking; });
          // A form that was sent without being let in has not been taken yet: no question about that.
          self->m_page->QWebEnginePage::triggerAction(QWebEnginePage::Reload);
        },
        Qt::QueuedConnection);
  });
}

void TPagePrompts::SelectClientCertificate(QWebEngineClientCertificateSelection selection) {
  const QList<QSslCertificate> certificates = selection.certificates();
  if (certificates.isEmpty() || m_sheet == nullptr || DialogGate::IsClosed()) return selection.selectNone();
  QStringList names;
  for (const QSslCertificate &certificate : certificates) {
    const QString name = m_language.Text("CLIENT_CERTIFICATE", "Line")
                             .arg(certificate.subjectDisplayName().left(LongestCertificateName),
                                  certificate.issuerDisplayName().left(LongestCertificateName));
    // Equal names are told apart by their number.
    names.append(QString("%1. %2").arg(names.size() + 1).arg(name.simplified()));
  }
  auto *dialog = MakeLineDialog(
      m_language,
      {.caption = m_language.Text("CLIENT_CERTIFICATE", "Caption"),
       .prompt = m_language.Text("CLIENT_CERTIFICATE", "Prompt").arg(OriginText(selection.host(), m_language)),
       .lines = names});
  // The connection waits for as long as the user likes.
  m_sheet->Ask(dialog, [dialog, selection, certificates, names](bool accepted) mutable {
    const qsizetype choice = accepted ? names.indexOf(dialog->textValue()) : -1;
    choice >= 0 ? selection.select(certificates.at(choice)) : selection.selectNone();
  });
}
