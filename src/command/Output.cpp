#include "command/Output.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <nlohmann/json.hpp>

namespace zth::command {
namespace {

/// On one line, whatever a file name or a library's text holds.
std::string OneLine(std::string_view text) {
  std::string line(text);
  std::replace_if(
      line.begin(), line.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; }, ' ');
  return line + "\n";
}

}  // namespace

void Output::Result(std::string_view line, const Row& row) const {
  if (!json_) return console_.out(std::string(line) + "\n");
  nlohmann::ordered_json object;
  for (const auto& [name, value] : row) {
    std::visit([&object, &key = name](const auto& held) { object[key] = held; }, value);
  }
  console_.out(object.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n");
}

void Output::Remark(std::string_view line) const {
  if (!quiet_) console_.error(OneLine(line));
}

void Output::Error(std::string_view line) const {
  console_.error(OneLine(line));
}

std::string NumberText(double value) {
  std::array<char, 32> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
  return {digits.data(), end};
}

std::string ByteText(unsigned value) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  return {kDigits[value >> 4U & 0xFU], kDigits[value & 0xFU], 'h'};
}

}  // namespace zth::command
