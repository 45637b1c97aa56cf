#pragma once

#include "command/Output.h"
#include "platform/Machine.h"

namespace zth::command {

/// Which links would use this machine's own devices.
struct DevicesNeeded {
  bool smbus = false;
  bool usb = false;
};

/// Says which adapters and device nodes this machine has, who may use them, and which addresses kernel drivers hold,
/// from the system's files alone. Returns whether something that is needed is missing.
bool ShowDevices(const platform::Machine& machine, const DevicesNeeded& needed, const Output& output);

}  // namespace zth::command
