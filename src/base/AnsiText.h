#pragma once

#include <cstdint>
#include <optional>

namespace zth::base {

/// The code page 1252 byte of a Unicode character; nothing if the code page does not have it.
std::optional<std::uint8_t> AnsiCode(char32_t character);

}  // namespace zth::base
