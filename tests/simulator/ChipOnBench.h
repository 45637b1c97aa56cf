#pragma once

#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>

#include "simulator/Chip.h"
#include "simulator/ChipTime.h"
#include "simulator/PinInputs.h"
#include "tests/simulator/Play.h"

namespace zth::simulator {

using Writes = std::initializer_list<std::pair<int, int>>;  ///< address and value

/// The byte of a temperature limit.
constexpr int Degrees(int celsius) {
  return celsius + 64;
}

/// A chip whose pins the test controls. All temperatures start at 30 degrees C.
struct ChipOnBench {
  explicit ChipOnBench(int revision = 1, double noise = 0)
      : chip({.revision = static_cast<std::uint8_t>(revision), .seed = 1, .noise = noise}) {
    pins.temperatureC.fill(30);
  }
  explicit ChipOnBench(Writes registers) : ChipOnBench() { Write(registers); }
  explicit ChipOnBench(const std::string& steps) : ChipOnBench() { Play(steps); }

  void Run(double seconds) {
    const long ticks = std::lround(seconds / kTickSeconds);
    for (long i = 0; i < ticks; ++i) chip.Tick(pins);
  }
  /// Long enough for one round of conversions and its effects.
  void Convert() { Run(2 * kConversionSeconds); }
  /// Steps with t a temperature, f a fan's pulses per minute, g a GPIO's level, o an open diode, v the volts of all
  /// pins; and with d a duty, a the ALERT pin, m a THERM pin, e an EDO pin.
  void Play(const std::string& steps) { simulator::Play(*this, steps); }
  void Set(char what, int n, double value) {
    const auto i = static_cast<std::size_t>(n);
    if (what == '\0') Write(n, static_cast<int>(value));
    if (what == 't') pins.temperatureC.at(i) = value;
    if (what == 'f') pins.pulsesPerMinute.at(i) = value;
    if (what == 'g') pins.gpioHigh.at(i) = value != 0;
    if (what == 'o') pins.diodeOpen.at(i) = value != 0;
    if (what == 'v') pins.volts.fill(value);
  }
  double Get(char what, int n) {
    const auto i = static_cast<std::size_t>(n);
    if (what == 'd') return chip.Duty(n);
    if (what == 'a') return chip.Outputs().alert ? 1 : 0;
    if (what == 'm') return chip.Outputs().thermAsserted.at(i) ? 1 : 0;
    if (what == 'e') return chip.Outputs().edo.at(i) ? 1 : 0;
    return Read(n);
  }
  /// Runs until `done`, for at most 60 seconds. Returns the seconds that it took.
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
  /// The present contents of a status register, without bits latched earlier.
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
