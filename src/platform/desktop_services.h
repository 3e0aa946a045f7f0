#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// What the desktop does for the program: mail, and editing a file with another program. Every call fails silently with
// false (or an empty list) where the desktop offers nothing.
namespace DesktopServices {

// A program that can edit a web page, from the desktop's application entries.
struct TEditor {
  QString name;     // as the desktop calls it, in the user's language
  QString icon;     // an icon name or path, may be empty
  QString command;  // the entry's Exec line
};

// Programs that say they open web pages or plain text in an editor, by name. Reads the entries anew at each call.
[[nodiscard]] QList<TEditor> Editors();
bool EditWith(const TEditor &editor, const QString &file);
// The arguments of an Exec line with its field codes filled in (the desktop entry format); empty when it has no
// program. A line that names no file gets the file at its end.
[[nodiscard]] QStringList CommandLine(const QString &exec, const QString &file);

// Hands a "mailto:" address to the mail program exactly as it is.
bool OpenMailAddress(const QString &address);
// A new message with the file attached.
bool SendDocument(const QString &file);

}  // namespace DesktopServices
