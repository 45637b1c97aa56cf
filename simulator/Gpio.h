#pragma once

#include <cstdint>
#include <optional>

#include "simulator/Alerts.h"
#include "simulator/PinInputs.h"
#include "simulator/PinModel.h"
#include "simulator/RegisterFile.h"

namespace zth::simulator {

/// The eight GPIOs and the two EDO outputs.
class Gpio {
 public:
  Gpio(RegisterFile& registers, const PinModel& pins) : registers_(registers), pins_(pins) {}

  /// Updates the status register 0xBF from the input levels.
  void Tick(const PinInputs& inputs);
  void Reset() { latch_ = 0; }

  /// A byte was written to 0xBF: only the bits of outputs change.
  void LevelsWritten(std::uint8_t value);

  /// The level that the chip drives; empty if the pin is not a GPIO output.
  std::optional<bool> OutputHigh(int gpio) const;

  /// The active GPIO inputs, one bit each.
  std::uint8_t ActiveInputs() const;

  /// True if EDO output 0 or 1 is asserted.
  bool EdoAsserted(int edo, const Alerts& alerts) const;

 private:
  bool Live(int gpio) const { return registers_.Bit(0x03, 0) && pins_.HasGpio(gpio); }
  bool ActiveHigh(int gpio) const { return registers_.Bit(0x09 + gpio / 4, 2 * (gpio % 4)); }
  bool Output(int gpio) const { return registers_.Bit(0x09 + gpio / 4, 2 * (gpio % 4) + 1); }
  void Show(std::uint8_t inactiveInputs);

  RegisterFile& registers_;
  const PinModel& pins_;
  std::uint8_t latch_ = 0;  ///< last value written for the outputs; a 1 bit is inactive
};

}  // namespace zth::simulator
