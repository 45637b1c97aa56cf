#pragma once

#include "simulator/Settings.h"

namespace zth::simulator {

/// The settings of the simulated libraries.
inline Settings LoadSettings() {
  return {};
}

}  // namespace zth::simulator
