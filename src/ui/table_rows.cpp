#include "ui/table_rows.h"

#include <algorithm>

namespace {

constexpr int LongestShown = 500;  // characters; laying out an address of 100 kB for every paint takes for ever

}  // namespace

void TTableRows::SetCells(const QStringList &cells) {
  beginResetModel();
  m_cells = cells;
  endResetModel();
}

void TTableRows::Append(const QStringList &row) {
  beginInsertRows({}, Count(), Count());
  m_cells.append(row);
  endInsertRows();
}

void TTableRows::Replace(int row, const QStringList &texts) {
  std::ranges::copy(texts, m_cells.begin() + First(row));
  Q_EMIT dataChanged(index(row, 0), index(row, int(m_headers.size()) - 1));
}

void TTableRows::Remove(int row) {
  beginRemoveRows({}, row, row);
  m_cells.remove(First(row), m_headers.size());
  endRemoveRows();
}

void TTableRows::Move(int row, int by) {
  const int to = row + by;
  if (to < 0 || to >= Count()) return;
  // Where rows move down, the model counts the place before the row moves.
  beginMoveRows({}, row, row, {}, by > 0 ? to + 1 : to);
  std::swap_ranges(m_cells.begin() + First(row), m_cells.begin() + First(row + 1), m_cells.begin() + First(to));
  endMoveRows();
}

int TTableRows::rowCount(const QModelIndex &parent) const {
  return parent.isValid() ? 0 : Count();
}

int TTableRows::columnCount(const QModelIndex &parent) const {
  return parent.isValid() ? 0 : int(m_headers.size());
}

QVariant TTableRows::data(const QModelIndex &index, int role) const {
  if (!index.isValid() || role != Qt::DisplayRole) return {};
  return m_cells.at(First(index.row()) + index.column()).left(LongestShown);
}

QVariant TTableRows::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return m_headers.value(section);
}
