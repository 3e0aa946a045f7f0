#include "chrome/side_bar/halvex_group_kind.h"

#include <algorithm>
#include <QMap>
#include <QMimeData>
#include <QUrl>

#include "browser/tabs/browser_tab.h"
#include "browser/tabs/tab_strip.h"
#include "chrome/favorites/page_shortcut.h"
#include "chrome/folder_view/dropped_links.h"
#include "config/language.h"
#include "config/settings.h"
#include "favorites/favorite_drag.h"
#include "favorites/favorites_folder.h"
#include "groups/group_drag.h"
#include "groups/halvex_group.h"
#include "groups/page_groups.h"
#include "platform/folder_entries.h"
#include "ui/shown_address.h"
#include "ui/shown_text.h"

namespace {

constexpr qsizetype LongestShown = 300;  // characters of an address in a row

QList<TFilePart> ReadPages(const QString &file) {
  QList<TFilePart> pages;
  for (const QString &line : GroupPages::LinesIn(file).mid(0, TPageGroups::MostPages)) {
    const TGroupPage page = GroupPages::PageOf(line);
    const QString address = ShownAddress(Shortened(page.address, LongestShown));
    const QString caption = page.name.isEmpty() ? address : page.name + QStringLiteral(" – ") + address;
    pages.append({.caption = caption, .address = page.address, .line = line, .isLocked = page.isLocked});
  }
  return pages;
}

TGroupLine LineOf(const TFilePartPlace &page) {
  return {page.position, page.part.line};
}

TFilePartsChange Told(const TGroupChange &change) {
  TFilePartsChange told{.error = change.error, .file = change.path, .lines = change.lines};
  if (!change.files.isEmpty()) told.undo = [change] { return GroupPages::Undo(change); };
  return told;
}

// By the groups that they are in; each goes on where the one before has failed.
template <typename TDo>
TGroupChange ForEachGroup(const QMap<QString, QList<TGroupLine>> &pages, TDo change) {
  TGroupChange all;
  for (auto one = pages.cbegin(); one != pages.cend(); ++one) {
    const TGroupChange done = change(one.key(), *one);
    all.files += done.files;
    all.lines += done.lines;
    if (all.path.isEmpty()) all.path = done.path;
    if (all.error.isEmpty()) all.error = done.error;
  }
  return all;
}

bool IsGroupOrFolder(const QString &path) {
  return IsHalvexGroupFile(path) || FolderEntries::IsFolder(path);
}

// What the files and links in it lead to.
QStringList AddressesIn(const QMimeData &data) {
  QStringList addresses;
  const auto addFile = [&addresses](const QString &path) {
    if (IsGroupOrFolder(path)) return;
    const QString target = FavoritesFolder::Target({.path = path});
    addresses.append(target == path ? QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded) : target);
  };
  if (FavoriteDrag::AreFavorites(data)) {
    for (const QString &path : FavoriteDrag::PathsIn(data)) addFile(path);
    return addresses;
  }
  for (const TDroppedLink &link : DroppedLinks(data)) {
    const QUrl url(link.address);
    if (url.isLocalFile()) {
      addFile(url.toLocalFile());
    } else {
      addresses.append(link.address);
    }
  }
  return addresses;
}

// The same question without a look into any file.
bool HasAddresses(const QMimeData &data) {
  const auto leadsSomewhere = [](const QString &path) { return !IsGroupOrFolder(path); };
  if (FavoriteDrag::AreFavorites(data)) return std::ranges::any_of(FavoriteDrag::PathsIn(data), leadsSomewhere);
  return std::ranges::any_of(DroppedLinks(data), [&](const TDroppedLink &link) {
    const QUrl url(link.address);
    return !url.isLocalFile() || leadsSomewhere(url.toLocalFile());
  });
}

}  // namespace

// ---- pages ----

TGroupPageRows::TGroupPageRows(const TLanguage &language, TPageGroups &groups, TTabStrip &tabs)
    : m_language(language),
      m_groups(groups),
      m_tabs(tabs),
      m_page(QStringLiteral(":/icons/page.svg")),
      m_lockedPage(QStringLiteral(":/icons/tab_locked.svg")) {}

TFileParts::TRead TGroupPageRows::Reader() const {
  return &ReadPages;
}

QIcon TGroupPageRows::IconOf(const TFilePart &page) const {
  return page.isLocked ? m_lockedPage : m_page;
}

QString TGroupPageRows::NoteOf(const TFilePart &page) const {
  return page.isLocked ? m_language.Text("HalvexGroups", "LockedColumn") : QString();
}

void TGroupPageRows::Open(const TFilePart &page, TOpenPlace place) {
  TBrowserTab *tab = m_tabs.GetActivePage();
  const bool isNew = place == TOpenPlace::NewTab || m_tabs.Environment().settings.Get(Setting::FavoritesNewWin);
  if (place == TOpenPlace::BackgroundTab) {
    m_groups.OpenPage(m_tabs.NewBackgroundTab(), page.line);
  } else if (isNew || tab == nullptr) {
    m_groups.OpenPage(m_tabs.NewTab(), page.line);
  } else {
    // A tab that the user has already keeps its own name and lock.
    tab->Navigate(page.address);
  }
}

TFilePartsChange TGroupPageRows::Remove(const QList<TFilePartPlace> &pages) {
  QMap<QString, QList<TGroupLine>> byGroup;
  for (const TFilePartPlace &page : pages) byGroup[page.file].append(LineOf(page));
  return Told(ForEachGroup(byGroup, &GroupPages::Remove));
}

TFilePartsChange TGroupPageRows::Move(const QList<TFilePartPlace> &pages, const TFilePartPlace &before) {
  QList<TGroupLine> lines;
  for (const TFilePartPlace &page : pages) lines.append(LineOf(page));
  const QString file = pages.isEmpty() ? QString() : pages.first().file;
  return Told(GroupPages::Move(file, lines, file, LineOf(before)));
}

QMimeData *TGroupPageRows::DataOf(const QList<TFilePartPlace> &pages) const {
  auto *data = new QMimeData;
  QList<GroupDrag::TPage> dragged;
  for (const TFilePartPlace &page : pages) dragged.append({page.file, LineOf(page)});
  GroupDrag::AddTo(*data, dragged);
  if (pages.size() == 1) {
    const TGroupPage page = GroupPages::PageOf(pages.first().part.line);
    PageShortcut::AddTitled(*data, page.name, page.address);
  }
  return data;
}

bool TGroupPageRows::AreParts(const QMimeData &data) const {
  const QList<GroupDrag::TPage> pages = GroupDrag::PagesIn(data);
  return std::ranges::any_of(pages, [](const GroupDrag::TPage &page) { return !page.file.isEmpty(); });
}

bool TGroupPageRows::CanTake(const QMimeData &data) const {
  return GroupDrag::HasPages(data) || HasAddresses(data);
}

TFilePartsChange TGroupPageRows::Take(const QMimeData &data, const QString &file, const TFilePartPlace &before,
                                      bool isCopied) {
  QList<TGroupPage> added;
  QMap<QString, QList<TGroupLine>> moved;
  const QList<GroupDrag::TPage> pages = GroupDrag::PagesIn(data);
  for (const GroupDrag::TPage &page : pages) {
    if (isCopied || page.file.isEmpty()) {
      added.append(GroupPages::PageOf(page.line.line));
    } else {
      moved[page.file].append(page.line);
    }
  }
  if (!moved.isEmpty()) {
    return Told(ForEachGroup(moved, [&](const QString &from, const QList<TGroupLine> &lines) {
      return GroupPages::Move(from, lines, file, LineOf(before));
    }));
  }
  // A link has no name of its own, like a tab that was given none.
  if (pages.isEmpty()) {
    for (const QString &address : AddressesIn(data)) added.append({.address = address});
  }
  return Told(GroupPages::Insert(file, LineOf(before), added));
}

// ---- groups ----

THalvexGroupKind::THalvexGroupKind(const TLanguage &language, TPageGroups &groups, TTabStrip &tabs)
    : m_groups(groups), m_pages(language, groups, tabs), m_icon(QStringLiteral(":/icons/groups.svg")) {}

QStringList THalvexGroupKind::Endings() const {
  return {QString::fromLatin1(THalvexGroup::Extension)};
}

void THalvexGroupKind::Open(const TFavorite &file, TOpenPlace place) {
  if (place == TOpenPlace::BySetting) {
    m_groups.HalvexGroupClick(file.path);
  } else {
    m_groups.OpenHalvexGroup(file.path, false);
  }
}

bool THalvexGroupKind::CanTake(const QMimeData &data) const {
  // Pages may lead to folders and files, which are not meant then.
  if (GroupDrag::HasPages(data)) return false;
  const QStringList paths = FavoriteDrag::PathsIn(data);
  return !paths.isEmpty() && std::ranges::all_of(paths, &IsGroupOrFolder);
}

bool THalvexGroupKind::IsRenamedInPlace(const TFavorite &favorite) const {
  return favorite.isFolder;
}
