#pragma once

#include <cstdint>
#include <span>

namespace zth::simulator {

/// What a write to a register does besides, or instead of, being kept.
enum class OnWrite : std::uint8_t {
  Keep,        ///< all eight bits are kept
  Config1,     ///< kept but for the ready bit, which is the chip's own
  TachOrVid,   ///< kept but for the bits that show VID inputs
  Ignore,      ///< read-only
  Reset,       ///< bit 7 puts every register back to its power-up value and clears itself
  PinConfig,   ///< kept; what the old function of a pin left in its registers goes, and so does an option left by it
  Easy,        ///< kept, and the pin registers 0x10 to 0x13 take the assignment of the option
  Therm,       ///< kept, and the THERM comparison is made afresh
  PwmConfig,   ///< kept, and an output that goes to manual keeps its duty
  TachEnable,  ///< kept, and a tach that goes off reads 0xFFFF at once
  Duty,        ///< taken as the duty of an output in manual mode, else ignored
  GpioLevels,  ///< read-only but for the bits of pins that are outputs
};

/// What a read does besides giving the byte.
enum class OnRead : std::uint8_t {
  Plain,
  Latch,  ///< a status register: the bits whose cause is over are cleared by the read
};

/// One register as the chip behaves.
struct RegisterRule {
  std::uint8_t address;
  std::uint8_t reset;  ///< value at power-up
  OnWrite onWrite = OnWrite::Keep;
  OnRead onRead = OnRead::Plain;

  /// The register is documented as read-only.
  constexpr bool ReadOnly() const { return onWrite == OnWrite::Ignore || onWrite == OnWrite::GpioLevels; }

  /// The lock bit makes the register read-only: settings and limits, but neither the reset that ends the lock nor what
  /// is for the running: masks, manual duties and GPIO levels.
  constexpr bool Lockable() const {
    const bool mask = address >= 0x30 && address <= 0x38;
    return !ReadOnly() && !mask && onWrite != OnWrite::Reset && onWrite != OnWrite::Duty;
  }
};

/// All registers of the chip, in rising order of address. An address that is not here reads 0 and ignores writes.
std::span<const RegisterRule> RegisterRules();

/// The rule of an address, or nullptr.
const RegisterRule* RuleOf(std::uint8_t address);

}  // namespace zth::simulator
