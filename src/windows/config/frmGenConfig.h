#pragma once

#include "windows/ConfigWindow.h"

namespace zth::windows {

/// The chip's general switches.
class frmGenConfig final : public ConfigWindow {
 public:
  explicit frmGenConfig(const Context& context);
};

}  // namespace zth::windows
