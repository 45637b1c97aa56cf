#pragma once

#include <optional>

#include <QKeyEvent>

namespace zth::widgets {

/// Where a key that a slider knows leads from `value`: arrows by a step, the page keys by ten, Home and End to the
/// ends. May lie beyond them. Nothing for another key, or one with a modifier.
std::optional<double> SteppedByKey(const QKeyEvent& event, double value, double step, double minimum, double maximum);

}  // namespace zth::widgets
