#include "store/store_file.h"

#include <sqlite3.h>
#include <sys/stat.h>

#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <utility>

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

TStoreFile::TIdentity IdentityOf(const QString &path) {
  struct stat status = {};
  if (::stat(QFile::encodeName(path).constData(), &status) != 0) return {};
  return {status.st_dev, status.st_ino};
}

// Too short to be a database; SQLite would take it for a new one and write over it.
bool IsCutShort(const QString &path) {
  const qint64 size = QFileInfo(path).size();
  return size > 0 && size < HeaderSize;
}

}  // namespace

TStoreFile::TState TStoreFile::StateOf(int code) {
  switch (code & 0xFF) {
    case SQLITE_OK:
    case SQLITE_ROW:
    case SQLITE_DONE:
      return TState::Ready;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return TState::Busy;
    case SQLITE_FULL:
    case SQLITE_IOERR:
      return TState::Refused;
    // SQLITE_ERROR: the version is ours, but the tables are not.
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_ERROR:
      return TState::Damaged;
    default:
      return TState::Unavailable;
  }
}

TStoreFile::TState TStoreFile::Open(TMode mode, bool mayUpgrade) {
  Close();
  if (mode != TMode::Memory) {
    m_identity = IdentityOf(m_path);
    if (IsCutShort(m_path)) return TState::Damaged;
  }
  const int code = m_database.Open(m_path, mode);
  if (m_identity == TIdentity()) m_identity = IdentityOf(m_path);
  if (code != SQLITE_OK) return StateOf(code);
  m_database.SetBusyTimeout(m_wasBusy ? 0 : std::exchange(m_wasOpened, true) ? m_patience.usual : m_patience.first);
  const TState state = CheckSchema(mode == TMode::ReadWrite || mode == TMode::Memory, mayUpgrade);
  m_wasBusy = state == TState::Busy;
  if (state == TState::Ready) {
    m_database.SetBusyTimeout(m_patience.usual);
  } else {
    Close();
  }
  return state;
}

TStoreFile::TState TStoreFile::Ensure(bool mayCreate) {
  if (m_database.IsOpen()) {
    // Damage deep in the file only shows when that place is read.
    if (IdentityOf(m_path) == m_identity) return m_database.DamageSeen() ? TState::Damaged : TState::Ready;
    // Another process has set the file aside, or the user has put a copy in its place.
    Close();
  }
  if (!mayCreate && !QFileInfo::exists(m_path)) return TState::Unavailable;
  return Open(TMode::ReadWrite, mayCreate);
}

bool TStoreFile::SetAside(const TIdentity &damaged) {
  Close();
  QLockFile lock(m_path + ".lock");
  if (!lock.tryLock(LockTimeout)) return false;
  if (IdentityOf(m_path) != damaged) return true;
  const QString name = UnusedName(m_path);
  if (name.isEmpty() || !QFile::rename(m_path, name)) return false;
  for (const char *log : Logs) QFile::rename(m_path + log, name + log);
  QFile::remove(m_path + "-shm");
  m_setAside = name;
  return true;
}

// Whether the open file has this schema; an empty one is given it when `mayWrite`. Files that may be written get the
// write-ahead log, with which a commit needs no wait for the disk and readers never wait for a writer.
TStoreFile::TState TStoreFile::CheckSchema(bool mayWrite, bool mayUpgrade) {
  qint64 version = 0;
  qint64 tables = 0;
  {
    TSqliteStatement statement = m_database.Use(
        "SELECT (SELECT user_version FROM pragma_user_version), "
        "(SELECT count(*) FROM sqlite_master)");
    if (!statement.Step()) return StateOf(statement.Code());
    version = statement.Integer(0);
    tables = statement.Integer(1);
  }
  const bool isEmpty = version == 0 && tables == 0;
  if (isEmpty && !mayWrite) return TState::Unavailable;
  if (!isEmpty && (version < m_schema.FirstVersion() || version > m_schema.version)) return TState::Damaged;
  if (!isEmpty && version < m_schema.version && !(mayWrite && mayUpgrade)) return TState::Outdated;
  // Refused (by another process opening at this moment), it is asked for again next time; all works without it.
  if (mayWrite) m_database.Execute("PRAGMA synchronous = NORMAL; PRAGMA journal_mode = WAL");
  if (version < m_schema.version) {
    if (const TState state = MakeSchema(version); isEmpty || state != TState::Ready) return state;
  }
  for (const char *query : m_schema.queries) {
    TSqliteStatement statement = m_database.Use(query);
    statement.Step();
    if (const TState state = StateOf(statement.Code()); state != TState::Ready) return state;
  }
  return TState::Ready;
}

TStoreFile::TState TStoreFile::MakeSchema(qint64 version) {
  int code = m_database.Execute("BEGIN IMMEDIATE");
  if (code != SQLITE_OK) return StateOf(code);
  const bool wasEmpty = version == 0;
  {
    // Another process may have been faster.
    TSqliteStatement statement = m_database.Use("PRAGMA user_version");
    if (statement.Step()) version = statement.Integer(0);
  }
  if (version == 0) {
    code = m_database.Execute(m_schema.sql);
    version = m_schema.FirstVersion();
  }
  for (; code == SQLITE_OK && version < m_schema.version; ++version) {
    code = m_database.Execute(m_schema.upgrades[size_t(version - m_schema.FirstVersion())]);
  }
  if (code == SQLITE_OK) code = m_database.Execute("COMMIT");
  if (code == SQLITE_OK) return TState::Ready;
  if (m_database.InTransaction()) m_database.Execute("ROLLBACK");
  const TState state = StateOf(code);
  // Where nothing was there, nothing can be damaged.
  return wasEmpty && state == TState::Damaged ? TState::Unavailable : state;
}
