#pragma once

#include <functional>
#include <QObject>
#include <QPointer>
#include <QUrl>

#include "browser/page/script_dialog.h"

class TLanguage;
class TQuestionSheet;

struct TScriptQuestion {
  TScriptDialog::TKind kind = TScriptDialog::TKind::Alert;
  QUrl origin;
  QString message;
  QString value{};  // what a prompt begins with
};

struct TScriptAnswer {
  bool accepted = false;
  QString value{};
};

// The dialogs that the scripts of one page may open. They are plain text, say which site they come from, scroll when
// they are long, and from the second one on offer to keep the page from opening more: a page cannot trap the user.
class TScriptDialogs final : public QObject {
  Q_OBJECT

 public:
  explicit TScriptDialogs(const TLanguage &language, QObject *parent = nullptr);
  ~TScriptDialogs() override;

  // Where Ask shows its dialogs. Without a sheet they are answered with Cancel at once.
  void SetSheet(TQuestionSheet *sheet);
  // Asks in the page's own place, after the questions that wait there already. `answer` comes once, maybe at once.
  // Gives the dialog, which may be rejected when nobody waits for it any more; nullptr when it was answered at once.
  QPointer<QDialog> Ask(const TScriptQuestion &question, std::function<void(const TScriptAnswer &)> answer);

  // For what cannot wait. Each blocks until the user has answered; this object and `owner` may be deleted meanwhile.
  // Without an answer (Escape, kept from opening, page gone) Confirm and Prompt return false.
  void Alert(QWidget *owner, const QUrl &origin, const QString &message);
  [[nodiscard]] bool Confirm(QWidget *owner, const QUrl &origin, const QString &message);
  // `result` is set only when true is returned; it may be empty then.
  [[nodiscard]] bool Prompt(QWidget *owner, const QUrl &origin, const QString &message, const QString &defaultValue,
                            QString *result);
  // True to leave the page. Asks in the program's own words, and is never kept from opening: it guards the user's
  // input.
  [[nodiscard]] bool BeforeUnload(QWidget *owner, const QUrl &origin);

  // A new page is there.
  void BeginPage() { m_dismissed = 0; }
  // Dialogs are allowed again. Call it when the user navigates or reloads, never for a page's own navigation.
  void Reset();
  [[nodiscard]] bool IsOpen() const { return m_open != nullptr || m_waiting > 0; }
  // Answers the open dialogs with Cancel, for a page that is going away. Should the page not hear of it any more and
  // ask the engine instead, it gets the same answer.
  void Dismiss();

 Q_SIGNALS:
  // A dialog is about to open; a page in the background should come to the front.
  void BringToFrontRequested();

 private:
  bool Run(TScriptDialog::TKind kind, QWidget *owner, const QString &heading, const QString &message,
           QString *value = nullptr);
  [[nodiscard]] QString Heading(const QUrl &origin) const;

  const TLanguage &m_language;
  QPointer<TQuestionSheet> m_sheet;
  QPointer<TScriptDialog> m_open;
  int m_waiting = 0;    // on the sheet
  int m_dismissed = 0;  // of those that waited, and may be asked again by a page that is just being replaced
  int m_shown = 0;
  bool m_kept = false;
};
