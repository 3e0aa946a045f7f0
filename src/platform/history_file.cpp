#include "platform/history_file.h"

#include <sqlite3.h>

#include <QFileInfo>

#include "platform/program_folders.h"

namespace {

constexpr int BusyTimeout = 2000;   // milliseconds
constexpr int SchemaVersion = 1;
constexpr qint64 HeaderSize = 100;

// `search` holds, for every word, the visits it stands in, and nothing else: what a word stands beside is checked on the
// words of the few pages that are found. The words of a page come last in its row because most readers do not want them.
constexpr const char *Schema = R"(
  CREATE TABLE visits(id INTEGER PRIMARY KEY, address TEXT NOT NULL UNIQUE, title TEXT NOT NULL, first INTEGER NOT NULL,
                      last INTEGER NOT NULL, count INTEGER NOT NULL, words TEXT NOT NULL);
  CREATE INDEX visits_by_use ON visits(count DESC, last DESC);
  CREATE VIRTUAL TABLE search USING fts5(words, content = 'visits', content_rowid = 'id', detail = none,
                                         columnsize = 0,
                                         tokenize = "unicode61 remove_diacritics 0 categories 'L* N* M* Co'");
  CREATE TRIGGER visits_added AFTER INSERT ON visits BEGIN
    INSERT INTO search(rowid, words) VALUES(new.id, new.words);
  END;
  CREATE TRIGGER visits_removed AFTER DELETE ON visits BEGIN
    INSERT INTO search(search, rowid, words) VALUES('delete', old.id, old.words);
  END;
  CREATE TRIGGER visits_changed AFTER UPDATE OF words ON visits WHEN old.words <> new.words BEGIN
    INSERT INTO search(search, rowid, words) VALUES('delete', old.id, old.words);
    INSERT INTO search(rowid, words) VALUES(new.id, new.words);
  END;
  PRAGMA user_version = 1;
)";

}  // namespace

THistoryFile::TResult THistoryFile::ResultOf(int code) {
  switch (code & 0xFF) {
    case SQLITE_OK:
    case SQLITE_ROW:
    case SQLITE_DONE: return TResult::Ready;
    case SQLITE_BUSY:
    case SQLITE_LOCKED: return TResult::Busy;
    // SQLITE_ERROR: the version is ours, but the tables are not.
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_ERROR: return TResult::Damaged;
    default: return TResult::Unavailable;
  }
}

THistoryFile::TResult THistoryFile::Ensure(bool mayCreate) {
  if (m_database.IsOpen()) {
    if (m_database.DamageSeen()) return TResult::Damaged;
    // The file may have been set aside, by another process for one.
    if (DamagedFile::IdentityOf(m_filePath) == m_identity) return TResult::Ready;
    m_database.Close();
  }
  const TResult result = Open(mayCreate);
  if (result != TResult::Ready) m_database.Close();
  return result;
}

THistoryFile::TResult THistoryFile::Open(bool mayCreate) {
  const QFileInfo info(m_filePath);
  if (!info.exists() && (!mayCreate || !ProgramFolders::Make(info.absolutePath()))) return TResult::Unavailable;
  m_identity = DamagedFile::IdentityOf(m_filePath);
  // SQLite takes a file that is shorter than its header for a new one and would write over it.
  if (info.size() > 0 && info.size() < HeaderSize) return TResult::Damaged;
  const int code = m_database.Open(m_filePath, TSqliteConnection::TMode::ReadWrite);
  if (code != SQLITE_OK) return ResultOf(code);
  m_identity = DamagedFile::IdentityOf(m_filePath);
  m_database.SetBusyTimeout(BusyTimeout);
  return CheckSchema();
}

THistoryFile::TResult THistoryFile::CheckSchema() {
  qint64 version = 0;
  qint64 tables = 0;
  {
    TSqliteStatement statement = m_database.Use("SELECT (SELECT user_version FROM pragma_user_version), "
                                                "(SELECT count(*) FROM sqlite_master)");
    if (!statement.Step()) return ResultOf(statement.Code());
    version = statement.Integer(0);
    tables = statement.Integer(1);
  }
  const bool isEmpty = version == 0 && tables == 0;
  if (!isEmpty && version != SchemaVersion) return TResult::Damaged;
  // With the write-ahead log readers never wait for the writer.
  m_database.Execute("PRAGMA synchronous = NORMAL; PRAGMA journal_mode = WAL");
  if (isEmpty) return CreateSchema();
  TSqliteStatement statement = m_database.Use("SELECT id, address, title, first, last, count, words FROM visits LIMIT 1");
  statement.Step();
  return ResultOf(statement.Code());
}

THistoryFile::TResult THistoryFile::CreateSchema() {
  int code = m_database.Execute("BEGIN IMMEDIATE");
  if (code != SQLITE_OK) return ResultOf(code);
  bool isMade = false;
  {
    // Another process may have been faster.
    TSqliteStatement statement = m_database.Use("PRAGMA user_version");
    isMade = statement.Step() && statement.Integer(0) == SchemaVersion;
  }
  if (!isMade) code = m_database.Execute(Schema);
  if (code == SQLITE_OK) code = m_database.Execute("COMMIT");
  if (code == SQLITE_OK) return TResult::Ready;
  m_database.Execute("ROLLBACK");
  return TResult::Unavailable;
}
