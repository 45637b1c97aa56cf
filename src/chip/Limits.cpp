#include "chip/Limits.h"

#include <cmath>

#include "base/Rounding.h"
#include "chip/Conversions.h"

namespace zth::chip {
namespace {

constexpr float kLowestRpm = 100;

/// The quotient that turns a limit into a speed and, by the same expression, a speed into a limit.
float CountsOver(double number, std::int32_t clock) {
  constexpr double kSecondsPerMinute = 60;
  return static_cast<float>(clock * kSecondsPerMinute / (number * 256 + 255));
}

}  // namespace

std::uint8_t TemperatureLimitFromDegrees(double degrees) {
  return base::RoundToByte(degrees + kTemperatureOffset);
}

double VoltageRawToVolts(std::uint8_t raw, float nominal) {
  return base::RoundHalfEven(raw * static_cast<double>(nominal) / kNominalCode, 2);
}

std::uint8_t VoltsToVoltageRaw(double volts, float nominal) {
  return base::RoundToByte(volts * kNominalCode / static_cast<double>(nominal));
}

float TachLimitToRpm(std::uint8_t raw, std::int32_t clock) {
  if (raw == 0) return kTopRpm;
  const float rpm = CountsOver(raw, clock);
  return rpm < kLowestRpm ? 0 : rpm;
}

std::uint8_t RpmToTachLimit(double rpm, std::int32_t clock) {
  return base::RoundToByte(static_cast<double>(CountsOver(rpm == 0 ? 1 : rpm, clock)));
}

}  // namespace zth::chip
