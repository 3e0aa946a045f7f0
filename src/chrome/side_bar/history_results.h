#pragma once

#include <QAbstractTableModel>

#include "history/url_history.h"

class TLanguage;

// What a search of the history has found, one row each; a row at the end says so when it has found
// nothing, or could not read all.
class THistoryResults final : public QAbstractTableModel {
  Q_OBJECT

 public:
  // In the order of TUrlHistory's keys.
  enum TColumn { Title, Address, LastVisited, Visits, ColumnCount };

  // Shows what `history` finds from now on; both must outlive this object.
  THistoryResults(const TLanguage &language, TUrlHistory &history, QObject *parent = nullptr);

  // A search is about to begin, or what was found is gone.
  void Reset();
  // Null for a row that is no page.
  [[nodiscard]] const TUrlHistoryEntry *EntryAt(const QModelIndex &index) const;
  // Takes it out of the history, too.
  void RemoveEntry(const QModelIndex &index);

  [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  // Of many results it comes a moment later: they are sorted on a thread.
  void sort(int column, Qt::SortOrder order) override;

 private:
  void SortAside();
  void Arrange(const QList<TUrlHistoryEntry> &sorted);
  void Take(qsizetype count);
  void Finish();

  const TLanguage &m_language;
  TUrlHistory &m_history;
  qsizetype m_rows = 0;
  QString m_note;  // in the row at the end; empty where there is none
  int m_sortColumn = -1;
  Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
  int m_state = 0;           // another number with every change of the rows or of their order
  bool m_isSorting = false;  // on the thread
};
