#pragma once

#include "windows/ConfigWindow.h"

namespace zth::windows {

/// The two THERM pins: timers, the conditions that assert them, and the hysteresis of the temperature channels.
class frmTherm final : public ConfigWindow {
 public:
  explicit frmTherm(const Context& context);

 private:
  void cmdSetlimits_Click();
};

}  // namespace zth::windows
