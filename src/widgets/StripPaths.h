#pragma once

#include "widgets/StripSheet.h"

namespace zth::widgets {

/// The traces of an X-Y chart, as lines and dots, with the grid along.
void DrawPaths(const StripSheet& sheet);

/// The traces of a time chart as lines that scale. A screen shows them by columns of pixels instead.
void DrawOutlines(const StripSheet& sheet);

}  // namespace zth::widgets
