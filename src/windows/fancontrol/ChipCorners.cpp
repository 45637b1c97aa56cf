#include "windows/fancontrol/ChipCorners.h"

#include <algorithm>

#include "chip/FanCurve.h"

namespace zth::windows {
namespace {

constexpr int kQuarters = 4;  // a reading's steps per degree
constexpr int kFullDuty = 255;

double Percent(int duty) {
  return duty * 100.0 / kFullDuty;
}

}  // namespace

ChipRamp RampOf(const CurveModel& model, int pwm, int source) {
  const PwmCurve& curve = model.Pwm.at(static_cast<std::size_t>(pwm));
  const CurveSource& from = curve.Sources.at(static_cast<std::size_t>(source));
  return {.tmin = from.Tmin,
          .trange = from.TrangeField,
          .minDuty = curve.MinByte,
          .maxDuty = model.MaxByte,
          .limit = EffectiveThermLimit(model, pwm, source)};
}

std::vector<ChipCorner> ChipCorners(const ChipRamp& ramp) {
  if (ramp.limit <= ramp.tmin) return {};
  const int start = std::min(ramp.minDuty, ramp.maxDuty);
  std::vector<ChipCorner> corners{{static_cast<double>(ramp.tmin), Percent(start)}};
  if (start == ramp.maxDuty) return corners;
  const auto duty = [&](int quarters) { return std::min(start + chip::DutyRise(quarters, ramp.trange), ramp.maxDuty); };
  const int most = (ramp.limit - ramp.tmin) * kQuarters;
  int quarters = 1;
  while (quarters < most && duty(quarters) < ramp.maxDuty) ++quarters;
  corners.push_back({ramp.tmin + quarters / double{kQuarters}, Percent(duty(quarters))});
  return corners;
}

}  // namespace zth::windows
