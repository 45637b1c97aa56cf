#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "simulator/Measurement.h"
#include "simulator/PinInputs.h"
#include "simulator/PinModel.h"
#include "simulator/RegisterFile.h"
#include "simulator/ThermPins.h"

namespace zth::simulator {

/// What drives a PWM output: the field of bits 7:5 of its config register.
enum class Behaviour : std::uint8_t { Local, Remote1, Remote2, Remote3, Off, MaxOfLocalRemote3, MaxOfAll, Manual };

/// True for a behaviour that follows the temperature of the channel.
bool Follows(Behaviour behaviour, int channel);

/// The four PWM outputs: the automatic control law, manual duty, spin-up and ramps.
class FanControl {
 public:
  FanControl(RegisterFile& registers, const PinModel& pins, bool dutyReadsInverted)
      : registers_(registers), pins_(pins), dutyReadsInverted_(dutyReadsInverted) {}

  void Tick(const Measurement& measurement, const ThermPins& therm, const PinInputs& inputs);
  void Reset();

  /// The config register was written, `before` being what it held.
  void ConfigWritten(int pwm, std::uint8_t before);
  /// A duty was written to 0xAA + pwm. It counts in manual mode only.
  void DutyWritten(int pwm, std::uint8_t duty);

  /// The duty that the output runs at, 0 to 255, before its polarity.
  std::uint8_t Duty(int pwm) const { return outputs_[At(pwm)].duty; }
  /// Share of time that the pin is high; empty when the pin is no PWM output.
  std::optional<double> PinHigh(int pwm) const;

 private:
  struct Output {
    std::uint8_t duty = 0;
    std::uint8_t manualDuty = 0;
    double ramp = 0;      ///< the duty of a ramp in fractions of a step
    int spinUpTicks = 0;  ///< what is left of the spin-up
  };
  struct Wanted {
    int duty = 0;
    bool atOnce = true;  ///< no ramp leads there
  };

  Behaviour BehaviourOf(int pwm) const { return static_cast<Behaviour>(registers_.Field(0x21 + pwm, 5, 3)); }
  /// Anything that shapes the output's duty is no longer as at power-up.
  bool SetUp(int pwm) const;
  void FollowTemperatures(const Measurement& measurement);
  Wanted WantedDuty(int pwm, const Measurement& measurement, const ThermPins& therm, const PinInputs& inputs) const;
  int CurveDuty(int pwm, const Measurement& measurement) const;
  bool Boosted(const ThermPins& therm, const PinInputs& inputs) const;
  int Ramped(int pwm, Wanted wanted);
  bool SpinningUp(int pwm, int duty, const PinInputs& inputs);
  void ShowDuty(int pwm);

  RegisterFile& registers_;
  const PinModel& pins_;
  bool dutyReadsInverted_;
  std::array<Output, kPwms> outputs_{};
  std::array<bool, kTemperatures> aboveTmin_{};
};

}  // namespace zth::simulator
