#pragma once

#include "platform/Services.h"

namespace zth::shell {

/// The program's start, from nothing to a running monitor. It returns when polling has begun, with `MainForm` showing;
/// without a link or a chip it ends the process with a message, or starts over as the user wishes. Needs a
/// QApplication.
void Main(platform::Services& services);

/// Sets the polling defaults, and reads what is read from the chip only once: the PWMs' manual flags and the revision.
void InitMonitorDefaults();

}  // namespace zth::shell
