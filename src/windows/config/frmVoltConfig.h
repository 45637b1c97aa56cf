#pragma once

#include "windows/ConfigWindow.h"

namespace zth::windows {

/// The input attenuators of the voltage pins.
class frmVoltConfig final : public ConfigWindow {
 public:
  explicit frmVoltConfig(const Context& context);
};

}  // namespace zth::windows
