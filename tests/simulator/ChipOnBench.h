#pragma once

#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <utility>

#include "simulator/Chip.h"
#include "simulator/ChipTime.h"
#include "simulator/PinInputs.h"

namespace zth::simulator {

/// A chip without noise whose pins the test holds. All temperatures start at 30 degrees C.
struct ChipOnBench {
  explicit ChipOnBench(std::uint8_t revision = 1) : chip(ChipOptions{.revision = revision, .seed = 1, .noise = 0}) {
    pins.temperatureC.fill(30);
  }

  void Run(double seconds) {
    const long ticks = std::lround(seconds / kTickSeconds);
    for (long i = 0; i < ticks; ++i) chip.Tick(pins);
  }
  /// Long enough for one round of conversions and what follows from it.
  void Convert() { Run(2 * kConversionSeconds); }

  void Write(std::initializer_list<std::pair<int, int>> registers) {
    for (const auto& [address, value] : registers) Write(address, value);
  }
  void Write(int address, int value) {
    chip.Write(static_cast<std::uint8_t>(address), static_cast<std::uint8_t>(value));
  }
  int Read(int address) { return chip.Read(static_cast<std::uint8_t>(address)); }
  int Tach(int fan) {
    const int low = (fan < 5 ? 0x98 : 0x9A) + 2 * (fan - 1);
    return Read(low) | Read(low + 1) << 8;
  }

  Chip chip;
  PinInputs pins;
};

/// The byte of a temperature limit.
constexpr int Degrees(int celsius) {
  return celsius + 64;
}

}  // namespace zth::simulator
