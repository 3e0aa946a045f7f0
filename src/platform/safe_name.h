#pragma once

#include <QString>

// Names that every file system takes, made of texts that come from elsewhere.
namespace SafeName {

// `text` without control and direction characters and without dots and blanks at its edges; "_" stands for each
// character that is reserved somewhere, and before names that are. Empty when nothing is left. Folders are the
// caller's business: "/" and "\" stay.
[[nodiscard]] QString Cleaned(const QString &text);

// As much of the beginning as fits into so many bytes of UTF-8, in whole characters.
[[nodiscard]] QString Shortened(const QString &text, qsizetype bytes);

}  // namespace SafeName
