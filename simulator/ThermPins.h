#pragma once

#include <array>

#include "simulator/Measurement.h"
#include "simulator/PinInputs.h"
#include "simulator/PinModel.h"
#include "simulator/RegisterFile.h"

namespace zth::simulator {

inline constexpr int kTherms = 2;

/// The two THERM pins: compares every temperature with its two THERM limits, and runs the on-time timers.
class ThermPins {
 public:
  ThermPins(RegisterFile& registers, const PinModel& pins) : registers_(registers), pins_(pins) {}

  /// Compares the last readings with the limits.
  void Compare(const Measurement& measurement);

  /// One tick of the pins and their timers.
  void Tick(const PinInputs& inputs);

  /// Resets to the power-up state.
  void Reset() { pin_ = {}; }

  /// True if the channel is above its limit, or has been and has not dropped by the hysteresis since.
  bool Exceeded(int therm, int channel) const { return pin_[At(therm)].exceeded[At(channel)]; }
  /// True if the chip pulls the pin: a channel enabled in 0x0E or 0x0F is above its limit.
  bool Driven(int therm) const { return pin_[At(therm)].driven; }
  /// True if the pin is low, whoever pulls it. Driven() also works without a THERM pin; a pull from outside needs one.
  bool Asserted(int therm) const { return pin_[At(therm)].asserted; }
  /// True if the pin went low in the last tick.
  bool Event(int therm) const { return pin_[At(therm)].event; }
  /// True if the on-time of the last window is above its limit.
  bool OverTime(int therm) const { return registers_[0xAE + therm] > registers_[0x80 + therm]; }

 private:
  struct Pin {
    std::array<bool, kTemperatures> exceeded{};
    bool driven = false;
    bool asserted = false;
    bool event = false;
    int windowTicks = 0;
    int onTicks = 0;
  };

  void RunTimer(int therm);

  RegisterFile& registers_;
  const PinModel& pins_;
  std::array<Pin, kTherms> pin_{};
};

}  // namespace zth::simulator
