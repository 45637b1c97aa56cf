#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Converts numbers to and from the text that users type and read. No function here depends on the locale.
namespace zth::base {

/// The number at the start of `text`: blanks, a sign, digits with one decimal point, and an exponent ("1.5E3"; a D
/// counts as an E). Parsing stops at the first character that does not fit. 0 if there is no number.
double LeadingDecimal(std::string_view text);

/// True if `text` is exactly one finite decimal number, ignoring blanks at either end.
bool IsDecimal(std::string_view text);

/// The number formed by the leading hexadecimal digits of `text`, in either case, ignoring blanks before them; 0 if
/// there are none. Saturates at the largest 32-bit signed value.
std::int32_t LeadingHex(std::string_view text);

/// Upper-case hexadecimal digits without leading zeros; zero is "0". A negative value is shown as its 32-bit pattern.
std::string HexText(std::int32_t value);

/// General format: no blanks, no zero before the decimal point, as few digits as identify the value, at most 7
/// significant digits for a float and 15 for a double. "12", ".25", "-.25". A value that needs more places than that
/// before or after the point is written with an exponent: "1E+07", "3.333333E-02", but ".0000001".
std::string GeneralText(float value);
std::string GeneralText(double value);

}  // namespace zth::base
