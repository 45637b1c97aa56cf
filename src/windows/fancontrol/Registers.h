#pragma once

#include <cstdint>

#include "base/BitField.h"
#include "chip/RegisterNames.h"

/// The registers of the live windows of the fan control that come in runs.
namespace zth::windows::reg {

// The first of each run.
inline constexpr std::int32_t kPwmConfig = "PWM1 Config"_reg;
inline constexpr std::int32_t kPwmFrequency = "PWM 1&2 Freq"_reg;
inline constexpr std::int32_t kPwmMin = "PWM1 Min"_reg;
inline constexpr std::int32_t kRemote1LowLimit = "Remote 1 Low Limit"_reg;
inline constexpr std::int32_t kRemote1HighLimit = "Remote 1 High Limit"_reg;
inline constexpr std::int32_t kTherm1Limit = "Local THERM1 Limit"_reg;
inline constexpr std::int32_t kTherm2Limit = "Local THERM2 Limit"_reg;
inline constexpr std::int32_t kThermHyst = "Local/Remote 1 Hyst"_reg;
inline constexpr std::int32_t kRemote1OpPoint = "Remote 1 Operating Point"_reg;
inline constexpr std::int32_t kTmin = "Local Tmin"_reg;
inline constexpr std::int32_t kRemote1Tmin = "Remote 1 Tmin"_reg;
inline constexpr std::int32_t kTrangeHyst = "Local Trange/Hys"_reg;

/// The hysteresis of Local or Remote 2, and of Remote 1 or Remote 3, in the two registers from kThermHyst on.
inline constexpr base::BitField kEvenHyst = chip::Field("Local/Remote 1 Hyst", "LH");
inline constexpr base::BitField kOddHyst = chip::Field("Local/Remote 1 Hyst", "RH1");

/// All bits of a register but the field's.
constexpr std::uint8_t Without(base::BitField field) {
  return static_cast<std::uint8_t>(~base::Mask(field));
}

}  // namespace zth::windows::reg
