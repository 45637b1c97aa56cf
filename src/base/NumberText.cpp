#include "base/NumberText.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace zth::base {
namespace {

constexpr bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}
constexpr bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

std::size_t SkipDigits(std::string_view text, std::size_t at) {
  while (at < text.size() && IsDigit(text[at])) ++at;
  return at;
}

/// Returns the end of the number that starts at `begin` (sign included), or `begin` if there is no number.
std::size_t NumberEnd(std::string_view text, std::size_t begin) {
  std::size_t at = begin;
  if (at < text.size() && (text[at] == '+' || text[at] == '-')) ++at;
  const std::size_t whole = at;
  at = SkipDigits(text, at);
  std::size_t digits = at - whole;
  if (at < text.size() && text[at] == '.') {
    const std::size_t fraction = at + 1;
    at = SkipDigits(text, fraction);
    digits += at - fraction;
  }
  if (digits == 0) return begin;
  if (at < text.size() && (text[at] | 0x20) >= 'd' && (text[at] | 0x20) <= 'e') {
    std::size_t exponent = at + 1;
    if (exponent < text.size() && (text[exponent] == '+' || text[exponent] == '-')) ++exponent;
    const std::size_t end = SkipDigits(text, exponent);
    if (end > exponent) at = end;
  }
  return at;
}

double Parse(std::string_view text, std::size_t begin, std::size_t end) {
  if (text[begin] == '+') ++begin;
  std::string number(text.substr(begin, end - begin));
  for (char& c : number) {
    if (c == 'd' || c == 'D') c = 'E';
  }
  double value = 0;
  const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
  if (result.ec != std::errc::result_out_of_range) return value;
  // The number overflows or underflows; the sign of the exponent tells which.
  const bool tiny = number.find("E-") != std::string::npos || number.find("e-") != std::string::npos;
  const double limit = tiny ? 0.0 : std::numeric_limits<double>::max();
  return number.front() == '-' ? -limit : limit;
}

template <typename Float>
std::string General(Float value, int significant) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value < 0 ? "-Inf" : "Inf";
  if (value == 0) return "0";

  // Format as d.ddddE+xx with the digits needed; the decimal point is placed below.
  char buffer[64];
  const auto end =
      std::to_chars(buffer, buffer + sizeof buffer, std::abs(value), std::chars_format::scientific, significant - 1)
          .ptr;
  const std::string_view text(buffer, static_cast<std::size_t>(end - buffer));
  const std::size_t mark = text.find('e');
  int exponent = 0;
  const std::size_t sign = text[mark + 1] == '+' ? mark + 2 : mark + 1;
  std::from_chars(text.data() + sign, text.data() + text.size(), exponent);

  std::string digits(1, text[0]);
  if (mark > 2) digits.append(text.substr(2, mark - 2));
  while (digits.size() > 1 && digits.back() == '0') digits.pop_back();
  const int count = static_cast<int>(digits.size());

  std::string out = value < 0 ? "-" : "";
  if (exponent >= 0 && exponent < significant) {
    if (count <= exponent + 1) return out + digits + std::string(static_cast<std::size_t>(exponent + 1 - count), '0');
    const auto whole = static_cast<std::size_t>(exponent + 1);
    return out + digits.substr(0, whole) + "." + digits.substr(whole);
  }
  // Below 1, the fraction is written out while all its decimal places fit into the significant digits.
  if (exponent < 0 && count - exponent - 1 <= significant) {
    return out + "." + std::string(static_cast<std::size_t>(-exponent - 1), '0') + digits;
  }
  out += digits[0];
  if (count > 1) out += "." + digits.substr(1);
  const std::string power = std::to_string(std::abs(exponent));
  return out + (exponent < 0 ? "E-" : "E+") + (power.size() < 2 ? "0" : "") + power;
}

}  // namespace

double LeadingDecimal(std::string_view text) {
  std::size_t begin = 0;
  while (begin < text.size() && IsBlank(text[begin])) ++begin;
  const std::size_t end = NumberEnd(text, begin);
  return end == begin ? 0.0 : Parse(text, begin, end);
}

bool IsDecimal(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return !text.empty() && NumberEnd(text, 0) == text.size();
}

std::int32_t LeadingHex(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  std::int64_t value = 0;
  for (const char c : text) {
    int digit = -1;
    if (IsDigit(c)) digit = c - '0';
    if ((c | 0x20) >= 'a' && (c | 0x20) <= 'f') digit = (c | 0x20) - 'a' + 10;
    if (digit < 0) break;
    value = value * 16 + digit;
    if (value > std::numeric_limits<std::int32_t>::max()) return std::numeric_limits<std::int32_t>::max();
  }
  return static_cast<std::int32_t>(value);
}

std::string HexText(std::int32_t value) {
  char buffer[16];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, static_cast<std::uint32_t>(value), 16).ptr;
  std::string text(buffer, end);
  for (char& c : text) {
    if (c >= 'a') c = static_cast<char>(c - 'a' + 'A');
  }
  return text;
}

std::string GeneralText(float value) {
  return General(value, 7);
}
std::string GeneralText(double value) {
  return General(value, 15);
}

}  // namespace zth::base
