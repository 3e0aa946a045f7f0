#pragma once

#include <QString>
#include <span>

class TSqliteConnection;

// What the stores' SQLite files have in common: how one is opened and checked, made when it is empty, and, when it is
// damaged, set aside under a new name, so that a new one can be begun and the old one may still be repaired by hand.
namespace StoreFile {

// What opening or using a file has led to.
enum class TState {
  Ready,
  Busy,         // another process keeps it locked; worth another try
  Damaged,      // no database, or not of this kind and version
  Unavailable,  // nothing can be read or written there
};

// Of SQLite's result codes.
[[nodiscard]] TState StateOf(int code);

// Which file a path leads to; another process may have put a new one in its place.
struct TIdentity {
  quint64 device = 0;
  quint64 node = 0;
  bool operator==(const TIdentity &) const = default;
};
[[nodiscard]] TIdentity IdentityOf(const QString &path);

struct TSchema {
  int version;                           // kept in the file's user_version
  const char *sql;                       // makes the tables and sets the version
  std::span<const char *const> queries;  // they fail where the version is right and the tables are not
};

// True for what is too short to be a database; SQLite would take it for a new one and write over it.
[[nodiscard]] bool IsCutShort(const QString &path);
// Whether an open file has this schema; an empty one is given it when `mayWrite`. Files that may be written get the
// write-ahead log, with which a commit needs no wait for the disk and readers never wait for a writer.
[[nodiscard]] TState CheckSchema(TSqliteConnection &database, const TSchema &schema, bool mayWrite);

// Moves `filePath` and its logs to "<filePath>.damaged-<n>" beside it, unless the path no longer leads to `damaged`:
// of several processes which find the damage only one does it, and none moves the new file of another. False when the
// file has to stay; `newName` gets the name that this call has moved it to and is left alone when it moved nothing.
[[nodiscard]] bool SetAside(const QString &filePath, const TIdentity &damaged, QString *newName);

}  // namespace StoreFile
