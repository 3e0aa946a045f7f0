#pragma once

#include <QAbstractTableModel>

#include "favorites/favorites_finder.h"

class TFolderKind;
class TLanguage;

// What a search of the favorites has found, one row each; a single row says so when it has found nothing.
class TFavoritesResults final : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum TColumn { Name, Address, ColumnCount };

  // Both must outlive this object; `kind` has the pictures.
  TFavoritesResults(const TLanguage &language, const TFolderKind &kind, QObject *parent = nullptr);

  // Nothing is there, not even the row that says so.
  void Reset();
  void Add(const TFoundFavorites &found);
  // All has been added.
  void Finish();
  // All that the same search finds now. What is still there keeps its index.
  void Replace(const TFoundFavorites &found);
  void Remove(const QModelIndex &index);
  [[nodiscard]] qsizetype Count() const { return m_found.size(); }
  // Null for a row that is no favorite.
  [[nodiscard]] const TFoundFavorite *At(const QModelIndex &index) const;

  [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;
  // Drags carry the files, and the addresses in them as text.
  [[nodiscard]] QMimeData *mimeData(const QModelIndexList &indexes) const override;
  [[nodiscard]] Qt::DropActions supportedDragActions() const override;

 private:
  void SetHasNone(bool hasNone);

  const TLanguage &m_language;
  const TFolderKind &m_kind;
  TFoundFavorites m_found;
  bool m_hasNone = false;  // the one row that says so
};
