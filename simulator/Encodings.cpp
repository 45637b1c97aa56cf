#include "simulator/Encodings.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace zth::simulator {
namespace {

// Trange in sixths of a degree, which represents 3.33, 6.67, 13.33, 26.67 and 53.33 degrees exactly.
constexpr std::array<std::int64_t, 16> kTrangeSixths{12, 15, 20,  24,  30,  40,  48,  60,
                                                     80, 96, 120, 160, 192, 240, 320, 480};

constexpr double kTachClockPerMinute = 90000.0 * 60.0;

}  // namespace

int TemperatureCode(double temperatureC) {
  return static_cast<int>(std::clamp(std::floor((temperatureC + 64.0) * 4.0 + 0.5), 0.0, 1023.0));
}

std::uint8_t VoltageCode(double volts, double reference, double fullCode) {
  return static_cast<std::uint8_t>(std::clamp(std::floor(volts * fullCode / reference + 0.5), 0.0, 255.0));
}

int TachCount(double pulsesPerMinute, int pulses) {
  if (pulsesPerMinute <= 0) return 0xFFFF;
  return static_cast<int>(std::min(std::floor(kTachClockPerMinute * pulses / pulsesPerMinute), 65535.0));
}

int CurveRise(int quarters, int trangeField) {
  // 0.64 * 255 * (quarters / 4) / (sixths / 6) = 1224 * quarters / (5 * sixths) in integers, so that only the final
  // result is rounded.
  const std::int64_t above = std::int64_t{1224} * quarters;
  const std::int64_t below = 5 * kTrangeSixths[static_cast<std::size_t>(trangeField)];
  const std::int64_t whole = above / below;
  const std::int64_t twiceRest = 2 * (above % below);
  const bool up = twiceRest > below || (twiceRest == below && whole % 2 == 1);
  return static_cast<int>(whole + (up ? 1 : 0));
}

}  // namespace zth::simulator
