#pragma once

#include <array>
#include <cmath>
#include <QtGlobal>

// The five text sizes, smallest first. Every way to change the zoom walks this table.
inline constexpr std::array<qreal, 5> ZoomFactors{0.67, 0.8, 1.0, 1.25, 1.5};
inline constexpr int MediumZoom = 2;

// The size that is nearest to `factor`.
[[nodiscard]] inline int NearestZoom(qreal factor) {
  int nearest = 0;
  for (int i = 1; i < int(ZoomFactors.size()); ++i) {
    if (std::abs(ZoomFactors[i] - factor) < std::abs(ZoomFactors[nearest] - factor)) nearest = i;
  }
  return nearest;
}
