#pragma once

#include <array>

#include "widgets/StripSetup.h"

/// What the seven charts of the graph window look like at the start.
namespace zth::windows {

inline constexpr int kGraphs = 7;

/// The items of the list; the position is the chart's index.
inline constexpr std::array<const char*, kGraphs> kGraphNames{
    "Temperature Only", "Tach Only", "PWM Only", "Temperature and Tach", "Temperature and PWM", "Voltage", "THERM"};

/// Traces and label slots that the voltage chart has at the least.
inline constexpr int kVoltageTraces = 13;

/// The set-up of a chart, 0 to 6. `voltages` is how many voltage channels are present.
widgets::StripSetup GraphSetup(int index, int voltages);

}  // namespace zth::windows
