#pragma once

#include <QAbstractTableModel>
#include <QStringList>

// Rows of texts under headers. A plain table, so that a list of a million rows opens.
class TTableRows final : public QAbstractTableModel {
  Q_OBJECT

 public:
  explicit TTableRows(const QStringList &headers, QObject *parent = nullptr)
      : QAbstractTableModel(parent), m_headers(headers) {}

  // Replaces all rows; `cells` are given row by row.
  void SetCells(const QStringList &cells);

  [[nodiscard]] int Count() const { return int(m_cells.size() / m_headers.size()); }
  [[nodiscard]] QStringList At(int row) const { return m_cells.mid(First(row), m_headers.size()); }
  void Append(const QStringList &row);
  void Replace(int row, const QStringList &texts);
  void Remove(int row);
  // By one place up (-1) or down (1); at the ends nothing happens.
  void Move(int row, int by);

  [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
  // The beginning of a long text; At gives it whole.
  [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  [[nodiscard]] qsizetype First(int row) const { return row * m_headers.size(); }

  const QStringList m_headers;
  QStringList m_cells;
};
