#pragma once

#include <cstdint>
#include <vector>

#include "chip/RegisterNames.h"

/// What a write does besides changing the register itself.
namespace zth::chip {

/// The software reset.
inline constexpr RegisterField kReset = At("Configuration 0", "SWR");
/// Once set, settings and limits cannot be written before a reset.
inline constexpr RegisterField kLock = At("Configuration 1", "LCK");
/// Set by the chip.
inline constexpr RegisterField kReady = At("Configuration 1", "RDY");

/// Whether a register has a role in the Easy options: "Easy Config" sets the four pin registers, and a pin register
/// that departs from the option makes the chip drop it.
constexpr bool IsOfEasyOption(std::int32_t reg) {
  return (reg >= "Pin Config 1"_reg && reg <= "Pin Config 4"_reg) || reg == "Easy Config"_reg;
}

/// Whether a register decides if and how the chip itself moves Tmin and operating points.
constexpr bool IsOfTminControl(std::int32_t reg) {
  return reg == "Tmin_Cal1"_reg || reg == "Tmin_Cal2"_reg;
}

/// Whether the chip may move a register while its Tmin control runs.
constexpr bool IsMovedByTminControl(std::int32_t reg) {
  return reg >= "Remote 1 Operating Point"_reg && reg <= "Remote 3 Tmin"_reg;
}

/// The bits of a register that are not written to put an old value back: they do something, or the chip sets them. All
/// bits of a register that cannot be written.
std::uint8_t BitsNotPutBack(std::uint8_t reg);

/// The other registers that the chip may change when a register is written.
std::vector<std::uint8_t> ChangedByWrite(std::uint8_t reg, std::uint8_t value);

}  // namespace zth::chip
