#pragma once

#include <cstdint>

/// Converts raw register bytes to engineering units and back. Pure functions; ties round to even.
namespace zth::chip {

/// A temperature byte is degrees C plus this offset.
inline constexpr int kTemperatureOffset = 64;

/// The code of a voltage input at its nominal voltage.
inline constexpr int kNominalCode = 192;

/// A duty or on-time byte of 255 means 100 percent.
inline constexpr double kPercentDivisor = 2.55;

inline constexpr std::int32_t kMinimumRpm = 90;
inline constexpr std::int32_t kMaximumRpm = 200000;

/// Degrees C, -64 to 191.75 in steps of 0.25, from a reading's two bytes; the fraction is in the top two bits of the
/// low byte.
float TemperatureFromBytes(std::uint8_t low, std::uint8_t high);

/// Degrees C, -64 to 191, from a limit or control byte.
constexpr std::int16_t DegreesFromByte(std::uint8_t raw) {
  return static_cast<std::int16_t>(raw - kTemperatureOffset);
}

/// Revolutions per minute from a tach count of 0 to 0xFFFF at `clock` counts per second: clock * 60 / count, rounded
/// down. A count of 0 is treated as 1. Speeds below 90 or above 200000 are invalid and give 0.
std::int32_t TachCountToRpm(std::int32_t count, std::int32_t clock);

/// Converts a reported duty byte to the actual duty: a chip of revision 0 reports it inverted.
constexpr std::int16_t PwmRawNormalise(std::int16_t raw, std::int16_t revision) {
  return revision == 0 ? static_cast<std::int16_t>(255 - raw) : raw;
}

/// A byte as a whole percentage of 255: a duty, a THERM on-time, or a limit of either.
std::int16_t PercentFromByte(std::int16_t raw);

/// The byte for a slider or a gauge at `percent`, 0 to 100. The product is computed in double precision and falls just
/// below some of the ties, so 50 and 90 % give a byte one lower than DutyByte.
std::uint8_t ByteFromPercent(double percent);

/// Volts from a voltage code, to two decimals: raw * scale / 192, with the quotient in single precision before
/// rounding. `scale` is the input's nominal voltage.
float VoltageFromRaw(std::uint8_t raw, double scale);

}  // namespace zth::chip
