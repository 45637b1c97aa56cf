#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Temperature registers as the texts of text boxes, and back.
namespace zth::chip {

/// The digits of a control byte's degrees C, "-64" to "191".
std::string DegreesText(std::uint8_t raw);

/// The byte of the number that a text begins with, 0 degrees if there is none: rounded half to even with the offset,
/// and limited to the nearer end of a byte.
std::uint8_t DegreesByte(std::string_view text);

}  // namespace zth::chip
