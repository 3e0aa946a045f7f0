#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <QtGlobal>

// The five text sizes, smallest first.
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

// The steps of zooming in and out, in percent: all that the engine takes.
inline constexpr std::array<int, 17> ZoomSteps{25,  30,  50,  67,  75,  80,  90,  100, 110,
                                               125, 150, 175, 200, 250, 300, 400, 500};
inline constexpr int PlainZoom = 100;

// The next step from `percent`; the last one stays.
[[nodiscard]] inline int NextZoomStep(int percent, bool in) {
  if (in) {
    const auto *next = std::upper_bound(ZoomSteps.begin(), ZoomSteps.end(), percent);
    return next != ZoomSteps.end() ? *next : ZoomSteps.back();
  }
  const auto *next = std::lower_bound(ZoomSteps.begin(), ZoomSteps.end(), percent);
  return next != ZoomSteps.begin() ? *(next - 1) : ZoomSteps.front();
}
