#include "groups/group_message.h"

#include "ui/warning_box.h"
#include "config/language.h"

void TellAboutGroup(QWidget *owner, const TLanguage &language, const QString &text) {
  ShowWarning(owner, language, text, language.Global("HalvexGroup"));
}
