#pragma once

#include <cstdint>

#include <QString>

#include "base/BitField.h"

namespace zth::windows {

/// Where a control's value stands in the chip: "0x0D bit 0, THERM Configuration", "0x12 bits 5:4, Pin Config 3".
QString RegisterTip(std::uint8_t reg, base::BitField bits);

}  // namespace zth::windows
