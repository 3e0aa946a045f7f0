#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

// Files that hold one address: internet shortcuts (".url"), links of the desktop (".desktop", where their type is Link)
// and of another system's (".webloc", as XML or binary).
//
// Reading takes any bytes. Texts may be UTF-8 or UTF-16, with a byte-order mark or without, or Latin-1 line by line;
// lines may end in any way; sections and keys are found regardless of case. Of a file beyond 1 MiB only that much is
// looked at. Writing is whole or not at all.
namespace ShortcutFile {

enum class TKind { None, Url, Desktop, Webloc };

// The longest address that is written, in bytes of UTF-8.
inline constexpr qsizetype LongestAddress = 256 * 1024;

// By the ending of the name, regardless of case. Nothing is read.
[[nodiscard]] TKind KindOf(const QString &path);

// The address in these bytes, as it stands there and without blanks around it: it may have any scheme, "javascript:"
// among them, and is only to be shown until the user has chosen it. It never holds line ends or control characters.
// Empty when there is none.
[[nodiscard]] QString AddressIn(QByteArrayView bytes, TKind kind);
// The same of a file. Empty also for what is none of the kinds, is no regular file or cannot be read; then `error`,
// when given, holds the reason.
[[nodiscard]] QString Read(const QString &path, QString *error = nullptr);

// An address as it can stand in one line, and means the same: without blanks around it, without line ends and tabs,
// which addresses may be broken by, and with other control characters written "%01". In scripts ("javascript:") line
// ends count and become "%0A".
[[nodiscard]] QString OneLine(const QString &address);

// True for an address in one line that is a script, "javascript:", which runs in a page as soon as it is opened.
[[nodiscard]] bool IsScript(const QString &address);

// The bytes of an internet shortcut: "[InternetShortcut]\r\nURL=...\r\n" in UTF-8.
[[nodiscard]] QByteArray Bytes(const QString &address);

// Gives an existing file another address; what else it holds stays. A link stays one, and the file it leads to is
// changed. False with the reason when it cannot be.
[[nodiscard]] bool SetAddress(const QString &path, const QString &address, QString *error = nullptr);

}  // namespace ShortcutFile
