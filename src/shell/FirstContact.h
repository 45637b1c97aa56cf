#pragma once

#include <QString>

#include "platform/Services.h"

/// What a user gets to know and to do when the start finds nothing to work with.
namespace zth::shell {

/// The board that the program brings along.
inline constexpr char kSimulated[] = "simulated";

/// What the user wants in place of the end: the whole start again, from its first transfer. Thrown out of whatever step
/// the start is in; Main catches it.
struct StartOver {
  bool simulated = false;  ///< with the simulated board's libraries and no others
};

/// Shows a box of the start with what was tried beneath its text and the ways out beside its OK. Returns with OK, where
/// things take their prescribed course.
platform::BoxAnswer AskAtStart(platform::BoxQuestion question, platform::Services& services);

/// What the start has looked for so far: where, what came of it and what helps.
QString StartDetails(platform::Services& services);

}  // namespace zth::shell
