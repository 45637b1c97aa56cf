#pragma once

#include <array>

#include "windows/data/GraphCharts.h"

namespace zth::widgets {
class Strip;
}

namespace zth::windows {

using Graphs = std::array<widgets::Strip*, kGraphs>;

/// Adds the newest values of `Measurements` to all seven charts, visible or not, and updates their legends. A stale
/// value becomes a gap, and its legend shows its age.
void FeedGraphs(const Graphs& stpGraph);

}  // namespace zth::windows
