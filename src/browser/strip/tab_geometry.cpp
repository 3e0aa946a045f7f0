#include "browser/strip/tab_geometry.h"

#include <algorithm>
#include <QStyle>
#include <utility>
#include <vector>

namespace {
constexpr double kGreatestShare = 1.0 / 3;  // of the control's height, so that 500 tabs leave room for the page
}

bool TTabGeometry::SetControl(const QSize &control) {
  const int maxRows = std::max(1, static_cast<int>(control.height() * kGreatestShare) / metrics.rowHeight);
  const bool sameExtent = std::exchange(m_extent, control.width()) == m_extent;
  const bool sameRows = std::exchange(m_maxRows, maxRows) == m_maxRows;
  return !sameExtent || !sameRows;
}

QRect TTabGeometry::LayOut(const TTabList &tabs, int barWidth) {
  TTabLayout::TSpace space;
  space.extent = std::max(1, m_extent - endReserve);
  space.narrowest = metrics.narrowest;
  space.maxRows = m_maxRows;
  space.multiple = multiple;
  space.lineReserve = 2 * metrics.rowHeight;
  space.rowsReserve = barWidth;
  std::vector<int> wishes(tabs.Count());
  for (int i = 0; i < tabs.Count(); ++i) wishes[i] = tabs.At(i)->wish;
  m_layout = TTabLayout(wishes, space);
  // Only what comes to lie elsewhere is painted anew. A strip of another size is painted whole anyway, and so is what
  // lies below scroll buttons that come or go.
  QRect changed;
  for (int i = 0; i < tabs.Count(); ++i) {
    TTab *tab = tabs.At(i);
    if (tab->place == m_layout.Place(i)) continue;
    changed |= ShownPartOf(tab);
    tab->place = m_layout.Place(i);
    changed |= ShownPartOf(tab);
  }
  return changed;
}

int TTabGeometry::RowsShown() const {
  return multiple ? std::clamp(m_layout.RowCount(), 1, m_maxRows) : 1;
}

int TTabGeometry::Height() const {
  return RowsShown() * metrics.rowHeight + metrics.edge;
}

QRect TTabGeometry::EndPlace() const {
  const int width = std::min(endReserve, m_extent);
  const int top = PlainArea().bottom() + 1 - metrics.rowHeight;
  return Mirrored(QRect(m_extent - width, top, width, metrics.rowHeight));
}

QRect TTabGeometry::BesideArea(int offset, const QSize &size) const {
  const QRect area = PlainArea();
  return Mirrored(QRect(QPoint(area.x() + area.width() + offset, area.y()), size));
}

QRect TTabGeometry::PlaceOf(const TTab *tab) const {
  return Mirrored(PlainPlaceOf(tab));
}

QRect TTabGeometry::ShownPartOf(const TTab *tab) const {
  // Most tabs of a long strip are out of sight, which plain numbers tell.
  const int start = multiple ? tab->place.row : tab->place.x;
  const int end = multiple ? start + 1 : start + tab->place.width;
  if (end <= m_offset || start >= m_offset + Room()) return {};
  return Mirrored(PlainPlaceOf(tab) & PlainArea());
}

int TTabGeometry::IndexAt(const QPoint &position) const {
  const QPoint point = Mirrored(position);
  const QRect area = PlainArea();
  if (!area.contains(point)) return -1;
  const int row = (point.y() - area.y()) / metrics.rowHeight;
  return multiple ? m_layout.IndexAt(row + m_offset, point.x()) : m_layout.IndexAt(0, point.x() + m_offset);
}

int TTabGeometry::IndexInNextRow(const TTab *tab, bool down) const {
  const TTabLayout::TPlace &place = tab->place;
  const int row = place.row + (down ? 1 : -1);
  if (row < 0 || row >= m_layout.RowCount()) return -1;
  const int index = m_layout.IndexAt(row, place.x + place.width / 2);
  return index >= 0 ? index : m_layout.FirstEndingAfter(row + 1, 0) - 1;  // right of the row's last tab
}

int TTabGeometry::GapAt(const QPoint &position) const {
  const QRect area = PlainArea();
  QPoint point = Mirrored(position);
  point.setX(std::clamp(point.x(), area.left(), area.right()));
  point.setY(std::clamp(point.y(), area.top(), area.bottom()));
  const int row = multiple ? m_offset + (point.y() - area.y()) / metrics.rowHeight : 0;
  const int x = multiple ? point.x() : point.x() + m_offset;
  const int under = m_layout.IndexAt(row, x);
  if (under < 0) return m_layout.FirstEndingAfter(row + 1, 0);
  const TTabLayout::TPlace &place = m_layout.Place(under);
  return x >= place.x + place.width / 2 ? under + 1 : under;
}

int TTabGeometry::Beyond(const QPoint &position) const {
  const QRect area = PlainArea();
  const QPoint point = Mirrored(position);
  return multiple ? (point.y() > area.bottom()) - (point.y() < area.top())
                  : (point.x() > area.right()) - (point.x() < area.left());
}

int TTabGeometry::GreatestOffset() const {
  return std::max(0, (multiple ? m_layout.RowCount() : m_layout.Length()) - Room());
}

int TTabGeometry::OffsetRevealing(const TTab *tab) const {
  const int start = multiple ? tab->place.row : tab->place.x;
  const int size = multiple ? 1 : tab->place.width;
  return std::min(start, std::max(m_offset, start + size - Room()));
}

bool TTabGeometry::ScrollTo(int offset) {
  offset = std::clamp(offset, 0, GreatestOffset());
  return std::exchange(m_offset, offset) != offset;
}

int TTabGeometry::Room() const {
  return multiple ? RowsShown() : m_layout.Extent();
}

QRect TTabGeometry::PlainArea() const {
  return QRect(0, tabsDown ? metrics.edge : 0, m_layout.Extent(), RowsShown() * metrics.rowHeight);
}

QRect TTabGeometry::PlainPlaceOf(const TTab *tab) const {
  const int x = multiple ? tab->place.x : tab->place.x - m_offset;
  const int row = multiple ? tab->place.row - m_offset : 0;
  return QRect(x, PlainArea().y() + row * metrics.rowHeight, tab->place.width, metrics.rowHeight);
}

QRect TTabGeometry::Mirrored(const QRect &rect) const {
  return rect.isEmpty() ? QRect() : QStyle::visualRect(direction, QRect(0, 0, m_extent, Height()), rect);
}

QPoint TTabGeometry::Mirrored(const QPoint &point) const {
  return QStyle::visualPos(direction, QRect(0, 0, m_extent, Height()), point);
}
