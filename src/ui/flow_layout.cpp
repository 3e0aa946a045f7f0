#include "ui/flow_layout.h"

#include <algorithm>
#include <QStyle>
#include <QWidget>

TFlowLayout::TFlowLayout(int distance, bool atEnd) : m_distance(distance), m_atEnd(atEnd) {}

TFlowLayout::~TFlowLayout() {
  for (QLayoutItem *item : m_items) delete item;
}

void TFlowLayout::addItem(QLayoutItem *item) {
  m_items.push_back(item);
}

QLayoutItem *TFlowLayout::itemAt(int index) const {
  return index >= 0 && index < count() ? m_items[size_t(index)] : nullptr;
}

QLayoutItem *TFlowLayout::takeAt(int index) {
  QLayoutItem *item = itemAt(index);
  if (item != nullptr) m_items.erase(m_items.begin() + index);
  return item;
}

QSize TFlowLayout::sizeHint() const {
  QSize size(-m_distance, 0);
  for (const QLayoutItem *item : m_items) {
    if (item->isEmpty()) continue;
    const QSize wanted = item->sizeHint();
    size = QSize(size.width() + m_distance + wanted.width(), std::max(size.height(), wanted.height()));
  }
  return size.expandedTo(QSize(0, 0));
}

QSize TFlowLayout::minimumSize() const {
  QSize size;
  for (const QLayoutItem *item : m_items) size = size.expandedTo(item->minimumSize());
  return size;
}

int TFlowLayout::heightForWidth(int width) const {
  return Arrange(QRect(0, 0, width, 0), false);
}

void TFlowLayout::setGeometry(const QRect &place) {
  QLayout::setGeometry(place);
  Arrange(place, true);
}

int TFlowLayout::Arrange(const QRect &place, bool moves) const {
  const Qt::LayoutDirection direction = parentWidget() != nullptr ? parentWidget()->layoutDirection() : Qt::LeftToRight;
  int top = place.top();
  for (auto first = m_items.begin(); first != m_items.end();) {
    // As many as fit, and one in any case.
    int width = -m_distance;
    int height = 0;
    auto end = first;
    for (; end != m_items.end(); ++end) {
      if ((*end)->isEmpty()) continue;
      const QSize wanted = (*end)->sizeHint();
      if (width > 0 && width + m_distance + wanted.width() > place.width()) break;
      width += m_distance + wanted.width();
      height = std::max(height, wanted.height());
    }
    int left = place.left() + (m_atEnd ? std::max(place.width() - width, 0) : 0);
    for (; first != end; ++first) {
      if ((*first)->isEmpty()) continue;
      const QSize size = (*first)->sizeHint().boundedTo(QSize(place.width(), height));
      const QRect own(QPoint(left, top + (height - size.height()) / 2), size);
      if (moves) (*first)->setGeometry(QStyle::visualRect(direction, place, own));
      left += size.width() + m_distance;
    }
    top += height + (end != m_items.end() ? m_distance : 0);
  }
  return top - place.top();
}
