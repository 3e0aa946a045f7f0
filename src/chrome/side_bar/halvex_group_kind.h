#pragma once

#include <QIcon>

#include "chrome/folder_view/file_parts.h"
#include "chrome/folder_view/folder_kind.h"

class TLanguage;
class TPageGroups;
class TTabStrip;

// The pages of a group, as rows below it. Only so many are shown as would be opened.
class TGroupPageRows final : public TFileParts {
 public:
  // All must outlive this object.
  TGroupPageRows(const TLanguage &language, TPageGroups &groups, TTabStrip &tabs);

  [[nodiscard]] TRead Reader() const override;
  [[nodiscard]] QIcon IconOf(const TFilePart &page) const override;
  [[nodiscard]] QString NoteOf(const TFilePart &page) const override;
  // In the tab in front by the setting for favorites. A tab of its own gets the page's name and lock, too.
  void Open(const TFilePart &page, TOpenPlace place) override;
  TFilePartsChange Remove(const QList<TFilePartPlace> &pages) override;
  TFilePartsChange Move(const QList<TFilePartPlace> &pages, const TFilePartPlace &before) override;
  [[nodiscard]] QMimeData *DataOf(const QList<TFilePartPlace> &pages) const override;
  [[nodiscard]] bool AreParts(const QMimeData &data) const override;
  // Pages of groups, tabs, links and favorites.
  [[nodiscard]] bool CanTake(const QMimeData &data) const override;
  TFilePartsChange Take(const QMimeData &data, const QString &file, const TFilePartPlace &before,
                        bool isCopied) override;

 private:
  const TLanguage &m_language;
  TPageGroups &m_groups;
  TTabStrip &m_tabs;
  QIcon m_page;
  QIcon m_lockedPage;
};

// Page groups in a tree over their folder.
class THalvexGroupKind final : public TFolderKind {
 public:
  // All must outlive this object.
  THalvexGroupKind(const TLanguage &language, TPageGroups &groups, TTabStrip &tabs);

  [[nodiscard]] QStringList Endings() const override;
  [[nodiscard]] QIcon FileIcon() const override { return m_icon; }
  // As the groups menu does; at any place but the first beside what is open.
  void Open(const TFavorite &file, TOpenPlace place) override;
  // Groups and folders. A link is a page of a group, and nothing in a folder.
  [[nodiscard]] bool CanTake(const QMimeData &data) const override;
  // Groups have a box of their own for that.
  [[nodiscard]] bool IsRenamedInPlace(const TFavorite &favorite) const override;
  [[nodiscard]] TFileParts *Parts() const override { return &m_pages; }

 private:
  TPageGroups &m_groups;
  mutable TGroupPageRows m_pages;
  QIcon m_icon;
};
