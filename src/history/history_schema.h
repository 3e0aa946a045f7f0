#pragma once

#include "store/store_file.h"

class TSqliteStatement;
struct TVisitedPage;

// What a query for pages begins with.
#define ZV_PAGE_COLUMNS "address, title, first, last, count, id"

// The history's file, as its writer and its readers know it.
namespace HistorySchema {

extern const TStoreFile::TSchema Schema;
// Empties it at once, inside a transaction, instead of page by page and word by word, which takes a minute for a
// million pages.
extern const char *const RemoveAll;
// Of a row that begins with ZV_PAGE_COLUMNS.
[[nodiscard]] TVisitedPage PageOf(const TSqliteStatement &row);
// Where the page's id stands in it, and what the query asks for behind these columns.
enum TColumn { IdColumn = 5, NextColumn };

}  // namespace HistorySchema
