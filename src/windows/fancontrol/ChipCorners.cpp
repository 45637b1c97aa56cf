#include "windows/fancontrol/ChipCorners.h"

#include <algorithm>
#include <cmath>

#include "base/NumberText.h"
#include "base/Rounding.h"

namespace zth::windows {
namespace {

constexpr int kQuarters = 4;  // a reading's steps per degree
constexpr int kFullDuty = 255;

/// The rise of the duty at a number of quarter degrees above Tmin, in steps of 1/255.
int Rise(int quarters, int trange) {
  // The items show thirds of a degree with one decimal.
  const double shown = base::LeadingDecimal(kTrangeItems.at(static_cast<std::size_t>(trange)));
  const double sixths = std::round(shown * 6);
  // 0.64 * 255 * (quarters / 4) / (sixths / 6) in whole numbers, so that only the result is rounded.
  return base::RoundToInt(1224.0 * quarters / (5 * sixths));
}

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
  const auto duty = [&](int quarters) { return std::min(start + Rise(quarters, ramp.trange), ramp.maxDuty); };
  const int most = (ramp.limit - ramp.tmin) * kQuarters;
  int quarters = 1;
  while (quarters < most && duty(quarters) < ramp.maxDuty) ++quarters;
  corners.push_back({ramp.tmin + quarters / double{kQuarters}, Percent(duty(quarters))});
  return corners;
}

}  // namespace zth::windows
