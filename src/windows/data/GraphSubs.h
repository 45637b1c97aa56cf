#pragma once

#include <array>

#include "windows/data/GraphCharts.h"

namespace zth::widgets {
class Strip;
}

namespace zth::windows {

using Graphs = std::array<widgets::Strip*, kGraphs>;

/// Adds the newest values of `Measurements` to all seven charts, shown or not, and writes their legends. A stale value
/// is a gap, and its legend tells how old it is.
void FeedGraphs(const Graphs& stpGraph);

}  // namespace zth::windows
