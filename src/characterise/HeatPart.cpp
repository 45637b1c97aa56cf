#include "characterise/HeatPart.h"

#include <algorithm>
#include <cmath>

#include "characterise/FanPart.h"
#include "characterise/Proposal.h"
#include "chip/RegisterNames.h"

namespace zth::characterise {
namespace {

constexpr double kAirSeconds = 8;        // until the fans have their new speed
constexpr double kRestWindow = 20;       // seconds
constexpr double kRestDrift = 0.15;      // K over the window
constexpr double kLeastHeating = 20;     // seconds
constexpr double kConstants = 3;         // time constants that are waited for
constexpr double kGoodConstant = 0.012;  // relative uncertainty that is waited for
constexpr double kLeastRise = 1;         // K
constexpr double kMargin = 2;            // K below the limit
constexpr double kCheckEvery = 2;        // seconds
constexpr double kUsualStep = 150;       // seconds
constexpr double kFastest = 1;           // time constants, seconds
constexpr double kSlowest = 3000;

double Drift(const std::vector<Datum>& data, double from) {
  std::vector<Datum> late;
  std::ranges::copy_if(data, std::back_inserter(late), [from](const Datum& datum) { return datum.x >= from; });
  const LineFit line = FitLine(late);
  return line.good ? std::abs(line.slope.value) : 0;
}

}  // namespace

double HeatPart::Expected() const {
  return std::min(kUsualStep, 2 * settings_.heatMost) * static_cast<double>(settings_.heatDuties.size());
}

double HeatPart::Done() const {
  const double inStep = state_ >= State::Heating ? 0.5 : 0;
  return (static_cast<double>(duty_) + inStep) / static_cast<double>(settings_.heatDuties.size());
}

std::string HeatPart::Words() const {
  if (duty_ >= settings_.heatDuties.size()) return "Heat: done";
  const std::string at = "Heat at " + std::to_string(settings_.heatDuties[duty_]) + " %: ";
  return at + (state_ >= State::Heating ? "heating" : "waiting for rest");
}

void HeatPart::Prepare(Bench& bench) {
  bench.Data().heat = HeatResult{.heater = settings_.heater, .channel = Channel()};
  CountFast(bench);
  for (int pwm = 1; pwm <= kPwms; ++pwm) {
    const bool isChosen = std::ranges::find(settings_.pwms, pwm) != settings_.pwms.end();
    const auto config = ReadQuietly(static_cast<std::uint8_t>("PWM1 Config"_reg + pwm - 1));
    constexpr unsigned kOff = 4;
    const unsigned behaviour = config ? base::GetField(*config, chip::kBehaviour) : kOff;
    if (isChosen) {
      MakeManual(bench, pwm);
    } else if (behaviour != kOff && behaviour != chip::kManualMode) {
      const double duty = bench.Duty(pwm);
      MakeManual(bench, pwm);
      bench.SetDuty(pwm, duty);
    }
  }
  bench.SetHeater(0);
  bench.Every().temperatures = 0.25;
}

void HeatPart::BeginDuty(Bench& bench) {
  for (const int pwm : settings_.pwms) bench.SetDuty(pwm, settings_.heatDuties[duty_]);
  rest_.clear();
  heated_.clear();
  trouble_.clear();
}

bool HeatPart::Rests(double now) const {
  if (now - began_ < kAirSeconds + kRestWindow) return false;
  if (now - began_ > settings_.heatMost) return true;
  return Drift(rest_, now - kRestWindow) * kRestWindow < kRestDrift;
}

bool HeatPart::IsHeated(Bench& bench) {
  const double now = bench.Now();
  const double spent = now - heatedFrom_;
  const double temperature = Readings::Temperature(Channel());
  if (temperature > settings_.temperatureLimit - kMargin) {
    trouble_ = "Stopped early, close to the limit of the temperature";
    return true;
  }
  if (spent > settings_.heatMost) return true;
  if (spent < kLeastHeating || now - checked_ < kCheckEvery) return false;
  checked_ = now;
  if (!heated_.empty() && temperature - heated_.front().y < kLeastRise) {
    trouble_ = "The temperature does not rise: the heater does not heat, or the sensor is not beside it";
    return true;
  }
  const StepFit fit = FitStep(rest_, heated_, kFastest, kSlowest);
  return fit.good && spent > kConstants * fit.timeConstant.value &&
         fit.timeConstant.sigma < kGoodConstant * fit.timeConstant.value;
}

void HeatPart::FinishDuty(Bench& bench) {
  HeatStep step{.duty = bench.Duty(settings_.pwms.front()), .begin = heatedFrom_, .end = bench.Now()};
  const StepFit fit = FitStep(rest_, heated_, kFastest, kSlowest);
  step.words = trouble_;
  if (fit.good) {
    step.before = fit.before;
    step.rise = {fit.after.value - fit.before.value, std::hypot(fit.after.sigma, fit.before.sigma)};
    step.gain = {step.rise.value / settings_.heaterStep, step.rise.sigma / settings_.heaterStep};
    step.timeConstant = fit.timeConstant;
    step.residual = fit.residual;
    if (settings_.heaterWatts > 0) {
      const double perWatt = 100 / settings_.heaterWatts;
      step.resistance = Estimate{step.gain.value * perWatt, step.gain.sigma * perWatt};
    }
    constexpr double kUsable = 0.1;
    step.good = step.rise.value >= kLeastRise && step.rise.sigma < kUsable * step.rise.value &&
                fit.timeConstant.sigma < kUsable * fit.timeConstant.value;
  }
  if (!step.good && step.words.empty()) step.words = "The temperature follows no simple lag: no values";
  bench.Data().heat->steps.push_back(step);
  FitDuties(*bench.Data().heat);
}

bool HeatPart::Tick(Bench& bench) {
  const double now = bench.Now();
  switch (state_) {
    case State::New:
      Prepare(bench);
      state_ = State::Held;
      return false;
    case State::Held:
      BeginDuty(bench);
      state_ = State::Blowing;
      return false;
    case State::Blowing:
      began_ = bench.WrittenAt();
      state_ = State::Resting;
      return false;
    case State::Resting:
      if (!bench.Read().HasTemperatures()) return false;
      if (now - began_ > kAirSeconds) rest_.push_back({now, Readings::Temperature(Channel()), 0});
      if (!Rests(now)) return false;
      bench.SetHeater(settings_.heaterStep);
      heatedFrom_ = now;
      state_ = State::Heating;
      return false;
    case State::Heating:
      if (!bench.Read().HasTemperatures()) return false;
      heated_.push_back({now, Readings::Temperature(Channel()), 0});
      if (!IsHeated(bench)) return false;
      bench.SetHeater(0);
      state_ = State::Cooling;
      return false;
    case State::Cooling:
      break;
  }
  FinishDuty(bench);
  state_ = State::Held;
  if (++duty_ < settings_.heatDuties.size()) return false;
  Propose(bench.Data(), settings_);
  return true;
}

}  // namespace zth::characterise
