#pragma once

#include <cstdint>

namespace zth::simulator {

/// A temperature as stored in the chip: quarter degrees above -64 degrees C, 0 to 1023.
int TemperatureCode(double temperatureC);

/// The code, in quarter degrees above -64, for a whole-degree register (limit, Tmin, operating point).
constexpr int WholeDegrees(std::uint8_t limit) {
  return limit * 4;
}

/// A voltage as stored in the chip: `fullCode` at `reference` volts, clamped to a byte.
std::uint8_t VoltageCode(double volts, double reference, double fullCode);

/// The 90 kHz tach clocks during `pulses` pulses, 0 to 0xFFFF; 0xFFFF if there are no pulses or the count overflows.
int TachCount(double pulsesPerMinute, int pulses);

/// The rise of the duty above Tmin in byte steps, rounded half to even: 64 percent of 255 over the Trange of field
/// value 0 to 15. `quarters` is quarter degrees above Tmin, 0 or more.
int CurveRise(int quarters, int trangeField);

}  // namespace zth::simulator
