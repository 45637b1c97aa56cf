#pragma once

#include "linux-smbus/I2cSystem.h"
#include "linux-smbus/Settings.h"

namespace zth::smbus {

/// Whether one of the adapters chosen by the settings exists and has a device node that this user may open. Opens and
/// closes device nodes; makes no transfer.
bool IsInReach(I2cSystem& system, const Settings& settings);

}  // namespace zth::smbus
