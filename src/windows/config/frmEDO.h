#pragma once

#include "windows/ConfigWindow.h"

namespace zth::windows {

/// The two EDO outputs and the events that each of them masks.
class frmEDO final : public ConfigWindow {
 public:
  explicit frmEDO(const Context& context);
};

}  // namespace zth::windows
