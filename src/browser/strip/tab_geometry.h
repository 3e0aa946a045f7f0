#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>
#include <Qt>
#include "browser/strip/tab_layout.h"
#include "browser/strip/tab_list.h"
#include "browser/strip/tab_painter.h"

// Where the tabs show in the strip: laid out, scrolled by an offset, beside what scrolls them, and mirrored where
// languages are read from right to left. Rectangles and points are worked out left to right and mirrored at the very
// end; those that are taken and given are as they are on the screen, in the strip's coordinates.
class TTabGeometry final {
 public:
  explicit TTabGeometry(const TTabMetrics &ownMetrics) : metrics(ownMetrics) {}

  TTabMetrics metrics;
  bool multiple = true;
  bool tabsDown = true;
  int endReserve = 0;  // what others take of each row, behind the tabs and what scrolls them; pixels
  Qt::LayoutDirection direction = Qt::LeftToRight;

  // The room that a page control of this size gives its strip; false when it is as it was.
  [[nodiscard]] bool SetControl(const QSize &control);
  // Lays out all tabs; a scroll bar takes `barWidth`. Returns what has to be painted anew.
  QRect LayOut(const TTabList &tabs, int barWidth);

  [[nodiscard]] bool Overflows() const { return m_layout.Overflows(); }
  [[nodiscard]] int RowsShown() const;
  [[nodiscard]] int Height() const;
  [[nodiscard]] QRect Area() const { return Mirrored(PlainArea()); }  // where tabs show, beside what scrolls them
  [[nodiscard]] QRect EndPlace() const;                               // of the reserve, in the last row that shows
  // A place beside the area, behind the last tab: `offset` pixels away from it.
  [[nodiscard]] QRect BesideArea(int offset, const QSize &size) const;
  [[nodiscard]] QRect PlaceOf(const TTab *tab) const;       // also of one that is scrolled away
  [[nodiscard]] QRect ShownPartOf(const TTab *tab) const;   // empty when none shows
  [[nodiscard]] int IndexAt(const QPoint &position) const;  // -1 where no tab lies

  // The position of the tab above or below the middle of this one; -1 beyond the first and the last row.
  [[nodiscard]] int IndexInNextRow(const TTab *tab, bool down) const;
  // A tab that is held at this point comes before the tab of this position, Count() for behind the last: decided by the
  // half of the tab under the point, so that it never jumps back and forth between two tabs of different width.
  [[nodiscard]] int GapAt(const QPoint &position) const;
  // -1 before the tabs that show, 1 behind them, else 0.
  [[nodiscard]] int Beyond(const QPoint &position) const;

  // How far the tabs are scrolled: pixels in one row, rows in several.
  [[nodiscard]] int Offset() const { return m_offset; }
  [[nodiscard]] int GreatestOffset() const;
  [[nodiscard]] int OffsetRevealing(const TTab *tab) const;
  bool ScrollTo(int offset);  // false when it stays, as at either end

 private:
  [[nodiscard]] int Room() const;  // how much of the strip shows, measured like the offset
  [[nodiscard]] QRect PlainArea() const;
  [[nodiscard]] QRect PlainPlaceOf(const TTab *tab) const;
  [[nodiscard]] QRect Mirrored(const QRect &rect) const;
  [[nodiscard]] QPoint Mirrored(const QPoint &point) const;

  TTabLayout m_layout;
  int m_extent = 0;
  int m_maxRows = 1;
  int m_offset = 0;
};
