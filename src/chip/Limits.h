#pragma once

#include <cstdint>

/// Limit registers as engineering units and back. Pure functions; ties round to even, what does not fit a byte is
/// limited to its nearer end.
namespace zth::chip {

/// Degrees C as a limit byte. The offset is even, so that it does not matter whether it is added before or after
/// rounding.
std::uint8_t TemperatureLimitFromDegrees(double degrees);

/// Volts of a voltage limit, to two decimals; 192 stands for `nominal`, the channel's nominal voltage.
double VoltageRawToVolts(std::uint8_t raw, float nominal);

std::uint8_t VoltsToVoltageRaw(double volts, float nominal);

/// Rpm of a tach limit, which is the upper byte of a tach count whose lower byte is 255, at `clock` counts a second.
/// 12000 for a limit of 0; a speed below 100 gives 0.
float TachLimitToRpm(std::uint8_t raw, std::int32_t clock);

/// The limit that a speed is written as; 0 counts as 1 rpm. Not the exact inverse: a limit that is shown and written
/// back can come out one higher or lower.
std::uint8_t RpmToTachLimit(double rpm, std::int32_t clock);

inline constexpr float kTopRpm = 12000;

}  // namespace zth::chip
