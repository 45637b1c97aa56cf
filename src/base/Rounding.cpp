#include "base/Rounding.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace zth::base {

double RoundHalfEven(double value) {
  // Not std::nearbyint: it depends on the rounding mode, which any library may have changed.
  const double floor = std::floor(value);
  const double fraction = value - floor;
  if (!(fraction == 0.5)) return fraction > 0.5 ? floor + 1 : (fraction < 0.5 ? floor : value);
  return std::fmod(floor, 2.0) == 0.0 ? floor : floor + 1;
}

double RoundHalfEven(double value, int decimals) {
  static constexpr std::array kScale{1.0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9};
  const double scale = kScale[static_cast<std::size_t>(std::clamp(decimals, 0, 9))];
  const double scaled = value * scale;
  return std::isfinite(scaled) ? RoundHalfEven(scaled) / scale : value;
}

std::int32_t RoundToInt(double value) {
  if (std::isnan(value)) return 0;
  using Limits = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(
      std::clamp(RoundHalfEven(value), static_cast<double>(Limits::min()), static_cast<double>(Limits::max())));
}

std::uint8_t RoundToByte(double value) {
  return static_cast<std::uint8_t>(std::clamp(RoundToInt(value), 0, 255));
}

}  // namespace zth::base
