#pragma once

#include "simulator/Settings.h"

namespace zth::simulator {

/// The settings of the simulated libraries, from the file named by the environment variable ZTH4718_SIMULATOR, or else
/// from "simulator.conf" in the library's own folder. A missing file gives the defaults. An invalid file also gives the
/// defaults, after an error message on standard error with the name of the library.
Settings LoadSettings(const char* library);

}  // namespace zth::simulator
