#include "ui/input_box.h"

#include <QInputDialog>
#include <QLabel>
#include <QPointer>

#include "config/language.h"
#include "ui/dialog_gate.h"

namespace {

QInputDialog *MakeDialog(QWidget *owner, const TLanguage &language, const QString &caption, const QString &prompt) {
  auto *dialog = new QInputDialog(owner);
  dialog->setWindowModality(Qt::WindowModal);
  dialog->setWindowTitle(caption);
  dialog->setLabelText(prompt);
  // A prompt may hold what a page or a file calls itself.
  for (auto *label : dialog->findChildren<QLabel *>()) label->setTextFormat(Qt::PlainText);
  dialog->setOkButtonText(language.Global("OK"));
  dialog->setCancelButtonText(language.Global("Cancel"));
  return dialog;
}

std::optional<QString> Run(QInputDialog *dialog) {
  const QPointer<QInputDialog> open(dialog);
  const bool accepted = !DialogGate::IsClosed() && dialog->exec() == QDialog::Accepted;
  if (!open) return std::nullopt;  // The owner has gone and has taken the dialog along.
  const QString answer = open->textValue();
  delete open;
  return accepted ? std::optional(answer) : std::nullopt;
}

}  // namespace

std::optional<QString> AskText(QWidget *owner, const TLanguage &language, const TTextQuestion &question) {
  auto *dialog = MakeDialog(owner, language, question.caption, question.prompt);
  dialog->setTextValue(question.text);
  if (question.width > 0) {
    dialog->resize(dialog->fontMetrics().averageCharWidth() * question.width, dialog->sizeHint().height());
  }
  return Run(dialog);
}

QInputDialog *MakeLineDialog(const TLanguage &language, const TLineQuestion &question) {
  auto *dialog = MakeDialog(nullptr, language, question.caption, question.prompt);
  dialog->setOption(QInputDialog::UseListViewForComboBoxItems);
  dialog->setComboBoxItems(question.lines);
  return dialog;
}
