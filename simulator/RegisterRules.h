#pragma once

#include <cstdint>
#include <span>

namespace zth::simulator {

/// The effect of a write to a register, in addition to storing the byte or instead of it.
enum class OnWrite : std::uint8_t {
  Keep,        ///< all eight bits are stored
  Config1,     ///< writable except for the ready bit, which belongs to the chip
  TachOrVid,   ///< writable except for the bits that show VID inputs
  Ignore,      ///< read-only
  Reset,       ///< bit 7 resets every register to its power-up value and clears itself
  PinConfig,   ///< stored; clears what a pin's old function left in its registers, and drops an option that no longer
               ///< applies
  Easy,        ///< stored; the pin registers 0x10 to 0x13 get the option's assignment
  Therm,       ///< stored; the THERM comparison is repeated
  PwmConfig,   ///< stored; an output that is switched to manual keeps its duty
  TachEnable,  ///< stored; a tach that is switched off reads 0xFFFF at once
  Duty,        ///< sets the duty of an output in manual mode, otherwise ignored
  GpioLevels,  ///< read-only except for the bits of pins that are outputs
};

/// The effect of a read, in addition to returning the byte.
enum class OnRead : std::uint8_t {
  Plain,
  Latch,  ///< a status register: the read clears the bits whose cause is over
};

/// The behaviour of one register.
struct RegisterRule {
  std::uint8_t address;
  std::uint8_t reset;  ///< value at power-up
  OnWrite onWrite = OnWrite::Keep;
  OnRead onRead = OnRead::Plain;

  /// True if the register is documented as read-only.
  constexpr bool ReadOnly() const { return onWrite == OnWrite::Ignore || onWrite == OnWrite::GpioLevels; }

  /// The lock bit makes the register read-only. It covers settings and limits. It does not cover the reset that ends
  /// the lock, nor what is changed during operation: masks, manual duties and GPIO levels.
  constexpr bool Lockable() const {
    const bool mask = address >= 0x30 && address <= 0x38;
    return !ReadOnly() && !mask && onWrite != OnWrite::Reset && onWrite != OnWrite::Duty;
  }
};

/// All registers of the chip, by ascending address. Any other address reads 0 and ignores writes.
std::span<const RegisterRule> RegisterRules();

/// The rule of an address, or nullptr if there is none.
const RegisterRule* RuleOf(std::uint8_t address);

}  // namespace zth::simulator
