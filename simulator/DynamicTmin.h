#pragma once

#include <array>
#include <optional>

#include "simulator/Measurement.h"
#include "simulator/RegisterFile.h"
#include "simulator/ThermPins.h"

namespace zth::simulator {

/// The control loop that adjusts Tmin of Remote 1 and Remote 2 so that the temperature settles at the operating point.
class DynamicTmin {
 public:
  explicit DynamicTmin(RegisterFile& registers) : registers_(registers) {}

  void Tick(const Measurement& measurement, const ThermPins& therm);
  void Reset();

 private:
  struct Loop {
    int ticks = 0;
    std::optional<int> lastQuarters;
  };

  void LoadOperatingPoint(int remote, const Measurement& measurement, const ThermPins& therm);
  void Step(int remote, int quarters);

  RegisterFile& registers_;
  std::array<Loop, 2> loops_;
};

}  // namespace zth::simulator
