#include "browser/engine/page_scripts.h"

#include <algorithm>
#include <QUuid>
#include <QWebEnginePage>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>

#include "browser/engine/engine.h"
#include "browser/engine/own_scripts.h"

namespace {

// What the engine puts before the name of a script where it says which one has failed.
constexpr QLatin1String Mark("userscript:");
constexpr QLatin1String Uncaught("Uncaught ");

QWebEngineScript::InjectionPoint PointOf(TPageScript::TMoment moment) {
  switch (moment) {
    case TPageScript::TMoment::Creation:
      return QWebEngineScript::DocumentCreation;
    case TPageScript::TMoment::Ready:
      return QWebEngineScript::DocumentReady;
    case TPageScript::TMoment::Idle:
      break;
  }
  return QWebEngineScript::Deferred;
}

QWebEngineScript EngineScript(const TPageScript &given, const QString &token) {
  // In a function, so that "return" ends it; all on the first line, so that lines keep their numbers.
  // Frames without an address of the web have nothing to ask.
  const QString begin = QStringLiteral(
      "(function () { if (self !== top && !/^https?:$/.test(location.protocol)) return;"
      " if (!confirm('%1 %2 ' + (self === top) + ' ' + location.href)) return; ");
  QWebEngineScript script;
  script.setSourceCode(begin.arg(token, given.id) + given.source + QStringLiteral("\n})();"));
  script.setName(given.id);
  script.setInjectionPoint(PointOf(given.moment));
  script.setWorldId(ScriptWorld::FirstOfUser + quint32(given.world));
  script.setRunsOnSubFrames(given.inFrames);
  return script;
}

}  // namespace

TPageScripts::TPageScripts(TEngine &engine, QWebEnginePage *page)
    : QObject(page), m_engine(engine), m_page(page), m_token(QUuid::createUuid().toString(QUuid::WithoutBraces)) {
  connect(&engine, &TEngine::ScriptsChanged, this, &TPageScripts::Update);
  Update();
}

void TPageScripts::Update() {
  const QList<TPageScript> wanted = m_engine.Policy().Scripts();
  if (wanted == m_given) return;
  QWebEngineScriptCollection &scripts = m_page->scripts();
  for (const TPageScript &given : std::as_const(m_given)) {
    for (const QWebEngineScript &script : scripts.find(given.id)) scripts.remove(script);
  }
  for (const TPageScript &given : wanted) scripts.insert(EngineScript(given, m_token));
  m_given = wanted;
}

std::optional<bool> TPageScripts::MayRun(const QString &message) const {
  if (!message.startsWith(m_token + u' ')) return std::nullopt;
  const QUrl document(message.section(u' ', 3));
  // The address of a page that has just come is not always known here yet.
  const bool isPage = message.section(u' ', 2, 2) == QLatin1String("true");
  return m_engine.Policy().MayRun(message.section(u' ', 1, 1), document, isPage ? document : m_page->url());
}

void TPageScripts::Hear(const QString &message, int line, const QString &source) {
  if (!source.startsWith(Mark)) return;
  const QString id = source.mid(Mark.size());
  const bool isOurs = std::ranges::any_of(m_given, [&](const TPageScript &given) { return given.id == id; });
  // What a script writes there itself is no failure.
  if (isOurs && message.startsWith(Uncaught)) Q_EMIT m_engine.ScriptFailed(id, message, line);
}
