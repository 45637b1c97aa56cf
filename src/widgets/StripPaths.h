#pragma once

#include "widgets/StripSheet.h"

namespace zth::widgets {

/// Draws the traces of an X-Y chart, as lines and dots, and the grid.
void DrawPaths(const StripSheet& sheet);

/// Draws the traces of a time chart as scalable lines. The screen uses columns of pixels instead.
void DrawOutlines(const StripSheet& sheet);

}  // namespace zth::widgets
