#pragma once

#include <array>
#include <cstdint>

#include <QString>

/// Data for the charts of the dynamic Tmin control: which fans a channel controls, and where a trace's name is placed.
/// No widgets, no chip access.
namespace zth::windows {

inline constexpr int kRemotes = 2;

/// The PWMs that one channel controls, in ascending order.
struct DutyTraceList {
  std::array<std::int16_t, 4> Pwm{};  ///< 0 to 3
  std::array<QString, 4> Name;        ///< "PWM1" to "PWM4"
  std::int16_t Count = 0;
};

/// The lists of Remote1 and Remote2 for the bytes of "PWM1 Config" to "PWM4 Config". A PWM that follows the hottest of
/// all four channels is in both.
std::array<DutyTraceList, kRemotes> ListDutyTraces(const std::array<std::uint8_t, 4>& configs);

/// A zone of a chart: its bottom as a fraction of the chart's height from the top, and the values at its bottom and
/// top.
struct TraceZone {
  float bottom = 1;
  float min = 0;
  float max = 1;
};

/// The vertical position, as a fraction of the chart's height from the top, of the name of a trace whose last value is
/// `value`: level with the value, or at the zone's edge if it is out of range.
float TraceLabelTop(const TraceZone& zone, std::int32_t value);

}  // namespace zth::windows
