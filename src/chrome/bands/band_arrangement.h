#pragma once

#include <array>
#include <cstddef>
#include <vector>

// The bands of the band bar.
enum class TBand { Menu, Tool, Address, Links };
inline constexpr int BandCount = 4;

// What each band is at first. The sizes are those of its contents, in pixels, but for `width`, the whole band's.
struct TBandRow {
  TBand band;
  const char *name;  // in the store
  int minHeight;
  int minWidth;
  int width;
  bool breaks;  // begins a new row
};

// In the order of the enumeration, which is the one in which they stand at first.
inline constexpr std::array<TBandRow, BandCount> BandRows{{
    {TBand::Menu, "Menu", 23, 45, 648, false},
    {TBand::Tool, "Tool", 27, 40, 648, true},
    {TBand::Address, "Address", 23, 58, 484, true},
    {TBand::Links, "Links", 23, 17, 162, false},
}};

// A value for each band.
template <typename T>
class TForEachBand final {
 public:
  [[nodiscard]] T &operator[](TBand band) { return m_values[static_cast<size_t>(band)]; }
  [[nodiscard]] const T &operator[](TBand band) const { return m_values[static_cast<size_t>(band)]; }

 private:
  std::array<T, BandCount> m_values{};
};

// One step of a band by the keyboard, as its row is read.
enum class TBandStep { Back, Forth, Up, Down };

// Where a band is to be put: beside another one in its row, or on a row of its own above or below that of another one.
struct TBandDrop {
  enum class TKind { None, Beside, OwnRow };

  TKind kind = TKind::None;
  TBand other = TBand::Menu;
  bool after = false;  // or below

  bool operator==(const TBandDrop &) const = default;
};

// Which band stands where, in rows from top to bottom: pure arithmetic, in pixels from the edge where reading begins.
// It always holds each band once, whatever it was told. A band keeps the width that the user has given it; what is
// shown depends on the room that there is, so that a bar that was narrow for a while comes back as it was.
//
// Bands that are not shown keep their place among the others, and the row that they begin.
class TBandArrangement final {
 public:
  // No bar is wider than that.
  static constexpr int LargestWidth = 16384;

  struct TPlace {
    TBand band;
    int x;
    int width;
  };
  using TRow = std::vector<TPlace>;
  using TRows = std::vector<TRow>;

  TBandArrangement();

  // What is stored. Positions are clamped to those that there are, widths to what a bar can have.
  [[nodiscard]] TBand At(int position) const { return m_bands[static_cast<size_t>(position)].band; }
  [[nodiscard]] int Width(TBand band) const { return Find(band).width; }
  [[nodiscard]] bool Breaks(TBand band) const { return Find(band).breaks; }
  void MoveTo(TBand band, int position);
  void SetWidth(TBand band, long long width);
  void SetBreak(TBand band, bool breaks) { Find(band).breaks = breaks; }
  // Whether both would be stored alike.
  [[nodiscard]] bool IsLike(const TBandArrangement &other) const { return m_bands == other.m_bands; }

  // What is shown. The least width is that of the whole band, and 0 at first.
  void SetShown(TBand band, bool shown) { m_shown[band] = shown; }
  [[nodiscard]] bool IsShown(TBand band) const { return m_shown[band]; }
  void SetLeast(TBand band, int width) { m_least[band] = width; }
  // The rows in a bar that is `width` wide, without gaps. Each band has its width as long as those behind it get the
  // least that they must have, and the last one what is left. What does not fit then goes to a row below. Only a band
  // that is alone in its row may get less than its least.
  [[nodiscard]] TRows Rows(int width) const;

  // The user's changes, on what is shown in a bar that is `width` wide; false when nothing has changed.

  // Moves the edge where the band begins to `x`, as far as the others in the row give way.
  bool MoveEdge(TBand band, int x, int width);
  bool Resize(TBand band, int bandWidth, int width);
  // As wide as the others in its row let it be.
  bool Maximize(TBand band, int width);
  bool Step(TBand band, TBandStep step, int width);
  // Begins a new row with the band; one that begins a row already goes with its row to the end of the one above.
  bool ToggleBreak(TBand band);
  bool Put(TBand band, const TBandDrop &drop, int width);

 private:
  struct TState {
    TBand band;
    int width;
    bool breaks;

    bool operator==(const TState &) const = default;
  };
  // By the breaks alone, with what is not shown.
  using TStateRows = std::vector<std::vector<TState>>;
  // A place in the rows that are shown.
  struct TIndex {
    size_t row;
    size_t place;
  };

  [[nodiscard]] TState &Find(TBand band);
  [[nodiscard]] const TState &Find(TBand band) const;
  // False when the band is not shown.
  [[nodiscard]] static bool Locate(const TRows &rows, TBand band, TIndex &index);
  [[nodiscard]] TStateRows ToRows() const;
  void FromRows(const TStateRows &rows);
  bool PutBeside(TBand band, TBand other, bool after);
  bool PutOnOwnRow(TBand band, TBand other, bool below, int width);

  std::vector<TState> m_bands;  // in their order
  TForEachBand<bool> m_shown;
  TForEachBand<int> m_least;
};

// Where the band goes that is dragged to (x, y) in the rows that are shown, whose lower edges are `bottoms`: beside
// others in the middle of their row, on a row of its own at the edges, and beyond the first and the last one. Nowhere
// (the kind None) where it stands already.
[[nodiscard]] TBandDrop FindBandDrop(const TBandArrangement::TRows &rows, const std::vector<int> &bottoms, TBand band,
                                     int x, int y);
