#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "simulator/Measurement.h"
#include "simulator/PinInputs.h"
#include "simulator/PinModel.h"
#include "simulator/RegisterFile.h"
#include "simulator/ThermPins.h"

namespace zth::simulator {

/// The status registers, which compare measurements with limits and latch the results for both readers, and the ALERT
/// pin.
class Alerts {
 public:
  Alerts(RegisterFile& registers, const PinModel& pins) : registers_(registers), pins_(pins) {}

  /// Compares everything with its limits, latches what is out of range and updates the status registers. Temperatures
  /// and voltages are compared only when they were `converted` in this tick. `vidChanged` is the event of a VID code
  /// change.
  void Tick(bool converted, bool vidChanged, const Measurement& measurement, const ThermPins& therm,
            const PinInputs& inputs);
  void Reset();

  /// A status register was read: its copy clears the bits whose cause is over.
  void StatusRead(int address);

  /// The present causes by group, in the order of the registers from 0xB8 on.
  std::uint8_t Live(std::size_t group) const { return live_[group]; }
  /// True if the ALERT pin is pulled; `gpioActive` are the active GPIO inputs.
  bool AlertAsserted(std::uint8_t gpioActive) const;

  enum Group : std::uint8_t { Thermal1, Thermal2, ThermLimits, Voltage1, Voltage2, Fans, Digital };

 private:
  static constexpr std::size_t kGroups = 7;

  std::uint8_t Temperatures(const Measurement& measurement) const;
  std::uint8_t ThermEvents(const ThermPins& therm, const PinInputs& inputs) const;
  std::uint8_t ThermLimitBits(const ThermPins& therm) const;
  std::uint8_t Voltages(int group) const;
  std::uint8_t SlowFans(const Measurement& measurement) const;
  std::uint8_t DigitalInputs(const PinInputs& inputs) const;

  RegisterFile& registers_;
  const PinModel& pins_;
  std::array<std::uint8_t, kGroups> live_{};
};

}  // namespace zth::simulator
