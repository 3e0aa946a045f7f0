#include "browser/engine/link_targets.h"

#include <QUuid>
#include <QWebEngineNewWindowRequest>
#include <utility>

#include "browser/engine/address.h"
#include "browser/engine/engine_page.h"
#include "browser/engine/halvex_browser.h"
#include "browser/engine/own_scripts.h"

namespace {

constexpr QLatin1String Base("base:");
constexpr QLatin1String Open("open:");

}  // namespace

TLinkTargets::TLinkTargets(TEnginePage *page)
    : QObject(page), m_token(QUuid::createUuid().toString(QUuid::WithoutBraces)) {
  // Where a page's own scripts may not run, the program's still do.
  OwnScript::Insert(*page, "link_targets.js", ScriptWorld::Own, {{"Token", m_token}});
  OwnScript::Insert(*page, "window_names.js", QWebEngineScript::MainWorld, {{"Token", m_token}});
  connect(page, &TEnginePage::ConsoleWritten, this, &TLinkTargets::Hear);
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
