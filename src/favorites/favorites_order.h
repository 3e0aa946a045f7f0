#pragma once

#include <optional>
#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringList>

// The order by hand of one folder of favorites, in a file ".zvorder" in that folder, so that it moves along with it.
//
// UTF-8 text, one name with its ending a line. "%" is written "%25", a line end "%0A" and so on, and so is each byte of
// a name that is no UTF-8. Names that are not there (any more) mean nothing; of a repeated name the first counts. A
// file beyond 4 MiB counts as none.
namespace FavoritesOrder {

inline constexpr const char *FileName = ".zvorder";

// std::nullopt where there is none, or none that can be read.
[[nodiscard]] std::optional<QStringList> Read(const QString &folder);
// Writes it, whole or not at all; std::nullopt removes it. False when the disk refuses.
bool Write(const QString &folder, const std::optional<QStringList> &names);

[[nodiscard]] QStringList NamesIn(QByteArrayView bytes);
[[nodiscard]] QByteArray Bytes(const QStringList &names);

}  // namespace FavoritesOrder
