#pragma once

#include <array>

#include "simulator/Measurement.h"
#include "simulator/PinInputs.h"
#include "simulator/PinModel.h"
#include "simulator/RegisterFile.h"

namespace zth::simulator {

inline constexpr int kTherms = 2;

/// The two THERM pins: the comparison of every temperature with its two THERM limits, and the on-time timers.
class ThermPins {
 public:
  ThermPins(RegisterFile& registers, const PinModel& pins) : registers_(registers), pins_(pins) {}

  /// Compares the last readings with the limits.
  void Compare(const Measurement& measurement);

  /// One tick of the pins and their timers.
  void Tick(const PinInputs& inputs);

  /// Back to power-up.
  void Reset() { pin_ = {}; }

  /// The channel is above its limit, and has not come down by the hysteresis since.
  bool Exceeded(int therm, int channel) const { return pin_[At(therm)].exceeded[At(channel)]; }
  /// The chip itself pulls the pin: a channel that is let through by 0x0E or 0x0F is above its limit.
  bool Driven(int therm) const { return pin_[At(therm)].driven; }
  /// The pin is low, whoever pulls it. Driven() holds without a THERM pin too, a pull from outside needs one.
  bool Asserted(int therm) const { return pin_[At(therm)].asserted; }
  /// The pin went low in the last tick.
  bool Event(int therm) const { return pin_[At(therm)].event; }
  /// The on-time of the last window is above its limit.
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
