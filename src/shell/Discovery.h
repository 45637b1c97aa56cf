#pragma once

#include <vector>

#include <QString>

#include "platform/Services.h"

namespace zth::shell {

class frmSplash;

void SetDeviceName();

/// Takes the link and the address that an item of the device list tells: `DeviceAddress` and `InterfaceMode`.
void SelectDevice(const QString& item);

/// Waits for the adapter to come back, connects to it, and looks for chips on both buses, with the splash showing how
/// far it is. The items of the chips found, USB before SMBus. An adapter that does not answer ends the program.
std::vector<QString> FindDevices(frmSplash& splash, platform::Services& services);

/// WaitMs in pieces between which the splash is kept painted.
void WaitPainted(float milliseconds, platform::Services& services);

}  // namespace zth::shell
