#pragma once

#include <QPalette>

namespace zth::widgets {

/// Whether texts stand light on dark.
inline bool IsDark(const QPalette& palette) {
  return palette.color(QPalette::Window).lightnessF() < 0.5;
}

}  // namespace zth::widgets
