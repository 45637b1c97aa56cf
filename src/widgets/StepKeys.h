#pragma once

#include <optional>

#include <QKeyEvent>

namespace zth::widgets {

/// The number of steps for a slider's key: 1 for an arrow, 10 for a page key, kAllSteps for Home and End. Nothing for
/// any other key, or with a modifier.
inline constexpr int kAllSteps = 1'000'000;
std::optional<int> StepsOfKey(const QKeyEvent& event);

/// The value after a slider's key is pressed at `value`: arrows move by a step, page keys by ten steps, Home and End to
/// the ends. The result may lie beyond the ends. Nothing for any other key, or with a modifier.
std::optional<double> SteppedByKey(const QKeyEvent& event, double value, double step, double minimum, double maximum);

}  // namespace zth::widgets
