#pragma once

#include <QColor>
#include <QPalette>

namespace zth::widgets {

/// Whether texts stand light on dark; `ground` is the palette's role that they stand on.
inline bool IsDark(const QPalette& palette, QPalette::ColorRole ground = QPalette::Window) {
  return palette.color(ground).lightnessF() < 0.5;
}

/// From `a` at share 0 to `b` at share 1.
inline QColor Blend(const QColor& a, const QColor& b, double share) {
  const auto mix = [share](float x, float y) { return static_cast<float>(x + (y - x) * share); };
  return QColor::fromRgbF(mix(a.redF(), b.redF()), mix(a.greenF(), b.greenF()), mix(a.blueF(), b.blueF()));
}

}  // namespace zth::widgets
