#include "windows/fancontrol/CurveModel.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/NumberText.h"
#include "base/Rounding.h"

namespace zth::windows {

namespace {

constexpr int kLocal = 1;
constexpr int kRemote1 = 2;
constexpr int kRemote2 = 3;
constexpr int kRemote3 = 4;

/// The channels of each item of chip::kBehaviourNames, in order.
const std::array<std::vector<int>, 8> kSourcesOfControl{{
    {kLocal},
    {kRemote1},
    {kRemote2},
    {kRemote3},
    {},
    {kLocal, kRemote3},
    {kLocal, kRemote1, kRemote2, kRemote3},
    {},
}};

std::int16_t WholeNumber(const std::string& text) {
  using Limits = std::numeric_limits<std::int16_t>;
  const std::int32_t whole = base::RoundToInt(base::LeadingDecimal(text));
  return static_cast<std::int16_t>(std::clamp<std::int32_t>(whole, Limits::min(), Limits::max()));
}

CurveSource ReadSourceParameters(const CurveTexts& texts, int channel) {
  const auto index = static_cast<std::size_t>(channel - 1);
  const CurveTexts::Channel& boxes = texts.channels[index];
  const bool polled = channel == kRemote1 || channel == kRemote2;
  return {
      .Channel = static_cast<std::int16_t>(channel),
      .Name = chip::kTemperatureNames[index],
      .Tmin = polled ? texts.polledTmin[index] : WholeNumber(boxes.tmin),
      .TminHyst = WholeNumber(boxes.tminHyst),
      .Trange = WholeNumber(boxes.trange),
      .TrangeField = std::max(ItemPosition(kTrangeItems, boxes.trange), 0),
      .Therm1Limit = WholeNumber(boxes.th1),
      .Therm2Limit = WholeNumber(boxes.th2),
  };
}

void ResolveControlSource(const CurveTexts& texts, const std::string& control, PwmCurve& curve) {
  const int position = ItemPosition(chip::kBehaviourNames, control);
  if (position < 0) return;
  for (const int channel : kSourcesOfControl[static_cast<std::size_t>(position)]) {
    curve.Sources[static_cast<std::size_t>(curve.SourceCount)] = ReadSourceParameters(texts, channel);
    ++curve.SourceCount;
  }
}

const PwmCurve& CurveOf(const CurveModel& model, int pwm) {
  return model.Pwm[static_cast<std::size_t>(pwm)];
}

const CurveSource& SourceOf(const CurveModel& model, int pwm, int source) {
  return CurveOf(model, pwm).Sources[static_cast<std::size_t>(source)];
}

/// The rising line, duty = slope * temperature + offset. Stored values of the curve are single precision; intermediate
/// values are double, which represents every product here exactly.
struct Line {
  float slope;
  float offset;
};

Line LineOf(const CurveModel& model, int pwm, int source) {
  const CurveSource& from = SourceOf(model, pwm, source);
  const auto slope = static_cast<float>(64.0 / from.Trange);
  const double offset = CurveOf(model, pwm).MinDuty - from.Tmin * static_cast<double>(slope);
  return {slope, static_cast<float>(offset)};
}

float RampEnd(const CurveModel& model, int pwm, int source) {
  return static_cast<float>(SourceOf(model, pwm, source).Tmin) + RampWidth(model, pwm, source);
}

}  // namespace

CurveModel BuildCurveModel(const CurveTexts& texts) {
  CurveModel model;
  model.MaxDuty = WholeNumber(texts.maxPwm);
  model.MaxByte = static_cast<int>(texts.maxByte);
  model.UseTherm1 = texts.thermFS1;
  model.UseTherm2 = texts.thermFS2;
  for (std::size_t pwm = 0; pwm < model.Pwm.size(); ++pwm) {
    model.Pwm[pwm].AlwaysOn = texts.pwms[pwm].minSpeed;
    model.Pwm[pwm].MinDuty = WholeNumber(texts.pwms[pwm].minPwm);
    model.Pwm[pwm].MinByte = static_cast<int>(texts.pwms[pwm].minByte);
    ResolveControlSource(texts, texts.pwms[pwm].control, model.Pwm[pwm]);
  }
  return model;
}

int DrawnApart(const std::string& trange, int minDuty, int maxDuty) {
  // The items show thirds of a degree with one decimal.
  const double chip = std::round(base::LeadingDecimal(trange) * 6) / 6;
  const double drawn = WholeNumber(trange);
  const double rise = maxDuty - minDuty;
  if (rise <= 0 || drawn <= 0 || chip == drawn) return 0;
  // The distance is largest where the steeper line ends.
  const double share = 1 - std::min(chip, drawn) / std::max(chip, drawn);
  return base::RoundToInt(rise * share * 255 / 100);
}

int EffectiveThermLimit(const CurveModel& model, int pwm, int source) {
  const CurveSource& from = SourceOf(model, pwm, source);
  int limit = kNoThermLimit;
  if (model.UseTherm1) limit = from.Therm1Limit;
  if (model.UseTherm2 && from.Therm2Limit < limit) limit = from.Therm2Limit;
  return limit;
}

float RampWidth(const CurveModel& model, int pwm, int source) {
  if (model.MaxDuty <= CurveOf(model, pwm).MinDuty) return 0.0F;
  const Line line = LineOf(model, pwm, source);
  const double meets = (model.MaxDuty - static_cast<double>(line.offset)) / static_cast<double>(line.slope);
  return static_cast<float>(meets - SourceOf(model, pwm, source).Tmin);
}

float DutyAtThermLimit(const CurveModel& model, int pwm, int source) {
  if (model.MaxDuty <= CurveOf(model, pwm).MinDuty) return model.MaxDuty;
  const Line line = LineOf(model, pwm, source);
  const double rise = EffectiveThermLimit(model, pwm, source) * static_cast<double>(line.slope);
  return static_cast<float>(rise + static_cast<double>(line.offset));
}

CurvePaths BuildCurvePaths(CurveModel& model, int pwm, int source, const ChartRange& range) {
  PwmCurve& curve = model.Pwm[static_cast<std::size_t>(pwm)];
  const CurveSource& from = SourceOf(model, pwm, source);
  const float rampEnd = RampEnd(model, pwm, source);
  const int limit = EffectiveThermLimit(model, pwm, source);
  if (model.MaxDuty <= curve.MinDuty) curve.MinDuty = model.MaxDuty;

  const int left = base::RoundToInt(range.xEnd - range.xSpan);
  const int right = base::RoundToInt(range.xEnd - 1);
  const int floor = curve.AlwaysOn ? curve.MinDuty : 0;
  const bool complete = rampEnd <= static_cast<float>(limit);

  // At or below Tmin, the limit leaves no ramp.
  if (!complete && limit <= from.Tmin) return {{{left, floor}, {limit, floor}, {limit, 100}, {right, 100}}, {}};

  CurvePaths paths;
  paths.main = {{left, floor}, {from.Tmin, floor}, {from.Tmin, curve.MinDuty}};
  if (complete) {
    paths.main.push_back({base::RoundToInt(rampEnd), model.MaxDuty});
    paths.main.push_back({limit, model.MaxDuty});
  } else {
    paths.main.push_back({limit, base::RoundToInt(DutyAtThermLimit(model, pwm, source))});
  }
  paths.main.push_back({limit, 100});
  paths.main.push_back({right, complete && limit == kNoThermLimit ? model.MaxDuty : 100});
  if (!curve.AlwaysOn) {
    const int off = from.Tmin - from.TminHyst;
    paths.hysteresis = {{off, 0}, {off, curve.MinDuty}, {from.Tmin, curve.MinDuty}};
  }
  return paths;
}

DrawPath VisibleMain(const DrawPath& path, double xEnd) {
  DrawPath visible;
  std::copy_if(path.begin(), path.end(), std::back_inserter(visible),
               [xEnd](const CurvePoint& point) { return !(point.x > xEnd); });
  return visible;
}

DrawPath VisibleHysteresis(const DrawPath& path, double xEnd) {
  DrawPath visible = path;
  for (CurvePoint& point : visible) {
    if (point.x > xEnd) point.x = base::RoundToInt(xEnd);
  }
  return visible;
}

}  // namespace zth::windows
