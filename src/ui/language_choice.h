#pragma once

#include <QString>

class QWidget;
class TLanguage;
class TSettings;

// Makes the language file of this name, without folder, the one of the next start, and tells the user that it is only
// then. The message belongs to `owner`.
void ChooseLanguage(QWidget *owner, TLanguage &language, TSettings &settings, const QString &file);
