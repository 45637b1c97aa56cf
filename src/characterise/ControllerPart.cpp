#include "characterise/ControllerPart.h"

#include <algorithm>
#include <cmath>

#include "characterise/FanPart.h"
#include "characterise/Fits.h"
#include "chip/ChannelNames.h"
#include "chip/RegisterNames.h"

namespace zth::characterise {
namespace {

constexpr double kSettledWithin = 0.5;  // K
constexpr std::size_t kSmoothed = 5;    // points

/// The median of the neighbours, so that a single reading's noise is no overshoot.
std::vector<double> Smooth(const std::vector<double>& values) {
  std::vector<double> smooth(values.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    const std::size_t from = i < kSmoothed / 2 ? 0 : i - kSmoothed / 2;
    const std::size_t to = std::min(values.size(), i + kSmoothed / 2 + 1);
    smooth[i] =
        Median({values.begin() + static_cast<std::ptrdiff_t>(from), values.begin() + static_cast<std::ptrdiff_t>(to)});
  }
  return smooth;
}

struct Columns {
  std::vector<double> time;
  std::vector<double> temperature;
  std::vector<double> duty;
  std::vector<double> speed;
};

double DutyOf(const Point& point, const Settings& settings) {
  double sum = 0;
  for (const int pwm : settings.pwms) sum += point.duty.at(static_cast<std::size_t>(pwm - 1));
  return sum / static_cast<double>(settings.pwms.size());
}

double SpeedOf(const Point& point, const Settings& settings) {
  for (const int pwm : settings.pwms) {
    for (const int tach : settings.tachs.at(static_cast<std::size_t>(pwm - 1))) {
      if (const int rpm = point.rpm.at(static_cast<std::size_t>(tach - 1)); rpm > 0) return rpm;
    }
  }
  return 0;
}

Columns ColumnsOf(const std::vector<Point>& points, double begin, double end, int channel, const Settings& settings) {
  Columns columns;
  for (const Point& point : points) {
    if (point.phase != Phase::Controller || point.time < begin || point.time > end) continue;
    columns.time.push_back(point.time);
    columns.temperature.push_back(point.temperature.at(static_cast<std::size_t>(channel)));
    columns.duty.push_back(DutyOf(point, settings));
    columns.speed.push_back(SpeedOf(point, settings));
  }
  return columns;
}

}  // namespace

void AnalyseControl(ProfileStep& step, const std::vector<Point>& points, int channel, const Settings& settings) {
  const Columns all = ColumnsOf(points, step.begin, step.end, channel, settings);
  const Columns late = ColumnsOf(points, step.end - (step.end - step.begin) / 4, step.end, channel, settings);
  if (late.time.empty()) return;
  step.finalTemperature = Mean(late.temperature);
  step.finalDuty = Mean(late.duty);
  step.temperatureNoise = Deviation(late.temperature);
  step.dutyNoise = Deviation(late.duty);
  step.speedNoise = Deviation(late.speed);

  const std::vector<double> smooth = Smooth(all.temperature);
  const double sign = step.finalTemperature >= smooth.front() ? 1 : -1;
  double settled = step.begin;
  for (std::size_t i = 0; i < smooth.size(); ++i) {
    const double beyond = smooth[i] - step.finalTemperature;
    step.overshoot = std::max(step.overshoot, sign * beyond);
    if (std::abs(beyond) > kSettledWithin) settled = all.time[i];
  }
  if (settled < late.time.front()) step.settling = settled - step.begin;
}

ControllerPart::ControllerPart(const Settings& settings)
    : settings_(settings), profile_{0, settings.heaterStep, std::round(settings.heaterStep / 2)} {}

double ControllerPart::Expected() const {
  return settings_.profileHold * static_cast<double>(profile_.size());
}

double ControllerPart::Done() const {
  const double inStep = state_ == State::Holding ? std::min(1.0, (now_ - began_) / settings_.profileHold) : 0;
  return (static_cast<double>(step_) + inStep) / static_cast<double>(profile_.size());
}

std::string ControllerPart::Words() const {
  if (step_ >= profile_.size()) return "Controller: done";
  return "Controller: heater at " + std::to_string(std::lround(profile_[step_])) + " %";
}

bool ControllerPart::Prepare(Bench& bench) {
  Characterisation& data = bench.Data();
  data.controller = ControllerResult{.channel = settings_.heater};
  ControllerResult& result = *data.controller;
  if (settings_.tryProposal && data.heat && data.heat->proposal.possible) {
    for (const FieldValue& field : data.heat->proposal.fields) bench.SetField(field.field, field.value, field.name);
    result.usedProposal = true;
    result.words = "With the proposal";
  } else {
    for (const int pwm : settings_.pwms) {
      const auto config = ReadQuietly(static_cast<std::uint8_t>("PWM1 Config"_reg + pwm - 1));
      if (!config) continue;
      const unsigned behaviour = base::GetField(*config, chip::kBehaviour);
      constexpr unsigned kOff = 4;
      result.words += (result.words.empty() ? "As the chip is set: PWM" : ", PWM") + std::to_string(pwm) + " " +
                      chip::kBehaviourNames.at(behaviour);
      if (behaviour == kOff || behaviour == chip::kManualMode) {
        result.words = "Not measured: PWM" + std::to_string(pwm) + " follows no temperature (" +
                       chip::kBehaviourNames.at(behaviour) + ")";
        return false;
      }
    }
  }
  CountFast(bench);
  bench.Every() = {.tachs = 0.5, .temperatures = 0.5, .duties = 0.5};
  return true;
}

bool ControllerPart::Tick(Bench& bench) {
  now_ = bench.Now();
  switch (state_) {
    case State::New:
      if (!Prepare(bench)) return true;
      state_ = State::Set;
      return false;
    case State::Set:
      bench.SetHeater(profile_[step_]);
      state_ = State::Begun;
      return false;
    case State::Begun:
      began_ = bench.WrittenAt();
      state_ = State::Holding;
      return false;
    case State::Holding:
      break;
  }
  if (now_ - began_ < settings_.profileHold) return false;
  ControllerResult& result = *bench.Data().controller;
  result.steps.push_back({.heater = profile_[step_], .begin = began_, .end = now_});
  AnalyseControl(result.steps.back(), bench.Data().points, result.channel, settings_);
  state_ = State::Set;
  return ++step_ >= profile_.size();
}

}  // namespace zth::characterise
