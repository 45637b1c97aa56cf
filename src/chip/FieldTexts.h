#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Converts register fields to the texts of text boxes and back. A text's value is the number at its start, or 0 if
/// there is none; ties round to even; results are clamped to 0 to 255, on either link.
namespace zth::chip {

/// A duty byte as a whole percentage, "0" to "100": raw x 100 / 255.
std::string DutyText(unsigned raw);

/// The duty byte of a percentage: number x 255 / 100. A percentage from DutyText may give a different byte from the one
/// it was made from.
std::uint8_t DutyByte(std::string_view text);

/// A field's value as decimal digits.
std::string WholeText(unsigned field);

/// The register value for the text of a field whose lowest bit is `shift`: number x 2^shift, rounded only after the
/// shift, so that a fraction, or a number too large for the field, spills into the neighbouring bits. A negative number
/// gives 0 and does not affect the neighbours.
std::uint8_t WholeByte(std::string_view text, int shift);

}  // namespace zth::chip
