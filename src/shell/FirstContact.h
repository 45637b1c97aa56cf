#pragma once

#include "platform/Services.h"

/// What the user is told and offered when the start finds nothing to work with.
namespace zth::shell {

/// The board that comes with the program.
inline constexpr char kSimulated[] = "simulated";

/// Thrown when the user wants to start over instead of ending the program: the whole start runs again, from its first
/// transfer. Any step of the start may throw it; Main catches it.
struct StartOver {
  bool simulated = false;  ///< with the simulated board's libraries only
};

/// Shows a box of the start, with a report of what was tried below its text and the alternatives next to OK. Returns
/// after OK, and the prescribed course follows.
platform::BoxAnswer AskAtStart(platform::BoxQuestion question, platform::Services& services);

}  // namespace zth::shell
