#pragma once

#include <QColor>
#include <QPalette>

namespace zth::widgets {

/// The colours of a chart. The prescribed trace colours are for white paper. A dark palette gets dark paper and an
/// equivalent of each trace colour: the same hue, light enough for a contrast of 3 to 1, and white for black.
struct StripColours {
  explicit StripColours(const QPalette& palette);

  /// The colour to draw a trace of that prescribed colour in; keeps its transparency.
  QColor OfTrace(const QColor& prescribed) const;
  /// The seam for a line whose colour is faint on the paper; invalid for a colour that needs none.
  QColor SeamOf(const QColor& trace) const;

  bool dark;
  QColor window, text, faint, paper, grid, ink, frame, accent;
};

}  // namespace zth::widgets
