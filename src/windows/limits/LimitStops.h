#pragma once

#include <map>
#include <vector>

#include "windows/limits/LimitTables.h"

namespace zth::windows {

/// One place on a channel's gauge for each limit that a drag can set, keyed by the value that is shown after the write.
/// A limit is not always shown where it was set.
using LimitPlaces = std::map<double, double>;
LimitPlaces PlacesOf(const GaugeTab& tab, const LimitChannel& channel);

/// The places to which the keys move a limit shown at `value`, ascending and including `value`: the places before it
/// give lower limits, those after it higher ones.
std::vector<double> LimitStops(const LimitPlaces& places, double value);

}  // namespace zth::windows
