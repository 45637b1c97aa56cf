#pragma once

#include <string>
#include <string_view>
#include <variant>

#include "simulator/Settings.h"

namespace zth::simulator {

/// Why a settings text is invalid.
struct SettingsError {
  int line = 0;  ///< counted from 1
  std::string text;
};

/// Parses a settings text: lines of `key = value` and `fault <when> <what>`; comments start with #. docs/simulator.md
/// describes all keys and faults. The first invalid line makes the whole text invalid.
std::variant<Settings, SettingsError> ParseSettings(std::string_view text);

}  // namespace zth::simulator
