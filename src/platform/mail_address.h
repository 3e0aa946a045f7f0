#pragma once

#include <QString>

namespace MailAddress {

// A text as it can stand in such an address, and means itself there.
[[nodiscard]] QString Encoded(const QString &text);

// The "mailto:" address with nothing in it but whom a message is for, its subject and its text (RFC 6068): what else a
// page may have written there, a file to attach say, is left out. All is percent-encoded; where "&" begins no field it
// belongs to the field before. Only the text keeps line ends. What is no such address is empty.
[[nodiscard]] QString Safe(const QString &address);

}  // namespace MailAddress
