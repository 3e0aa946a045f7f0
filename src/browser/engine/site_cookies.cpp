#include "browser/engine/site_cookies.h"

#include <QNetworkCookie>
#include <QWebEngineCookieStore>
#include <QWebEngineProfile>

#include "browser/page/permission_decisions.h"

namespace {

constexpr qsizetype MostOrigins = 64;
constexpr qsizetype MostSites = 4096;  // whose decisions are at hand; beyond that all are looked up anew

QString SiteOf(const QUrl &origin) {
  return origin.scheme() + QLatin1String("://") + origin.authority(QUrl::FullyEncoded);
}

// What makes two cookies the same one.
QByteArray KeyOf(const QNetworkCookie &cookie) {
  return cookie.domain().toUtf8() + ' ' + cookie.path().toUtf8() + ' ' + cookie.name();
}

}  // namespace

void TSiteCookies::Watch(QWebEngineProfile &profile) {
  m_decisions = &TPermissionDecisions::Of(profile);
  connect(m_decisions, &TPermissionDecisions::Changed, this,
          [this](const QUrl &site, TPermission permission, TPermissionDecision decision) {
            if (permission != TPermission::StoredCookies && permission != TPermission::SessionCookies) return;
            Learn(site);
            if (!IsAllowed(decision)) CheckAll();
          });
  m_store = profile.cookieStore();
  m_store->setCookieFilter([this](const QWebEngineCookieStore::FilterRequest &request) {
    NoteAsked(request.origin);
    return MayKeep({.origin = request.origin, .firstParty = request.firstPartyUrl, .thirdParty = request.thirdParty});
  });
  connect(m_store, &QWebEngineCookieStore::cookieAdded, this, [this](const QNetworkCookie &cookie) {
    m_kept.insert(KeyOf(cookie), cookie);
    CheckKept(cookie);
  });
  connect(m_store, &QWebEngineCookieStore::cookieRemoved, this,
          [this](const QNetworkCookie &cookie) { m_kept.remove(KeyOf(cookie)); });
}

void TSiteCookies::SetPolicy(TPolicy &policy) {
  const QMutexLocker lock(&m_guard);
  m_policy = &policy;
}

void TSiteCookies::Learn(const QUrl &page) {
  const auto isAllowed = [&](TPermission permission) { return IsAllowed(m_decisions->Find(page, permission)); };
  const TCookieKinds allowed{.stored = isAllowed(TPermission::StoredCookies),
                             .session = isAllowed(TPermission::SessionCookies)};
  const QMutexLocker lock(&m_guard);
  if (m_allowed.size() >= MostSites) m_allowed.clear();
  m_allowed.insert(SiteOf(page), allowed);
}

bool TSiteCookies::MayKeep(const TCookie &cookie) {
  const QMutexLocker lock(&m_guard);
  if (m_policy->MayKeepCookie(cookie)) return true;
  const TCookieKinds asked = m_policy->CookiesToAskAbout(cookie.origin);
  if (!asked.stored && !asked.session) return false;
  const auto found = m_allowed.constFind(SiteOf(cookie.origin));
  if (found == m_allowed.constEnd()) {
    // The decisions are the other thread's. Whoever asks again then gets the answer.
    QMetaObject::invokeMethod(
        this, [this, origin = cookie.origin] { Learn(origin); }, Qt::QueuedConnection);
    return false;
  }
  const bool stored = asked.stored && found->stored;
  const bool session = asked.session && found->session;
  if (cookie.lifetime == TCookie::TLifetime::NotTold) return stored || session;
  return cookie.lifetime == TCookie::TLifetime::Stored ? stored : session;
}

// How long it is to last is told of a cookie only when it is there. A stored one that may only be kept for the session
// becomes such a one.
void TSiteCookies::CheckKept(const QNetworkCookie &cookie) {
  const std::optional<QUrl> origin = OriginOf(cookie);
  const auto mayKeep = [&](TCookie::TLifetime lifetime) {
    return origin ? MayKeep({.origin = *origin, .lifetime = lifetime}) : !IsRefused(cookie.domain(), lifetime);
  };
  const bool session = cookie.isSessionCookie();
  const auto lifetime = session ? TCookie::TLifetime::Session : TCookie::TLifetime::Stored;
  if (mayKeep(lifetime)) return;
  // The user may have allowed it; nobody has looked that up yet.
  if (origin && !IsKnown(*origin)) {
    Learn(*origin);
    if (mayKeep(lifetime)) return;
  }
  if (session || !mayKeep(TCookie::TLifetime::Session)) {
    m_store->deleteCookie(cookie);
    return;
  }
  QNetworkCookie shortLived = cookie;
  shortLived.setExpirationDate({});
  // One that names a domain would be its sub-domains' too.
  const QString domain = cookie.domain();
  if (!domain.startsWith(u'.')) shortLived.setDomain(QString());
  QUrl setter = origin.value_or(QUrl(QStringLiteral("http://site")));
  setter.setHost(domain.startsWith(u'.') ? domain.mid(1) : domain);
  setter.setPath(cookie.path());
  if (cookie.isSecure()) setter.setScheme(QStringLiteral("https"));
  m_store->setCookie(shortLived, setter);
}

bool TSiteCookies::IsKnown(const QUrl &origin) {
  const QMutexLocker lock(&m_guard);
  return m_allowed.contains(SiteOf(origin));
}

// A cookie that is there does not say which site has set it: its domain may be one above, and both schemes may read it.
void TSiteCookies::NoteAsked(const QUrl &origin) {
  const QMutexLocker lock(&m_guard);
  if (!m_askedOrigins.isEmpty() && m_askedOrigins.first() == origin) return;
  m_askedOrigins.removeOne(origin);
  m_askedOrigins.prepend(origin);
  if (m_askedOrigins.size() > MostOrigins) m_askedOrigins.removeLast();
}

std::optional<QUrl> TSiteCookies::OriginOf(const QNetworkCookie &cookie) {
  const bool isDomain = cookie.domain().startsWith(u'.');
  const QString domain = isDomain ? cookie.domain().mid(1) : cookie.domain();
  const QMutexLocker lock(&m_guard);
  for (const QUrl &asked : std::as_const(m_askedOrigins)) {
    const QString host = asked.host();
    if (host == domain || (isDomain && host.endsWith(cookie.domain()))) return asked;
  }
  return std::nullopt;
}

// Of one that was there before, only its host is known for sure: the user may have answered for either scheme and any
// port of it, and what several sites share may be that of any of them.
bool TSiteCookies::IsRefused(const QString &host, TCookie::TLifetime lifetime) {
  if (host.startsWith(u'.')) return false;
  const QMutexLocker lock(&m_guard);
  for (const char *scheme : {"http", "https"}) {
    QUrl origin;
    origin.setScheme(QLatin1String(scheme));
    origin.setHost(host);
    const TCookieKinds asked = m_policy->CookiesToAskAbout(origin);
    const bool isAsked = lifetime == TCookie::TLifetime::Stored ? asked.stored : asked.session;
    if (isAsked || m_policy->MayKeepCookie({.origin = origin, .lifetime = lifetime})) return false;
  }
  return true;
}

void TSiteCookies::CheckAll() {
  const QList<QNetworkCookie> kept = m_kept.values();
  for (const QNetworkCookie &cookie : kept) CheckKept(cookie);
}
