#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "simulator/PinModel.h"

namespace zth::simulator {

/// What the board applies to the chip's pins; the chip knows nothing else of the world.
struct PinInputs {
  std::array<double, kTemperatures> temperatureC{};
  std::array<bool, kTemperatures> diodeOpen{};   ///< Local (0) has no wires that could break
  std::array<double, kVoltagePins> volts{};      ///< indexed by VoltagePin
  std::array<double, kTachs> pulsesPerMinute{};  ///< 0: no pulses reach the pin
  std::array<bool, 2> thermLow{};                ///< the THERM pin is pulled low from outside
  std::array<bool, 2> vrHot{};                   ///< a regulator reports overheating
  bool pin27Asserted = false;                    ///< an open case or the FANMAX input, depending on the pin's function
  std::array<bool, kGpios> gpioHigh{true, true, true, true, true, true, true, true};  ///< level from outside
  std::uint8_t vid = 0x3F;  ///< levels of VID0 to VID5, one bit each
};

/// What the chip drives.
struct PinOutputs {
  /// Fraction of time that each PWM pin is high, 0 to 1; empty if the pin is not a PWM output.
  std::array<std::optional<double>, kPwms> pwmHigh;
  std::array<bool, 2> thermAsserted{};               ///< by the chip itself
  std::array<std::optional<bool>, kGpios> gpioHigh;  ///< empty if the pin is not an output
  std::array<bool, 2> edo{};
  bool alert = false;
};

}  // namespace zth::simulator
