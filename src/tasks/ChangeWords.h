#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tasks/BoardPutBack.h"
#include "tasks/PutBack.h"

/// Changes of registers in words.
namespace zth::tasks {

/// "31h"; "?" for a value that is not known.
std::string ByteWords(std::optional<unsigned> byte);

/// "PWM1 Config (21h)"; "(5Fh)" for an address without a name.
std::string RegisterWords(std::uint8_t reg);

/// "11h -> 71h, Bhvr 0 -> 3"; values that are not known are "?".
std::string ChangeWords(const Touched& change);

/// "PWM1 Config (21h), Bhvr: something else has changed it since".
std::string LeftWords(const Left& left);

/// "Heater 1", "Switches at 4Ah".
std::string BoardWords(BoardPart part, std::uint8_t number);

/// "0 % -> 60 %", "3Fh -> 00h"; a value that is not known is "?".
std::string BoardChangeWords(const BoardTouched& change);

/// "Heater 1: its value before was never read".
std::string BoardLeftWords(const BoardLeft& left);

}  // namespace zth::tasks
