#pragma once

#include <cstdint>

/// Converts limit registers to engineering units and back. Pure functions; ties round to even, and results are clamped
/// to a byte.
namespace zth::chip {

/// Degrees C as a limit byte. The offset is even, so adding it before or after rounding makes no difference.
std::uint8_t TemperatureLimitFromDegrees(double degrees);

/// Volts from a voltage limit, to two decimals; 192 stands for `nominal`, the channel's nominal voltage.
double VoltageRawToVolts(std::uint8_t raw, float nominal);

std::uint8_t VoltsToVoltageRaw(double volts, float nominal);

/// Rpm from a tach limit, which is the upper byte of a tach count whose lower byte is 255, at `clock` counts per
/// second. A limit of 0 gives 12000; a speed below 100 gives 0.
float TachLimitToRpm(std::uint8_t raw, std::int32_t clock);

/// The limit byte for a speed; 0 counts as 1 rpm. Not the exact inverse: a limit that is shown and written back can
/// change by one.
std::uint8_t RpmToTachLimit(double rpm, std::int32_t clock);

inline constexpr float kTopRpm = 12000;

}  // namespace zth::chip
