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

quint32 WorldOf(const TPageScript &given) {
  return ScriptWorld::FirstOfUser + quint32(given.world);
}

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

// What stands in front of a script asks whether it may run in the document. No text of a file can come before it or
// make another question of it: nothing knows its name before it has said yes.
QWebEngineScript EngineScript(const TPageScript &given, const QString &question) {
  QWebEngineScript script;
  // In a function, so that "return" ends it; all on the first line, so that lines keep their numbers.
  script.setSourceCode(QStringLiteral("if (!%1()) throw '%1'; (function () { ").arg(question) + given.source +
                       QStringLiteral("\n})();"));
  script.setName(given.id);
  script.setInjectionPoint(PointOf(given.moment));
  script.setWorldId(WorldOf(given));
  script.setRunsOnSubFrames(given.inFrames);
  return script;
}

}  // namespace

TPageScripts::TPageScripts(TEngine &engine, QWebEnginePage *page)
    : QObject(page),
      m_engine(engine),
      m_page(page),
      m_token(QUuid::createUuid().toString(QUuid::WithoutBraces)),
      m_question(u'q' + QUuid::createUuid().toString(QUuid::Id128)) {
  connect(&engine, &TEngine::ScriptsChanged, this, &TPageScripts::Update);
  Update();
}

void TPageScripts::Update() {
  const QList<TPageScript> wanted = m_engine.Policy().Scripts();
  if (wanted == m_given) return;
  QWebEngineScriptCollection &scripts = m_page->scripts();
  OwnScript::Remove(*m_page, "user_script_question.js");
  for (const TPageScript &given : std::as_const(m_given)) {
    for (const QWebEngineScript &script : scripts.find(given.id)) scripts.remove(script);
  }
  for (const TPageScript &given : wanted) {
    // They are run in this order.
    OwnScript::Insert(*m_page, "user_script_question.js", WorldOf(given),
                      {{"Question", m_question}, {"Token", m_token}, {"Id", given.id}});
    scripts.insert(EngineScript(given, m_question));
  }
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
  const bool mayNotRun = message.contains(m_question);
  if (isOurs && !mayNotRun && message.startsWith(Uncaught)) Q_EMIT m_engine.ScriptFailed(id, message, line);
}
