#pragma once

#include <cstdint>

namespace zth::base {

/// `value` rounded to the nearest integer; ties go to even. Infinities and NaN are returned unchanged.
double RoundHalfEven(double value);

/// `value` rounded to `decimals` places (0 to 9); ties go to the even last digit.
double RoundHalfEven(double value, int decimals);

/// RoundHalfEven as an integer, clamped to the range of std::int32_t; NaN gives 0.
std::int32_t RoundToInt(double value);

/// RoundHalfEven clamped to 0 to 255.
std::uint8_t RoundToByte(double value);

}  // namespace zth::base
