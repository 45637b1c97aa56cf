#pragma once

#include "simulator/Settings.h"

namespace zth::simulator {

/// The settings of the simulated libraries: from the file that the environment variable ZTH4718_SIMULATOR names, else
/// from "simulator.conf" in the library's own folder. A missing file gives the defaults; so does one that is not
/// understood, after a message on the standard error stream under the name of the library.
Settings LoadSettings(const char* library);

}  // namespace zth::simulator
