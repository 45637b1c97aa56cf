#pragma once

#include <string>
#include <string_view>
#include <variant>

#include "simulator/Settings.h"

namespace zth::simulator {

/// Why a settings text is not understood.
struct SettingsError {
  int line = 0;  ///< from 1 on
  std::string text;
};

/// Reads a settings text: lines of `key = value` and `fault <when> <what>`, with comments from # on. docs/simulator.md
/// tells all keys and faults. The first line that is wrong makes the whole text wrong.
std::variant<Settings, SettingsError> ParseSettings(std::string_view text);

}  // namespace zth::simulator
