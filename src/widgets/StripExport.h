#pragma once

#include <QString>

#include "widgets/StripScene.h"

namespace zth::widgets {

/// The shown traces within the X window as comma-separated text, a header line first. A time chart gives one row an
/// instant and one column a trace, empty where a trace has no value there; of summaries both ends. An X-Y chart gives
/// one row a point: trace, x, y. Numbers have a decimal point in every locale.
QString StripCsv(const StripScene& scene);

}  // namespace zth::widgets
