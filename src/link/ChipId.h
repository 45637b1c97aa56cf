#pragma once

#include <cstdint>

#include <QString>

namespace zth::link {

/// One chip: the link that it hangs on and its bus address there. The default is no chip at all.
struct ChipId {
  std::int16_t mode = 0;  ///< as `InterfaceMode`
  std::int32_t address = 0;

  bool operator==(const ChipId&) const = default;
};

/// The chip that all register operations of the windows go to: `InterfaceMode` and `DeviceAddress` as they stand.
ChipId ChipInUse();

/// As the device list has it: "58h on USB".
QString TextOf(const ChipId& chip);

}  // namespace zth::link
