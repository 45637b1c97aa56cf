#pragma once

#include <string>
#include <string_view>

/// Text for XHTML and SVG, written the same way on every machine.
namespace zth::characterise {

/// A text in an element or an attribute: markup is escaped, and what XML does not allow becomes "?". Damaged UTF-8 is
/// taken as it is byte by byte, each such byte as "?".
std::string Escaped(std::string_view text);

/// A number with that many digits behind the point, "-" for one that is none; never "-0".
std::string Fixed(double value, int digits);

/// Without the zeros at the end of Fixed.
std::string Plain(double value, int digits);

/// "<name>text</name>", the text escaped.
std::string Element(std::string_view name, std::string_view text);

}  // namespace zth::characterise
