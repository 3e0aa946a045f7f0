#pragma once

#include <QString>

class QWidget;
class TLanguage;

// Tells the user that something could not be done, in plain text under the program's name or, with `caption`, under
// that. Returns at once; the box belongs to `owner` and goes when it is closed.
void ShowWarning(QWidget *owner, const TLanguage &language, const QString &text, const QString &caption = {});
