#pragma once

#include <map>
#include <vector>

#include "windows/limits/LimitTables.h"

namespace zth::windows {

/// One place on a channel's gauge for each limit that a drag can set there, by how that limit shows behind its write. A
/// limit is not always shown where it was set.
using LimitPlaces = std::map<double, double>;
LimitPlaces PlacesOf(const GaugeTab& tab, const LimitChannel& channel);

/// Where the keys take a limit that shows at `value`, rising, with `value` among them: the places before it lead to
/// lower limits, those behind it to higher ones.
std::vector<double> LimitStops(const LimitPlaces& places, double value);

}  // namespace zth::windows
