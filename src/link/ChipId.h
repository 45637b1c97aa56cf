#pragma once

#include <cstdint>

#include <QString>

namespace zth::link {

/// Identifies a chip by its link and its bus address there. The default means no chip.
struct ChipId {
  std::int16_t mode = 0;  ///< as in `InterfaceMode`
  std::int32_t address = 0;

  bool operator==(const ChipId&) const = default;
};

/// The chip that the windows' register operations address: the current `InterfaceMode` and `DeviceAddress`.
ChipId ChipInUse();

/// The text in the device list: "58h on USB".
QString TextOf(const ChipId& chip);

}  // namespace zth::link
