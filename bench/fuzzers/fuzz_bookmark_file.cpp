// Input: a bookmark file, HTML or JSON.

#include "favorites/bookmark_file.h"
#include "favorites/bookmark_json.h"
#include "favorites/shortcut_file.h"
#include "require.h"

namespace {

void RequireTree(const TBookmarks &bookmarks) {
  int deepest = 0;
  for (const TBookmark &bookmark : bookmarks) {
    const bool isFolder = bookmark.kind == TBookmark::TKind::Folder;
    REQUIRE(bookmark.depth >= 0 && bookmark.depth <= deepest);
    deepest = bookmark.depth + (isFolder ? 1 : 0);
    REQUIRE(isFolder == bookmark.address.isEmpty());
    REQUIRE(ShortcutFile::OneLine(bookmark.address) == bookmark.address);
    REQUIRE(bookmark.name.simplified() == bookmark.name);
  }
}

// All but which folder it is, for which the file has a word for one only, and times before 1970.
TBookmarks Kept(TBookmarks bookmarks) {
  for (TBookmark &bookmark : bookmarks) {
    if (bookmark.root != TBookmark::TRoot::Bar) bookmark.root = TBookmark::TRoot::None;
    bookmark.added = qMax<qint64>(0, bookmark.added);
  }
  return bookmarks;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size) {
  const QByteArray input = Fuzz::Input(data, size);
  TSkippedBookmarks skipped;
  const TBookmarks bookmarks = BookmarkFile::Read(input, &skipped);
  RequireTree(bookmarks);
  REQUIRE(skipped.first.size() <= skipped.count);
  REQUIRE(BookmarkFile::Read(BookmarkFile::Write(bookmarks, QString())) == Kept(bookmarks));
  if (const auto others = BookmarkJson::Read(input, &skipped)) {
    RequireTree(*others);
    REQUIRE(BookmarkFile::Read(BookmarkFile::Write(*others, QString())) == Kept(*others));
  }
  return 0;
}
