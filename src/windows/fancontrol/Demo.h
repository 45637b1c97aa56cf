#pragma once

#include "platform/Services.h"

/// The dynamic Tmin demo outside its window: the board's set-up for the show, and what the monitor does while it runs.
namespace zth::windows {

/// Puts the board and the chip up for the show, in a fixed run of transfers. On a link other than USB the board's
/// switches are left out.
void SetUpDemo();

/// While the demo runs and the chip that it has set up is in use, behind each group's read of the measurement cycle
/// (`phase` 0 to 5): draws Remote2 as if it ran 15 degrees warmer than it does, and once in the life of the program,
/// when it is then at 50 degrees or above, forces a THERM2 event, which blocks for half a second.
void AdjustForDemo(int phase, platform::Services& services);

}  // namespace zth::windows
