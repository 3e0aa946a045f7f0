#include "chrome/side_bar/favorites_results.h"

#include <algorithm>
#include <QIcon>
#include <QMimeData>
#include <QSet>

#include "chrome/folder_view/folder_kind.h"
#include "config/language.h"
#include "favorites/favorite_drag.h"
#include "ui/shown_address.h"
#include "ui/shown_text.h"

namespace {

constexpr qsizetype LongestText = 300;  // characters of a cell

}  // namespace

TFavoritesResults::TFavoritesResults(const TLanguage &language, const TFolderKind &kind, QObject *parent)
    : QAbstractTableModel(parent), m_language(language), m_kind(kind) {}

void TFavoritesResults::Reset() {
  beginResetModel();
  m_found.clear();
  m_hasNone = false;
  endResetModel();
}

void TFavoritesResults::Add(const TFoundFavorites &found) {
  beginInsertRows({}, int(m_found.size()), int(m_found.size() + found.size()) - 1);
  m_found += found;
  endInsertRows();
}

void TFavoritesResults::Finish() {
  SetHasNone(m_found.isEmpty());
}

void TFavoritesResults::SetHasNone(bool hasNone) {
  if (hasNone == m_hasNone) return;
  hasNone ? beginInsertRows({}, 0, 0) : beginRemoveRows({}, 0, 0);
  m_hasNone = hasNone;
  hasNone ? endInsertRows() : endRemoveRows();
}

void TFavoritesResults::Replace(const TFoundFavorites &found) {
  SetHasNone(false);
  QSet<QString> now;
  for (const TFoundFavorite &one : found) now.insert(one.favorite.path);
  for (qsizetype row = m_found.size() - 1; row >= 0; --row) {
    if (!now.contains(m_found.at(row).favorite.path)) Remove(index(int(row), 0));
  }
  const auto isThere = [](const QString &path) {
    return [&path](const TFoundFavorite &one) { return one.favorite.path == path; };
  };
  QSet<QString> before;
  for (const TFoundFavorite &one : std::as_const(m_found)) before.insert(one.favorite.path);
  for (qsizetype row = 0; row < found.size(); ++row) {
    const TFoundFavorite &one = found.at(row);
    if (!before.contains(one.favorite.path)) {
      beginInsertRows({}, int(row), int(row));
      m_found.insert(row, one);
      endInsertRows();
      continue;
    }
    const auto place = std::find_if(m_found.cbegin() + row, m_found.cend(), isThere(one.favorite.path));
    const qsizetype from = place - m_found.cbegin();
    if (from != row) {
      beginMoveRows({}, int(from), int(from), {}, int(row));
      m_found.move(from, row);
      endMoveRows();
    }
    if (m_found.at(row).address == one.address) continue;
    m_found[row].address = one.address;
    Q_EMIT dataChanged(index(int(row), 0), index(int(row), ColumnCount - 1));
  }
  Finish();
}

void TFavoritesResults::Remove(const QModelIndex &index) {
  beginRemoveRows({}, index.row(), index.row());
  m_found.removeAt(index.row());
  endRemoveRows();
}

const TFoundFavorite *TFavoritesResults::At(const QModelIndex &index) const {
  return index.isValid() && index.row() < m_found.size() ? &m_found.at(index.row()) : nullptr;
}

int TFavoritesResults::rowCount(const QModelIndex &parent) const {
  return parent.isValid() ? 0 : int(m_found.size()) + (m_hasNone ? 1 : 0);
}

int TFavoritesResults::columnCount(const QModelIndex &parent) const {
  return parent.isValid() ? 0 : ColumnCount;
}

QVariant TFavoritesResults::data(const QModelIndex &index, int role) const {
  const TFoundFavorite *one = At(index);
  if (one == nullptr) {
    const bool isText = m_hasNone && index.row() == 0 && index.column() == Name && role == Qt::DisplayRole;
    return isText ? m_language.Global("NoItems") : QVariant();
  }
  if (role == Qt::ToolTipRole) return PlainTip(one->favorite.caption + u'\n' + ShownAddress(one->address));
  if (role == Qt::DecorationRole && index.column() == Name) {
    const QIcon icon = m_kind.IconOf(one->address);
    return icon.isNull() ? m_kind.FileIcon() : icon;
  }
  if (role != Qt::DisplayRole) return {};
  return index.column() == Name ? OneLine(Shortened(one->favorite.caption, LongestText))
                                : LeftToRight(Shortened(ShownAddress(one->address), LongestText));
}

QVariant TFavoritesResults::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return section == Name ? m_language.Text("FAVORITES_PAGE", "NameColumn")
                         : m_language.Text("FAVORITES_PAGE", "AddressColumn");
}

Qt::ItemFlags TFavoritesResults::flags(const QModelIndex &index) const {
  if (At(index) == nullptr) return Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
  return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemNeverHasChildren;
}

QMimeData *TFavoritesResults::mimeData(const QModelIndexList &indexes) const {
  QStringList paths;
  QStringList addresses;
  for (const QModelIndex &index : indexes) {
    const TFoundFavorite *one = At(index);
    if (one == nullptr || index.column() != Name) continue;
    paths.append(one->favorite.path);
    if (!one->address.isEmpty()) addresses.append(one->address);
  }
  QMimeData *data = FavoriteDrag::DataOf(paths);
  if (!addresses.isEmpty()) data->setText(addresses.join(u'\n'));
  return data;
}

Qt::DropActions TFavoritesResults::supportedDragActions() const {
  // Nothing is taken away here; the places that favorites have in this program move them all the same.
  return Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
}
