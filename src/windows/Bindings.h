#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <tuple>

#include "base/BitField.h"
#include "chip/RegisterNames.h"

/// A window as data: a table of bindings, one row for each control, and two ordered plans, of reads and of writes.
///
///   constexpr std::array kRows{
///       Check("chkPWMMode", "Enable High Fre&quency PWM", At("Configuration 2", "HF")),  // ticked is 1
///       Check({"chkEnActiveLow", 0}, "PWM%1 is Active Low", At("PWM1 Config", "Inv"),
///             Sense::Inverted),                                                          // ticked is 0; "PWM1 ..."
///       List("cmbWindow", "Timer Window", At("THERM Configuration", "TW1"), kWindows),   // position of the item
///       Text("txtMaxPWM", "Max PWM 1-4", Byte("PWM 1-4 Max"_reg), kDuty, "UpDown1"),
///   };
///   constexpr std::array kReads{Read("Configuration 2"_reg), Read("PWM1 Config"_reg, 4),  // one block of 4
///                               Read("THERM Configuration"_reg), Read("PWM 1-4 Max"_reg)};
///   constexpr std::array kWrites{Modify("Configuration 2"_reg), Whole("PWM1 Config"_reg),
///                                Modify("THERM Configuration"_reg), Whole("PWM 1-4 Max"_reg)};
///   static_assert(IsSound(kRows, kReads, kWrites));
///
/// A window that writes each change at once has only rows and reads: each row is written individually.
/// To add a bit to a window, add a row.
namespace zth::windows {

using chip::At;
using chip::Field;

/// Whether a ticked box means a 1 bit or a 0 bit. An inverted list counts its positions from the field's highest value.
enum class Sense : std::uint8_t { Straight, Inverted };

/// How a text box shows a field, and how its text is converted to the field's register.
struct TextCode {
  std::string (*text)(unsigned field);
  std::uint8_t (*byte)(std::string_view text, int shift);  ///< in place; may exceed the field
  int min, max;                                            ///< of the up-down, which steps by 1
  const char* unit;                                        ///< shown after the box; may be empty
  const char* unitName;                                    ///< the box's tool tip when no field's place is given
};

/// kDuty is percent, kDegrees is degrees C with a temperature register's offset, both in a whole byte. kNibble and
/// kCutNibble are a whole number of 0 to 15 in 4 bits: a larger one spills into the neighbouring bits with kNibble, and
/// loses its upper bits with kCutNibble.
extern const TextCode kDuty;
extern const TextCode kDegrees;
extern const TextCode kNibble;
extern const TextCode kCutNibble;

/// An objectName: "cmdApply", or an element of a control array: {"chkEnTach", 0} is "chkEnTach(0)".
struct ControlName {
  const char* base;
  int index = -1;

  constexpr ControlName(const char* name) : base(name) {}
  constexpr ControlName(const char* name, int element) : base(name), index(element) {}
};

using Items = std::span<const char* const>;

struct Binding {
  ControlName control;
  /// The text of a check box, or the label before another control, with its mnemonic; "%1" is the index plus 1. Null
  /// for a hidden control.
  const char* caption;
  std::uint8_t reg;
  base::BitField bits;
  Sense sense = Sense::Straight;
  Items items{};                   ///< for a list
  const TextCode* code = nullptr;  ///< for a text box
  const char* upDown = nullptr;    ///< objectName of a text box's up-down
  bool isText = false;             ///< true if `code` is set: g++ 12 with sanitizers cannot test the pointer in a
                                   ///< constant expression
  bool alone = false;              ///< when written individually, all other bits of the register are written as 0
};

/// The bits from `high` down to `low`, in the order that data sheets use.
constexpr base::BitField Bits(int high, int low) {
  return {static_cast<std::uint8_t>(low), static_cast<std::uint8_t>(high - low + 1)};
}

/// All bits of a register.
constexpr chip::RegisterField Byte(int reg) {
  return {static_cast<std::uint8_t>(reg), Bits(7, 0)};
}

constexpr Binding Check(ControlName control, const char* caption, int reg, int bit, Sense sense = Sense::Straight) {
  return {control, caption, static_cast<std::uint8_t>(reg), Bits(bit, bit), sense};
}

constexpr Binding Check(ControlName control, const char* caption, chip::RegisterField at,
                        Sense sense = Sense::Straight) {
  return {control, caption, at.reg, at.bits, sense};
}

constexpr Binding List(ControlName control, const char* label, chip::RegisterField at, Items items,
                       Sense sense = Sense::Straight) {
  return {control, label, at.reg, at.bits, sense, items};
}

constexpr Binding Text(ControlName control, const char* label, chip::RegisterField at, const TextCode& code,
                       const char* upDown) {
  return {control, label, at.reg, at.bits, Sense::Straight, {}, &code, upDown, true};
}

constexpr Binding Alone(Binding row) {
  row.alone = true;
  return row;
}

/// One read: a single register, or a block of `count` registers.
struct ReadStep {
  std::uint8_t first;
  std::uint8_t count;
  bool block;
};

constexpr ReadStep Read(int first) {
  return {static_cast<std::uint8_t>(first), 1, false};
}
constexpr ReadStep Read(int first, int count) {
  return {static_cast<std::uint8_t>(first), static_cast<std::uint8_t>(count), true};
}

/// One write. Whole: built from 0, so bits without a control are written as 0. Modify: reads the register immediately
/// before, and changes only the table's bits.
struct WriteStep {
  std::uint8_t reg;
  enum class Mode : std::uint8_t { Whole, Modify } mode;
};

constexpr WriteStep Whole(int reg) {
  return {static_cast<std::uint8_t>(reg), WriteStep::Mode::Whole};
}
constexpr WriteStep Modify(int reg) {
  return {static_cast<std::uint8_t>(reg), WriteStep::Mode::Modify};
}

/// Concatenates tables.
template <typename T, std::size_t... N>
constexpr auto Joined(const std::array<T, N>&... tables) {
  return std::apply([](const auto&... rows) { return std::array{rows...}; }, std::tuple_cat(tables...));
}

constexpr bool Covers(const ReadStep& step, int reg) {
  return reg >= step.first && reg < step.first + step.count;
}

/// The chip has every row's register, no two rows share a bit, a box has one bit, a list has an item for each value of
/// its field, and every row's register is read exactly once.
constexpr bool IsSound(std::span<const Binding> rows, std::span<const ReadStep> reads) {
  std::array<unsigned, 256> taken{};
  for (const Binding& row : rows) {
    const unsigned mask = base::Mask(row.bits);
    if (!chip::HasRow(row.reg)) return false;
    if (mask > 0xFF || (taken[row.reg] & mask) != 0) return false;
    taken[row.reg] |= mask;
    if (row.items.empty() && !row.isText && row.bits.width != 1) return false;
    if (!row.items.empty() && row.items.size() != std::size_t{1} << row.bits.width) return false;
    if (std::ranges::count_if(reads, [&](const ReadStep& step) { return Covers(step, row.reg); }) != 1) return false;
  }
  return true;
}

/// The same for a table that is applied: additionally, every row's register is written exactly once, and no other
/// register is written.
constexpr bool IsSound(std::span<const Binding> rows, std::span<const ReadStep> reads,
                       std::span<const WriteStep> writes) {
  return IsSound(rows, reads) &&
         std::ranges::all_of(
             rows, [&](const Binding& row) { return std::ranges::count(writes, row.reg, &WriteStep::reg) == 1; }) &&
         std::ranges::all_of(
             writes, [&](const WriteStep& step) { return std::ranges::count(rows, step.reg, &Binding::reg) > 0; });
}

}  // namespace zth::windows
