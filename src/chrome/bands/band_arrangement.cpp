#include "chrome/bands/band_arrangement.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace {

// What lies `distance` from there in the list; null beyond its ends.
template <typename T>
const T *Neighbour(const std::vector<T> &items, size_t index, int distance) {
  const auto wanted = static_cast<std::ptrdiff_t>(index) + distance;
  return wanted < 0 || wanted >= std::ssize(items) ? nullptr : &items[static_cast<size_t>(wanted)];
}

}  // namespace

TBandArrangement::TBandArrangement() {
  for (const TBandRow &row : BandRows) {
    m_bands.push_back({row.band, row.width, row.breaks});
    m_shown[row.band] = true;
  }
}

TBandArrangement::TState &TBandArrangement::Find(TBand band) {
  return *std::ranges::find(m_bands, band, &TState::band);
}

const TBandArrangement::TState &TBandArrangement::Find(TBand band) const {
  return *std::ranges::find(m_bands, band, &TState::band);
}

void TBandArrangement::MoveTo(TBand band, int position) {
  const TState moved = Find(band);
  std::erase(m_bands, moved);
  m_bands.insert(m_bands.begin() + std::clamp(position, 0, BandCount - 1), moved);
}

void TBandArrangement::SetWidth(TBand band, long long width) {
  Find(band).width = int(std::clamp<long long>(width, 0, LargestWidth));
}

TBandArrangement::TRows TBandArrangement::Rows(int width) const {
  const int room = std::max(width, 0);
  TRows rows;
  int leasts = 0;
  bool begins = true;
  for (const TState &state : m_bands) {
    // A row whose first band is not shown stays one.
    begins |= state.breaks;
    if (!m_shown[state.band]) continue;
    const int least = m_least[state.band];
    if (std::exchange(begins, false) || rows.empty() || leasts + least > room) {
      rows.emplace_back();
      leasts = 0;
    }
    rows.back().push_back({state.band, 0, std::max(state.width, least)});
    leasts += least;
  }
  for (TRow &row : rows) {
    int x = 0;
    int toCome = std::accumulate(row.begin(), row.end(), 0,
                                 [this](int sum, const TPlace &place) { return sum + m_least[place.band]; });
    for (TPlace &place : row) {
      toCome -= m_least[place.band];
      place.x = x;
      place.width = &place == &row.back() ? room - x : std::min(place.width, room - x - toCome);
      x += place.width;
    }
  }
  return rows;
}

bool TBandArrangement::Locate(const TRows &rows, TBand band, TIndex &index) {
  for (index.row = 0; index.row < rows.size(); ++index.row) {
    for (index.place = 0; index.place < rows[index.row].size(); ++index.place) {
      if (rows[index.row][index.place].band == band) return true;
    }
  }
  return false;
}

bool TBandArrangement::MoveEdge(TBand band, int x, int width) {
  TRows rows = Rows(width);
  TIndex at{};
  if (!Locate(rows, band, at) || at.place == 0) return false;
  TRow &row = rows[at.row];
  const auto leastOf = [this, &row](size_t from, size_t to) {
    int sum = 0;
    for (size_t i = from; i < to; ++i) sum += m_least[row[i].band];
    return sum;
  };
  const int wanted = std::clamp(x, leastOf(0, at.place), width - leastOf(at.place, row.size()));
  const int delta = wanted - row[at.place].x;
  if (delta == 0) return false;
  // The band at this side of the edge gets what those at the other side give, the nearest first.
  int rest = std::abs(delta);
  const auto take = [this, &rest](TPlace &place) {
    const int given = std::min(rest, place.width - m_least[place.band]);
    place.width -= given;
    rest -= given;
  };
  row[delta > 0 ? at.place - 1 : at.place].width += rest;
  if (delta > 0) {
    for (size_t i = at.place; i < row.size(); ++i) take(row[i]);
  } else {
    for (size_t i = at.place; i-- > 0;) take(row[i]);
  }
  for (const TPlace &place : row) Find(place.band).width = place.width;
  return true;
}

bool TBandArrangement::Resize(TBand band, int bandWidth, int width) {
  const TRows rows = Rows(width);
  TIndex at{};
  if (!Locate(rows, band, at)) return false;
  const TPlace &place = rows[at.row][at.place];
  const int wanted = std::max(bandWidth, m_least[band]);
  // The edge where it ends; where that cannot move, the one where it begins.
  const TPlace *next = Neighbour(rows[at.row], at.place, 1);
  return (next != nullptr && MoveEdge(next->band, place.x + wanted, width)) ||
         MoveEdge(band, place.x + place.width - wanted, width);
}

bool TBandArrangement::Maximize(TBand band, int width) {
  const TRows rows = Rows(width);
  TIndex at{};
  if (!Locate(rows, band, at)) return false;
  const bool begins = MoveEdge(band, 0, width);
  const TPlace *next = Neighbour(rows[at.row], at.place, 1);
  return (next != nullptr && MoveEdge(next->band, width, width)) || begins;
}

bool TBandArrangement::Step(TBand band, TBandStep step, int width) {
  const TRows rows = Rows(width);
  TIndex at{};
  if (!Locate(rows, band, at)) return false;
  const TRow &row = rows[at.row];
  if (step == TBandStep::Back || step == TBandStep::Forth) {
    const TPlace *other = Neighbour(row, at.place, step == TBandStep::Forth ? 1 : -1);
    return other != nullptr && PutBeside(band, other->band, step == TBandStep::Forth);
  }
  const bool isDown = step == TBandStep::Down;
  if (const TRow *other = Neighbour(rows, at.row, isDown ? 1 : -1)) return PutBeside(band, other->back().band, true);
  return PutOnOwnRow(band, row.front().band, isDown, width);
}

bool TBandArrangement::ToggleBreak(TBand band) {
  TStateRows rows = ToRows();
  const auto isShown = [this](const TState &state) { return m_shown[state.band]; };
  const auto own = std::ranges::find_if(
      rows, [band](const auto &row) { return std::ranges::find(row, band, &TState::band) != row.end(); });
  const auto at = std::ranges::find(*own, band, &TState::band);
  if (std::any_of(own->begin(), at, isShown)) {
    const std::vector<TState> below(at, own->end());
    own->erase(at, own->end());
    rows.insert(own + 1, below);
  } else {
    auto above = own;
    while (above != rows.begin() && std::ranges::none_of(*(above - 1), isShown)) --above;
    if (above == rows.begin()) return false;
    --above;
    for (auto row = above + 1; row <= own; ++row) {
      above->insert(above->end(), row->begin(), row->end());
      row->clear();
    }
  }
  FromRows(rows);
  return true;
}

bool TBandArrangement::Put(TBand band, const TBandDrop &drop, int width) {
  switch (drop.kind) {
    case TBandDrop::TKind::Beside:
      return PutBeside(band, drop.other, drop.after);
    case TBandDrop::TKind::OwnRow:
      return PutOnOwnRow(band, drop.other, drop.after, width);
    case TBandDrop::TKind::None:
      break;
  }
  return false;
}

TBandArrangement::TStateRows TBandArrangement::ToRows() const {
  TStateRows rows;
  for (const TState &state : m_bands) {
    if (rows.empty() || state.breaks) rows.emplace_back();
    rows.back().push_back(state);
  }
  return rows;
}

void TBandArrangement::FromRows(const TStateRows &rows) {
  m_bands.clear();
  for (const auto &row : rows) {
    for (const TState &state : row) {
      m_bands.push_back(state);
      m_bands.back().breaks = m_bands.size() > 1 && &state == &row.front();
    }
  }
}

bool TBandArrangement::PutBeside(TBand band, TBand other, bool after) {
  if (band == other) return false;
  const TState moved = Find(band);
  TStateRows rows = ToRows();
  for (auto &row : rows) std::erase(row, moved);
  for (auto &row : rows) {
    const auto at = std::ranges::find(row, other, &TState::band);
    if (at == row.end()) continue;
    row.insert(after ? at + 1 : at, moved);
    break;
  }
  FromRows(rows);
  return true;
}

bool TBandArrangement::PutOnOwnRow(TBand band, TBand other, bool below, int width) {
  // A row that is shown may be a part of one that was too long.
  const TRows shown = Rows(width);
  TIndex at{};
  if (!Locate(shown, other, at)) return false;
  if (below) ++at.row;
  const auto isAlone = [band](const TRow &row) { return row.size() == 1 && row.front().band == band; };
  if (isAlone(at.row < shown.size() ? shown[at.row] : shown.back())) return false;
  // The band before which the new row comes; none at the end.
  const TPlace *next = nullptr;
  if (at.row < shown.size()) next = &shown[at.row][shown[at.row].front().band == band ? 1 : 0];
  const TState moved = Find(band);
  TStateRows rows = ToRows();
  for (auto &row : rows) std::erase(row, moved);
  if (next == nullptr) {
    rows.push_back({moved});
    FromRows(rows);
    return true;
  }
  for (auto row = rows.begin(); row != rows.end(); ++row) {
    const auto place = std::ranges::find(*row, next->band, &TState::band);
    if (place == row->end()) continue;
    std::vector<TState> above;
    if (std::any_of(row->begin(), place, [this](const TState &state) { return m_shown[state.band]; })) {
      above.assign(row->begin(), place);
      row->erase(row->begin(), place);
    }
    rows.insert(row, {above, {moved}});
    break;
  }
  FromRows(rows);
  return true;
}

TBandDrop FindBandDrop(const TBandArrangement::TRows &rows, const std::vector<int> &bottoms, TBand band, int x, int y) {
  using TKind = TBandDrop::TKind;
  if (rows.empty()) return {};
  const auto isAlone = [&](size_t row) { return rows[row].size() == 1 && rows[row].front().band == band; };
  const auto holds = [&](size_t row) {
    return std::ranges::any_of(rows[row], [band](const auto &place) { return place.band == band; });
  };
  const auto ownRow = [&](size_t row, bool below) -> TBandDrop {
    const size_t beside = below ? row + 1 : row - 1;
    if (isAlone(row) || (beside < rows.size() && isAlone(beside))) return {};
    const auto &first = rows[row].front();
    return {TKind::OwnRow, first.band == band ? rows[row][1].band : first.band, below};
  };
  if (y < 0) return ownRow(0, false);
  if (y >= bottoms.back()) return ownRow(rows.size() - 1, true);
  const auto row = static_cast<size_t>(std::ranges::upper_bound(bottoms, y) - bottoms.begin());
  const int top = row == 0 ? 0 : bottoms[row - 1];
  // Its own row is left only by leaving it, so that a hand that is not steady does no harm.
  if (!holds(row)) {
    const int edge = (bottoms[row] - top) / 4;
    if (y < top + edge) return ownRow(row, false);
    if (y >= bottoms[row] - edge) return ownRow(row, true);
  }
  TBandDrop drop;
  bool isPassed = false;  // the band's own place
  bool stands = true;     // it is there already
  for (const auto &place : rows[row]) {
    if (place.band == band) {
      isPassed = true;
    } else if (const bool isBefore = place.x + place.width / 2 < x; isBefore || drop.kind == TKind::None) {
      drop = {TKind::Beside, place.band, isBefore};
      stands &= isBefore != isPassed;
    } else {
      stands &= isPassed;
    }
  }
  return holds(row) && stands ? TBandDrop{} : drop;
}
