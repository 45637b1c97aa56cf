#pragma once

#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace zth::smbus {

/// The text without leading and trailing blanks and tabs.
inline std::string Trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(kBlanks) - first + 1));
}

/// ASCII letters in lower case, independent of the locale.
inline std::string LowerCase(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

/// The number if the text is a non-negative integer and nothing else.
inline std::optional<int> WholeNumber(std::string_view text) {
  int number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, fault] = std::from_chars(text.data(), end, number);
  if (fault != std::errc() || stop != end || number < 0) return std::nullopt;
  return number;
}

/// A byte as "0x2C".
inline std::string Hex(std::uint8_t byte) {
  std::array<char, 8> text{};
  std::snprintf(text.data(), text.size(), "0x%02X", static_cast<unsigned>(byte));
  return text.data();
}

/// The kernel's name for the chip at an address of an adapter, for example "0-002c".
inline std::string ChipName(int adapter, std::uint8_t address) {
  std::array<char, 24> name{};
  std::snprintf(name.data(), name.size(), "%d-%04x", adapter, static_cast<unsigned>(address));
  return name.data();
}

}  // namespace zth::smbus
