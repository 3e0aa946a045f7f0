#include "browser/engine/own_scripts.h"

#include <QFile>
#include <QHash>
#include <QWebEnginePage>
#include <QWebEngineScriptCollection>

namespace {

// Read once, since each page has several of them.
QString Text(const char *file) {
  static QHash<QLatin1String, QString> texts;
  QString &text = texts[QLatin1String(file)];
  if (!text.isNull()) return text;
  QFile source(QStringLiteral(":/pages/") + QLatin1String(file));
  if (source.open(QIODevice::ReadOnly)) text = QString::fromUtf8(source.readAll());
  return text;
}

}  // namespace

QString OwnScript::Source(const char *file, std::initializer_list<TValue> values) {
  QString source = Text(file);
  for (const TValue &value : values) {
    source.replace(QStringLiteral("{{%1}}").arg(QLatin1String(value.name)), value.text);
  }
  return source;
}

void OwnScript::Insert(QWebEnginePage &page, const char *file, quint32 world, std::initializer_list<TValue> values) {
  QWebEngineScript script;
  script.setName(QLatin1String(file));
  script.setInjectionPoint(QWebEngineScript::DocumentCreation);
  script.setWorldId(world);
  script.setRunsOnSubFrames(true);
  script.setSourceCode(Source(file, values));
  page.scripts().insert(script);
}

void OwnScript::Remove(QWebEnginePage &page, const char *file) {
  const QList<QWebEngineScript> there = page.scripts().find(QLatin1String(file));
  for (const QWebEngineScript &script : there) page.scripts().remove(script);
}

bool OwnScript::IsIn(QWebEnginePage &page, const char *file) {
  return !page.scripts().find(QLatin1String(file)).isEmpty();
}
