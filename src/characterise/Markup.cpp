#include "characterise/Markup.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>

namespace zth::characterise {
namespace {

/// The length of the UTF-8 sequence at the beginning; 0 if it is none that XML allows.
std::size_t LetterLength(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char first = byte(0);
  if (first < 0x80) return first >= 0x20 || first == '\t' || first == '\n' ? 1 : 0;
  const std::size_t length = first >= 0xC2 && first < 0xE0 ? 2 : first >= 0xE0 && first < 0xF0 ? 3 : 4;
  if (first < 0xC2 || first > 0xF4 || text.size() < length) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
  }
  const bool isOverlong = (first == 0xE0 && byte(1) < 0xA0) || (first == 0xF0 && byte(1) < 0x90);
  const bool isSurrogate = first == 0xED && byte(1) >= 0xA0;
  const bool isBeyond = first == 0xF4 && byte(1) >= 0x90;
  const bool isNoLetter = first == 0xEF && byte(1) == 0xBF && byte(2) >= 0xBE;
  return isOverlong || isSurrogate || isBeyond || isNoLetter ? 0 : length;
}

std::string_view EntityOf(char letter) {
  switch (letter) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    default:
      return {};
  }
}

}  // namespace

std::string Escaped(std::string_view text) {
  std::string escaped;
  while (!text.empty()) {
    const std::size_t length = LetterLength(text);
    if (length == 0) {
      escaped += '?';
      text.remove_prefix(1);
      continue;
    }
    const std::string_view entity = EntityOf(text.front());
    escaped += entity.empty() ? text.substr(0, length) : entity;
    text.remove_prefix(length);
  }
  return escaped;
}

std::string Fixed(double value, int digits) {
  if (!std::isfinite(value)) return "-";
  std::array<char, 400> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed, digits);
  std::string text(buffer.data(), end.ptr);
  if (text.find_first_not_of("-0.") == std::string::npos && text.front() == '-') text.erase(0, 1);
  return text;
}

std::string Plain(double value, int digits) {
  std::string text = Fixed(value, digits);
  if (text.find('.') == std::string::npos) return text;
  text.erase(text.find_last_not_of('0') + 1);
  if (text.ends_with('.')) text.pop_back();
  return text;
}

std::string Element(std::string_view name, std::string_view text) {
  return "<" + std::string(name) + ">" + Escaped(text) + "</" + std::string(name) + ">";
}

}  // namespace zth::characterise
