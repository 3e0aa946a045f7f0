#include "ui/contrast.h"

#include <algorithm>
#include <cmath>
#include <QtGlobal>

namespace {

constexpr int Steps = 16;  // from the colour to black or white

double Linear(double part) {
  return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor &color) {
  return 0.2126 * Linear(color.redF()) + 0.7152 * Linear(color.greenF()) + 0.0722 * Linear(color.blueF());
}

QColor Mixed(const QColor &color, int target, int step) {
  const auto part = [&](int value) { return value + (target - value) * step / Steps; };
  return QColor(part(color.red()), part(color.green()), part(color.blue()), color.alpha());
}

}  // namespace

double Contrast::Between(const QColor &one, const QColor &other) {
  const auto [dark, light] = std::minmax({Luminance(one), Luminance(other)});
  return (light + 0.05) / (dark + 0.05);
}

QColor Contrast::Raised(const QColor &color, const QColor &ground, double least) {
  const int target = Between(Qt::black, ground) > Between(Qt::white, ground) ? 0 : 255;
  QColor raised = color;
  for (int step = 1; step <= Steps && Between(raised, ground) < least; ++step) raised = Mixed(color, target, step);
  return raised;
}

QColor Contrast::Over(const QColor &color, const QColor &ground) {
  const float share = color.alphaF();
  const auto mix = [share](float over, float under) { return over * share + under * (1 - share); };
  return QColor::fromRgbF(mix(color.redF(), ground.redF()), mix(color.greenF(), ground.greenF()),
                          mix(color.blueF(), ground.blueF()));
}
