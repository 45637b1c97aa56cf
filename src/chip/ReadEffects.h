#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

#include "chip/RegisterNames.h"

/// What a read does to the chip beside giving a value.
namespace zth::chip {

/// The status registers. The chip holds a status bit until the copy that it stands in has been read after the end of
/// its cause; so the first to read one is the only one to see what has been over by then. The host's copies and the
/// BMC's are cleared each by its own reads. "GPIO Status,Host" is not among them: it follows the pins.
inline constexpr std::array kClearedByRead{
    "Thermal Status 1,Host"_reg, "Thermal Status 2,Host"_reg, "Thermal Status 3,Host"_reg, "Voltage Status 1,Host"_reg,
    "Voltage Status 2,Host"_reg, "Fan Status,Host"_reg,       "Digital Status,Host"_reg,   "Thermal Status 1,BMC"_reg,
    "Thermal Status 2,BMC"_reg,  "Voltage Status 1,BMC"_reg,  "Voltage Status 2,BMC"_reg,  "Fan Status,BMC"_reg,
    "Digital Status,BMC"_reg};

/// Whether a read of the register changes it, so that nobody reads it who was not asked for that very one.
constexpr bool ReadClears(std::int32_t address) {
  return std::ranges::find(kClearedByRead, address) != kClearedByRead.end();
}

}  // namespace zth::chip
