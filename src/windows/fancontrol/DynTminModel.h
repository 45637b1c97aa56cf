#pragma once

#include <array>
#include <cstdint>

#include <QString>

/// What the charts of the dynamic Tmin control are told: which fans a channel drives, and where a trace's name stands.
/// No widgets, no chip.
namespace zth::windows {

inline constexpr int kRemotes = 2;

/// The PWMs that one channel drives, in rising order.
struct DutyTraceList {
  std::array<std::int16_t, 4> Pwm{};  ///< 0 to 3
  std::array<QString, 4> Name;        ///< "PWM1" to "PWM4"
  std::int16_t Count = 0;
};

/// The lists of Remote1 and Remote2 for the bytes of "PWM1 Config" to "PWM4 Config". A PWM that goes by the hottest of
/// all four channels stands in both.
std::array<DutyTraceList, kRemotes> ListDutyTraces(const std::array<std::uint8_t, 4>& configs);

/// A zone of a chart: its bottom as a fraction of the chart's height from the top, and the values at its bottom and
/// top.
struct TraceZone {
  float bottom = 1;
  float min = 0;
  float max = 1;
};

/// How far down, as a fraction of the chart's height, the name of a trace stands whose last value is `value`: level
/// with it, and at the zone's edge when it is out of range.
float TraceLabelTop(const TraceZone& zone, std::int32_t value);

}  // namespace zth::windows
