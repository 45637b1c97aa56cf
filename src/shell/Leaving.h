#pragma once

#include "platform/Services.h"

namespace zth::shell {

/// What a user who closes the main window should know first: a heater that heats on behind the program, a log that
/// stops with it, lines that are lost with it, a recall that breaks off. True when there is nothing of the kind, or the
/// user goes all the same; where the user says so the heaters are off then. Asks in one box; only "heaters off" makes a
/// transfer.
bool MayLeave(platform::Services& services);

}  // namespace zth::shell
