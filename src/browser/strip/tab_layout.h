#pragma once

#include <vector>

// Where the tabs of a strip lie, worked out in one pass from the widths they wish for, in pixels and left to right. It
// knows nothing of widgets. One row: tabs shrink together down to `narrowest`, after that the row is longer than its
// space. Several rows: tabs wrap, in their order; with more than `maxRows` the strip shows a part of them. A tab that
// wishes for no width is hidden and takes no place.
class TTabLayout final {
 public:
  struct TSpace {
    int extent = 0;     // what there is in a row
    int narrowest = 1;  // in one row no tab shrinks below this
    int maxRows = 1;    // of several
    bool multiple = true;
    int lineReserve = 0;  // what the scroll buttons take from one row that is too long
    int rowsReserve = 0;  // what the scroll bar takes from the rows when there are too many
  };
  struct TPlace {
    int row = 0;
    int x = 0;
    int width = 0;
    bool operator==(const TPlace &) const = default;
  };

  TTabLayout() = default;
  TTabLayout(const std::vector<int> &wishes, const TSpace &space);

  [[nodiscard]] int Count() const { return static_cast<int>(m_places.size()); }
  [[nodiscard]] const TPlace &Place(int index) const { return m_places[index]; }
  [[nodiscard]] int RowCount() const { return m_places.empty() ? 1 : m_places.back().row + 1; }
  [[nodiscard]] int Length() const;  // of one row
  [[nodiscard]] bool Overflows() const { return m_overflows; }
  [[nodiscard]] int Extent() const { return m_extent; }  // what is left for tabs beside scroll buttons or scroll bar
  // The first tab in this row, or behind it, that ends right of x; Count() when there is none.
  [[nodiscard]] int FirstEndingAfter(int row, int x) const;
  // The tab there, -1 when there is none.
  [[nodiscard]] int IndexAt(int row, int x) const;

 private:
  void PlaceAll(const std::vector<int> &wishes, int widest, int rowEnd);

  std::vector<TPlace> m_places;
  int m_extent = 1;
  bool m_overflows = false;
};
