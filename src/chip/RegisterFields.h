#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/BitField.h"

/// The fields of a register in words, by the bit names of its row.
namespace zth::chip {

struct NamedField {
  std::string_view name;
  base::BitField bits;
};

/// The fields from bit 7 down: neighbouring bits with the same name are one field. Reserved bits, and bits with only a
/// number as their name, are left out. The names point into `bitNames`.
std::vector<NamedField> FieldsOf(std::string_view bitNames);

/// "Bhvr = 2, Inv = 1, Slow = 0, Spin = 1"
std::string FieldsText(std::string_view bitNames, unsigned value);

}  // namespace zth::chip
