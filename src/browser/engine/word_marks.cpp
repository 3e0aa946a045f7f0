#include "browser/engine/word_marks.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QUuid>

#include "browser/engine/engine_page.h"
#include "browser/engine/own_scripts.h"

TWordMarks::TWordMarks(TEnginePage *page) : QObject(page), m_page(page) {
  connect(page, &TEnginePage::ConsoleWritten, this, &TWordMarks::OnConsole);
}

void TWordMarks::Look(const QStringList &words, bool marks) {
  if (words.isEmpty() && m_words == 0) return;
  m_words = words.size();
  m_token = words.isEmpty() ? QString() : QUuid::createUuid().toString(QUuid::WithoutBraces);
  const QJsonObject options{{QStringLiteral("words"), QJsonArray::fromStringList(words)},
                            {QStringLiteral("marks"), marks},
                            {QStringLiteral("most"), MostMarks},
                            {QStringLiteral("token"), m_token}};
  const QString given = QString::fromUtf8(QJsonDocument(options).toJson(QJsonDocument::Compact));
  m_page->runJavaScript(OwnScript::Source("word_marks.js", {{"Options", given}}), ScriptWorld::Words);
}

void TWordMarks::OnConsole(const QString &message) {
  if (m_token.isEmpty() || !message.startsWith(m_token)) return;
  const QJsonObject told = QJsonDocument::fromJson(QStringView(message).mid(m_token.size()).toUtf8()).object();
  const auto isWord = [this](int number) { return number >= 0 && number < m_words; };
  if (const int clicked = told.value(QLatin1String("clicked")).toInt(-1); isWord(clicked)) {
    const qreal zoom = m_page->zoomFactor();
    const auto pixels = [&](const char *key) { return qRound(told.value(QLatin1String(key)).toDouble() * zoom); };
    Q_EMIT Clicked(clicked, {pixels("x"), pixels("y")});
  }
  if (!told.contains(QLatin1String("found"))) return;
  QList<int> found;
  const QJsonArray all = told.value(QLatin1String("found")).toArray();
  for (const QJsonValue number : all) {
    if (isWord(number.toInt(-1))) found.append(number.toInt());
  }
  Q_EMIT Found(found);
}
