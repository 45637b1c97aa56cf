#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/BitField.h"

/// What the user's words stand for, by the chip's table of registers. Makes no transfer.
namespace zth::command {

/// A name without case, blanks and marks, so that "PWM1_Config" is "PWM1 Config".
std::string KeyOf(std::string_view name);

enum class Kind : std::uint8_t { Register, Field, Reading, Group };

struct Target {
  Kind kind = Kind::Register;
  std::string name;  ///< as in the tables: "PWM1 Config", "PWM1 Config.Bhvr", "Remote1 Temp"
  std::uint8_t reg = 0;
  base::BitField bits{0, 8};
  std::vector<std::size_t> rows;  ///< the readings (Readings.h): one, or those of a group
};

/// Throws Failure if nothing has that name.
Target TargetOf(const std::string& word);
std::vector<Target> TargetsOf(const std::vector<std::string>& words);

struct Assignment {
  Target target;  ///< a register or a field that can be written
  unsigned value = 0;
};

/// "21h=0x31", "PWM1_Config.Bhvr=2". Throws Failure, also for a value that does not fit and for a register that cannot
/// be written.
Assignment AssignmentOf(const std::string& word);

/// The number of "17", "11h", "0x11" or "0b10001"; throws Failure for anything else.
unsigned WholeOf(const std::string& text);

}  // namespace zth::command
