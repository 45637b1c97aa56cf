#pragma once

#include <array>
#include <cstdint>

#include "widgets/StripSetup.h"

/// The initial set-up of the graph window's seven charts.
namespace zth::windows {

/// The charts by index.
enum Graph : std::uint8_t {
  kTemperatureGraph,
  kTachGraph,
  kPwmGraph,
  kTemperatureTachGraph,
  kTemperaturePwmGraph,
  kVoltageGraph,
  kThermGraph,
  kGraphs,
};

/// Label slots of the legend. In a chart with two zones, the heading and the rows of the second zone follow the four
/// rows of the temperatures, and its traces follow those of the temperatures.
inline constexpr int kFirstSlot = 1;
inline constexpr int kHeadingSlot = 5;
inline constexpr int kSecondSlot = 6;
inline constexpr int kSecondTrace = 4;

/// The items of the list; the position is the chart's index.
inline constexpr std::array<const char*, kGraphs> kGraphNames{
    "Temperature Only", "Tach Only", "PWM Only", "Temperature and Tach", "Temperature and PWM", "Voltage", "THERM"};

/// The minimum number of traces and label slots in the voltage chart.
inline constexpr int kVoltageTraces = 13;

/// The set-up of chart 0 to 6. `voltages` is the number of voltage channels present.
widgets::StripSetup GraphSetup(int index, int voltages);

}  // namespace zth::windows
