#pragma once

#include <QHash>
#include <QPointer>
#include <QWebEngineUrlSchemeHandler>

class QWebEnginePage;
class QWebEngineProfile;
class TScriptDialogs;

// Takes the alerts, confirms and prompts of pages' scripts as requests for addresses of the program's own. The engine
// waits for its own dialogs without doing anything else, for any page; a request keeps only its page waiting, for as
// long as the user likes.
class TScriptCalls final : public QWebEngineUrlSchemeHandler {
  Q_OBJECT

 public:
  // Must run before the application object exists.
  static void RegisterSchemes();

  // Belongs to `profile`, all of whose pages may be connected.
  explicit TScriptCalls(QWebEngineProfile *profile);

  // The documents that `page` loads from now on ask `dialogs`.
  void Connect(QWebEnginePage &page, TScriptDialogs &dialogs);

  // Whether a page of this renderer has a question open, which none of its pages gets past.
  [[nodiscard]] bool Waits(qint64 renderer) const;

  // Whether the message of a native dialog is the word of a page's documents, by which they find out if they may ask.
  [[nodiscard]] bool IsWord(const QString &message) const { return m_dialogs.contains(message); }

  void requestStarted(QWebEngineUrlRequestJob *job) override;

 private:
  // By a word that only the page's own documents know.
  QHash<QString, QPointer<TScriptDialogs>> m_dialogs;
};
