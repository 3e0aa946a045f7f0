#include "chrome/side_bar/history_results.h"

#include <QCoreApplication>
#include <QHash>
#include <QLocale>
#include <QPointer>
#include <QThreadPool>
#include <utility>

#include "config/language.h"
#include "ui/shown_address.h"
#include "ui/shown_text.h"

namespace {

constexpr qsizetype MostSortedAtOnce = 5'000;  // takes some 5 ms
constexpr qsizetype LongestText = 300;         // characters of a cell

}  // namespace

THistoryResults::THistoryResults(const TLanguage &language, TUrlHistory &history, QObject *parent)
    : QAbstractTableModel(parent), m_language(language), m_history(history) {
  connect(&history, &TUrlHistory::Found, this, &THistoryResults::Take);
  connect(&history, &TUrlHistory::Finished, this, &THistoryResults::Finish);
}

void THistoryResults::Reset() {
  beginResetModel();
  m_rows = 0;
  ++m_state;
  m_note.clear();
  endResetModel();
}

const TUrlHistoryEntry *THistoryResults::EntryAt(const QModelIndex &index) const {
  return index.isValid() && index.row() < m_rows ? &m_history.Entries().at(index.row()) : nullptr;
}

void THistoryResults::RemoveEntry(const QModelIndex &index) {
  const TUrlHistoryEntry *entry = EntryAt(index);
  if (entry == nullptr) return;
  const QString address = entry->address;
  beginRemoveRows({}, index.row(), index.row());
  m_history.Remove(address);
  --m_rows;
  ++m_state;
  endRemoveRows();
}

int THistoryResults::rowCount(const QModelIndex &parent) const {
  return parent.isValid() ? 0 : int(m_rows) + (m_note.isEmpty() ? 0 : 1);
}

int THistoryResults::columnCount(const QModelIndex &parent) const {
  return parent.isValid() ? 0 : ColumnCount;
}

QVariant THistoryResults::data(const QModelIndex &index, int role) const {
  const TUrlHistoryEntry *entry = EntryAt(index);
  if (entry == nullptr) {
    const bool isText = index.row() == m_rows && index.column() == 0 && role == Qt::DisplayRole;
    return isText ? m_note : QVariant();
  }
  if (role == Qt::ToolTipRole) return PlainTip(entry->title + u'\n' + ShownAddress(entry->address));
  if (role != Qt::DisplayRole) return {};
  switch (index.column()) {
    case Title:
      return OneLine(Shortened(entry->title, LongestText));
    case Address:
      return LeftToRight(Shortened(ShownAddress(entry->address), LongestText));
    case LastVisited:
      return QLocale(m_language.LocaleName()).toString(entry->lastVisited, QLocale::ShortFormat);
    case Visits:
      return QLocale(m_language.LocaleName()).toString(entry->visits);
    default:
      return {};
  }
}

QVariant THistoryResults::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  static constexpr TTextKey Headers[] = {{"SEARCH_ENGINE", "TitleColumn"},
                                         {"SEARCH_ENGINE", "LocationColumn"},
                                         {"HISTORY", "LastVisitColumn"},
                                         {"HISTORY", "VisitsColumn"}};
  return section >= 0 && section < ColumnCount ? m_language.Text(Headers[section]) : QVariant();
}

void THistoryResults::sort(int column, Qt::SortOrder order) {
  m_sortColumn = column;
  m_sortOrder = order;
  ++m_state;
  if (column < 0 || column >= ColumnCount || m_rows == 0) return;
  if (m_rows > MostSortedAtOnce) return SortAside();
  Arrange(TUrlHistory::Sorted(m_history.Entries(), TUrlHistory::TKey(column), order));
}

void THistoryResults::SortAside() {
  // What changes meanwhile is sorted anew.
  if (std::exchange(m_isSorting, true)) return;
  const QPointer<THistoryResults> self(this);
  const auto work = [self, entries = m_history.Entries(), key = TUrlHistory::TKey(m_sortColumn), order = m_sortOrder,
                     state = m_state] {
    const QList<TUrlHistoryEntry> sorted = TUrlHistory::Sorted(entries, key, order);
    const auto end = [self, sorted, state] {
      if (!self) return;
      self->m_isSorting = false;
      state == self->m_state ? self->Arrange(sorted) : self->sort(self->m_sortColumn, self->m_sortOrder);
    };
    QMetaObject::invokeMethod(qApp, end, Qt::QueuedConnection);
  };
  QThreadPool::globalInstance()->start(work);
}

void THistoryResults::Arrange(const QList<TUrlHistoryEntry> &sorted) {
  Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
  const QModelIndexList before = persistentIndexList();
  QHash<QString, int> places;
  for (const QModelIndex &index : before) {
    if (const TUrlHistoryEntry *entry = EntryAt(index)) places.insert(entry->address, -1);
  }
  QStringList addresses;
  for (const QModelIndex &index : before) {
    const TUrlHistoryEntry *entry = EntryAt(index);
    addresses.append(entry != nullptr ? entry->address : QString());
  }
  m_history.SetOrder(sorted);
  for (qsizetype row = 0; row < m_rows && !places.isEmpty(); ++row) {
    const auto place = places.find(m_history.Entries().at(row).address);
    if (place != places.end()) *place = int(row);
  }
  QModelIndexList after;
  for (qsizetype i = 0; i < before.size(); ++i) {
    const int row = places.value(addresses.at(i), -1);
    after.append(row < 0 ? QModelIndex() : index(row, before.at(i).column()));
  }
  changePersistentIndexList(before, after);
  Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

void THistoryResults::Take(qsizetype count) {
  beginInsertRows({}, int(m_rows), int(m_rows + count) - 1);
  m_rows += count;
  ++m_state;
  endInsertRows();
}

void THistoryResults::Finish() {
  const bool hasFailed = m_history.HasFailed();
  if (m_note.isEmpty() && (m_rows == 0 || hasFailed)) {
    beginInsertRows({}, int(m_rows), int(m_rows));
    m_note = hasFailed ? m_language.Text("HISTORY", "NotRead") : m_language.Global("NoItems");
    endInsertRows();
  }
  // What has come meanwhile stands at the end.
  sort(m_sortColumn, m_sortOrder);
}
