#pragma once

#include "store/store_file.h"

// The history's file, as its writer and its readers know it.
namespace HistorySchema {

extern const TStoreFile::TSchema Schema;
// Empties it at once, inside a transaction, instead of page by page and word by word, which takes a minute for a
// million pages.
extern const char *const RemoveAll;

}  // namespace HistorySchema
