#pragma once

#include <QString>

class QWidget;
class TLanguage;

// Messages with nothing to answer, in plain text under the program's name or, with `caption`, under that. They return
// at once; the box belongs to `owner` and goes when it is closed.

// Something could not be done.
void ShowWarning(QWidget *owner, const TLanguage &language, const QString &text, const QString &caption = {});
// Something that the user is to know.
void ShowNotice(QWidget *owner, const TLanguage &language, const QString &text, const QString &caption = {});
