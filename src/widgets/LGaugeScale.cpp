#include "widgets/LGaugeScale.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <numbers>

#include "base/Rounding.h"

namespace zth::widgets {
namespace {

constexpr int kMostMajorTicks = 12;      // more numbers would make a dial harder to read
constexpr double kSmallestMinorGap = 3;  // pixels along the scale between minor ticks
constexpr double kClearanceX = 0.5;      // between two numbers, in units of their height
constexpr double kClearanceY = 0.25;
constexpr double kLeastRelativeSpan = 1e-9;           // below this, neighbouring ticks are the same number
constexpr std::array kMantissas{1.0, 2.0, 2.5, 5.0};  // 2.5 only if it gives whole numbers

int DecimalsOf(double step) {
  return std::clamp(static_cast<int>(std::ceil(-std::log10(step) - 1e-9)), 0, 9);
}

std::string Fixed(double value, int decimals) {
  std::array<char, 64> text{};
  const double rounded = base::RoundHalfEven(value, decimals) + 0.0;  // + 0.0: no "-0"
  const int length = std::snprintf(text.data(), text.size(), "%.*f", decimals, rounded);
  return {text.data(), static_cast<std::size_t>(std::clamp(length, 0, static_cast<int>(text.size()) - 1))};
}

double Radians(double degrees) {
  return degrees * std::numbers::pi / 180;
}

struct Division {
  double step = 1;
  int parts = 5;  ///< minor steps per major step
};

// Round steps, ascending, from the smallest that gives at most kMostMajorTicks ticks.
class Divisions {
 public:
  explicit Divisions(double span) : power_(static_cast<int>(std::floor(std::log10(span / kMostMajorTicks)))) {
    while (span / Current().step > kMostMajorTicks) Next();
  }
  Division Current() const {
    const double mantissa = kMantissas.at(index_);
    return {mantissa * std::pow(10.0, power_), mantissa == 2.0 ? 4 : 5};
  }
  void Next() {
    if (++index_ == kMantissas.size()) {
      index_ = 0;
      ++power_;
    }
    if (kMantissas.at(index_) == 2.5 && power_ < 1) ++index_;
  }

 private:
  int power_;
  std::size_t index_ = 0;
};

void PlaceLabel(DialTick& tick, double radius, const TextSize& size) {
  const double x = std::sin(Radians(tick.angle));
  const double y = -std::cos(Radians(tick.angle));
  const double reach = (size.width * std::abs(x) + size.height * std::abs(y)) / 2;
  tick.labelX = (radius - reach) * x;
  tick.labelY = (radius - reach) * y;
}

bool LabelsKeepClear(const std::vector<DialTick>& ticks, const std::vector<TextSize>& sizes) {
  for (std::size_t i = 0; i < ticks.size(); ++i) {
    for (std::size_t j = i + 1; j < ticks.size(); ++j) {
      const double height = sizes[i].height;
      const bool apartX =
          std::abs(ticks[i].labelX - ticks[j].labelX) >= (sizes[i].width + sizes[j].width) / 2 + kClearanceX * height;
      const bool apartY =
          std::abs(ticks[i].labelY - ticks[j].labelY) >= (height + sizes[j].height) / 2 + kClearanceY * height;
      if (!apartX && !apartY) return false;
    }
  }
  return true;
}

std::vector<DialTick> TicksEvery(double step, const DialScale& scale, double low, double high) {
  std::vector<DialTick> ticks;
  const double slack = (high - low) * 1e-9;
  const double first = std::ceil((low - slack) / step);
  const int count = static_cast<int>(std::floor((high + slack) / step) - first) + 1;
  for (int i = 0; i < count; ++i) {
    DialTick tick;
    tick.value = (first + i) * step + 0.0;  // + 0.0: no negative zero
    tick.angle = scale.Angle(tick.value);
    ticks.push_back(tick);
  }
  return ticks;
}

}  // namespace

double TurnBetween(double fromDegrees, double toDegrees) {
  const double turn = std::remainder(toDegrees - fromDegrees, 360);
  return turn <= -180 ? 180 : turn;
}

bool DialScale::Usable() const {
  return std::isfinite(minimum_) && std::isfinite(maximum_) && minimum_ != maximum_ &&
         std::isfinite(maximum_ - minimum_);
}

double DialScale::Fraction(double value) const {
  if (!Usable() || std::isnan(value)) return 0;
  return std::clamp((value - minimum_) / (maximum_ - minimum_), 0.0, 1.0);
}

double DialScale::Angle(double value) const {
  return (2 * Fraction(value) - 1) * kDialHalfSweep;
}

double DialScale::ValueAt(double angle) const {
  if (!Usable()) return minimum_;
  const double fraction = std::clamp((angle / kDialHalfSweep + 1) / 2, 0.0, 1.0);
  return Settle(minimum_ + fraction * (maximum_ - minimum_));
}

double DialScale::Settle(double value) const {
  if (!Usable() || std::isnan(value)) return minimum_;
  const auto [low, high] = std::minmax(minimum_, maximum_);
  if (!std::isfinite(value)) return std::clamp(value, low, high);
  const double resolution = Resolution();
  // Below 1, divide by the reciprocal, an exact power of ten, so that 25.5 stays exactly 25.5.
  const double rounded = resolution < 1 ? base::RoundHalfEven(value, DecimalsOf(resolution))
                                        : base::RoundHalfEven(value / resolution) * resolution;
  return std::clamp(rounded, low, high);
}

double DialScale::Resolution() const {
  if (!Usable()) return 1;
  return std::pow(10.0, std::floor(std::log10(std::abs(maximum_ - minimum_) / 1000 * (1 + 1e-9))));
}

double DialScale::KeyStep() const {
  if (!Usable()) return 1;
  const double least = std::abs(maximum_ - minimum_) / 256;
  const double power = std::pow(10.0, std::floor(std::log10(least)));
  for (const double mantissa : kMantissas) {
    if (mantissa != 2.5 && mantissa * power >= least) return mantissa * power;
  }
  return 10 * power;
}

std::string DialScale::Text(double value) const {
  if (!std::isfinite(value)) return "-";
  return Fixed(value, DecimalsOf(Resolution()));
}

std::vector<DialTick> DialTicks(double minimum, double maximum, double tickRadius, double labelRadius,
                                const std::function<TextSize(const std::string&)>& measure) {
  const DialScale scale(minimum, maximum);
  const auto [low, high] = std::minmax(minimum, maximum);
  const double span = high - low;
  if (!std::isfinite(span) || span <= 0 || tickRadius <= 0 || labelRadius <= 0) return {};
  if (span < std::max(std::abs(low), std::abs(high)) * kLeastRelativeSpan) return {};

  std::vector<DialTick> majors;
  Divisions divisions(span);
  for (;; divisions.Next()) {
    const double step = divisions.Current().step;
    majors = TicksEvery(step, scale, low, high);
    std::vector<TextSize> sizes;
    for (DialTick& tick : majors) {
      tick.major = true;
      tick.text = Fixed(tick.value, DecimalsOf(step));
      sizes.push_back(measure(tick.text));
      PlaceLabel(tick, labelRadius, sizes.back());
    }
    if (majors.size() <= 1 || LabelsKeepClear(majors, sizes)) break;
  }

  const Division division = divisions.Current();
  const double arc = Radians(2 * kDialHalfSweep) * tickRadius * division.step / span;  // of one major step
  const int parts = arc / division.parts >= kSmallestMinorGap ? division.parts : arc / 2 >= kSmallestMinorGap ? 2 : 1;
  std::vector<DialTick> ticks = TicksEvery(division.step / parts, scale, low, high);
  for (DialTick& tick : ticks) {
    for (const DialTick& major : majors) {
      if (std::abs(major.value - tick.value) < division.step * 1e-6) tick = major;
    }
  }
  return ticks;
}

}  // namespace zth::widgets
