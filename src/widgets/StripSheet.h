#pragma once

#include "widgets/StripColours.h"
#include "widgets/StripLayout.h"
#include "widgets/StripScene.h"
#include "widgets/StripText.h"

class QPainter;

namespace zth::widgets {

struct StripReadout;

/// A picture being drawn: its contents, layout and painter. Lives as long as the painter.
struct StripSheet {
  QPainter& painter;
  const StripScene& scene;
  const StripLayout& layout;
  const StripColours& colours;
  StripText& text;
  StripText& bold;
  const StripReadout* readout = nullptr;  ///< set while there is a cursor
};

}  // namespace zth::widgets
