#include "browser/engine/engine.h"

#include <QtWebEngineCore/qtwebenginecoreglobal.h>
#include <QLocale>
#include <QWebEngineCookieStore>
#include <QWebEngineNotification>
#include <QWebEngineProfile>
#include <QWebEngineSettings>
#include <QWebEngineUrlScheme>
#include <tuple>

#include "browser/engine/policy.h"
#include "browser/engine/script_calls.h"
#include "browser/engine/site_zoom.h"
#include "browser/engine/start_page.h"
#include "browser/engine/view_supply.h"
#include "browser/page/permission_decisions.h"
#include "config/language.h"
#include "platform/desktop_notifications.h"
#include "ui/motion.h"

namespace {

struct TSwitch {
  QWebEngineSettings::WebAttribute attribute;
  bool on;
};

constexpr TSwitch EngineSwitches[] = {
    {QWebEngineSettings::PluginsEnabled, true},  // The viewer for PDF files is one.
    {QWebEngineSettings::PdfViewerEnabled, true},
    {QWebEngineSettings::FullScreenSupportEnabled, true},
    {QWebEngineSettings::ScrollAnimatorEnabled, true},
    {QWebEngineSettings::FocusOnNavigationEnabled, false},
    // The engine's own error page takes the place of the failed page in the history and is covered by ours.
    {QWebEngineSettings::ErrorPageEnabled, true},
    {QWebEngineSettings::JavascriptCanOpenWindows, true},  // Pop-ups are judged by the tab, not by the engine.
    {QWebEngineSettings::LocalContentCanAccessRemoteUrls, false},
    {QWebEngineSettings::LocalContentCanAccessFileUrls, true},
    {QWebEngineSettings::NavigateOnDropEnabled, true},
    // Nothing goes out that the page or the user did not ask for.
    {QWebEngineSettings::DnsPrefetchEnabled, false},
    {QWebEngineSettings::HyperlinkAuditingEnabled, false},
    {QWebEngineSettings::WebRTCPublicInterfacesOnly, true},
    {QWebEngineSettings::AllowRunningInsecureContent, false},
    {QWebEngineSettings::AllowWindowActivationFromJavaScript, false},
    {QWebEngineSettings::ScreenCaptureEnabled, false},
};

// The languages that pages are asked for: the interface's own first.
QString AcceptedLanguages(const TLanguage &language) {
  QString locale = language.LocaleName().replace(QLatin1Char('_'), QLatin1Char('-'));
  if (QLocale(locale).language() == QLocale::C) locale = QLocale::system().bcp47Name();
  QStringList parts{locale};
  const QString bare = locale.section(QLatin1Char('-'), 0, 0);
  if (bare != locale) parts.append(bare + QStringLiteral(";q=0.9"));
  if (bare != QLatin1String("en")) parts.append(QStringLiteral("en;q=0.5"));
  return parts.join(QLatin1Char(','));
}

constexpr const char *PanelScheme = "def";

// What holds while nobody answers.
TPolicy &Permissive() {
  static class TPermissive final : public TPolicy {
  } policy;
  return policy;
}

}  // namespace

TEngine::TEngine(const TLanguage &language, TRegistryStore &store, QObject *parent)
    : QObject(parent), m_language(language), m_store(store), m_policy(&Permissive()), m_cookies(*m_policy) {
  if (m_folder.IsHeld()) {
    m_profile = std::make_unique<QWebEngineProfile>(QStringLiteral("zarvela"));
    m_profile->setPersistentStoragePath(m_folder.StoragePath());
    m_profile->setCachePath(m_folder.CachePath());
    m_profile->setHttpCacheType(QWebEngineProfile::DiskHttpCache);
    m_profile->setPersistentCookiesPolicy(QWebEngineProfile::AllowPersistentCookies);
    TPermissionDecisions::Of(*m_profile).KeepIn(store);
  } else {
    m_profile = std::make_unique<QWebEngineProfile>();
  }
  m_profile->setSpellCheckEnabled(false);
  m_profile->setHttpAcceptLanguage(AcceptedLanguages(language));
  m_ownUserAgent = m_profile->httpUserAgent();
  for (const TSwitch &one : EngineSwitches) m_profile->settings()->setAttribute(one.attribute, one.on);
  if (Motion::IsReduced()) m_profile->settings()->setAttribute(QWebEngineSettings::ScrollAnimatorEnabled, false);
  m_profile->settings()->setUnknownUrlSchemePolicy(QWebEngineSettings::AllowUnknownUrlSchemesFromUserInteraction);
  m_startPage =
      std::make_unique<TStartPage>(language, [this](const QString &words) { return m_policy->SearchFor(words); });
  m_profile->installUrlSchemeHandler(QByteArrayLiteral("zarvela"), m_startPage.get());
  m_profile->installUrlSchemeHandler(PanelScheme, m_startPage.get());
  m_scriptCalls = new TScriptCalls(m_profile.get());
  m_profile->setNotificationPresenter(
      [this](std::unique_ptr<QWebEngineNotification> notification) { ShowNotification(std::move(notification)); });
  m_cookies.Watch(*m_profile);
  m_siteZoom = std::make_unique<TSiteZoom>(KeepsData() ? &store : nullptr);
  m_views = std::make_unique<TViewSupply>(*this);
}

TPagePermissions TEngine::PermissionsOf(const QUrl &page) const {
  TPagePermissions may = m_policy->PermissionsOf(page);
  if (may.toAsk.cookies.stored || may.toAsk.cookies.session) m_cookies.Learn(page);
  const auto decide = [&](TPermission permission, bool &isAsked) {
    if (!isAsked) return false;
    const TPermissionDecision decision = TPermissionDecisions::Of(*m_profile).Find(page, permission);
    isAsked = decision == TPermissionDecision::Ask;
    return IsAllowed(decision);
  };
  if (decide(TPermission::Scripts, may.toAsk.scripts)) may.scripts = true;
  if (decide(TPermission::PlugIns, may.toAsk.plugIns)) may.plugIns = true;
  if (decide(TPermission::StoredCookies, may.toAsk.cookies.stored)) may.storage = true;
  std::ignore = decide(TPermission::SessionCookies, may.toAsk.cookies.session);
  return may;
}

void TEngine::ForgetCookies() {
  m_profile->cookieStore()->deleteAllCookies();
}

void TEngine::ForgetPermissions() {
  TPermissionDecisions::Of(*m_profile).ForgetAll();
}

void TEngine::ForgetCache() {
  m_profile->clearHttpCache();
}

void TEngine::ForgetVisited(const QStringList &addresses) {
  if (addresses.isEmpty()) m_profile->clearAllVisitedLinks();
  for (const QString &address : addresses) m_profile->clearVisitedLinks({QUrl(address)});
}

void TEngine::ShowNotification(std::unique_ptr<QWebEngineNotification> notification) {
  if (m_notifications == nullptr) m_notifications = new TDesktopNotifications(this);
  const std::shared_ptr<QWebEngineNotification> shown = std::move(notification);
  shown->show();
  const QString origin = shown->origin().host();
  const QString text = origin.isEmpty() ? shown->message() : origin + QLatin1Char('\n') + shown->message();
  m_notifications->Show({.title = shown->title(),
                         .text = text,
                         .clicked =
                             [this, shown] {
                               Q_EMIT NotificationClicked(shown->origin());
                               shown->click();
                             },
                         .failed = [this, title = shown->title(), text] { Q_EMIT NotificationNotShown(title, text); },
                         .closed = [shown] { shown->close(); }});
}

TEngine::~TEngine() {
  m_views.reset();
  m_profile.reset();
}

void TEngine::RegisterSchemes() {
  QWebEngineUrlScheme scheme{QByteArray(TStartPage::Scheme)};
  scheme.setSyntax(QWebEngineUrlScheme::Syntax::Path);
  // Local: a page of the web can neither frame nor fetch it.
  scheme.setFlags(QWebEngineUrlScheme::LocalScheme | QWebEngineUrlScheme::NoAccessAllowed);
  QWebEngineUrlScheme::registerScheme(scheme);
  // Addresses of the search panel, which takes them when it is asked. Of schemes that it does not know the engine only
  // asks where the user has clicked.
  QWebEngineUrlScheme panel{QByteArray(PanelScheme)};
  panel.setSyntax(QWebEngineUrlScheme::Syntax::Path);
  QWebEngineUrlScheme::registerScheme(panel);
  TScriptCalls::RegisterSchemes();
}

QString TEngine::Version() {
  return QString::fromLatin1(qWebEngineChromiumVersion());
}

QString TEngine::SecurityPatchVersion() {
  return QString::fromLatin1(qWebEngineChromiumSecurityPatchVersion());
}

QString TEngine::StartPageAddress() {
  return QString::fromLatin1(TStartPage::Address);
}

void TEngine::SetPolicy(TPolicy *policy) {
  m_policy = policy != nullptr ? policy : &Permissive();
  m_cookies.SetPolicy(*m_policy);
  Q_EMIT ScriptsChanged();
  const QString token = m_policy->UserAgentToken();
  QString agent = m_ownUserAgent;
  // The platform is what stands in the first brackets.
  const qsizetype place = agent.indexOf(u')');
  if (!token.isEmpty() && place >= 0) agent.insert(place, QStringLiteral("; ") + token);
  if (m_profile->httpUserAgent() != agent) m_profile->setHttpUserAgent(agent);
}
