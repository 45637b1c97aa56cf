#pragma once

#include "widgets/StripSheet.h"

namespace zth::widgets {

/// Draws temporary things over a chart: cursors and their positions, the zoom box and signs.
class StripOverlay {
 public:
  explicit StripOverlay(const StripSheet& sheet);

  void Paint();

  /// The place of the cursor's position text below the plot; empty without a cursor.
  static QRect TagOf(const StripSheet& sheet);

 private:
  void Signs();
  void Cursor();

  QPainter& painter_;
  const StripScene& scene_;
  const StripLayout& layout_;
  const StripColours& colours_;
  StripText& text_;
  const StripReadout* readout_;
  QRect tag_;
};

}  // namespace zth::widgets
