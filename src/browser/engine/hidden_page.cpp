#include "browser/engine/hidden_page.h"

#include <QCoreApplication>
#include <QWebEngineCookieStore>
#include <QWebEngineDownloadRequest>
#include <QWebEngineLoadingInfo>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineSettings>
#include <QWebEngineUrlRequestInfo>
#include <QWebEngineUrlRequestInterceptor>
#include <utility>
#include <vector>

#include "browser/engine/own_scripts.h"
#include "platform/web_address.h"

namespace {

constexpr int FirstErrorStatus = 400;

constexpr QWebEngineSettings::WebAttribute Off[] = {
    QWebEngineSettings::JavascriptEnabled,
    QWebEngineSettings::AutoLoadImages,
    QWebEngineSettings::PluginsEnabled,
    QWebEngineSettings::PdfViewerEnabled,
    QWebEngineSettings::LocalStorageEnabled,
    QWebEngineSettings::ErrorPageEnabled,
    QWebEngineSettings::DnsPrefetchEnabled,
    QWebEngineSettings::AutoLoadIconsForPage,
    QWebEngineSettings::WebGLEnabled,
    QWebEngineSettings::Accelerated2dCanvasEnabled,
    QWebEngineSettings::HyperlinkAuditingEnabled,
};

constexpr int LookInterval = 100;  // milliseconds

// Ends a document that has grown too large while it is still coming. To be told of each of its nodes would take longer
// than to have it grow.
const QString Guard = QStringLiteral(
    "(() => { const root = document.documentElement;"
    " if (root === null || self.zvIsFull === true) return;"
    " if (document.getElementsByTagName('*').length <= %1 && root.textContent.length <= %1) return;"
    " self.zvIsFull = true; window.stop(); })()");
// Null where the load has failed, and not because it was ended.
const QString TextOfAll = QStringLiteral(
    "(() => { const root = document.documentElement;"
    " return %2 || self.zvIsFull === true ? (root === null ? '' : root.textContent.slice(0, %1 + 1)) : null; })()");

bool MayLeadTo(const QUrl &from, const QUrl &to) {
  if (!WebAddress::IsPlain(to)) return false;
  return to.scheme() == QLatin1String("https") || (from.scheme() == to.scheme() && from.host() == to.host());
}

// A download that nobody takes is ended on other threads, which do not look whether its profile is still there.
void DeleteAtExit(std::unique_ptr<QWebEngineProfile> profile) {
  static std::vector<std::unique_ptr<QWebEngineProfile>> profiles;
  if (profiles.empty()) qAddPostRoutine([] { profiles.clear(); });
  profiles.push_back(std::move(profile));
}

class TNothingElse final : public QWebEngineUrlRequestInterceptor {
 public:
  using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;

  void interceptRequest(QWebEngineUrlRequestInfo &info) override {
    // Where a page itself asks for another one it is told of; where its server leads on nobody is.
    const bool isByPage = !info.initiator().isEmpty() && info.initiator() != QUrl(QStringLiteral("null"));
    info.block(isByPage || info.resourceType() != QWebEngineUrlRequestInfo::ResourceTypeMainFrame);
  }
};

}  // namespace

class THiddenPage::TPage final : public QWebEnginePage {
 public:
  TPage(QWebEngineProfile *profile, THiddenPage &owner) : QWebEnginePage(profile, nullptr), m_owner(owner) {}

 protected:
  bool acceptNavigationRequest(const QUrl &url, NavigationType, bool isMainFrame) override {
    // Frames are not asked for either (TNothingElse); of several that are refused here the engine never comes to an
    // end.
    if (!isMainFrame) return true;
    if (m_owner.m_isTaking || m_owner.m_hasEnded) return false;
    if (!m_at.isEmpty() && !MayLeadTo(m_at, url)) return false;
    m_at = url;
    return true;
  }
  void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString &, int, const QString &) override {}

 private:
  THiddenPage &m_owner;
  QUrl m_at;  // how far it has been led
};

THiddenPage::THiddenPage(QObject *parent, int longestWait)
    : QObject(parent), m_profile(std::make_unique<QWebEngineProfile>()) {
  m_profile->setHttpCacheType(QWebEngineProfile::NoCache);
  m_profile->setPersistentCookiesPolicy(QWebEngineProfile::NoPersistentCookies);
  m_profile->cookieStore()->setCookieFilter([](const QWebEngineCookieStore::FilterRequest &) { return false; });
  m_profile->setUrlRequestInterceptor(new TNothingElse(m_profile.get()));
  for (const auto attribute : Off) m_profile->settings()->setAttribute(attribute, false);
  m_page = std::make_unique<TPage>(m_profile.get(), *this);
  m_look.setInterval(LookInterval);
  m_look.setSingleShot(true);
  // The next one when this one has been answered: the page may be busy.
  connect(&m_look, &QTimer::timeout, this, [this] {
    m_page->runJavaScript(Guard.arg(Longest), ScriptWorld::HiddenPage, [this](const QVariant &) {
      if (!m_isTaking && !m_hasEnded) m_look.start();
    });
  });

  // A download that nobody takes is none.
  connect(
      m_profile.get(), &QWebEngineProfile::downloadRequested, this, [this] { End(std::nullopt); },
      Qt::QueuedConnection);
  connect(
      m_page.get(), &QWebEnginePage::renderProcessTerminated, this, [this] { End(std::nullopt); },
      Qt::QueuedConnection);
  connect(m_page.get(), &QWebEnginePage::loadingChanged, this, [this](const QWebEngineLoadingInfo &info) {
    if (info.status() == QWebEngineLoadingInfo::LoadStartedStatus) return;
    const bool isError =
        info.errorDomain() == QWebEngineLoadingInfo::HttpStatusCodeDomain && info.errorCode() >= FirstErrorStatus;
    const bool isThere = info.status() == QWebEngineLoadingInfo::LoadSucceededStatus && !isError;
    Take(isThere);
  });
  m_deadline.setSingleShot(true);
  m_deadline.setInterval(longestWait);
  connect(&m_deadline, &QTimer::timeout, this, [this] { End(std::nullopt); });
}

THiddenPage::~THiddenPage() {
  m_hasEnded = true;
  m_page.reset();
  DeleteAtExit(std::move(m_profile));
}

void THiddenPage::Load(const QUrl &address) {
  m_deadline.start();
  m_look.start();
  m_page->load(address);
}

void THiddenPage::Take(bool isThere) {
  if (std::exchange(m_isTaking, true) || m_hasEnded) return;
  const QString script =
      TextOfAll.arg(QString::number(Longest), isThere ? QStringLiteral("true") : QStringLiteral("false"));
  m_page->runJavaScript(script, ScriptWorld::HiddenPage, [this](const QVariant &text) {
    // Never from within what the engine is telling.
    QMetaObject::invokeMethod(
        this,
        [this, text] { End(text.typeId() == QMetaType::QString ? std::optional(text.toString()) : std::nullopt); },
        Qt::QueuedConnection);
  });
}

void THiddenPage::End(const std::optional<QString> &text) {
  if (std::exchange(m_hasEnded, true)) return;
  m_deadline.stop();
  m_look.stop();
  m_page->triggerAction(QWebEnginePage::Stop);
  // The page stays, without a process.
  m_page->setLifecycleState(QWebEnginePage::LifecycleState::Discarded);
  text ? Q_EMIT Loaded(*text) : Q_EMIT Failed();
}
