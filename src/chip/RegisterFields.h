#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "chip/RegMapStuff.h"

namespace zth::chip {

/// A field of a register: the bits that share a name.
struct NamedField {
  std::string name;  ///< empty for the bits of a register that is one number
  std::uint8_t mask = 0;
};

/// The fields of a register, from bit 7 down; together they have all eight bits. Bits named by their numbers only are
/// one field without a name, and so are reserved bits.
std::vector<NamedField> FieldsOf(const RegisterEntry& entry);

/// The value of a field in a byte, its bits moved together: of a field with bits 7 and 5, 1010'0000 is 3.
unsigned ValueOf(const NamedField& field, unsigned byte);

}  // namespace zth::chip
