#include "ui/language_choice.h"

#include "config/language.h"
#include "config/settings.h"
#include "ui/message_box.h"

void ChooseLanguage(QWidget *owner, TLanguage &language, TSettings &settings, const QString &file) {
  language.SetFileName(file);
  settings.Set(Setting::LanguageFile, file);
  ShowNotice(owner, language, language.Global("ChangeRestart"));
}
