#pragma once

#include <string>
#include <vector>

#include "command/Monitor.h"
#include "platform/Pages.h"
#include "tasks/OpenMetrics.h"

/// What `serve` shows of the chips that a monitor reads. Makes no transfer.
namespace zth::command {

/// Readings that are stale are left out, so all of a lost chip are. With `isStuck` there are none, and no chip answers.
std::vector<tasks::MetricFamily> MetricsOf(Monitor& monitor, bool isStuck);

/// "/metrics", and the health page at "/" and "/healthz": its status is 503 unless every chip answers.
std::vector<platform::Page> PagesOf(Monitor& monitor);

/// The same for when the monitor has got stuck in a transfer.
std::vector<platform::Page> StuckPagesOf(Monitor& monitor);

/// The same while the chips are searched.
std::vector<platform::Page> StartingPages();

}  // namespace zth::command
