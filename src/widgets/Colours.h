#pragma once

#include <algorithm>
#include <cmath>

#include <QColor>
#include <QPalette>

namespace zth::widgets {

/// True if texts are light on dark; `ground` is the palette role of their background.
inline bool IsDark(const QPalette& palette, QPalette::ColorRole ground = QPalette::Window) {
  return palette.color(ground).lightnessF() < 0.5;
}

/// Interpolates from `a` at share 0 to `b` at share 1.
inline QColor Blend(const QColor& a, const QColor& b, double share) {
  const auto mix = [share](float x, float y) { return static_cast<float>(x + (y - x) * share); };
  return QColor::fromRgbF(mix(a.redF(), b.redF()), mix(a.greenF(), b.greenF()), mix(a.blueF(), b.blueF()));
}

/// Share of the background in the colour of an old value's text: paler than a current one, and still readable.
inline constexpr double kPale = 0.35;

/// Relative luminance of a colour, 0 to 1.
inline double Luminance(const QColor& colour) {
  const auto linear = [](float part) {
    const double share = static_cast<double>(part);
    return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

/// Contrast of two colours: from 1 for none to 21 for black and white.
inline double Contrast(const QColor& a, const QColor& b) {
  const auto [less, more] = std::minmax({Luminance(a), Luminance(b)});
  return (more + 0.05) / (less + 0.05);
}

}  // namespace zth::widgets
