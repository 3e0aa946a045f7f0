#pragma once

#include <limits>
#include <vector>

// Where the tabs of a strip lie, worked out from the widths they wish for, in pixels and left to right. It knows
// nothing of widgets. One row: tabs shrink together down to `narrowest`, after that the row is longer than its space.
// Several rows: tabs wrap, in their order; with more than `maxRows` the strip shows a part of them. A tab that wishes
// for no width is hidden and takes no place.
//
// Changes are only noted; Update() works them out, from the first tab that changed to where nothing differs any more.
class TTabLayout final {
 public:
  struct TSpace {
    int extent = 0;     // what there is in a row
    int narrowest = 1;  // in one row no tab shrinks below this
    int maxRows = 1;    // of several
    bool multiple = true;
    int lineReserve = 0;  // what the scroll buttons take from one row that is too long
    int rowsReserve = 0;  // what the scroll bar takes from the rows when there are too many
    bool operator==(const TSpace &) const = default;
  };
  struct TPlace {
    int row = 0;
    int x = 0;
    int width = 0;
    bool operator==(const TPlace &) const = default;
  };

  void Insert(int index, int wish);
  void Remove(int index);
  void Move(int from, int to);
  bool SetWish(int index, int wish);  // false when it already was that
  void SetSpace(const TSpace &space);

  // The first tab whose place may be out of date; more than Count() when none is.
  [[nodiscard]] int FirstStale() const { return m_spaceChanged ? 0 : m_dirtyFirst; }
  // True when any tab, the number of rows or the length changed.
  bool Update();

  // What follows holds as of the last Update().
  [[nodiscard]] int Count() const { return static_cast<int>(m_items.size()); }
  [[nodiscard]] const TPlace &Place(int index) const { return m_items[index].place; }
  [[nodiscard]] int RowCount() const { return m_items.empty() ? 1 : m_items.back().place.row + 1; }
  [[nodiscard]] int Length() const;  // of one row
  [[nodiscard]] bool Overflows() const { return m_overflows; }
  [[nodiscard]] int Extent() const;  // what is left for tabs beside the scroll buttons or the scroll bar
  // The first tab in this row, or behind it, that ends right of x; Count() when there is none.
  [[nodiscard]] int FirstEndingAfter(int row, int x) const;
  // The tab there, -1 when there is none.
  [[nodiscard]] int IndexAt(int row, int x) const;

  // How many places have been worked out since the start: what a change costs.
  [[nodiscard]] long long Steps() const { return m_steps; }

 private:
  struct TItem {
    int wish = 0;
    TPlace place;
  };

  void MarkDirty(int first, int last);
  void Tally(int wish, int times);
  [[nodiscard]] int SharedWidth() const;
  [[nodiscard]] bool PlaceInLine();
  [[nodiscard]] bool PlaceInRows();
  template <typename TNext>
  bool PlaceWith(TNext next);

  std::vector<TItem> m_items;
  TSpace m_space;
  bool m_spaceChanged = true;
  bool m_overflows = false;
  int m_widest = std::numeric_limits<int>::max();  // what one row lets a tab have
  long long m_sumOfWishes = 0;
  long long m_sumOfNarrowest = 0;  // the wishes again, none above `narrowest`
  int m_dirtyFirst = std::numeric_limits<int>::max();
  int m_dirtyLast = -1;
  mutable long long m_steps = 0;
};
