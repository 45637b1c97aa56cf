#pragma once

#include <QString>

#include "widgets/StripScene.h"

namespace zth::widgets {

/// The shown traces within the X window as comma-separated text with a header line. A time chart gives one row per time
/// and one column per trace, empty if the trace has no value then; a summary gives both its ends. The first column is
/// seconds since the first sample; if the axis shows the time of day, the second one is the local date and time. An X-Y
/// chart gives one row per point: trace, x, y. Numbers have a decimal point in every locale.
QString StripCsv(const StripScene& scene);

}  // namespace zth::widgets
