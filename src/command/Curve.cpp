#include <algorithm>
#include <limits>

#include "base/Rounding.h"
#include "chip/ChannelNames.h"
#include "chip/Conversions.h"
#include "chip/FanCurve.h"
#include "chip/PwmModes.h"
#include "chip/RegisterNames.h"
#include "command/Commands.h"

namespace zth::command {
namespace {

constexpr int kFull = 255;

/// What the chip computes a duty from; temperatures in whole degrees C, duties in steps of 1/255.
struct Ramp {
  std::string source;
  int tmin = 0;
  int hysteresis = 0;
  int trange = 0;
  int min = 0;
  int max = 0;
  bool alwaysOn = false;
  int limit = 0;  ///< from here on full duty

  /// `falls`: the temperature comes from above Tmin.
  int Duty(int degrees, bool falls) const {
    if (degrees >= limit) return kFull;
    if (degrees < (falls ? tmin - hysteresis : tmin)) return alwaysOn ? std::min(min, max) : 0;
    constexpr int kQuarters = 4;
    return std::min(min + chip::DutyRise(kQuarters * std::max(degrees - tmin, 0), trange), max);
  }
};

/// The channels that control a PWM of that behaviour.
std::vector<int> ChannelsOf(unsigned behaviour) {
  constexpr unsigned kMaxOfTwo = 5;
  constexpr unsigned kMaxOfAll = 6;
  if (behaviour < chip::kTemperatures) return {static_cast<int>(behaviour)};
  if (behaviour == kMaxOfTwo) return {0, 3};
  if (behaviour == kMaxOfAll) return {0, 1, 2, 3};
  return {};
}

int ReadByte(Session& session, int reg) {
  return static_cast<int>(session.Read(static_cast<std::uint8_t>(reg)));
}

/// A THERM pin drives the fans at full duty unless its bit disables that.
int ThermLimit(Session& session, int channel) {
  const auto config = session.Read("THERM Configuration"_reg);
  int limit = std::numeric_limits<int>::max();
  if (base::GetField(config, chip::Field("THERM Configuration", "B1")) == 0) {
    limit = chip::DegreesFromByte(static_cast<std::uint8_t>(ReadByte(session, "Local THERM1 Limit"_reg + channel)));
  }
  if (base::GetField(config, chip::Field("THERM Configuration", "B2")) == 0) {
    const int second = ReadByte(session, "Local THERM2 Limit"_reg + channel);
    limit = std::min<int>(limit, chip::DegreesFromByte(static_cast<std::uint8_t>(second)));
  }
  return limit;
}

Ramp RampOf(Session& session, int pwm, int channel) {
  const auto slope = session.Read(static_cast<std::uint8_t>("Local Trange/Hys"_reg + channel));
  const auto frequency = session.Read(static_cast<std::uint8_t>("PWM 1&2 Freq"_reg + pwm / 2));
  return {.source = chip::kTemperatureNames.at(static_cast<std::size_t>(channel)),
          .tmin = chip::DegreesFromByte(static_cast<std::uint8_t>(ReadByte(session, "Local Tmin"_reg + channel))),
          .hysteresis = static_cast<int>(base::GetField(slope, chip::kTminHyst)),
          .trange = static_cast<int>(base::GetField(slope, chip::kTrange)),
          .min = ReadByte(session, "PWM1 Min"_reg + pwm),
          .max = ReadByte(session, "PWM 1-4 Max"_reg),
          .alwaysOn = base::GetBit(frequency, pwm % 2),
          .limit = ThermLimit(session, channel)};
}

double PercentOf(int duty) {
  return base::RoundHalfEven(duty * 100.0 / kFull, 1);
}

/// From below the hysteresis to where the duty no longer rises, and the limit behind that.
void ShowRamp(const Ramp& ramp, const Output& output) {
  const auto show = [&](int degrees) {
    const double rising = PercentOf(ramp.Duty(degrees, false));
    const double falling = PercentOf(ramp.Duty(degrees, true));
    output.Result(ramp.source + " " + std::to_string(degrees) + " °C: " + NumberText(rising) + " %" +
                      (falling == rising ? "" : ", falling " + NumberText(falling) + " %"),
                  {{"source", ramp.source},
                   {"temperature", std::int64_t{degrees}},
                   {"unit", "°C"},
                   {"duty", rising},
                   {"falling", falling}});
  };
  constexpr int kHighest = 191;
  int degrees = ramp.tmin - ramp.hysteresis - 1;
  while (degrees < std::min(ramp.limit, kHighest) && (degrees < ramp.tmin || ramp.Duty(degrees, false) < ramp.max)) {
    show(degrees++);
  }
  show(degrees);
  if (ramp.limit > degrees && ramp.limit <= kHighest) show(ramp.limit);
}

}  // namespace

Job PrepareCurve(const Request& request, const Setting& /*setting*/) {
  const std::string key = KeyOf(request.words.front());
  const bool isPwm = key.size() == 4 && key.starts_with("pwm") && key[3] >= '1' && key[3] <= '0' + chip::kPwmChannels;
  if (!isPwm) throw Failure{kUsage, "'" + request.words.front() + "' is no PWM", "Give PWM1 to PWM4"};
  return [pwm = key[3] - '1'](Session& session) {
    const unsigned config = session.Read(static_cast<std::uint8_t>("PWM1 Config"_reg + pwm));
    const unsigned behaviour = base::GetField(config, chip::kBehaviour);
    const std::vector<int> channels = ChannelsOf(behaviour);
    for (const int channel : channels) ShowRamp(RampOf(session, pwm, channel), session.Out());
    if (!channels.empty()) return;
    const std::string control = chip::kBehaviourNames.at(behaviour);
    session.Out().Result("No temperature controls it: " + control, {{"control", control}});
  };
}

}  // namespace zth::command
