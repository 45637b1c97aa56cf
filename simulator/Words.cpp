#include "simulator/Words.h"

#include <cctype>
#include <charconv>
#include <cmath>
#include <system_error>

namespace zth::simulator {

std::vector<std::string> Words(std::string_view line) {
  std::vector<std::string> words;
  bool open = false;
  for (const char c : line) {
    if (std::isspace(static_cast<unsigned char>(c)) != 0) {
      open = false;
    } else if (c == '%') {
      words.emplace_back("%");
      open = false;
    } else {
      if (!open) words.emplace_back();
      words.back() += c;
      open = true;
    }
  }
  return words;
}

bool ParseInteger(std::string_view word, long long& value) {
  const bool hex = word.starts_with("0x") || word.starts_with("0X");
  if (hex) word.remove_prefix(2);
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value, hex ? 16 : 10);
  return error == std::errc{} && end == word.data() + word.size();
}

bool ParseDecimal(std::string_view word, double& value) {
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value, std::chars_format::fixed);
  return error == std::errc{} && end == word.data() + word.size() && std::isfinite(value);
}

}  // namespace zth::simulator
