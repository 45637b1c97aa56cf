#pragma once

#include <cstdint>

/// Raw register bytes as engineering units and back. Pure functions; ties round to even.
namespace zth::chip {

/// A temperature byte holds degrees C plus this.
inline constexpr int kTemperatureOffset = 64;

/// The code at which a voltage input reads its nominal voltage.
inline constexpr int kNominalCode = 192;

/// A duty or on-time byte of 255 is 100 percent.
inline constexpr double kPercentDivisor = 2.55;

inline constexpr std::int32_t kMinimumRpm = 90;
inline constexpr std::int32_t kMaximumRpm = 200000;

/// Degrees C, -64 to 191.75 in steps of 0.25, from the two bytes of a reading; the fraction stands in the low byte's
/// two top bits.
float TemperatureFromBytes(std::uint8_t low, std::uint8_t high);

/// Degrees C, -64 to 191, from a limit or a control byte.
constexpr std::int16_t DegreesFromByte(std::uint8_t raw) {
  return static_cast<std::int16_t>(raw - kTemperatureOffset);
}

/// Revolutions a minute from a tach count of 0 to 0xFFFF at `clock` counts a second: clock * 60 / count rounded down. A
/// count of 0 stands for 1. A speed below 90 or above 200000 is no reading and gives 0.
std::int32_t TachCountToRpm(std::int32_t count, std::int32_t clock);

/// A duty byte as the chip reports it, made a duty: a chip of revision 0 reports it inverted.
constexpr std::int16_t PwmRawNormalise(std::int16_t raw, std::int16_t revision) {
  return revision == 0 ? static_cast<std::int16_t>(255 - raw) : raw;
}

/// A byte as a whole percentage of 255: of a duty, a limit of one, or a THERM on-time.
std::int16_t PercentFromByte(std::int16_t raw);

/// The byte of a slider or a gauge at `percent`, 0 to 100. The product is formed in double precision and lies just
/// under some of the ties, so 50 and 90 % give a byte one lower than DutyByte.
std::uint8_t ByteFromPercent(double percent);

/// Volts of a voltage code, to two decimals: raw * scale / 192, the quotient in single precision before it is rounded.
/// `scale` is the input's nominal voltage.
float VoltageFromRaw(std::uint8_t raw, double scale);

}  // namespace zth::chip
