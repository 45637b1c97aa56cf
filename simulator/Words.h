#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The words and numbers of a settings text.
namespace zth::simulator {

/// The words of a line, a percent sign being a word of its own.
std::vector<std::string> Words(std::string_view line);

/// A whole number, decimal or hexadecimal with 0x; false when the word is none.
bool ParseInteger(std::string_view word, long long& value);
/// A decimal number; false when the word is none.
bool ParseDecimal(std::string_view word, double& value);

}  // namespace zth::simulator
