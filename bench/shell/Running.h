#pragma once

#include <ctime>

#include "tests/support/Desk.h"

namespace zth {

/// The running program on a link at zero cost, so that what is left is the program's own time.
class Running {
 public:
  Running();

  testing::Desk desk{testing::Desk::Buses::Usb};
};

/// What this process has worked so far, whatever else the machine does.
inline double CpuSeconds() {
  return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

/// A benchmark for the opening of each window.
void RegisterOpenings();

}  // namespace zth
