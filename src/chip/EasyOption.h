#pragma once

#include <cmath>
#include <cstdint>

#include "base/Rounding.h"

namespace zth::chip {

/// The byte of "Easy Config" that selects Easy option 1 to 5, one bit each. A fraction is rounded down; anything below
/// 1 is no option and gives 0.
inline std::uint8_t EasyOptionByte(double option) {
  return base::RoundToByte(std::exp2(std::floor(option - 1)));
}

}  // namespace zth::chip
