#include "groups/group_message.h"

#include <QMessageBox>

#include "config/language.h"

void TellAboutGroup(QWidget *owner, const TLanguage &language, const QString &text) {
  auto *box = new QMessageBox(QMessageBox::Warning, language.Global("HalvexGroup"), text, QMessageBox::NoButton, owner);
  box->setTextFormat(Qt::PlainText);
  box->addButton(language.Global("OK"), QMessageBox::AcceptRole);
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->open();
}
