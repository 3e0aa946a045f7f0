#include "ui/warning_box.h"

#include <QApplication>
#include <QMessageBox>

#include "config/language.h"

void ShowWarning(QWidget *owner, const TLanguage &language, const QString &text, const QString &caption) {
  const QString title = caption.isEmpty() ? QApplication::applicationDisplayName() : caption;
  auto *box = new QMessageBox(QMessageBox::Warning, title, text, QMessageBox::NoButton, owner);
  box->setTextFormat(Qt::PlainText);
  box->addButton(language.Global("OK"), QMessageBox::AcceptRole);
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->open();
}
