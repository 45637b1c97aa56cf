#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Numbers as the program's users type and read them. No function here depends on a locale.
namespace zth::base {

/// The number that `text` begins with: blanks, a sign, digits with one decimal point, and an exponent ("1.5E3"; a D
/// counts as an E). The first character that cannot go on with it ends it. 0 if there is none.
double LeadingDecimal(std::string_view text);

/// True when `text`, blanks at its ends aside, is one whole finite decimal number and nothing else.
bool IsDecimal(std::string_view text);

/// The number formed by the leading hexadecimal digits of `text`, in either case, blanks before them aside; 0 if there
/// are none. Stays at the largest value when the digits run past 32-bit signed.
std::int32_t LeadingHex(std::string_view text);

/// Upper-case hexadecimal digits with no leading zeros; zero is "0". A negative value shows as its 32-bit pattern.
std::string HexText(std::int32_t value);

/// General format: no blanks, no zero before the decimal point, as few digits as tell the value, at most 7 significant
/// ones for a float and 15 for a double. "12", ".25", "-.25". A value whose digits do not fit so many places before the
/// point, or so many behind it, takes an exponent: "1E+07", "3.333333E-02", but ".0000001".
std::string GeneralText(float value);
std::string GeneralText(double value);

}  // namespace zth::base
