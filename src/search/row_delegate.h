#pragma once

#include <QStyledItemDelegate>

// Rows that can be hit by everybody, however small the font is.
class TRowDelegate final : public QStyledItemDelegate {
  Q_OBJECT

 public:
  static constexpr int LeastHeight = 28;  // pixels

  using QStyledItemDelegate::QStyledItemDelegate;

  [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override {
    return QStyledItemDelegate::sizeHint(option, index).expandedTo(QSize(0, LeastHeight));
  }
};
