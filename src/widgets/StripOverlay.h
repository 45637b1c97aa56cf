#pragma once

#include "widgets/StripSheet.h"

namespace zth::widgets {

/// Draws what the user has over a chart at the moment: cursors with their read-out, the box of a zoom, signs.
class StripOverlay {
 public:
  explicit StripOverlay(const StripSheet& sheet);

  void Paint();

 private:
  void Signs();
  void Readout();

  QPainter& painter_;
  const StripScene& scene_;
  const StripLayout& layout_;
  const StripColours& colours_;
  StripText& text_;
};

}  // namespace zth::widgets
