#include "linux-smbus/InReach.h"

#include <algorithm>

#include "linux-smbus/AdapterChoice.h"

namespace zth::smbus {

bool IsInReach(I2cSystem& system, const Settings& settings) {
  const AdapterChoice choice = ChooseAdapters(system.Adapters(), settings);
  return std::any_of(choice.chosen.begin(), choice.chosen.end(), [&system](const Adapter& adapter) {
    const int descriptor = system.Open(adapter.number);
    if (descriptor >= 0) system.Close(descriptor);
    return descriptor >= 0;
  });
}

}  // namespace zth::smbus
