#pragma once

#include <vector>

#include <QString>

#include "platform/Services.h"

namespace zth::shell {

class frmSplash;

void SetDeviceName();

/// Sets `DeviceAddress` and `InterfaceMode` from an item of the device list.
void SelectDevice(const QString& item);

/// Waits for the adapter to return, connects to it, and searches both buses for chips, showing the progress on the
/// splash. Returns the items of the chips found, USB before SMBus. If the adapter does not answer, the program ends.
std::vector<QString> FindDevices(frmSplash& splash, platform::Services& services);

/// WaitMs in pieces, repainting the splash between them.
void WaitPainted(float milliseconds, platform::Services& services);

}  // namespace zth::shell
