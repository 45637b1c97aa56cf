#include "simulator/Plant.h"

#include <cmath>
#include <numbers>

#include "simulator/Noise.h"

namespace zth::simulator {
namespace {

constexpr double kLongestSubStep = 0.01;  // seconds; within it, fan speeds count as constant for the heat flow
constexpr double kOwnAir = 0.3;           // fraction of a sensor's air flow from each of its own two fans
constexpr double kOtherAir = 0.4 / 6;     // and from each of the other six
constexpr double kStandstillRpm = 30;     // below this a rotor stops

constexpr double kFullRpmSpread = 0.04;  // fraction of the unit's full speed
constexpr double kDutySpread = 0.02;     // of the stall and start thresholds
constexpr double kSupplySpread = 0.006;
constexpr double kRipple = 0.004;  // amplitude, as a fraction of the nominal voltage

constexpr int HeatedSensor(int heater) {
  return heater + 1;
}

/// A first-order lag towards `target`, exact for any time step.
double Lag(double value, double target, double timeConstant, double seconds) {
  return target + (value - target) * std::exp(-seconds / timeConstant);
}

}  // namespace

Plant::Plant(const PlantOptions& options) : options_(options), ambientC_(options.ambientC) {
  Noise random(options.seed);
  for (Fan& fan : fans_) {
    fan.fullRpm = options.fullRpm * (1 + random.Spread(kFullRpmSpread) * options.spread);
    fan.stallDuty = options.stallDuty + random.Spread(kDutySpread) * options.spread;
    fan.startDuty = options.startDuty + random.Spread(kDutySpread) * options.spread;
  }
  for (Supply& supply : supplies_) {
    supply.offset = random.Spread(kSupplySpread) * options.spread;
    supply.periodSeconds = 3 + 9 * random.Uniform();
    supply.phase = 2 * std::numbers::pi * random.Uniform();
  }
  // The board has been powered on the desk for some time: it is warm, and its fans are stopped.
  for (int sensor = 0; sensor < kTemperatures; ++sensor) {
    temperatures_[At(sensor)] = options.ambientC + Heating(sensor) / Cooling(sensor);
  }
}

void Plant::Step(double seconds) {
  const int subSteps = static_cast<int>(std::ceil(seconds / kLongestSubStep - 1e-9));
  for (int i = 0; i < subSteps; ++i) SubStep(seconds / subSteps);
}

void Plant::SubStep(double seconds) {
  for (Fan& fan : fans_) StepFan(fan, seconds);
  for (int sensor = 0; sensor < kTemperatures; ++sensor) {
    const double cooling = Cooling(sensor);
    const double target = ambientC_ + Heating(sensor) / cooling;
    double& temperature = temperatures_[At(sensor)];
    temperature = Lag(temperature, target, options_.heatCapacity[At(sensor)] / cooling, seconds);
  }
  seconds_ += seconds;
}

void Plant::StepFan(Fan& fan, double seconds) const {
  if (fan.blocked) {
    fan.rpm = 0;
    fan.turning = false;
    return;
  }
  fan.turning = fan.drive >= (fan.turning ? fan.stallDuty : fan.startDuty);
  const double share = fan.wear * (options_.idleShare + (1 - options_.idleShare) * fan.drive);
  const double target = fan.turning ? fan.fullRpm * share : 0;
  fan.rpm = Lag(fan.rpm, target, target > fan.rpm ? options_.spinUpSeconds : options_.coastSeconds, seconds);
  if (!fan.turning && fan.rpm < kStandstillRpm) fan.rpm = 0;
}

double Plant::Cooling(int sensor) const {
  double flow = 0;
  for (int fan = 0; fan < kTachs; ++fan) {
    flow += (fan % kPwms == sensor ? kOwnAir : kOtherAir) * fans_[At(fan)].rpm / options_.fullRpm;
  }
  return options_.stillAir[At(sensor)] + options_.movingAir[At(sensor)] * flow;
}

double Plant::Heating(int sensor) const {
  double watts = options_.standingWatts[At(sensor)];
  for (int heater = 0; heater < kHeaters; ++heater) {
    const double power = options_.heaterWatts * heaters_[At(heater)];
    if (sensor == 0) watts += options_.heaterToLocal * power;
    if (sensor == HeatedSensor(heater)) watts += (1 - options_.heaterToLocal) * power;
  }
  return watts;
}

double Plant::SupplyRatio(VoltagePin pin) const {
  const Supply& supply = supplies_[At(pin)];
  const double turn = 2 * std::numbers::pi * seconds_ / supply.periodSeconds + supply.phase;
  return supply.factor * (1 + supply.offset + kRipple * options_.ripple * std::sin(turn));
}

}  // namespace zth::simulator
