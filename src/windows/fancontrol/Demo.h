#pragma once

#include "platform/Services.h"

/// The dynamic Tmin demo without its window: the set-up of the board, and what the monitor does while it runs.
namespace zth::windows {

/// Sets up the board and the chip for the demo, in a fixed sequence of transfers. On a link other than USB, the board's
/// switches are skipped.
void SetUpDemo();

/// Called after each group of the measurement cycle is read (`phase` 0 to 5). While the demo runs and its chip is in
/// use, draws Remote2 15 degrees warmer than measured. Once per run of the program, when that value reaches 50 degrees,
/// forces a THERM2 event, which blocks for half a second.
void AdjustForDemo(int phase, platform::Services& services);

}  // namespace zth::windows
