#pragma once

#include <optional>

#include <QKeyEvent>

namespace zth::widgets {

/// How many steps a key of a slider goes: arrows one, the page keys ten, Home and End kAllSteps. Nothing for another
/// key, or one with a modifier.
inline constexpr int kAllSteps = 1'000'000;
std::optional<int> StepsOfKey(const QKeyEvent& event);

/// Where a key that a slider knows leads from `value`: arrows by a step, the page keys by ten, Home and End to the
/// ends. May lie beyond them. Nothing for another key, or one with a modifier.
std::optional<double> SteppedByKey(const QKeyEvent& event, double value, double step, double minimum, double maximum);

}  // namespace zth::widgets
