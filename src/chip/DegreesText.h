#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Converts temperature registers to the texts of text boxes and back.
namespace zth::chip {

/// A control byte as degrees C, "-64" to "191".
std::string DegreesText(std::uint8_t raw);

/// The byte for the number at the start of a text, or for 0 degrees if there is none: rounded half to even with the
/// offset, and clamped to a byte.
std::uint8_t DegreesByte(std::string_view text);

}  // namespace zth::chip
