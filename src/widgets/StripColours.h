#pragma once

#include <QColor>
#include <QPalette>

namespace zth::widgets {

/// The colours of a chart about its traces. The plot is light paper in a dark palette too: on any other ground some of
/// the prescribed trace colours, black and navy on one side, lime on the other, would be lost.
struct StripColours {
  explicit StripColours(const QPalette& palette);
  QColor window, text, faint, paper, grid, ink, frame, accent;
};

}  // namespace zth::widgets
