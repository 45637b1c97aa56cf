#pragma once

/// Which PWMs are driven by hand.
namespace zth::chip {

inline constexpr int kPwmChannels = 4;

/// Enters into the link's hooks: a write to "PWM1 Config" to "PWM4 Config" reads the register back and renews
/// `PwmManual` of that PWM.
void EnterPwmHooks();

}  // namespace zth::chip
