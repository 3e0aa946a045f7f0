#include "browser/strip/tab_layout.h"

#include <algorithm>
#include <limits>

namespace {
constexpr int kEndless = std::numeric_limits<int>::max();

bool Fits(const std::vector<int> &wishes, int widest, int extent) {
  long long sum = 0;
  for (const int wish : wishes) sum += std::min(wish, widest);
  return sum <= extent;
}

// The greatest width that all tabs may have for one row to fit; the narrowest when none does.
int SharedWidth(const std::vector<int> &wishes, const TTabLayout::TSpace &space) {
  int low = space.narrowest;
  int high = std::max(space.narrowest, space.extent);
  while (low < high) {
    const int middle = low + (high - low + 1) / 2;
    if (Fits(wishes, middle, space.extent)) {
      low = middle;
    } else {
      high = middle - 1;
    }
  }
  return low;
}
}  // namespace

TTabLayout::TTabLayout(const std::vector<int> &wishes, const TSpace &space) : m_extent(std::max(1, space.extent)) {
  if (space.multiple) {
    PlaceAll(wishes, m_extent, m_extent);
    m_overflows = RowCount() > space.maxRows;
    if (!m_overflows) return;
    m_extent = std::max(1, space.extent - space.rowsReserve);
    PlaceAll(wishes, m_extent, m_extent);
  } else {
    const int widest = SharedWidth(wishes, space);
    PlaceAll(wishes, widest, kEndless);
    m_overflows = !Fits(wishes, widest, space.extent);
    if (m_overflows) m_extent = std::max(1, space.extent - space.lineReserve);
  }
}

int TTabLayout::Length() const {
  return m_places.empty() ? 0 : m_places.back().x + m_places.back().width;
}

int TTabLayout::FirstEndingAfter(int row, int x) const {
  const auto found = std::partition_point(m_places.begin(), m_places.end(), [row, x](const TPlace &place) {
    return place.row < row || (place.row == row && place.x + place.width <= x);
  });
  return static_cast<int>(found - m_places.begin());
}

int TTabLayout::IndexAt(int row, int x) const {
  const int index = FirstEndingAfter(row, x);
  if (index == Count()) return -1;
  const TPlace &place = m_places[index];
  return place.row == row && place.x <= x ? index : -1;
}

void TTabLayout::PlaceAll(const std::vector<int> &wishes, int widest, int rowEnd) {
  m_places.clear();
  m_places.reserve(wishes.size());
  TPlace next;
  for (const int wish : wishes) {
    next.width = std::min(wish, widest);
    if (next.x > rowEnd - next.width) next = {next.row + 1, 0, next.width};
    m_places.push_back(next);
    next.x += next.width;
  }
}
