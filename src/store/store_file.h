#pragma once

#include <QString>
#include <span>

#include "store/sqlite_connection.h"

// A SQLite file that holds a store, and the connection to it: how it is opened and checked, made when it is empty, and,
// when it is damaged, set aside under a new name, so that a new one can be begun and the old one may still be repaired
// by hand. Several processes may have it open, and each notices when another has put a new file in its place.
class TStoreFile final {
 public:
  using TMode = TSqliteConnection::TMode;

  // What opening or using a file has led to.
  enum class TState {
    Ready,
    Busy,         // another process keeps it locked; worth another try
    Refused,      // the disk takes nothing (it is full, say); worth another try
    Damaged,      // no database, or not of this kind and version
    Outdated,     // of an earlier version, which whoever may make the file brings up to date
    Unavailable,  // nothing can be read or written there
  };
  // Of SQLite's result codes.
  [[nodiscard]] static TState StateOf(int code);

  struct TSchema {
    int version;                           // kept in the file's user_version
    const char *sql;                       // makes the tables of the first version and sets that
    std::span<const char *const> queries;  // they fail where the version is right and the tables are not
    // Each makes the next version out of the one before and sets it; the last makes `version`.
    std::span<const char *const> upgrades{};

    [[nodiscard]] int FirstVersion() const { return version - int(upgrades.size()); }
  };

  // How long a call waits for another process, in milliseconds: when the file is opened for the first time, and later
  // on. A file that has been locked since it was last tried is not waited for at all: every call tries it again.
  struct TPatience {
    int first;
    int usual;
  };

  // Which file a path leads to.
  struct TIdentity {
    quint64 device = 0;
    quint64 node = 0;
    bool operator==(const TIdentity &) const = default;
  };

  // Nothing is opened yet.
  TStoreFile(const QString &path, const TSchema &schema, const TPatience &patience)
      : m_path(path), m_schema(schema), m_patience(patience) {}

  [[nodiscard]] const QString &Path() const { return m_path; }
  // The connection; closed unless the last Open or Ensure was Ready.
  [[nodiscard]] TSqliteConnection &Database() { return m_database; }
  // Of the file that was opened last, also when that failed.
  [[nodiscard]] const TIdentity &Identity() const { return m_identity; }
  // The name that a damaged file was given last; empty when nothing was wrong.
  [[nodiscard]] const QString &SetAsideFile() const { return m_setAside; }

  // Opens the file anew. A missing or empty one is made in the modes ReadWrite and Memory only; its folder must be
  // there. One of an earlier version is brought up to date in these modes, when `mayUpgrade`: all of it or nothing.
  [[nodiscard]] TState Open(TMode mode, bool mayUpgrade = true);
  // Before each use of a file that may be written: Ready when the connection is open, sound, and to the file that the
  // path leads to by now; it is opened where it is not. A missing file is made, and one of an earlier version brought
  // up to date, only when `mayCreate`.
  [[nodiscard]] TState Ensure(bool mayCreate);
  void Close() { m_database.Close(); }

  // Closes the connection and moves the file and its logs to "<path>.damaged-<n>" beside it, unless the path no longer
  // leads to `damaged`: of several processes which find the damage only one does it, and none moves the new file of
  // another. False when the file has to stay.
  [[nodiscard]] bool SetAside(const TIdentity &damaged);

 private:
  [[nodiscard]] TState CheckSchema(bool mayWrite, bool mayUpgrade);
  [[nodiscard]] TState MakeSchema(qint64 version);

  const QString m_path;
  const TSchema m_schema;
  const TPatience m_patience;
  TIdentity m_identity;
  QString m_setAside;
  TSqliteConnection m_database;
  bool m_wasOpened = false;
  bool m_wasBusy = false;
};
