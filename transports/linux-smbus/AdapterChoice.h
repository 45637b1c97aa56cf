#pragma once

#include <string>
#include <vector>

#include "linux-smbus/I2cSystem.h"
#include "linux-smbus/Settings.h"

namespace zth::smbus {

struct AdapterChoice {
  std::vector<Adapter> chosen;       ///< in the order to search them
  std::vector<std::string> remarks;  ///< settings that could not be followed, each a sentence
};

/// Whether an adapter is a PC's SMBus host by its device or by its name.
bool IsSmbusHost(const Adapter& adapter);

/// Which adapters to use. Without a setting: every SMBus host, by rising number. With one: those it names, in its
/// order, whatever they are called. A display's bus is never among them: writing there can leave a monitor without a
/// picture.
AdapterChoice ChooseAdapters(const std::vector<Adapter>& present, const Settings& settings);

}  // namespace zth::smbus
