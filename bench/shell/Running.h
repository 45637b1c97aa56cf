#pragma once

#include <ctime>

#include "tests/support/Desk.h"

namespace zth {

/// The running program on a link that takes no time, so that only the program's own time is measured.
class Running {
 public:
  Running();

  testing::Desk desk{testing::Desk::Buses::Usb};
};

/// The CPU time of this process so far, whatever else the machine does.
inline double CpuSeconds() {
  return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

/// A benchmark for the opening of each window.
void RegisterOpenings();

}  // namespace zth
