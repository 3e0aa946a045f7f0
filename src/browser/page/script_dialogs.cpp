#include "browser/page/script_dialogs.h"

#include <QUrl>
#include <QWidget>

#include "browser/page/origin_text.h"
#include "browser/page/question_sheet.h"
#include "browser/page/script_dialog.h"
#include "config/language.h"
#include "ui/dialog_gate.h"

namespace {

constexpr int MostWaiting = 8;  // of one page; its frames can ask at the same time

}  // namespace

TScriptDialogs::TScriptDialogs(const TLanguage &language, QObject *parent) : QObject(parent), m_language(language) {}

TScriptDialogs::~TScriptDialogs() {
  Dismiss();
}

void TScriptDialogs::SetSheet(TQuestionSheet *sheet) {
  m_sheet = sheet;
}

QPointer<QDialog> TScriptDialogs::Ask(const TScriptQuestion &question,
                                      std::function<void(const TScriptAnswer &)> answer) {
  if (m_kept || m_sheet == nullptr || m_waiting >= MostWaiting || DialogGate::IsClosed()) {
    answer({});
    return nullptr;
  }
  m_dismissed = 0;
  auto *dialog = new TScriptDialog(question.kind, Heading(question.origin), question.message, m_language);
  dialog->SetValue(question.value);
  dialog->OfferToKeep(++m_shown > 1);
  ++m_waiting;
  const QPointer<TScriptDialogs> self(this);
  const QPointer<QDialog> asked(dialog);
  m_sheet->Ask(dialog, [self, dialog, answer = std::move(answer)](bool accepted) {
    if (self) {
      --self->m_waiting;
      self->m_kept |= dialog->KeepFromOpening();
    }
    const bool prompts = dialog->Kind() == TScriptDialog::TKind::Prompt;
    answer({.accepted = accepted, .value = accepted && prompts ? dialog->Value() : QString()});
    // Those that wait behind it are kept from opening, too.
    if (self && self->m_kept && self->m_waiting > 0) self->m_sheet->Dismiss();
  });
  return asked;
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
  if (m_waiting == 0 || m_sheet == nullptr) return;
  m_dismissed = m_waiting;
  m_sheet->Dismiss();
}

QString TScriptDialogs::Heading(const QUrl &origin) const {
  return m_language.Text("SCRIPT_DIALOG", "Caption").arg(OriginText(origin, m_language));
}

bool TScriptDialogs::Run(TScriptDialog::TKind kind, QWidget *owner, const QString &heading, const QString &message,
                         QString *value) {
  // A page must not be able to stack dialogs: while one is open, others are answered with Cancel.
  const bool guardsInput = kind == TScriptDialog::TKind::BeforeUnload;
  if (!guardsInput && m_dismissed > 0) {
    --m_dismissed;
    return false;
  }
  if ((m_kept && !guardsInput) || m_open != nullptr || DialogGate::IsClosed()) return false;
  const QPointer<TScriptDialogs> self(this);
  const QPointer<QWidget> window(owner);
  Q_EMIT BringToFrontRequested();
  if (self.isNull() || (owner != nullptr && window.isNull())) return false;
  // Page, owner and this object may all go while the dialog is open.
  const QPointer<TScriptDialog> dialog(new TScriptDialog(kind, heading, message, m_language, owner));
  // The page is to wait, not the other windows of the program.
  dialog->setWindowModality(Qt::WindowModal);
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
