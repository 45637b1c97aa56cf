#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tasks/RegisterImage.h"

/// Configurations side by side. Makes no transfer.
namespace zth::tasks {

/// A register as a row of a comparison. `held` and `differing` have an element for each column.
struct ComparedRow {
  std::uint8_t reg = 0;
  std::string name;                     ///< of an address with two names both, separated by " / "
  std::vector<std::string> groups;      ///< as in chip/RegisterGroups.h; may be empty
  std::vector<HeldByte> held;           ///< what each column holds
  std::vector<std::uint8_t> differing;  ///< the bits known on both sides that differ from the reference column
  std::size_t reference = 0;

  /// A register that one of the columns does not hold does not differ there.
  bool Differs() const;
};

/// A row for each of ComparableRegisters() that at least one image holds. `reference` is the column that the others are
/// compared with. Images must be at least one; none may be null.
std::vector<ComparedRow> Compare(const std::vector<const RegisterImage*>& images, std::size_t reference);

/// A field of a row. The name is that of the chip's table.
struct ComparedField {
  std::string name;  ///< bits without a name of their own are one field, "Other bits"
  std::uint8_t mask = 0;
  std::vector<std::optional<unsigned>> values;  ///< by column, shifted down; empty if not all of its bits are known
  bool differs = false;
};

/// The fields of a row, from bit 7 down. Empty if the register has no named bits: it is one number. "Other bits" are
/// left out unless they differ.
std::vector<ComparedField> FieldsOf(const ComparedRow& row);

/// The fields that contain a bit which differs in any column, whole; 0 if the row does not differ.
std::uint8_t DifferingFields(const ComparedRow& row);

/// A byte in words: "31h", or "-" if nothing of it is known. If only some of its bits are known it is written in bits,
/// "001.....".
std::string HeldWords(const HeldByte& held);

/// The fields in which a column differs from the reference, "Bhvr 0 -> 3, Inv 0 -> 1", or "11h -> 71h" for a register
/// without named bits. Empty if it does not differ.
std::string DifferenceWords(const ComparedRow& row, std::size_t column);

/// Which rows are shown. All conditions must be met.
struct ComparisonFilter {
  bool onlyDifferences = false;
  std::string group = {};  ///< "Fan, PWM"; empty: any
  /// Part of a name, the start of a bit's name, or the address: "4C", "4Ch", "0x4c". Upper and lower case are the same;
  /// blanks around it do not count. Empty: any.
  std::string text = {};
};
bool Shows(const ComparisonFilter& filter, const ComparedRow& row);

/// How many rows differ.
std::size_t CountDiffering(const std::vector<ComparedRow>& rows);

}  // namespace zth::tasks
