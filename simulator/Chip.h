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

/// The differences between chips.
struct ChipOptions {
  std::uint8_t revision = 0;  ///< register 0x3F; a chip of revision 0 reads its duties back inverted
  std::uint64_t seed = 1;     ///< seed of the converter's noise
  double noise = 1.0;         ///< scale of that noise; 0 for none
};

/// The ZTH4718: its registers, and everything that it does by itself. Its pins are its only connection to the board.
class Chip {
 public:
  explicit Chip(const ChipOptions& options = {});
  Chip(const Chip&) = delete;
  Chip& operator=(const Chip&) = delete;

  /// One byte read on the bus. Reading a status register clears the bits whose cause is over.
  std::uint8_t Read(std::uint8_t address);
  /// One byte write on the bus, with all its effects.
  void Write(std::uint8_t address, std::uint8_t value);
  /// The byte at an address, without the effects of a read.
  std::uint8_t Peek(std::uint8_t address) const { return registers_[address]; }

  /// One tick of kTick with these pin levels.
  void Tick(const PinInputs& inputs);

  PinOutputs Outputs() const;
  const PinModel& Pins() const { return pins_; }
  /// The actual duty of an output, 0 to 255: the value of 0xAA + pwm, without the inversion of revision 0.
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
