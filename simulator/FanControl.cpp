#include "simulator/FanControl.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <optional>

#include "simulator/ChipTime.h"
#include "simulator/Encodings.h"

namespace zth::simulator {
namespace {

constexpr int kFullDuty = 255;
constexpr std::array kSpinUpSeconds{0.0, 0.1, 0.25, 0.4, 0.667, 1.0, 2.0, 4.0};
constexpr std::array kRampSeconds{35.0, 17.6, 11.8, 7.0, 4.4, 3.0, 1.6, 0.8};  // from zero to full duty
constexpr double kTurningPulsesPerMinute = 600;                                // two pulses within a fifth of a second

}  // namespace

bool Follows(Behaviour behaviour, int channel) {
  switch (behaviour) {
    case Behaviour::MaxOfAll:
      return true;
    case Behaviour::MaxOfLocalRemote3:
      return channel == 0 || channel == 3;
    case Behaviour::Off:
    case Behaviour::Manual:
      return false;
    default:
      return static_cast<int>(behaviour) == channel;
  }
}

void FanControl::Reset() {
  outputs_ = {};
  aboveTmin_ = {};
}

bool FanControl::SetUp(int pwm) const {
  if (registers_.Changed(0x21 + pwm) || registers_.Changed(0x25 + pwm / 2) || registers_.Changed(0x28 + pwm))
    return true;
  for (int channel = 0; channel < kTemperatures; ++channel) {
    if (!Follows(BehaviourOf(pwm), channel)) continue;
    const bool dynamic = (channel == 1 || channel == 2) && registers_.Bit(0x0B, channel - 1);
    if (dynamic || registers_.Changed(0x5C + channel) || registers_.Changed(0x60 + channel)) return true;
  }
  return false;
}

void FanControl::ConfigWritten(int pwm, std::uint8_t before) {
  // An output that is switched to manual keeps its duty until one is written.
  const bool wasManual = static_cast<Behaviour>(before >> 5) == Behaviour::Manual;
  if (!wasManual) outputs_[At(pwm)].manualDuty = outputs_[At(pwm)].duty;
}

void FanControl::DutyWritten(int pwm, std::uint8_t duty) {
  if (BehaviourOf(pwm) != Behaviour::Manual) return;
  outputs_[At(pwm)].manualDuty = duty;
}

void FanControl::Tick(const Measurement& measurement, const ThermPins& therm, const PinInputs& inputs) {
  FollowTemperatures(measurement);
  for (int pwm = 0; pwm < kPwms; ++pwm) {
    const int duty = Ramped(pwm, WantedDuty(pwm, measurement, therm, inputs));
    const bool spinUp = SpinningUp(pwm, duty, inputs);
    outputs_[At(pwm)].duty = static_cast<std::uint8_t>(spinUp ? kFullDuty : duty);
    ShowDuty(pwm);
  }
}

void FanControl::FollowTemperatures(const Measurement& measurement) {
  for (int channel = 0; channel < kTemperatures; ++channel) {
    const std::optional<int> reading = measurement.Quarters(channel);
    const int tmin = WholeDegrees(registers_[0x5C + channel]);
    const int hysteresis = 4 * registers_.Field(0x60 + channel, 0, 4);
    bool& above = aboveTmin_[At(channel)];
    above = reading && *reading >= (above ? tmin - hysteresis : tmin);
  }
}

FanControl::Wanted FanControl::WantedDuty(int pwm, const Measurement& measurement, const ThermPins& therm,
                                          const PinInputs& inputs) const {
  const bool shutDown = registers_.Bit(0x02, 1);
  if (shutDown) return {0};
  const bool fullSpeed = registers_.Bit(0x02, 5);
  if (fullSpeed) return {kFullDuty};

  const Behaviour behaviour = BehaviourOf(pwm);
  if (behaviour == Behaviour::Off) return {0};
  if (behaviour == Behaviour::Manual) return {outputs_[At(pwm)].manualDuty};
  if (Boosted(therm, inputs)) return {kFullDuty};
  if (!SetUp(pwm)) return {registers_[0x2C]};
  return {CurveDuty(pwm, measurement), false};
}

bool FanControl::Boosted(const ThermPins& therm, const PinInputs& inputs) const {
  for (int i = 0; i < kTherms; ++i) {
    const bool thermBoosts = !registers_.Bit(0x0D, i);
    if (thermBoosts && therm.Asserted(i)) return true;
    const bool regulatorBoosts = !registers_.Bit(0x02, 3 + i);
    if (regulatorBoosts && inputs.vrHot[At(i)] && pins_.HasVrHot(i)) return true;
  }
  return inputs.pin27Asserted && !pins_.HasChassisIntrusion();
}

int FanControl::CurveDuty(int pwm, const Measurement& measurement) const {
  const int min = registers_[0x28 + pwm];
  const int max = registers_[0x2C];
  const bool alwaysOn = registers_.Bit(0x25 + pwm / 2, pwm % 2);
  int duty = alwaysOn ? min : 0;
  for (int channel = 0; channel < kTemperatures; ++channel) {
    if (!Follows(BehaviourOf(pwm), channel) || !aboveTmin_[At(channel)]) continue;
    const int aboveTmin = *measurement.Quarters(channel) - WholeDegrees(registers_[0x5C + channel]);
    const int rise = CurveRise(std::max(aboveTmin, 0), registers_.Field(0x60 + channel, 4, 4));
    duty = std::max(duty, min + rise);
  }
  return std::min(duty, max);
}

int FanControl::Ramped(int pwm, Wanted wanted) {
  Output& output = outputs_[At(pwm)];
  const bool enhanced = registers_.Bit(0x1A + pwm / 2, pwm % 2);
  if (wanted.atOnce || !enhanced) {
    output.ramp = wanted.duty;
    return wanted.duty;
  }
  // A fan starts at Min duty, never below.
  if (output.duty == 0 && wanted.duty > 0) output.ramp = std::min<int>(wanted.duty, registers_[0x28 + pwm]);
  const auto field = At(registers_.Field(0x1A + pwm / 2, pwm % 2 == 0 ? 2 : 5, 3));
  const bool slow = registers_.Bit(0x21 + pwm, 3);
  const double step = kFullDuty * kTickSeconds / (kRampSeconds[field] * (slow ? 4 : 1));
  output.ramp += std::clamp(wanted.duty - output.ramp, -step, step);
  return static_cast<int>(std::lround(output.ramp));
}

bool FanControl::SpinningUp(int pwm, int duty, const PinInputs& inputs) {
  Output& output = outputs_[At(pwm)];
  if (duty == 0) {
    output.spinUpTicks = 0;
    return false;
  }
  const double seconds = kSpinUpSeconds[At(registers_.Field(0x21 + pwm, 0, 3))];
  if (output.duty == 0 && seconds > 0) output.spinUpTicks = Ticks(seconds) + 1;
  if (output.spinUpTicks == 0) return false;
  --output.spinUpTicks;
  // Fast spin-up ends with the first pulses of the output's own fan.
  const bool fast = !registers_.Bit(0x01, 4);
  const bool turning = inputs.pulsesPerMinute[At(pwm)] > kTurningPulsesPerMinute && pins_.HasTach(pwm);
  if (fast && turning) output.spinUpTicks = 0;
  return output.spinUpTicks > 0;
}

void FanControl::ShowDuty(int pwm) {
  const std::uint8_t duty = outputs_[At(pwm)].duty;
  registers_.Put(0xAA + pwm, dutyReadsInverted_ ? ~duty : duty);
}

std::optional<double> FanControl::PinHigh(int pwm) const {
  if (!pins_.HasPwm(pwm)) return std::nullopt;
  const double high = outputs_[At(pwm)].duty / 255.0;
  const bool activeHigh = registers_.Bit(0x21 + pwm, 4);
  return activeHigh ? high : 1.0 - high;
}

}  // namespace zth::simulator
