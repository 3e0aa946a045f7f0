#pragma once

#include <QString>

class QWidget;
class TLanguage;

// Tells the user about a page group that could not be read, written or opened. Returns at once.
void TellAboutGroup(QWidget *owner, const TLanguage &language, const QString &text);
