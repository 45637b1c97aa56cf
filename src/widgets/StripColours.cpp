#include "widgets/StripColours.h"

#include <array>
#include <utility>

#include "widgets/Colours.h"

namespace zth::widgets {
namespace {

// Least contrast of a line with its background.
constexpr double kLine = 3;

// As distinct from each other as the originals: where two share a hue, the darker one gets the paler equivalent.
constexpr std::array<std::pair<QRgb, QRgb>, 7> kOnDark{{
    {0xFF0000FF, 0xFF5C9DFF},  // blue
    {0xFF000080, 0xFFB4C8E8},  // navy
    {0xFFFF0000, 0xFFFF5A52},  // red
    {0xFF800000, 0xFFD8A08C},  // maroon
    {0xFF008000, 0xFF35B04A},  // green
    {0xFF000000, 0xFFF2F2F2},  // black
    {0xFFFF8000, 0xFFFF9A2E},  // orange
}};

}  // namespace

StripColours::StripColours(const QPalette& palette) : dark(IsDark(palette)) {
  window = palette.color(QPalette::Window);
  text = palette.color(QPalette::WindowText);
  faint = Blend(text, window, 0.35);
  paper = dark ? Blend(window, Qt::black, 0.45) : QColor(255, 255, 255);
  grid = dark ? Blend(paper, Qt::white, 0.16) : QColor(226, 229, 233);
  ink = dark ? QColor(236, 238, 240) : QColor(32, 36, 40);
  frame = dark ? Blend(paper, Qt::white, 0.42) : QColor(150, 156, 162);
  accent = palette.color(QPalette::Highlight);
}

QColor StripColours::OfTrace(const QColor& prescribed) const {
  if (!dark) return prescribed;
  QColor colour = prescribed;
  for (const auto& [light, equivalent] : kOnDark) {
    if ((prescribed.rgb() | 0xFF000000) == light) colour = QColor(equivalent);
  }
  for (int i = 0; i < 10 && Contrast(colour, paper) < kLine; ++i) colour = Blend(colour, Qt::white, 0.2);
  colour.setAlpha(prescribed.alpha());
  return colour;
}

QColor StripColours::SeamOf(const QColor& trace) const {
  return Contrast(trace, paper) < kLine ? trace.darker(155) : QColor();
}

}  // namespace zth::widgets
