#pragma once

#include <vector>

#include <QString>

#include "platform/Services.h"

/// The first contact with the hardware, in the order that every start keeps.
namespace zth::tasks {

/// What a search shows of itself.
class SearchSigns {
 public:
  virtual ~SearchSigns() = default;
  /// The board that the searched link talks to; empty for a board without a name.
  virtual void SetBoard(const QString& /*name*/) {}
  virtual void SetStep(const QString& /*text*/) {}
  /// 0 to 100 percent.
  virtual void SetProgress(double /*percent*/) {}
  /// From here on there is progress.
  virtual void ShowProgress() {}
};

void SetDeviceName();

/// Loads both libraries, looks for the SMBus host and downloads the adapter's firmware. False if neither is there.
bool ProbeLinks(platform::Services& services);

/// Sets `DeviceAddress` and `InterfaceMode` from an item of the device list.
void SelectDevice(const QString& item);

/// Waits for the adapter to return, connects to it, and searches both buses for chips, showing the progress. Returns
/// the items of the chips found, USB before SMBus. An adapter that does not answer is reported as a failure of the
/// link, which ends the program.
std::vector<QString> FindDevices(SearchSigns& signs, platform::Services& services);

/// WaitMs in pieces, repainting between them.
void WaitPainted(float milliseconds, platform::Services& services);

}  // namespace zth::tasks
