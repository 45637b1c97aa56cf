#pragma once

/// Which PWMs are in manual mode.
namespace zth::chip {

inline constexpr int kPwmChannels = 4;

/// Registers hooks with the link: a write to "PWM1 Config" to "PWM4 Config" reads the register back and updates
/// `PwmManual` for that PWM.
void EnterPwmHooks();

}  // namespace zth::chip
