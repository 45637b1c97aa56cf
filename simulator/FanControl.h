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

/// What controls a PWM output: the field in bits 7:5 of its config register.
enum class Behaviour : std::uint8_t { Local, Remote1, Remote2, Remote3, Off, MaxOfLocalRemote3, MaxOfAll, Manual };

/// True if the behaviour follows the channel's temperature.
bool Follows(Behaviour behaviour, int channel);

/// The four PWM outputs: the automatic control law, manual duty, spin-up and ramps.
class FanControl {
 public:
  FanControl(RegisterFile& registers, const PinModel& pins, bool dutyReadsInverted)
      : registers_(registers), pins_(pins), dutyReadsInverted_(dutyReadsInverted) {}

  void Tick(const Measurement& measurement, const ThermPins& therm, const PinInputs& inputs);
  void Reset();

  /// The config register was written; `before` is its previous value.
  void ConfigWritten(int pwm, std::uint8_t before);
  /// A duty was written to 0xAA + pwm. It takes effect only in manual mode.
  void DutyWritten(int pwm, std::uint8_t duty);

  /// The output's duty, 0 to 255, before its polarity is applied.
  std::uint8_t Duty(int pwm) const { return outputs_[At(pwm)].duty; }
  /// Fraction of time that the pin is high; empty if the pin is not a PWM output.
  std::optional<double> PinHigh(int pwm) const;

 private:
  struct Output {
    std::uint8_t duty = 0;
    std::uint8_t manualDuty = 0;
    double ramp = 0;      ///< the duty of a ramp, with fractions of a step
    int spinUpTicks = 0;  ///< remaining spin-up time
  };
  struct Wanted {
    int duty = 0;
    bool atOnce = true;  ///< without a ramp
  };

  Behaviour BehaviourOf(int pwm) const { return static_cast<Behaviour>(registers_.Field(0x21 + pwm, 5, 3)); }
  /// True if any setting that affects the output's duty differs from power-up.
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
