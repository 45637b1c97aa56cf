#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string_view>

#include "tasks/TrafficRecord.h"

/// The forms of a call as they stand in a recording, for both who writes and who reads one.
namespace zth::tasks::grammar {

inline constexpr std::int16_t kUsb = 1;
inline constexpr std::int16_t kSmbus = 2;

/// The arguments of a form, a letter each.
enum Argument : char {
  kAddress = 'a',   ///< two hexadecimal digits
  kRegister = 'r',  ///< two hexadecimal digits
  kByte = 'b',      ///< two hexadecimal digits
  kCount = 'n',     ///< decimal, of the bytes that are read
  kHeater = 'h',    ///< decimal
  kPercent = 'p',   ///< decimal, of a heater
};

enum class Outcome : std::uint8_t { Done, Bytes, Result };

struct Grammar {
  std::string_view words;
  std::string_view arguments;
  std::int16_t mode;
  link::Form form;
  Outcome outcome;
  std::uint8_t count;  ///< of the bytes that a success shows, unless an argument says it
};

inline constexpr Grammar kForms[] = {
    {"usb r", "ar", kUsb, link::Form::Read, Outcome::Bytes, 1},
    {"usb rb", "arn", kUsb, link::Form::ReadBlock, Outcome::Bytes, 0},
    {"usb w", "arb", kUsb, link::Form::Write, Outcome::Done, 0},
    {"usb port r", "a", kUsb, link::Form::ReadPort, Outcome::Bytes, 1},
    {"usb port w", "ab", kUsb, link::Form::WritePort, Outcome::Done, 0},
    {"usb port wb", "ab", kUsb, link::Form::WritePortWithByte, Outcome::Done, 0},
    {"usb heater w", "hp", kUsb, link::Form::SetHeater, Outcome::Done, 0},
    {"usb heater r", "", kUsb, link::Form::ReadHeaters, Outcome::Bytes, 3},
    {"usb connect", "", kUsb, link::Form::Connect, Outcome::Bytes, 2},
    {"usb firmware", "", kUsb, link::Form::Firmware, Outcome::Result, 0},
    {"smbus r", "ar", kSmbus, link::Form::Read, Outcome::Bytes, 1},
    {"smbus w", "arb", kSmbus, link::Form::Write, Outcome::Done, 0},
    {"smbus detect", "", kSmbus, link::Form::Detect, Outcome::Done, 0},
};

inline const Grammar* GrammarOf(const TrafficRecord& record) {
  const auto* found = std::ranges::find_if(
      kForms, [&record](const Grammar& row) { return row.mode == record.mode && row.form == record.form; });
  return found == std::end(kForms) ? nullptr : found;
}

inline constexpr std::string_view kArrow = "->";

}  // namespace zth::tasks::grammar
