#pragma once

#include "widgets/StripSheet.h"

namespace zth::widgets {

/// Draws what the user has over a chart at the moment: cursors and where they stand, the box of a zoom, signs.
class StripOverlay {
 public:
  explicit StripOverlay(const StripSheet& sheet);

  void Paint();

  /// Where the cursor's place is told, among the texts under the plot; empty without a cursor.
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
