#pragma once

#include <cstdint>

#include "simulator/Alerts.h"
#include "simulator/DynamicTmin.h"
#include "simulator/FanControl.h"
#include "simulator/Gpio.h"
#include "simulator/Measurement.h"
#include "simulator/PinInputs.h"
#include "simulator/PinModel.h"
#include "simulator/RegisterFile.h"
#include "simulator/ThermPins.h"
#include "simulator/VidInputs.h"

namespace zth::simulator {

/// What differs from chip to chip.
struct ChipOptions {
  std::uint8_t revision = 0;  ///< register 0x3F; a chip of revision 0 reads its duties back inverted
  std::uint64_t seed = 1;     ///< of the converter's noise
  double noise = 1.0;         ///< scale of that noise; 0 for none
};

/// The ZTH4718: its registers, and all that it does by itself. It knows the board through its pins alone.
class Chip {
 public:
  explicit Chip(const ChipOptions& options = {});
  Chip(const Chip&) = delete;
  Chip& operator=(const Chip&) = delete;

  /// One byte read on the bus. Reading a status register clears what is over.
  std::uint8_t Read(std::uint8_t address);
  /// One byte write on the bus, with all that it sets off.
  void Write(std::uint8_t address, std::uint8_t value);
  /// The byte behind an address, without the effects of a read.
  std::uint8_t Peek(std::uint8_t address) const { return registers_[address]; }

  /// One tick of kTick with these levels on the pins.
  void Tick(const PinInputs& inputs);

  PinOutputs Outputs() const;
  const PinModel& Pins() const { return pins_; }
  /// The duty that an output runs at, 0 to 255: what 0xAA + pwm shows, without the inversion of revision 0.
  std::uint8_t Duty(int pwm) const { return fans_.Duty(pwm); }

 private:
  void Reset();
  void AfterWrite(const RegisterRule& rule, std::uint8_t before);

  ChipOptions options_;
  RegisterFile registers_;
  PinModel pins_;
  Measurement measurement_;
  ThermPins therm_;
  DynamicTmin dynamicTmin_;
  FanControl fans_;
  Alerts alerts_;
  Gpio gpio_;
  VidInputs vid_;
};

}  // namespace zth::simulator
