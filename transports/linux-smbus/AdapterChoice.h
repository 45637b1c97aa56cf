#pragma once

#include <string>
#include <vector>

#include "linux-smbus/I2cSystem.h"
#include "linux-smbus/Settings.h"

namespace zth::smbus {

struct AdapterChoice {
  std::vector<Adapter> chosen;       ///< in search order
  std::vector<std::string> remarks;  ///< settings that could not be applied, one sentence each
};

/// True if an adapter's device or name identifies it as a PC's SMBus host.
bool IsSmbusHost(const Adapter& adapter);

/// Which adapters to use. Without a setting: every SMBus host, by ascending number. With a setting: the adapters that
/// it names, in its order, whatever their names. A display's bus is never used: writing to it can leave a monitor
/// without a picture.
AdapterChoice ChooseAdapters(const std::vector<Adapter>& present, const Settings& settings);

}  // namespace zth::smbus
