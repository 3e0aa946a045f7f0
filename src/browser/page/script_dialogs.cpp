#include "browser/page/script_dialogs.h"

#include <QUrl>
#include <QWidget>

#include "browser/page/origin_text.h"
#include "browser/page/script_dialog.h"
#include "config/language.h"
#include "ui/dialog_gate.h"

TScriptDialogs::TScriptDialogs(const TLanguage &language, QObject *parent) : QObject(parent), m_language(language) {}

TScriptDialogs::~TScriptDialogs() {
  Dismiss();
}

void TScriptDialogs::Alert(QWidget *owner, const QUrl &origin, const QString &message) {
  Run(TScriptDialog::TKind::Alert, owner, Heading(origin), message);
}

bool TScriptDialogs::Confirm(QWidget *owner, const QUrl &origin, const QString &message) {
  return Run(TScriptDialog::TKind::Confirm, owner, Heading(origin), message);
}

bool TScriptDialogs::Prompt(QWidget *owner, const QUrl &origin, const QString &message, const QString &defaultValue,
                            QString *result) {
  QString value = defaultValue;
  if (!Run(TScriptDialog::TKind::Prompt, owner, Heading(origin), message, &value)) return false;
  if (result != nullptr) *result = value;
  return true;
}

bool TScriptDialogs::BeforeUnload(QWidget *owner, const QUrl &origin) {
  return Run(TScriptDialog::TKind::BeforeUnload, owner,
             m_language.Text("SCRIPT_DIALOG", "LeaveCaption").arg(OriginText(origin, m_language)),
             m_language.Text("SCRIPT_DIALOG", "LeavePrompt"));
}

void TScriptDialogs::Reset() {
  m_shown = 0;
  m_kept = false;
}

void TScriptDialogs::Dismiss() {
  if (m_open != nullptr) m_open->reject();
}

QString TScriptDialogs::Heading(const QUrl &origin) const {
  return m_language.Text("SCRIPT_DIALOG", "Caption").arg(OriginText(origin, m_language));
}

bool TScriptDialogs::Run(TScriptDialog::TKind kind, QWidget *owner, const QString &heading, const QString &message,
                         QString *value) {
  // A page must not be able to stack dialogs: while one is open, others are answered with Cancel.
  const bool guardsInput = kind == TScriptDialog::TKind::BeforeUnload;
  if ((m_kept && !guardsInput) || m_open != nullptr || DialogGate::IsClosed()) return false;
  const QPointer<TScriptDialogs> self(this);
  const QPointer<QWidget> window(owner);
  Q_EMIT BringToFrontRequested();
  if (self.isNull() || (owner != nullptr && window.isNull())) return false;
  // Page, owner and this object may all go while the dialog is open.
  const QPointer<TScriptDialog> dialog(new TScriptDialog(kind, heading, message, m_language, owner));
  m_open = dialog;
  if (value != nullptr) dialog->SetValue(*value);
  if (!guardsInput) dialog->OfferToKeep(++m_shown > 1);
  const bool accepted = dialog->exec() == QDialog::Accepted;
  if (dialog.isNull()) return false;
  if (value != nullptr) *value = dialog->Value();
  if (!self.isNull() && !guardsInput && dialog->KeepFromOpening()) m_kept = true;
  delete dialog;
  return accepted && !self.isNull();
}
