#pragma once

#include <cstdint>
#include <span>

#include "widgets/StripSheet.h"

namespace zth::widgets {

/// Marks where a time chart's trace leaves its zone: a small triangle at the edge, which moves with the samples.
/// `first` is the number of the first column.
void MarkCutColumns(const StripSheet& sheet, int trace, std::span<const TraceHistory::Column> columns,
                    std::int64_t first);

/// The same for every point of a trace in an X-Y chart.
void MarkCutPoints(const StripSheet& sheet, int trace);

}  // namespace zth::widgets
