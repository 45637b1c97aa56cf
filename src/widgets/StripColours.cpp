#include "widgets/StripColours.h"

#include "widgets/Colours.h"

namespace zth::widgets {

StripColours::StripColours(const QPalette& palette) {
  window = palette.color(QPalette::Window);
  text = palette.color(QPalette::WindowText);
  const bool dark = IsDark(palette);
  faint = Blend(text, window, 0.35);
  paper = dark ? QColor(236, 238, 240) : QColor(255, 255, 255);
  grid = dark ? QColor(208, 212, 216) : QColor(226, 229, 233);
  ink = QColor(32, 36, 40);
  frame = QColor(150, 156, 162);
  accent = palette.color(QPalette::Highlight);
}

}  // namespace zth::widgets
