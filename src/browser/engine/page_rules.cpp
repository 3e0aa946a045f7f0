#include "browser/engine/page_rules.h"

#include <QPointer>
#include <QWebEnginePage>
#include <QWebEngineSettings>

#include "browser/engine/own_scripts.h"
#include "browser/engine/page_content.h"
#include "platform/web_address.h"

TPageRules::TPageRules(TEngine &engine, QWebEnginePage *page) : QObject(page), m_engine(engine), m_page(page) {}

void TPageRules::SetMaker(const QUrl &maker) {
  m_maker = WebAddress::Is(maker) ? maker : QUrl();
  // The engine shows the empty page of a new window without asking about it.
  if (!m_maker.isEmpty()) Apply({});
}

QUrl TPageRules::OwnerOf(const QUrl &url) const {
  if (url.scheme() == QLatin1String("blob")) {
    const QUrl inner(url.path());
    if (WebAddress::Is(inner)) return inner;
  }
  return m_maker.isEmpty() || !TPolicy::IsNobodys(url) ? url : m_maker;
}

TPagePermissions TPageRules::Of(const QUrl &url) const {
  TPagePermissions may = m_engine.PermissionsOf(OwnerOf(url));
  may.images = may.images && m_limits.testFlag(TDownloadControlOption::Images);
  may.videos = may.videos && m_limits.testFlag(TDownloadControlOption::Videos);
  may.sounds = may.sounds && m_limits.testFlag(TDownloadControlOption::BackgroundSounds);
  return may;
}

void TPageRules::Apply(const QUrl &url) {
  m_applied = Of(url);
  QWebEngineSettings *page = m_page->settings();
  page->setAttribute(QWebEngineSettings::JavascriptEnabled, m_applied.scripts);
  page->setAttribute(QWebEngineSettings::PluginsEnabled, m_applied.plugIns);
  page->setAttribute(QWebEngineSettings::LocalStorageEnabled, m_applied.storage);
  ApplyContent(*m_page, m_applied);
}

void TPageRules::Begin(const QUrl &url, bool byPage) {
  m_wasAsked = false;
  Apply(url);
  const bool isMore = (m_applied.scripts && !m_shown.scripts) || (m_applied.plugIns && !m_shown.plugIns) ||
                      (m_applied.storage && !m_shown.storage);
  m_isWider = byPage && isMore;
}

void TPageRules::Commit(const QUrl &url) {
  m_isWider = false;
  m_shown = m_applied;
  // Whatever is blank in this window from now on is this page's own doing.
  if (!TPolicy::IsNobodys(url)) m_maker.clear();
}

void TPageRules::GiveUp(const QUrl &url) {
  m_isWider = false;
  Apply(url);
  m_shown = m_applied;
}

void TPageRules::AskAtStart(const QUrl &url) {
  if (m_wasAsked) return;
  m_wasAsked = true;
  const TToAsk ask = m_applied.toAsk;
  const QPointer<TPageRules> self(this);
  if (ask.scripts) AskAndReload(url, TPermission::Scripts);
  if (self && ask.cookies.stored) AskAndReload(url, TPermission::StoredCookies);
  if (self && ask.cookies.session) AskAndReload(url, TPermission::SessionCookies);
}

void TPageRules::AskAtEnd(const QUrl &url) {
  const QPointer<TPageRules> self(this);
  AskAtStart(url);
  if (!self || !m_applied.toAsk.plugIns) return;
  // Few pages have any, and a page without scripts can only have these.
  m_page->runJavaScript(QStringLiteral("document.querySelector('embed, object') !== null"), ScriptWorld::Own,
                        [self, url](const QVariant &has) {
                          if (!self || !has.toBool() || self->m_page->url() != url) return;
                          self->AskAndReload(url, TPermission::PlugIns);
                        });
}

void TPageRules::AskAboutDocument(const QUrl &url) {
  if (Of(url).toAsk.plugIns) Ask(url, TPermission::PlugIns, [this, url] { m_page->load(url); });
}

void TPageRules::AskAndReload(const QUrl &url, TPermission permission) {
  Ask(url, permission, [this] { m_page->triggerAction(QWebEnginePage::Reload); });
}

void TPageRules::Ask(const QUrl &url, TPermission permission, const std::function<void()> &goOn) {
  const QUrl owner = OwnerOf(url);
  if (!WebAddress::Is(owner) && !owner.isLocalFile()) return;
  Q_EMIT PermissionWanted({owner, permission, [self = QPointer(this), goOn](TPermissionAnswer answer) {
                             if (self && answer == TPermissionAnswer::Allow) goOn();
                           }});
}
