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
  std::int16_t mode;
  link::Form form;
  std::string_view words;
  std::string_view arguments;
  Outcome outcome;
  std::uint8_t count;  ///< of the bytes that a success shows, unless an argument says it
};

inline constexpr Grammar kForms[] = {
    {kUsb, link::Form::Read, "usb r", "ar", Outcome::Bytes, 1},
    {kUsb, link::Form::ReadBlock, "usb rb", "arn", Outcome::Bytes, 0},
    {kUsb, link::Form::Write, "usb w", "arb", Outcome::Done, 0},
    {kUsb, link::Form::ReadPort, "usb port r", "a", Outcome::Bytes, 1},
    {kUsb, link::Form::WritePort, "usb port w", "ab", Outcome::Done, 0},
    {kUsb, link::Form::WritePortWithByte, "usb port wb", "ab", Outcome::Done, 0},
    {kUsb, link::Form::SetHeater, "usb heater w", "hp", Outcome::Done, 0},
    {kUsb, link::Form::ReadHeaters, "usb heater r", "", Outcome::Bytes, 3},
    {kUsb, link::Form::Connect, "usb connect", "", Outcome::Bytes, 2},
    {kUsb, link::Form::Firmware, "usb firmware", "", Outcome::Result, 0},
    {kSmbus, link::Form::Read, "smbus r", "ar", Outcome::Bytes, 1},
    {kSmbus, link::Form::Write, "smbus w", "arb", Outcome::Done, 0},
    {kSmbus, link::Form::Detect, "smbus detect", "", Outcome::Done, 0},
};

inline const Grammar* GrammarOf(const TrafficRecord& record) {
  const auto* found = std::ranges::find_if(
      kForms, [&record](const Grammar& row) { return row.mode == record.mode && row.form == record.form; });
  return found == std::end(kForms) ? nullptr : found;
}

inline constexpr std::string_view kArrow = "->";

}  // namespace zth::tasks::grammar
