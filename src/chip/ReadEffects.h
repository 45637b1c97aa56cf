#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

#include "chip/RegisterNames.h"

/// The side effects that a read has on the chip.
namespace zth::chip {

/// The status registers. The chip holds a status bit until this copy of it is read after its cause has ended. So only
/// the first reader sees a cause that has ended by then. The host's copies and the BMC's copies are each cleared by
/// their own reads. "GPIO Status,Host" is not in the list: it follows the pins.
inline constexpr std::array kClearedByRead{
    "Thermal Status 1,Host"_reg, "Thermal Status 2,Host"_reg, "Thermal Status 3,Host"_reg, "Voltage Status 1,Host"_reg,
    "Voltage Status 2,Host"_reg, "Fan Status,Host"_reg,       "Digital Status,Host"_reg,   "Thermal Status 1,BMC"_reg,
    "Thermal Status 2,BMC"_reg,  "Voltage Status 1,BMC"_reg,  "Voltage Status 2,BMC"_reg,  "Fan Status,BMC"_reg,
    "Digital Status,BMC"_reg};

/// Whether a read of the register changes it. Such a register is read only when the user asked for exactly that one.
constexpr bool ReadClears(std::int32_t address) {
  return std::ranges::find(kClearedByRead, address) != kClearedByRead.end();
}

}  // namespace zth::chip
