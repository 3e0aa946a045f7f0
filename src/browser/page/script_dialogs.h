#pragma once

#include <QObject>
#include <QPointer>

#include "browser/page/script_dialog.h"

class QUrl;
class TLanguage;

// The dialogs that the scripts of one page may open. They are plain text, say which site they come from, scroll when
// they are long, and from the second one on offer to keep the page from opening more: a page cannot trap the user.
class TScriptDialogs final : public QObject {
  Q_OBJECT

 public:
  explicit TScriptDialogs(const TLanguage &language, QObject *parent = nullptr);
  ~TScriptDialogs() override;

  // Each blocks until the user has answered; this object and `owner` may be deleted meanwhile. Without an answer
  // (Escape, kept from opening, page gone) Confirm and Prompt return false.
  void Alert(QWidget *owner, const QUrl &origin, const QString &message);
  [[nodiscard]] bool Confirm(QWidget *owner, const QUrl &origin, const QString &message);
  // `result` is set only when true is returned; it may be empty then.
  [[nodiscard]] bool Prompt(QWidget *owner, const QUrl &origin, const QString &message, const QString &defaultValue,
                            QString *result);
  // True to leave the page. Asks in the program's own words, and is never kept from opening: it guards the user's
  // input.
  [[nodiscard]] bool BeforeUnload(QWidget *owner, const QUrl &origin);

  // Dialogs are allowed again. Call it when the user navigates or reloads, never for a page's own navigation.
  void Reset();
  [[nodiscard]] bool IsOpen() const { return m_open != nullptr; }
  // Answers an open dialog with Cancel, for a page that is going away.
  void Dismiss();

 Q_SIGNALS:
  // A dialog is about to open; a page in the background should come to the front.
  void BringToFrontRequested();

 private:
  bool Run(TScriptDialog::TKind kind, QWidget *owner, const QString &heading, const QString &message,
           QString *value = nullptr);
  [[nodiscard]] QString Heading(const QUrl &origin) const;

  const TLanguage &m_language;
  QPointer<TScriptDialog> m_open;
  int m_shown = 0;
  bool m_kept = false;
};
