#pragma once

#include <array>

#include "link/ChipId.h"

/// Which PWMs are driven by hand.
namespace zth::chip {

inline constexpr int kPwmChannels = 4;

/// PWM 1 to 4 at index 1 to 4: its behaviour field says manual. Index 0 is not in use.
extern std::array<bool, kPwmChannels + 1> PwmManual;

/// The chip that each of them was read from.
extern std::array<link::ChipId, kPwmChannels + 1> PwmManualFrom;

/// Enters into the link's hooks: a write to "PWM1 Config" to "PWM4 Config" reads the register back and renews
/// `PwmManual` of that PWM.
void EnterPwmHooks();

}  // namespace zth::chip
