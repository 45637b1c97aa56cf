#pragma once

#include "platform/Services.h"

namespace zth::shell {

/// The program's start, from nothing to a running monitor. It returns when polling has begun, with `MainForm` showing;
/// without a link or a chip it ends the process with a message, or starts over as the user wishes. Needs a
/// QApplication.
void Main(platform::Services& services);

/// Polling defaults, and what is read of the chip once: the manual flags of the PWMs and the revision.
void InitMonitorDefaults();

}  // namespace zth::shell
