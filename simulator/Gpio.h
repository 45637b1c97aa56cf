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

  /// Takes the levels of the inputs into the status register 0xBF.
  void Tick(const PinInputs& inputs);
  void Reset() { latch_ = 0; }

  /// A byte was written to 0xBF: the bits of outputs take it, those of inputs do not.
  void LevelsWritten(std::uint8_t value);

  /// The level that the chip drives; empty where the pin is no GPIO output.
  std::optional<bool> OutputHigh(int gpio) const;

  /// GPIO inputs that are active, a bit each.
  std::uint8_t ActiveInputs() const;

  /// EDO output 0 or 1 is asserted.
  bool EdoAsserted(int edo, const Alerts& alerts) const;

 private:
  bool Live(int gpio) const { return registers_.Bit(0x03, 0) && pins_.HasGpio(gpio); }
  bool ActiveHigh(int gpio) const { return registers_.Bit(0x09 + gpio / 4, 2 * (gpio % 4)); }
  bool Output(int gpio) const { return registers_.Bit(0x09 + gpio / 4, 2 * (gpio % 4) + 1); }
  void Show(std::uint8_t inactiveInputs);

  RegisterFile& registers_;
  const PinModel& pins_;
  std::uint8_t latch_ = 0;  ///< what was written for the outputs; a bit at 1 is inactive
};

}  // namespace zth::simulator
