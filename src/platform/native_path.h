#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QUrl>

// Paths as texts that lose nothing. File names are bytes, and need be no UTF-8: such a byte becomes a lone low
// surrogate, U+DC80 to U+DCFF, and comes back as the same byte. For all other names this is what QFile does; QFile
// itself finds no file by a text with such a surrogate.
namespace NativePath {

[[nodiscard]] QString ToText(QByteArrayView bytes);
[[nodiscard]] QByteArray ToBytes(const QString &text);
// True when no byte of the name is one that QFile cannot be told.
[[nodiscard]] bool IsPlain(const QString &text);
// As an address of a file, which can carry any byte.
[[nodiscard]] QUrl ToUrl(const QString &path);
// For the screen: a replacement character for each such byte.
[[nodiscard]] QString Shown(QString text);

}  // namespace NativePath
