#pragma once

#include <QColor>
#include <QPalette>

namespace zth::widgets {

/// The colours of a chart. The prescribed ones of the traces stand on white paper. A dark palette gets dark paper, and
/// each trace the equivalent of its colour there: the same hue, light enough to stand out by 3 to 1; white for black.
struct StripColours {
  explicit StripColours(const QPalette& palette);

  /// What a trace of that prescribed colour is drawn in; as transparent as it.
  QColor OfTrace(const QColor& prescribed) const;
  /// The seam that a line of a faint colour gets on paper; invalid for a colour that stands out by itself.
  QColor SeamOf(const QColor& trace) const;

  bool dark;
  QColor window, text, faint, paper, grid, ink, frame, accent;
};

}  // namespace zth::widgets
