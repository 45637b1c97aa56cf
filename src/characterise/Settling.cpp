#include "characterise/Settling.h"

#include <algorithm>
#include <cmath>

#include "characterise/Fits.h"

namespace zth::characterise {

void Settling::Begin(double time) {
  began_ = time;
  speeds_.clear();
}

void Settling::Add(double time, double rpm) {
  speeds_.push_back({time, rpm});
}

std::vector<double> Settling::Between(double from, double to) const {
  std::vector<double> values;
  for (const Speed& speed : speeds_) {
    if (speed.time > from && speed.time <= to) values.push_back(speed.rpm);
  }
  return values;
}

bool Settling::IsSettled(double now) const {
  if (speeds_.empty() || now - began_ < kShortest) return false;
  const double end = speeds_.back().time;
  const std::vector<double> early = Between(end - kWindow, end - kWindow / 2);
  const std::vector<double> late = Between(end - kWindow / 2, end);
  if (early.size() < 3 || late.size() < 3) return false;
  const bool stands = Mean(late) == 0 && Mean(early) == 0;
  const bool starts = std::ranges::find(late, 0.0) != late.end();
  if (stands) return true;
  if (starts) return false;
  const double explained =
      2 * Noise() * std::sqrt(1 / static_cast<double>(early.size()) + 1 / static_cast<double>(late.size()));
  return std::abs(Mean(late) - Mean(early)) <= std::max(kTolerance * Mean(late), explained);
}

double Settling::Rpm() const {
  if (speeds_.empty()) return 0;
  return Mean(Between(speeds_.back().time - kWindow / 2, speeds_.back().time));
}

double Settling::Noise() const {
  if (speeds_.empty()) return 0;
  return Scatter(Between(speeds_.back().time - kWindow, speeds_.back().time));
}

}  // namespace zth::characterise
