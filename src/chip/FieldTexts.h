#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Register fields as the texts of text boxes, and back. A text counts as the number that it begins with, 0 if there is
/// none; ties round to even; what a formula drives outside 0 to 255 goes to the nearer end, on either link.
namespace zth::chip {

/// A duty byte as its whole percentage, "0" to "100": raw x 100 / 255.
std::string DutyText(unsigned raw);

/// The duty byte of a percentage: number x 255 / 100. Exact percents from DutyText come back as the byte of that
/// percent, which need not be the byte that it was read from.
std::uint8_t DutyByte(std::string_view text);

/// A field's value as its digits.
std::string WholeText(unsigned field);

/// What a text gives to the register of a field whose lowest bit is `shift`: number x 2^shift, rounded only then, so
/// that a fraction, like a number too great for the field, spills into the bits around it. A negative number gives 0
/// and leaves the neighbours alone.
std::uint8_t WholeByte(std::string_view text, int shift);

}  // namespace zth::chip
