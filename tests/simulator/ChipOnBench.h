#pragma once

#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <utility>

#include "simulator/Chip.h"
#include "simulator/ChipTime.h"
#include "simulator/PinInputs.h"

namespace zth::simulator {

using Writes = std::initializer_list<std::pair<int, int>>;  ///< address and value

/// The byte of a temperature limit.
constexpr int Degrees(int celsius) {
  return celsius + 64;
}

/// A chip whose pins the test holds. All temperatures start at 30 degrees C.
struct ChipOnBench {
  explicit ChipOnBench(int revision = 1, double noise = 0)
      : chip({.revision = static_cast<std::uint8_t>(revision), .seed = 1, .noise = noise}) {
    pins.temperatureC.fill(30);
  }
  explicit ChipOnBench(Writes registers) : ChipOnBench() { Write(registers); }

  void Run(double seconds) {
    const long ticks = std::lround(seconds / kTickSeconds);
    for (long i = 0; i < ticks; ++i) chip.Tick(pins);
  }
  /// Long enough for one round of conversions and what follows from it.
  void Convert() { Run(2 * kConversionSeconds); }
  /// Runs until `done`, 60 seconds at the most; the seconds that it took.
  template <typename Done>
  double RunUntil(Done done) {
    double seconds = 0;
    for (; !done() && seconds < 60; seconds += kTickSeconds) chip.Tick(pins);
    return seconds;
  }

  void Write(Writes registers) {
    for (const auto& [address, value] : registers) Write(address, value);
  }
  void Write(int address, int value) {
    chip.Write(static_cast<std::uint8_t>(address), static_cast<std::uint8_t>(value));
  }
  int Read(int address) { return chip.Read(static_cast<std::uint8_t>(address)); }
  /// What a status register holds now, that which was latched before aside.
  int ReadAnew(int address) { return Read(address), Read(address); }
  int Duty(int pwm) const { return chip.Duty(pwm); }
  int Tach(int fan) {
    const int low = (fan < 5 ? 0x98 : 0x9A) + 2 * (fan - 1);
    return Read(low) | Read(low + 1) << 8;
  }
  /// The reading of a channel in quarter degrees above -64.
  int Quarters(int channel) { return Read(0x89 + 2 * channel) * 4 + Read(0x88 + 2 * channel) / 64; }
  double& Volts(VoltagePin pin) { return pins.volts[static_cast<std::size_t>(pin)]; }
  double& Celsius(int channel) { return pins.temperatureC[static_cast<std::size_t>(channel)]; }

  Chip chip;
  PinInputs pins;
};

}  // namespace zth::simulator
