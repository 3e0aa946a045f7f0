#pragma once

#include <QString>

// Setting a damaged store file aside, so that a new one can be begun and the old one may still be repaired by hand.
namespace DamagedFile {

// Which file a path leads to; another process may have put a new one in its place.
struct TIdentity {
  quint64 device = 0;
  quint64 node = 0;
  bool operator==(const TIdentity &) const = default;
};
[[nodiscard]] TIdentity IdentityOf(const QString &path);

// Moves `filePath` and its log to "<filePath>.damaged-<n>" beside it, unless the path no longer leads to `damaged`:
// of several processes which find the damage only one does it, and none moves the new file of another. False when the
// file has to stay; `newName`, when given, gets the name that this call has moved it to.
[[nodiscard]] bool SetAside(const QString &filePath, const TIdentity &damaged, QString *newName = nullptr);

}  // namespace DamagedFile
