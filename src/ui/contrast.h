#pragma once

#include <QColor>

// How far colours stand out from each other, as the Web Content Accessibility Guidelines count it: 1 for the same
// colour, 21 for black and white.
namespace Contrast {

constexpr double ForMarks = 3;   // the least that a mark which means something is to have
constexpr double ForText = 4.5;  // the least that a text is to have

[[nodiscard]] double Between(const QColor &one, const QColor &other);
// `color`, taken towards black or white as far as it needs to reach `least` before `ground`; its alpha stays.
[[nodiscard]] QColor Raised(const QColor &color, const QColor &ground, double least = ForMarks);
// `color` as it looks on `ground`, which shows through by its alpha.
[[nodiscard]] QColor Over(const QColor &color, const QColor &ground);

}  // namespace Contrast
