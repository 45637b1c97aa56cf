#pragma once

#include <vector>

#include "windows/limits/LimitTables.h"

namespace zth::windows {

/// Where the keys take a limit that shows at `value`, rising, with `value` among them: one place on the gauge for each
/// other limit that a drag could set. A limit is not always shown where it was set, so that a place counts by the limit
/// that comes of it: those below `value` lead to lower limits, those above it to higher ones.
std::vector<double> LimitStops(const GaugeTab& tab, const LimitChannel& channel, double value);

}  // namespace zth::windows
