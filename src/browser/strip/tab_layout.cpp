#include "browser/strip/tab_layout.h"

#include <algorithm>

namespace {
constexpr int kNoLimit = std::numeric_limits<int>::max();
constexpr int kClean = std::numeric_limits<int>::max();
}  // namespace

void TTabLayout::Insert(int index, int wish) {
  m_items.insert(m_items.begin() + index, TItem{wish, {}});
  Tally(wish, 1);
  if (index <= m_dirtyLast) ++m_dirtyLast;
  MarkDirty(index, index);
}

void TTabLayout::Remove(int index) {
  Tally(m_items[index].wish, -1);
  m_items.erase(m_items.begin() + index);
  if (index < m_dirtyLast) --m_dirtyLast;
  MarkDirty(index, index);
}

void TTabLayout::Move(int from, int to) {
  const auto first = m_items.begin();
  if (from < to) {
    std::rotate(first + from, first + from + 1, first + to + 1);
  } else {
    std::rotate(first + to, first + from, first + from + 1);
  }
  MarkDirty(std::min(from, to), std::max(from, to));
}

bool TTabLayout::SetWish(int index, int wish) {
  TItem &item = m_items[index];
  if (item.wish == wish) return false;
  Tally(item.wish, -1);
  item.wish = wish;
  Tally(wish, 1);
  MarkDirty(index, index);
  return true;
}

void TTabLayout::SetSpace(const TSpace &space) {
  if (space == m_space) return;
  m_space = space;
  m_spaceChanged = true;
  m_sumOfNarrowest = 0;
  for (const TItem &item : m_items) m_sumOfNarrowest += std::min(item.wish, m_space.narrowest);
}

bool TTabLayout::Update() {
  if (!m_spaceChanged && m_dirtyFirst == kClean) return false;
  if (m_spaceChanged) MarkDirty(0, Count());
  const bool changed = m_space.multiple ? PlaceInRows() : PlaceInLine();
  m_spaceChanged = false;
  m_dirtyFirst = kClean;
  m_dirtyLast = -1;
  return changed;
}

int TTabLayout::Length() const {
  return m_items.empty() ? 0 : m_items.back().place.x + m_items.back().place.width;
}

int TTabLayout::Extent() const {
  const int reserve = !m_overflows ? 0 : m_space.multiple ? m_space.rowsReserve : m_space.lineReserve;
  return std::max(1, m_space.extent - reserve);
}

int TTabLayout::FirstEndingAfter(int row, int x) const {
  const auto found = std::partition_point(m_items.begin(), m_items.end(), [row, x](const TItem &item) {
    return item.place.row < row || (item.place.row == row && item.place.x + item.place.width <= x);
  });
  return static_cast<int>(found - m_items.begin());
}

int TTabLayout::IndexAt(int row, int x) const {
  const int index = FirstEndingAfter(row, x);
  if (index == Count()) return -1;
  const TPlace &place = m_items[index].place;
  return place.row == row && place.x <= x ? index : -1;
}

void TTabLayout::MarkDirty(int first, int last) {
  m_dirtyFirst = std::min(m_dirtyFirst, first);
  m_dirtyLast = std::max(m_dirtyLast, last);
}

void TTabLayout::Tally(int wish, int times) {
  m_sumOfWishes += static_cast<long long>(times) * wish;
  m_sumOfNarrowest += static_cast<long long>(times) * std::min(wish, m_space.narrowest);
}

// The greatest width that all tabs may have for the row to fit. Asked only while the narrowest ones fit, so there are
// never more tabs to look at than a row has room for.
int TTabLayout::SharedWidth() const {
  int low = m_space.narrowest;
  int high = m_space.extent;
  while (low < high) {
    const int middle = low + (high - low + 1) / 2;
    long long sum = 0;
    for (const TItem &item : m_items) sum += std::min(item.wish, middle);
    m_steps += Count();
    if (sum <= m_space.extent) {
      low = middle;
    } else {
      high = middle - 1;
    }
  }
  return low;
}

bool TTabLayout::PlaceInLine() {
  const bool overflowed = m_overflows;
  int widest = kNoLimit;
  m_overflows = false;
  if (m_sumOfWishes > m_space.extent) {
    m_overflows = m_sumOfNarrowest > m_space.extent;
    widest = m_overflows ? m_space.narrowest : SharedWidth();
  }
  if (widest != m_widest) {
    m_widest = widest;
    MarkDirty(0, Count());
  }
  const bool placed = PlaceWith([this](const TPlace &previous, int wish) {
    return TPlace{0, previous.x + previous.width, std::min(wish, m_widest)};
  });
  return placed || overflowed != m_overflows;
}

bool TTabLayout::PlaceInRows() {
  const bool overflowed = m_overflows;
  const auto place = [this] {
    const int extent = Extent();
    return PlaceWith([extent](const TPlace &previous, int wish) {
      const int width = std::min(wish, extent);
      const int x = previous.x + previous.width;
      return x > 0 && x + width > extent ? TPlace{previous.row + 1, 0, width} : TPlace{previous.row, x, width};
    });
  };
  // A change of the space starts without the scroll bar; else it stays as it is while that is right, so that a strip
  // with hundreds of tabs is not laid out twice for each new one.
  if (m_spaceChanged) m_overflows = false;
  bool changed = place();
  const bool tooMany = RowCount() > m_space.maxRows;
  if (tooMany != m_overflows) {
    m_overflows = tooMany;
    MarkDirty(0, Count());
    changed |= place();
  }
  return changed || overflowed != m_overflows;
}

template <typename TNext>
bool TTabLayout::PlaceWith(TNext next) {
  bool changed = m_dirtyFirst >= Count();  // the last ones went: only the length differs
  TPlace previous;
  if (m_dirtyFirst > 0 && m_dirtyFirst <= Count()) previous = m_items[m_dirtyFirst - 1].place;
  for (int i = m_dirtyFirst; i < Count(); ++i) {
    const TPlace place = next(previous, m_items[i].wish);
    ++m_steps;
    if (place == m_items[i].place) {
      if (i > m_dirtyLast) break;
    } else {
      m_items[i].place = place;
      changed = true;
    }
    previous = place;
  }
  return changed;
}
