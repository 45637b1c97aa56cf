#pragma once

#include <cstdint>

namespace zth::base {

/// The whole number nearest to `value`; a tie goes to the even one. Infinities and NaN pass through.
double RoundHalfEven(double value);

/// `value` rounded to `decimals` places (0 to 9), a tie to the even last digit.
double RoundHalfEven(double value, int decimals);

/// RoundHalfEven as an integer, limited to the nearer end of its range; NaN gives 0.
std::int32_t RoundToInt(double value);

/// A number limited to a byte: RoundHalfEven, then the nearer of 0 and 255.
std::uint8_t RoundToByte(double value);

}  // namespace zth::base
