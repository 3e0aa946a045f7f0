#include "ui/message_box.h"

#include <QApplication>
#include <QMessageBox>

#include "config/language.h"
#include "ui/dialog_gate.h"

namespace {

void Show(QMessageBox::Icon icon, QWidget *owner, const TLanguage &language, const QString &text,
          const QString &caption) {
  if (DialogGate::IsClosed()) return;
  const QString title = caption.isEmpty() ? QApplication::applicationDisplayName() : caption;
  auto *box = new QMessageBox(icon, title, text, QMessageBox::NoButton, owner);
  box->setTextFormat(Qt::PlainText);
  box->setAccessibleDescription(text);
  box->addButton(language.Global("OK"), QMessageBox::AcceptRole);
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->open();
}

}  // namespace

void ShowWarning(QWidget *owner, const TLanguage &language, const QString &text, const QString &caption) {
  Show(QMessageBox::Warning, owner, language, text, caption);
}

void ShowNotice(QWidget *owner, const TLanguage &language, const QString &text, const QString &caption) {
  Show(QMessageBox::Information, owner, language, text, caption);
}
