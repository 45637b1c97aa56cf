#pragma once

#include "platform/Services.h"

namespace zth::shell {

/// Warns a user who closes the main window about everything that this affects: a heater that stays on, a log that
/// stops, lines that are lost, a recall that is cut short. True if there is nothing to warn about or the user leaves
/// anyway; if the user chose it, the heaters are then off. Asks in one box; only "heaters off" makes a transfer.
bool MayLeave(platform::Services& services);

}  // namespace zth::shell
