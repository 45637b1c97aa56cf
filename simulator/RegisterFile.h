#pragma once

#include <array>
#include <cstdint>

#include "simulator/RegisterRules.h"

namespace zth::simulator {

/// The chip's register bytes, without any behaviour. The parts of the chip read their settings here and store their
/// results here.
class RegisterFile {
 public:
  RegisterFile() { Reset(); }

  std::uint8_t operator[](int address) const { return bytes_[static_cast<std::uint8_t>(address)]; }
  void Put(int address, int value) { bytes_[static_cast<std::uint8_t>(address)] = static_cast<std::uint8_t>(value); }

  /// A field's value: `width` bits from bit `shift` up.
  int Field(int address, int shift, int width) const { return ((*this)[address] >> shift) & ((1 << width) - 1); }
  bool Bit(int address, int bit) const { return Field(address, bit, 1) != 0; }

  /// True if the register differs from its power-up value.
  bool Changed(int address) const { return (*this)[address] != powerUp_[static_cast<std::uint8_t>(address)]; }

  /// Sets every register to its power-up value.
  void Reset() { bytes_ = powerUp_; }

 private:
  static std::array<std::uint8_t, 256> PowerUp() {
    std::array<std::uint8_t, 256> bytes{};
    for (const RegisterRule& rule : RegisterRules()) bytes[rule.address] = rule.reset;
    return bytes;
  }

  std::array<std::uint8_t, 256> powerUp_ = PowerUp();
  std::array<std::uint8_t, 256> bytes_{};
};

}  // namespace zth::simulator
