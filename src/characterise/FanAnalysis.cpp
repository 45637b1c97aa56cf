#include "characterise/FanAnalysis.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "characterise/Fits.h"

namespace zth::characterise {
namespace {

constexpr double kNoisy = 3;          // percent
constexpr double kLeastChange = 0.1;  // of the top speed, over all duties
constexpr double kSpunUp = 0.9;       // of the top speed

std::string Whole(double value) {
  return std::to_string(static_cast<long>(std::lround(value)));
}

void FindThresholds(TachResult& result) {
  bool turned = false;
  for (const SpeedAtDuty& speed : result.speeds) {
    if (speed.direction == Direction::Down) {
      turned = turned || speed.rpm > 0;
      // The highest duty below which it never turned again.
      if (speed.rpm > 0)
        result.stallDuty.reset();
      else if (turned && !result.stallDuty)
        result.stallDuty = speed.duty;
    } else if (speed.rpm > 0 && !result.startDuty && result.stallDuty) {
      result.startDuty = speed.duty;
    }
  }
  if (result.stallDuty && result.startDuty) result.hysteresis = *result.startDuty - *result.stallDuty;
}

void FitSpeeds(TachResult& result) {
  std::vector<Datum> data;
  std::vector<double> noise;
  for (const SpeedAtDuty& speed : result.speeds) {
    if (speed.rpm <= 0) continue;
    data.push_back({speed.duty, speed.rpm, 0});
    noise.push_back(100 * speed.noise / speed.rpm);
    result.topRpm = std::max(result.topRpm, speed.rpm);
    result.lowestRpm = result.lowestRpm == 0 ? speed.rpm : std::min(result.lowestRpm, speed.rpm);
  }
  result.noise = Median(noise);
  const LineFit line = FitLine(data);
  if (!line.good) return;
  result.slope = line.slope;
  result.intercept = line.intercept;
  for (const Datum& datum : data) {
    const double distance = std::abs(datum.y - line.intercept.value - line.slope.value * datum.x);
    result.linearity = std::max(result.linearity, 100 * distance / result.topRpm);
  }
}

std::string GoodWords(const TachResult& result) {
  return "Turns from " + Whole(*result.startDuty) + " % and stops at " + Whole(*result.stallDuty) + " %; " +
         Whole(result.topRpm) + " rpm at full duty";
}

}  // namespace

void Analyse(TachResult& result, bool tachWorks) {
  result.stallDuty.reset();
  result.startDuty.reset();
  FindThresholds(result);
  FitSpeeds(result);
  if (result.topRpm == 0) {
    result.state = TachState::Dead;
    result.words = tachWorks ? "No pulses at any duty: there is no fan, it is blocked, or its tach is not connected or "
                               "switched off on the board"
                             : "No pulses: its pin is no tach input as the pins are configured";
  } else if (result.noise > kNoisy) {
    result.state = TachState::Noisy;
    result.words = "The readings scatter by " + Whole(result.noise) +
                   " %: check the tach's wiring and the number of pulses, and take its results as rough";
  } else if (!result.stallDuty && result.topRpm - result.lowestRpm < kLeastChange * result.topRpm) {
    result.state = TachState::DoesNotFollow;
    result.words = "Turns at " + Whole(result.topRpm) +
                   " rpm whatever the duty: it is not connected to this PWM, or the board's switch is open";
  } else if (!result.stallDuty || !result.startDuty) {
    result.state = TachState::NeverStops;
    result.words = "Turns at every duty, with " + Whole(result.lowestRpm) + " to " + Whole(result.topRpm) + " rpm";
  } else {
    result.state = TachState::Good;
    result.words = GoodWords(result);
  }
}

void AnalyseSpinUp(TachResult& result, std::span<const Speed> speeds, double began) {
  if (speeds.empty() || result.topRpm == 0) return;
  constexpr double kFrom = 0.05;
  constexpr double kTo = 0.9;
  const double top = result.topRpm;
  std::vector<Datum> data;
  double last = 0;
  double lastTime = began;
  for (const Speed& speed : speeds) {
    // The chip counts more rarely than it is read: only a new count tells of its moment.
    if (speed.rpm == last) continue;
    const double share = speed.rpm / top;
    if (share > kFrom && share < kTo) data.push_back({speed.time, std::log(1 - share), 0});
    if (!result.spinUp && share >= kSpunUp) {
      const double past = (kSpunUp * top - last) / (speed.rpm - last);
      result.spinUp = lastTime + past * (speed.time - lastTime) - began;
    }
    last = speed.rpm;
    lastTime = speed.time;
  }
  const LineFit line = FitLine(data);
  if (data.size() < 3 || !line.good || line.slope.value >= 0) return;
  // 1 - share = exp(-(t - begin) / timeConstant)
  const double tau = -1 / line.slope.value;
  result.timeConstant = Estimate{tau, line.slope.sigma * tau * tau};
}

}  // namespace zth::characterise
