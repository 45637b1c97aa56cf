#pragma once

#include <cstdint>

/// Reads and changes bit fields of 8-bit registers.
namespace zth::base {

/// A field of `width` bits (1 to 8). Its lowest bit is bit `shift` (0 to 7).
struct BitField {
  std::uint8_t shift = 0;
  std::uint8_t width = 1;
};

constexpr unsigned Mask(BitField field) {
  return ((1U << field.width) - 1U) << field.shift;
}

/// The field's value within `whole`.
constexpr unsigned GetField(unsigned whole, BitField field) {
  return (whole & Mask(field)) >> field.shift;
}

/// `whole` with the field set to the low bits of `value`; the other bits are kept.
constexpr std::uint8_t PutField(unsigned whole, BitField field, unsigned value) {
  return static_cast<std::uint8_t>((whole & ~Mask(field)) | ((value << field.shift) & Mask(field)));
}

constexpr bool GetBit(unsigned whole, int bit) {
  return ((whole >> bit) & 1U) != 0;
}

constexpr std::uint8_t PutBit(unsigned whole, int bit, bool on) {
  return PutField(whole, {static_cast<std::uint8_t>(bit), 1}, on ? 1U : 0U);
}

static_assert(PutField(0xA5, {4, 2}, 0b11) == 0xB5, "neighbours survive");
static_assert(PutField(0xFF, {5, 3}, 0xF2) == 0x5F, "a value wider than the field spills nowhere");

}  // namespace zth::base
