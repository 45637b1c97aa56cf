#pragma once

#include <string>
#include <variant>
#include <vector>

#include "simulator/FaultPlan.h"

namespace zth::simulator {

/// Reads the words behind "fault". The second alternative says what is wrong with them.
std::variant<Fault, std::string> ParseFault(const std::vector<std::string>& words);

}  // namespace zth::simulator
