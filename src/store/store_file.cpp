#include "store/store_file.h"

#include <sqlite3.h>
#include <sys/stat.h>

#include <QFile>
#include <QFileInfo>
#include <QLockFile>

#include "store/sqlite_connection.h"

namespace StoreFile {

namespace {

constexpr qint64 HeaderSize = 100;  // bytes of SQLite's file header
constexpr int LockTimeout = 5000;   // milliseconds
constexpr int MostNames = 10000;
// They may hold writes that a repair could still bring back.
constexpr const char *Logs[] = {"-wal", "-journal"};

QString UnusedName(const QString &filePath) {
  for (int number = 1; number <= MostNames; ++number) {
    const QString name = filePath + ".damaged-" + QString::number(number);
    bool isUsed = QFileInfo::exists(name);
    for (const char *log : Logs) isUsed = isUsed || QFileInfo::exists(name + log);
    if (!isUsed) return name;
  }
  return {};
}

TState CreateSchema(TSqliteConnection &database, const TSchema &schema) {
  int code = database.Execute("BEGIN IMMEDIATE");
  if (code != SQLITE_OK) return StateOf(code);
  bool isMade = false;
  {
    // Another process may have been faster.
    TSqliteStatement statement = database.Use("PRAGMA user_version");
    isMade = statement.Step() && statement.Integer(0) == schema.version;
  }
  if (!isMade) code = database.Execute(schema.sql);
  if (code == SQLITE_OK) code = database.Execute("COMMIT");
  if (code == SQLITE_OK) return TState::Ready;
  if (database.InTransaction()) database.Execute("ROLLBACK");
  // Nothing was there to be damaged.
  return StateOf(code) == TState::Busy ? TState::Busy : TState::Unavailable;
}

}  // namespace

TState StateOf(int code) {
  switch (code & 0xFF) {
    case SQLITE_OK:
    case SQLITE_ROW:
    case SQLITE_DONE:
      return TState::Ready;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return TState::Busy;
    // SQLITE_ERROR: the version is ours, but the tables are not.
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_ERROR:
      return TState::Damaged;
    default:
      return TState::Unavailable;
  }
}

TIdentity IdentityOf(const QString &path) {
  struct stat status = {};
  if (::stat(QFile::encodeName(path).constData(), &status) != 0) return {};
  return {status.st_dev, status.st_ino};
}

bool IsCutShort(const QString &path) {
  const qint64 size = QFileInfo(path).size();
  return size > 0 && size < HeaderSize;
}

TState CheckSchema(TSqliteConnection &database, const TSchema &schema, bool mayWrite) {
  qint64 version = 0;
  qint64 tables = 0;
  {
    TSqliteStatement statement = database.Use(
        "SELECT (SELECT user_version FROM pragma_user_version), "
        "(SELECT count(*) FROM sqlite_master)");
    if (!statement.Step()) return StateOf(statement.Code());
    version = statement.Integer(0);
    tables = statement.Integer(1);
  }
  const bool isEmpty = version == 0 && tables == 0;
  if (isEmpty && !mayWrite) return TState::Unavailable;
  if (!isEmpty && version != schema.version) return TState::Damaged;
  // Refused (by another process opening at this moment), it is asked for again next time; all works without it.
  if (mayWrite) database.Execute("PRAGMA synchronous = NORMAL; PRAGMA journal_mode = WAL");
  if (isEmpty) return CreateSchema(database, schema);
  for (const char *query : schema.queries) {
    TSqliteStatement statement = database.Use(query);
    statement.Step();
    if (const TState state = StateOf(statement.Code()); state != TState::Ready) return state;
  }
  return TState::Ready;
}

bool SetAside(const QString &filePath, const TIdentity &damaged, QString *newName) {
  QLockFile lock(filePath + ".lock");
  if (!lock.tryLock(LockTimeout)) return false;
  if (IdentityOf(filePath) != damaged) return true;
  const QString name = UnusedName(filePath);
  if (name.isEmpty() || !QFile::rename(filePath, name)) return false;
  for (const char *log : Logs) QFile::rename(filePath + log, name + log);
  QFile::remove(filePath + "-shm");
  *newName = name;
  return true;
}

}  // namespace StoreFile
