#include "characterise/Proposal.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "base/NumberText.h"
#include "characterise/Fits.h"
#include "chip/ChannelNames.h"
#include "chip/Conversions.h"
#include "chip/FanCurve.h"
#include "chip/RegisterNames.h"

namespace zth::characterise {
namespace {

constexpr double kSafeStart = 30;  // percent, if the duty of starting is not known
constexpr int kFirstTrange = 4;    // 5 degrees: a steeper curve swings
constexpr int kUsualTrange = 7;    // 10 degrees
constexpr double kRise = 64;       // percent over Trange
constexpr double kFull = 100;

double Degrees(int trange) {
  return base::LeadingDecimal(chip::kTrangeItems.at(static_cast<std::size_t>(trange)));
}

std::string Whole(double value) {
  return std::to_string(static_cast<long>(std::lround(value)));
}

/// The duty at which the temperature with the heater at `drive` is the one to be kept; nothing if there is none.
std::optional<double> NeededDuty(const HeatResult& heat, double keep, double drive) {
  const double above = keep - heat.air->value;
  if (above <= 0 || heat.conductanceSlope->value <= 0) return std::nullopt;
  return ((heat.standing->value + drive) / above - heat.conductanceBase->value) / heat.conductanceSlope->value;
}

double MinDuty(const Characterisation& data, const Settings& settings) {
  if (settings.minDuty > 0) return settings.minDuty;
  double start = 0;
  for (const FanResult& fan : data.fans) {
    for (const TachResult& tach : fan.tachs) start = std::max(start, tach.startDuty.value_or(0));
  }
  return start > 0 ? std::min(kFull, start) : kSafeStart;
}

/// The chip's duty, percent, above Tmin.
double ChipDuty(const Proposal& proposal, double temperature) {
  if (temperature < proposal.tmin) return proposal.minDuty;
  const double rise = kRise * (temperature - proposal.tmin) / Degrees(proposal.trange);
  return std::min(kFull, proposal.minDuty + rise);
}

double Balance(const HeatResult& heat, const Proposal& proposal, double drive) {
  double low = heat.air->value;
  double high = 200;
  constexpr int kRounds = 60;
  for (int round = 0; round < kRounds; ++round) {
    const double middle = (low + high) / 2;
    (RestTemperature(heat, ChipDuty(proposal, middle), drive) > middle ? low : high) = middle;
  }
  return (low + high) / 2;
}

void ChooseCurve(const HeatResult& heat, Proposal& proposal, double keep, double needed) {
  const double rise = std::max(0.0, needed - proposal.minDuty);
  const double idle = RestTemperature(heat, proposal.minDuty, 0);
  const auto tminOf = [&](int trange) { return static_cast<int>(std::floor(keep - rise * Degrees(trange) / kRise)); };
  proposal.trange = kUsualTrange;
  for (int trange = kFirstTrange; trange < static_cast<int>(chip::kTrangeItems.size()); ++trange) {
    if (tminOf(trange) > idle) proposal.trange = trange;
  }
  proposal.tmin = tminOf(proposal.trange);
}

/// What the chip limits duties to, percent.
double MaxDuty(const Characterisation& data) {
  constexpr const chip::RegisterRow& kMax = chip::RowNamed("PWM 1-4 Max");
  const auto departure = std::ranges::find(data.departures, kMax.address, &Departure::reg);
  const unsigned max = departure == data.departures.end() ? kMax.defaultValue : departure->value;
  return max / chip::kPercentDivisor;
}

void AddFields(Proposal& proposal, const Settings& settings, int channel, bool raisesMax) {
  const auto add = [&](const std::string& name, chip::RegisterField field, unsigned value, const std::string& words) {
    proposal.fields.push_back({name, field, value, words});
  };
  const auto of = [](unsigned first, int index) {
    return static_cast<std::uint8_t>(first + static_cast<unsigned>(index));
  };
  constexpr base::BitField kWhole{0, 8};
  const std::string remote = "Remote " + std::to_string(channel);
  const unsigned tmin = static_cast<unsigned>(proposal.tmin + chip::kTemperatureOffset);
  add(remote + " Tmin", {of("Local Tmin"_reg, channel), kWhole}, tmin, std::to_string(proposal.tmin) + " °C");
  add(remote + " Trange/Hys.7:4", {of("Local Trange/Hys"_reg, channel), chip::kTrange},
      static_cast<unsigned>(proposal.trange), chip::kTrangeItems.at(static_cast<std::size_t>(proposal.trange)));
  if (raisesMax) add("PWM 1-4 Max", {"PWM 1-4 Max"_reg, kWhole}, 0xFF, "100 %");
  for (const int pwm : settings.pwms) {
    const std::string name = "PWM" + std::to_string(pwm);
    add(name + " Min", {of("PWM1 Min"_reg, pwm - 1), kWhole}, chip::ByteFromPercent(proposal.minDuty),
        Whole(proposal.minDuty) + " %");
    const base::BitField bit{static_cast<std::uint8_t>((pwm - 1) % 2), 1};
    add((pwm <= 2 ? "PWM 1&2 Freq.Min" : "PWM 3&4 Freq.Min") + std::to_string(pwm),
        {of("PWM 1&2 Freq"_reg, (pwm - 1) / 2), bit}, 1, "at Min below Tmin");
    add(name + " Config.Bhvr", {of("PWM1 Config"_reg, pwm - 1), chip::kBehaviour}, static_cast<unsigned>(channel),
        chip::kBehaviourNames.at(static_cast<std::size_t>(channel)));
  }
}

void AddCurve(const HeatResult& heat, Proposal& proposal) {
  const int first = static_cast<int>(std::floor(heat.air->value));
  const int last =
      proposal.tmin + static_cast<int>(std::ceil((kFull - proposal.minDuty) * Degrees(proposal.trange) / kRise));
  for (int degrees = first; degrees <= last; ++degrees) {
    const double duty = ChipDuty(proposal, degrees);
    const double conductance = heat.conductanceBase->value + heat.conductanceSlope->value * duty;
    const double balanced = (degrees - heat.air->value) * conductance - heat.standing->value;
    proposal.curve.push_back({static_cast<double>(degrees), duty, balanced});
  }
}

}  // namespace

void FitDuties(HeatResult& heat) {
  std::vector<Datum> conductance;
  std::vector<Datum> rest;
  for (const HeatStep& step : heat.steps) {
    if (!step.good) continue;
    const double inverse = 1 / step.gain.value;
    conductance.push_back({step.duty, inverse, step.gain.sigma * inverse * inverse});
    rest.push_back({step.gain.value, step.before.value, step.before.sigma});
  }
  const LineFit over = FitLine(conductance);
  const LineFit standing = FitLine(rest);
  if (!over.good || !standing.good) return;
  heat.conductanceBase = over.intercept;
  heat.conductanceSlope = over.slope;
  heat.air = standing.intercept;
  heat.standing = standing.slope;
}

double RestTemperature(const HeatResult& heat, double duty, double drive) {
  const double conductance = heat.conductanceBase->value + heat.conductanceSlope->value * duty;
  return heat.air->value + (heat.standing->value + drive) / conductance;
}

void Propose(Characterisation& data, const Settings& settings) {
  HeatResult& heat = *data.heat;
  Proposal& proposal = heat.proposal;
  proposal = {};
  if (!heat.conductanceBase) {
    proposal.words = "No proposal: it takes good steps at two duties";
    return;
  }
  const std::string keep = Whole(settings.keep) + " °C";
  const auto needed = NeededDuty(heat, settings.keep, settings.heaterStep);
  if (!needed || *needed > kFull) {
    proposal.words = "No proposal: at full duty the temperature settles at " +
                     Whole(RestTemperature(heat, kFull, settings.heaterStep)) + " °C, above the " + keep +
                     " that is to be kept";
    return;
  }
  proposal.possible = true;
  proposal.minDuty = MinDuty(data, settings);
  ChooseCurve(heat, proposal, settings.keep, *needed);
  proposal.predicted = Balance(heat, proposal, settings.heaterStep);
  proposal.predictedDuty = ChipDuty(proposal, proposal.predicted);
  AddFields(proposal, settings, heat.channel, *needed > MaxDuty(data));
  AddCurve(heat, proposal);
  proposal.words = "With the heater at " + Whole(settings.heaterStep) + " % the temperature settles at " +
                   Whole(proposal.predicted) + " °C and the fans at " + Whole(proposal.predictedDuty) + " %; " + keep +
                   " is not exceeded at rest";
}

}  // namespace zth::characterise
