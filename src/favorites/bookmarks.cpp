#include "favorites/bookmarks.h"

#include "favorites/shortcut_file.h"

namespace {

constexpr qsizetype LongestName = 1000;  // characters
constexpr qsizetype LongestShown = 200;

QString Shortened(const QString &name) {
  return name.left(LongestName).simplified();
}

}  // namespace

void TSkippedBookmarks::Add(TSkippedBookmark::TReason reason, const QString &name, const QString &address) {
  ++count;
  if (first.size() >= MostKept) return;
  first.append({reason, name.left(LongestShown).simplified(), address.left(LongestShown).simplified()});
}

void TBookmarkList::AddFolder(int depth, const QString &name, qint64 added, TBookmark::TRoot root) {
  m_bookmarks.append({TBookmark::TKind::Folder, depth, Shortened(name), {}, added, root});
}

void TBookmarkList::AddPage(int depth, const QString &name, const QString &address, qint64 added) {
  using TReason = TSkippedBookmark::TReason;
  const QString line = ShortcutFile::OneLine(address);
  if (line.isEmpty()) return Skip(TReason::NoAddress, name);
  if (line.startsWith(QLatin1String("place:"), Qt::CaseInsensitive)) return Skip(TReason::NotAPage, name, line);
  if (line.toUtf8().size() > ShortcutFile::LongestAddress) return Skip(TReason::TooLong, name, line);
  m_bookmarks.append({TBookmark::TKind::Page, depth, Shortened(name), line, added, TBookmark::TRoot::None});
}

void TBookmarkList::Skip(TSkippedBookmark::TReason reason, const QString &name, const QString &address) {
  if (m_skipped != nullptr) m_skipped->Add(reason, name, address);
}

void TBookmarkList::DropIfEmpty(qsizetype folder) {
  if (folder == m_bookmarks.size() - 1) m_bookmarks.removeLast();
}
