#pragma once

#include <QStyledItemDelegate>

// A row that offers a page: its icon, its title, and after it, more softly, its address. What was typed stands out in
// both; what is too long ends in an ellipsis. The address takes at least two fifths where it needs them.
class TSuggestionDelegate final : public QStyledItemDelegate {
  Q_OBJECT

 public:
  // Of an item's data; its display text is the address.
  enum TRole { TitleRole = Qt::UserRole + 2 };

  using QStyledItemDelegate::QStyledItemDelegate;

  // The words that stand out, as VisitWords::Query has them.
  void SetQuery(const QStringList &query) { m_query = query; }

  void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
  [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

 private:
  QStringList m_query;
};
