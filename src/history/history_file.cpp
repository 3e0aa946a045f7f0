#include "history/history_file.h"

#include <sqlite3.h>

#include <QFileInfo>

#include "store/private_folder.h"

namespace {

constexpr int BusyTimeout = 2000;  // milliseconds

// `search` holds, for every word, the visits it stands in, and nothing else: what a word stands beside is checked on
// the words of the few pages that are found. The words of a page come last in its row because most readers do not want
// them.
constexpr const char *Tables = R"(
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

constexpr const char *Queries[] = {"SELECT id, address, title, first, last, count, words FROM visits LIMIT 1"};
constexpr StoreFile::TSchema Schema{1, Tables, Queries};

}  // namespace

StoreFile::TState THistoryFile::Ensure(bool mayCreate) {
  if (m_database.IsOpen()) {
    if (m_database.DamageSeen()) return StoreFile::TState::Damaged;
    // The file may have been set aside, by another process for one.
    if (StoreFile::IdentityOf(m_filePath) == m_identity) return StoreFile::TState::Ready;
    m_database.Close();
  }
  const StoreFile::TState state = Open(mayCreate);
  if (state != StoreFile::TState::Ready) m_database.Close();
  return state;
}

StoreFile::TState THistoryFile::Open(bool mayCreate) {
  const QFileInfo info(m_filePath);
  if (!info.exists() && (!mayCreate || !MakePrivateFolder(info.absolutePath()))) {
    return StoreFile::TState::Unavailable;
  }
  m_identity = StoreFile::IdentityOf(m_filePath);
  if (StoreFile::IsCutShort(m_filePath)) return StoreFile::TState::Damaged;
  const int code = m_database.Open(m_filePath, TSqliteConnection::TMode::ReadWrite);
  if (code != SQLITE_OK) return StoreFile::StateOf(code);
  m_identity = StoreFile::IdentityOf(m_filePath);
  m_database.SetBusyTimeout(BusyTimeout);
  return StoreFile::CheckSchema(m_database, Schema, true);
}
