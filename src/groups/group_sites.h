#pragma once

#include <QAbstractTableModel>
#include <QList>
#include <QString>
#include <QStringList>

class THalvexGroup;

// One page of a group as the editor shows it.
struct TGroupSite {
  QString name;  // empty for a page without a name of its own
  QString location;
  bool locked = false;
};

// The pages of a group as a table: name, location, and "X" for a page that is to be locked. A plain table, so that a
// group of a million lines opens.
class TGroupSites final : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum TColumn { NameColumn, LocationColumn, LockedColumn, ColumnCount };

  explicit TGroupSites(const QStringList &headers, QObject *parent = nullptr);

  void Read(const THalvexGroup &group);
  // Replaces the group's lines.
  void Write(THalvexGroup &group) const;

  [[nodiscard]] int Count() const { return int(m_sites.size()); }
  [[nodiscard]] const TGroupSite &At(int row) const { return m_sites.at(row); }
  void Append(const TGroupSite &site);
  void Replace(int row, const TGroupSite &site);
  void Remove(int row);
  // By one place up (-1) or down (1); at the ends nothing happens.
  void Move(int row, int by);

  [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  QStringList m_headers;
  QList<TGroupSite> m_sites;
};
