#pragma once

#include "platform/Services.h"

namespace zth::shell {

/// The program's start, from nothing to a running monitor. It returns when polling has begun and `MainForm` is visible.
/// Without a link or a chip it ends the process with a message, or starts over if the user wishes. Needs a
/// QApplication.
void Main(platform::Services& services);

/// Sets the polling defaults, and reads what is read from the chip only once: the PWMs' manual flags and the revision.
void InitMonitorDefaults();

}  // namespace zth::shell
