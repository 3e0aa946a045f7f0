#include "history/history_schema.h"

#include "history/history_store.h"

// The part of an address between the scheme and the path, user names included.
#define ZV_AUTHORITY                                      \
  "substr(substr(address, instr(address, '://') + 3), 1," \
  "       instr(replace(replace(substr(address, instr(address, '://') + 3), '?', '/'), '#', '/') || '/', '/') - 1)"
// Host and port, in lower case; the scheme with its colon where an address has no host.
#define ZV_SITE                                                                                    \
  "CASE WHEN instr(address, '://') > 0 AND " ZV_AUTHORITY " <> '' THEN lower(substr(" ZV_AUTHORITY \
  ", instr(" ZV_AUTHORITY ", '@') + 1)) ELSE substr(address, 1, instr(address, ':')) END"

#define ZV_REMOVED_TRIGGER                                \
  "CREATE TRIGGER visits_removed AFTER DELETE ON visits " \
  "BEGIN INSERT INTO search(search, rowid, words) VALUES('delete', old.id, old.words); END;"

namespace HistorySchema {

namespace {

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
  )" ZV_REMOVED_TRIGGER R"(
  CREATE TRIGGER visits_changed AFTER UPDATE OF words ON visits WHEN old.words <> new.words BEGIN
    INSERT INTO search(search, rowid, words) VALUES('delete', old.id, old.words);
    INSERT INTO search(rowid, words) VALUES(new.id, new.words);
  END;
  PRAGMA user_version = 1;
)";

// The site is worked out when it is asked for, so that a file of millions of pages is brought up to date in a second:
// all that is written is the index.
constexpr const char *Upgrades[] = {
    "ALTER TABLE visits ADD COLUMN site TEXT GENERATED ALWAYS AS (" ZV_SITE
    ") VIRTUAL;"
    "CREATE INDEX visits_by_last ON visits(last DESC);"
    "PRAGMA user_version = 2;",
};

constexpr const char *Queries[] = {
    "SELECT id, address, title, first, last, count, words, site FROM visits INDEXED BY visits_by_last LIMIT 1"};

}  // namespace

const char *const RemoveAll =
    "DROP TRIGGER visits_removed; DELETE FROM visits;"
    "INSERT INTO search(search) VALUES('delete-all');" ZV_REMOVED_TRIGGER;

TVisitedPage PageOf(const TSqliteStatement &row) {
  return {row.Text(0),
          row.Text(1),
          QDateTime::fromMSecsSinceEpoch(row.Integer(2)),
          QDateTime::fromMSecsSinceEpoch(row.Integer(3)),
          row.Integer(4),
          row.Integer(IdColumn)};
}

const TStoreFile::TSchema Schema{2, Tables, Queries, Upgrades};

}  // namespace HistorySchema
