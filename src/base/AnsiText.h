#pragma once

#include <cstdint>
#include <optional>

namespace zth::base {

/// The byte of a Unicode character in the ANSI code page 1252, or nothing for a character that has none.
std::optional<std::uint8_t> AnsiCode(char32_t character);

}  // namespace zth::base
