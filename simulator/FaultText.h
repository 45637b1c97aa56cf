#pragma once

#include <string>
#include <variant>
#include <vector>

#include "simulator/FaultPlan.h"

namespace zth::simulator {

/// Parses the words after "fault". The second alternative is an error message.
std::variant<Fault, std::string> ParseFault(const std::vector<std::string>& words);

}  // namespace zth::simulator
