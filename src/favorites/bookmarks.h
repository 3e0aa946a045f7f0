#pragma once

#include <QList>
#include <QString>

// A tree of bookmarks as they travel between browsers, in the order of a document: what is in a folder follows it, one
// level deeper. No nesting can exhaust anything that way.
struct TBookmark {
  enum class TKind { Folder, Page };
  // The folders that each browser has from the beginning, and names in its own way.
  enum class TRoot { None, Bar, Menu, Other, Mobile };

  TKind kind = TKind::Page;
  int depth = 0;  // from 0, never more than one beyond that of the entry before
  QString name{};
  QString address{};  // of pages; in one line, see ShortcutFile
  qint64 added = 0;   // seconds since 1970; 0 when it is not known
  TRoot root = TRoot::None;

  bool operator==(const TBookmark &) const = default;
};

using TBookmarks = QList<TBookmark>;

// Something that was left out of an import or an export, and why.
struct TSkippedBookmark {
  enum class TReason {
    NoAddress,   // a page without one
    NotAPage,    // an address that means something to one browser only: a stored query
    TooLong,     // an address beyond what a favorite takes
    Separator,   // favorites have none
    TooDeep,     // a folder beyond what file systems take; what is in it was kept, in the folder above
    Refused,     // the disk has refused it
    Unreadable,  // could not be read, or is nothing that holds an address
    Circle,      // a folder that other links have led to already
  };
  TReason reason;
  QString name{};     // shortened to what can be shown
  QString address{};  // the same

  bool operator==(const TSkippedBookmark &) const = default;
};

// What was left out: how many in all, and the first thousand of them.
struct TSkippedBookmarks {
  static constexpr qsizetype MostKept = 1000;

  qint64 count = 0;
  QList<TSkippedBookmark> first{};

  void Add(TSkippedBookmark::TReason reason, const QString &name, const QString &address = {});
};

// Gathers what a source has, as it comes.
class TBookmarkList final {
 public:
  // `skipped` gets what is left out, when it is given.
  explicit TBookmarkList(TSkippedBookmarks *skipped) : m_skipped(skipped) {}

  void AddFolder(int depth, const QString &name, qint64 added, TBookmark::TRoot root);
  // Makes one line of the address; leaves out what is none.
  void AddPage(int depth, const QString &name, const QString &address, qint64 added);
  void Skip(TSkippedBookmark::TReason reason, const QString &name = {}, const QString &address = {});
  // Takes the last folder away again when nothing was added to it.
  void DropIfEmpty(qsizetype folder);
  [[nodiscard]] const TBookmarks &All() const { return m_bookmarks; }

 private:
  TBookmarks m_bookmarks;
  TSkippedBookmarks *m_skipped;
};
