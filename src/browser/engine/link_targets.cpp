#include "browser/engine/link_targets.h"

#include <QFile>
#include <QUuid>
#include <QWebEngineNewWindowRequest>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <utility>

#include "browser/engine/address.h"
#include "browser/engine/engine_page.h"
#include "browser/engine/halvex_browser.h"

namespace {

constexpr QLatin1String Base("base:");
constexpr QLatin1String Open("open:");

}  // namespace

TLinkTargets::TLinkTargets(TEnginePage *page)
    : QObject(page), m_page(page), m_token(QUuid::createUuid().toString(QUuid::WithoutBraces)) {
  // Where a page's own scripts may not run, the program's still do.
  Add("link_targets.js", QWebEngineScript::ApplicationWorld);
  Add("window_names.js", QWebEngineScript::MainWorld);
  connect(page, &TEnginePage::ConsoleWritten, this, &TLinkTargets::Hear);
}

void TLinkTargets::Add(const char *file, quint32 world) {
  QFile source(QStringLiteral(":/pages/") + QLatin1String(file));
  if (!source.open(QIODevice::ReadOnly)) return;
  QWebEngineScript script;
  script.setName(QLatin1String(file));
  script.setInjectionPoint(QWebEngineScript::DocumentCreation);
  script.setWorldId(world);
  script.setRunsOnSubFrames(true);
  script.setSourceCode(QString::fromUtf8(source.readAll()).replace(QLatin1String("{{Token}}"), m_token));
  m_page->scripts().insert(script);
}

void TLinkTargets::Hear(const QString &message) {
  if (!message.startsWith(m_token)) return;
  const QString told = message.mid(m_token.size());
  if (told.startsWith(Base)) m_base = told.mid(Base.size());
  if (told.startsWith(Open)) m_open = told.mid(Open.size());
}

void TLinkTargets::Fill(TNavigation &navigation) const {
  navigation.baseTarget = m_base;
}

TNavigation TLinkTargets::NavigationOf(const QWebEngineNewWindowRequest &request) {
  TNavigation navigation;
  navigation.address = AddressOf(request.requestedUrl());
  navigation.linkClicked = request.isUserInitiated();
  navigation.newWindow = true;
  navigation.target = std::exchange(m_open, {});
  navigation.baseTarget = m_base;
  return navigation;
}
