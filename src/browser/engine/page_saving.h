#pragma once

#include <functional>
#include <QString>

class QWebEnginePage;
class QWidget;
class TLanguage;

namespace PageSaving {

// Asks for a file and a format and saves the page there; its course shows among the downloads. What is no HTML (a
// picture, a PDF file) is downloaded as it is.
void SaveAs(QWebEnginePage *page, QWidget *owner, const TLanguage &language);

// A safe file name made from a page's title, without an ending. Unlike a server's suggestion, a title has no folders.
[[nodiscard]] QString FileNameOf(const QString &title, const TLanguage &language);

// `html` with a base element for `address`: right behind the start tag of the head, or at the beginning when there is
// none. Comments are not taken for tags.
[[nodiscard]] QString InsertBase(const QString &html, const QString &address);

// Writes `html` in UTF-8 to a new file in the temporary folder that only the user may read. The file gets a unique
// temporary name whose ending ".tmp" becomes ".htm". Empty on failure.
[[nodiscard]] QString WriteTemporary(const QString &html);

}  // namespace PageSaving
