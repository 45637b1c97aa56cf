#pragma once

#include <array>
#include <cstdint>

#include "widgets/StripSetup.h"

/// What the seven charts of the graph window look like at the start.
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

/// Label slots of the legend. A chart of two zones has the heading of the second zone and its rows behind the four
/// rows of the temperatures, and the traces of the second zone behind those of the temperatures.
inline constexpr int kFirstSlot = 1;
inline constexpr int kHeadingSlot = 5;
inline constexpr int kSecondSlot = 6;
inline constexpr int kSecondTrace = 4;

/// The items of the list; the position is the chart's index.
inline constexpr std::array<const char*, kGraphs> kGraphNames{
    "Temperature Only", "Tach Only", "PWM Only", "Temperature and Tach", "Temperature and PWM", "Voltage", "THERM"};

/// Traces and label slots that the voltage chart has at the least.
inline constexpr int kVoltageTraces = 13;

/// The set-up of a chart, 0 to 6. `voltages` is how many voltage channels are present.
widgets::StripSetup GraphSetup(int index, int voltages);

}  // namespace zth::windows
