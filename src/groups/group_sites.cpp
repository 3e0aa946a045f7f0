#include "groups/group_sites.h"

#include "groups/halvex_group.h"

namespace {

constexpr QLatin1String Blank("BLANK");
constexpr int LongestShown = 500;  // characters; laying out an address of 100 kB for every paint takes for ever

}  // namespace

TGroupSites::TGroupSites(const QStringList &headers, QObject *parent)
    : QAbstractTableModel(parent), m_headers(headers) {}

void TGroupSites::Read(const THalvexGroup &group) {
  beginResetModel();
  m_sites.clear();
  m_sites.reserve(group.Count());
  for (int line = 0; line < group.Count(); ++line) {
    TGroupSite site{group.NameAt(line), group.ValueAt(line)};
    // Here any spelling of "blank" means no name, and when a group is opened only the lower-case one does: meant so.
    if (site.name.left(Blank.size()).toUpper() == Blank) site.name.clear();
    site.locked = site.location.startsWith(QLatin1Char('*'));
    if (site.locked) site.location.remove(0, 1);
    m_sites.append(site);
  }
  endResetModel();
}

void TGroupSites::Write(THalvexGroup &group) const {
  group.Lines().clear();
  for (const TGroupSite &site : m_sites) group.AddEntry(site.name, site.location, site.locked);
}

void TGroupSites::Append(const TGroupSite &site) {
  beginInsertRows({}, Count(), Count());
  m_sites.append(site);
  endInsertRows();
}

void TGroupSites::Replace(int row, const TGroupSite &site) {
  m_sites[row] = site;
  Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1));
}

void TGroupSites::Remove(int row) {
  beginRemoveRows({}, row, row);
  m_sites.removeAt(row);
  endRemoveRows();
}

void TGroupSites::Move(int row, int by) {
  const int to = row + by;
  if (to < 0 || to >= Count()) return;
  // Where rows move down, the model counts the place before the row moves.
  beginMoveRows({}, row, row, {}, by > 0 ? to + 1 : to);
  m_sites.move(row, to);
  endMoveRows();
}

int TGroupSites::rowCount(const QModelIndex &parent) const {
  return parent.isValid() ? 0 : Count();
}

int TGroupSites::columnCount(const QModelIndex &parent) const {
  return parent.isValid() ? 0 : ColumnCount;
}

QVariant TGroupSites::data(const QModelIndex &index, int role) const {
  if (!index.isValid() || role != Qt::DisplayRole) return {};
  const TGroupSite &site = m_sites.at(index.row());
  switch (index.column()) {
    case NameColumn:
      return site.name.left(LongestShown);
    case LocationColumn:
      return site.location.left(LongestShown);
    default:
      return site.locked ? QStringLiteral("X") : QString();
  }
}

QVariant TGroupSites::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return m_headers.value(section);
}
