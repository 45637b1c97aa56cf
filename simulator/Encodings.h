#pragma once

#include <cstdint>

namespace zth::simulator {

/// A temperature as the chip holds it: quarter degrees above -64 degrees C, 0 to 1023.
int TemperatureCode(double temperatureC);

/// The code, in quarter degrees above -64, of a whole-degree register (limit, Tmin, operating point).
constexpr int WholeDegrees(std::uint8_t limit) {
  return limit * 4;
}

/// A voltage as the chip holds it: `fullCode` at `reference` volts, limited to a byte.
std::uint8_t VoltageCode(double volts, double reference, double fullCode);

/// Tach clocks of 90 kHz in the time of `pulses` pulses, 0 to 0xFFFF; 0xFFFF where none come or the count runs over.
int TachCount(double pulsesPerMinute, int pulses);

/// The rise of the duty over Tmin in byte steps, half to even: 64 percent of 255 over the Trange of the field 0 to 15.
/// `quarters` are quarter degrees above Tmin, 0 or more.
int CurveRise(int quarters, int trangeField);

}  // namespace zth::simulator
