#pragma once

#include <cstdint>

#include "base/BitField.h"

/// The registers of the live windows of the fan control; of a run of four, the first.
namespace zth::windows::reg {

inline constexpr std::int32_t kTminCal1 = 0x0B;
inline constexpr std::int32_t kTminCal2 = 0x0C;
inline constexpr std::int32_t kThermConfiguration = 0x0D;
inline constexpr std::int32_t kPwmConfig = 0x21;
inline constexpr std::int32_t kPwmFrequency = 0x25;
inline constexpr std::int32_t kPwmMin = 0x28;
inline constexpr std::int32_t kPwmMax = 0x2C;
inline constexpr std::int32_t kRemote1LowLimit = 0x45;
inline constexpr std::int32_t kRemote1HighLimit = 0x49;
inline constexpr std::int32_t kTherm1Limit = 0x4C;
inline constexpr std::int32_t kTherm2Limit = 0x50;
inline constexpr std::int32_t kThermHyst = 0x54;
inline constexpr std::int32_t kRemote1OpPoint = 0x5A;
inline constexpr std::int32_t kTmin = 0x5C;
inline constexpr std::int32_t kRemote1Tmin = 0x5D;
inline constexpr std::int32_t kTrangeHyst = 0x60;
inline constexpr std::int32_t kOpPointHyst = 0x64;

inline constexpr base::BitField kBehaviour{5, 3};
inline constexpr base::BitField kLowNibble{0, 4};
inline constexpr base::BitField kHighNibble{4, 4};

/// All bits of a register but the field's.
constexpr std::uint8_t Without(base::BitField field) {
  return static_cast<std::uint8_t>(~base::Mask(field));
}

}  // namespace zth::windows::reg
