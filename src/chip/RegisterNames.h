#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string_view>

#include "base/BitField.h"
#include "chip/RegisterRows.h"

/// Registers and their fields by their data sheet names, looked up in kRegisterRows at compile time. An unknown name
/// does not compile.
///
///   "PWM1 Config"_reg                 // its address, 0x21
///   "PWM1 Config"_reg + pwm           // one of several consecutive registers
///   Field("PWM1 Config", "Bhvr")      // bits 7:5
///   At("PWM1 Config", "Bhvr")         // both: a register and its bits
///
/// If the table's bit names are missing or do not tell what the bits do, the field is given in numbers,
/// {"Tmin_Cal1"_reg, {1, 1}}. It gets a name below if more than one file uses it.
namespace zth::chip {

/// A bit field of a register.
struct RegisterField {
  std::uint8_t reg;
  base::BitField bits;
};

/// The first row with an address; null if there is none.
constexpr const RegisterRow* RowAt(std::int32_t address) {
  const auto row = std::ranges::find(kRegisterRows, address, &RegisterRow::address);
  return row == kRegisterRows.end() ? nullptr : &*row;
}

/// Does not compare RowAt() with null: g++ 12 with sanitizers does not accept that as a constant expression.
constexpr bool HasRow(std::int32_t address) {
  return std::ranges::find(kRegisterRows, address, &RegisterRow::address) != kRegisterRows.end();
}

consteval const RegisterRow& RowNamed(std::string_view name) {
  for (const RegisterRow& row : kRegisterRows) {
    // Comparing the first character first skips most rows; compilers limit the steps of constant evaluation.
    if (row.name[0] == name[0] && row.name == name) return row;
  }
  throw std::logic_error("no register has this name");
}

consteval std::uint8_t operator""_reg(const char* name, std::size_t length) {
  return RowNamed({name, length}).address;
}

/// The bits named `name` in the register's row; they must be adjacent.
consteval base::BitField Field(std::string_view reg, std::string_view name) {
  if (name == "Res") throw std::logic_error("reserved bits are no field");
  std::string_view names = RowNamed(reg).bitNames;
  unsigned mask = 0;
  for (int bit = 7; bit >= 0; --bit) {
    const std::size_t length = std::min(names.find(':'), names.size());
    if (names.substr(0, length) == name) mask |= 1U << bit;
    names.remove_prefix(std::min(length + 1, names.size()));
  }
  if (mask == 0) throw std::logic_error("no bit of the register has this name");
  base::BitField field{0, 0};
  while ((mask >> field.shift & 1U) == 0) ++field.shift;
  while ((mask >> field.shift >> field.width & 1U) != 0) ++field.width;
  if (base::Mask(field) != mask) throw std::logic_error("the bits of this name are not neighbours");
  return field;
}

consteval RegisterField At(std::string_view reg, std::string_view name) {
  return {RowNamed(reg).address, Field(reg, name)};
}

/// A PWM's behaviour; the same bits in all four configuration registers.
inline constexpr base::BitField kBehaviour = Field("PWM1 Config", "Bhvr");
inline constexpr unsigned kManualMode = 7;

/// The two halves of a "Trange/Hys" register; the table does not name its bits.
inline constexpr base::BitField kTrange{4, 4};
inline constexpr base::BitField kTminHyst{0, 4};

/// Called "TOD" in the table.
inline constexpr RegisterField kSetupComplete{"Configuration 1"_reg, {5, 1}};

/// "T4E" down to "T1E".
inline constexpr RegisterField kTachs1To4{"Tach Enable"_reg, {0, 4}};

}  // namespace zth::chip

namespace zth {
// Lets every room use the suffix without its own using-declaration.
using chip::operator""_reg;
}  // namespace zth
