#pragma once

#include <optional>
#include <QList>
#include <QObject>

#include "browser/engine/policy.h"

class QWebEnginePage;
class TEngine;

// The user's scripts in one page and its frames. All are in all pages: a page that gets another renderer has been given
// them before anybody is asked where it is going. So each asks first, in its page, whether it may run there.
class TPageScripts final : public QObject {
  Q_OBJECT

 public:
  // Belongs to `page`.
  TPageScripts(TEngine &engine, QWebEnginePage *page);

  // The answer to a script's question, which comes as that of a script dialog; std::nullopt for any other message.
  [[nodiscard]] std::optional<bool> MayRun(const QString &message) const;
  // An error in the page's console, which may be that of a script.
  void Hear(const QString &message, int line, const QString &source);

 private:
  void Update();

  TEngine &m_engine;
  QWebEnginePage *m_page;
  QString m_token;     // in front of questions; no page knows it
  QString m_question;  // the name of what asks in the scripts' worlds; no script knows it that may not run
  QList<TPageScript> m_given;
};
