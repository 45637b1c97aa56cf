#include "chip/Conversions.h"

#include "base/Rounding.h"

namespace zth::chip {

float TemperatureFromBytes(std::uint8_t low, std::uint8_t high) {
  return static_cast<float>(high - kTemperatureOffset) + static_cast<float>(low >> 6) * 0.25F;
}

std::int32_t TachCountToRpm(std::int32_t count, std::int32_t clock) {
  const std::int64_t countsPerMinute = std::int64_t{clock} * 60;
  const std::int64_t rpm = count == 0 ? countsPerMinute : countsPerMinute / count;
  return rpm < kMinimumRpm || rpm > kMaximumRpm ? 0 : static_cast<std::int32_t>(rpm);
}

std::int16_t PercentFromByte(std::int16_t raw) {
  return static_cast<std::int16_t>(base::RoundToInt(raw / kPercentDivisor));
}

std::uint8_t ByteFromPercent(double percent) {
  return base::RoundToByte(percent * kPercentDivisor);
}

float VoltageFromRaw(std::uint8_t raw, double scale) {
  const auto quotient = static_cast<float>(raw * scale / kNominalCode);
  return static_cast<float>(base::RoundHalfEven(static_cast<double>(quotient), 2));
}

}  // namespace zth::chip
