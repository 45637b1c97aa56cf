#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The words and numbers of a settings text.
namespace zth::simulator {

/// The words of a line; a percent sign is a separate word.
std::vector<std::string> Words(std::string_view line);

/// Parses an integer, decimal or hexadecimal with 0x; false if the word is not one.
bool ParseInteger(std::string_view word, long long& value);
/// Parses a decimal number; false if the word is not one.
bool ParseDecimal(std::string_view word, double& value);

}  // namespace zth::simulator
