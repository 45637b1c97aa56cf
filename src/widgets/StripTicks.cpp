#include "widgets/StripTicks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace zth::widgets {
namespace {

constexpr int kMostTicks = 200;
// Up to here, plain seconds are easier to read.
constexpr double kPlainSeconds = 600;
constexpr double kDay = 86400;

bool Usable(double low, double high) {
  return std::isfinite(low) && std::isfinite(high) && high > low;
}

double RoundStep(double least) {
  const double power = std::pow(10.0, std::floor(std::log10(least)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (factor * power >= least * (1 - 1e-9)) return factor * power;
  }
  return 10 * power;
}

std::vector<double> Multiples(double low, double high, double step) {
  std::vector<double> values;
  // The tolerance keeps an end that misses a multiple by a rounding error.
  const double from = std::ceil(low / step - 1e-6);
  const double to = std::floor(high / step + 1e-6);
  for (double k = from; k <= to && values.size() < kMostTicks; k += 1) values.push_back(k * step);
  return values;
}

double TimeStep(double least) {
  static constexpr std::array kSteps{15.0,   30.0,   60.0,   120.0,   300.0,   600.0,   900.0,
                                     1800.0, 3600.0, 7200.0, 10800.0, 14400.0, 21600.0, 43200.0};
  if (least <= 10) return RoundStep(least);
  const auto* const found = std::find_if(kSteps.begin(), kSteps.end(), [&](double step) { return step >= least; });
  return found != kSteps.end() ? *found : kDay * RoundStep(least / kDay);
}

/// The step for at most that many ticks, and at least two. `stepFrom` gives the least round step from a size on.
double StepFor(double low, double high, int most, double (*stepFrom)(double)) {
  double step = stepFrom((high - low) / std::max(1, most));
  while (static_cast<int>(Multiples(low, high, step).size()) > std::max(2, most)) step = stepFrom(step * 1.5);
  while (Multiples(low, high, step).size() < 2 && step > (high - low) / 10) step = stepFrom(step * 0.4);
  return step;
}

/// A time as whole minutes and the text of its seconds, with two digits before the point.
struct Clock {
  std::int64_t minutes;
  QString seconds;
};

Clock ClockOf(double seconds, int decimals) {
  const double unit = std::pow(10.0, decimals);
  const auto all = static_cast<std::int64_t>(std::llround(seconds * unit));
  const auto perMinute = static_cast<std::int64_t>(60 * unit);
  const QString rest = PlainText(static_cast<double>(all % perMinute) / unit, decimals);
  const bool padded = rest.indexOf(QLatin1Char('.')) == 1 || rest.size() == 1;
  return {all / perMinute, padded ? QLatin1Char('0') + rest : rest};
}

/// Minutes and seconds, or hours, minutes and seconds, with `decimals` on the seconds.
QString ClockText(double seconds, int decimals) {
  const Clock clock = ClockOf(std::abs(seconds), decimals);
  const bool negative = std::round(seconds * std::pow(10.0, decimals)) < 0;
  const QString sign = negative ? QStringLiteral("-") : QString();
  if (clock.minutes < 60) return QStringLiteral("%1%2:%3").arg(sign).arg(clock.minutes).arg(clock.seconds);
  return QStringLiteral("%1%2:%3:%4")
      .arg(sign)
      .arg(clock.minutes / 60)
      .arg(clock.minutes % 60, 2, 10, QLatin1Char('0'))
      .arg(clock.seconds);
}

/// Small numbers keep their decimals through the arithmetic.
double SinceMidnight(double local) {
  return local - std::floor(local / kDay) * kDay;
}

/// Hours, minutes and seconds of a time of day; days count on.
QString OfDay(double seconds, int decimals) {
  const double unit = std::pow(10.0, decimals);
  const double rounded = std::round(seconds * unit) / unit;
  const Clock clock = ClockOf(SinceMidnight(rounded), decimals);
  const QLatin1Char zero('0');
  return QStringLiteral("%1:%2:%3")
      .arg(clock.minutes / 60, 2, 10, zero)
      .arg(clock.minutes % 60, 2, 10, zero)
      .arg(clock.seconds);
}

int CursorDecimals(double resolution) {
  return std::min(DecimalsFor(std::max(resolution, 1e-4)), 4);
}

}  // namespace

QString PlainText(double value, int decimals) {
  const double half = 0.5 * std::pow(10.0, -decimals);
  return QString::number(std::abs(value) < half ? 0.0 : value, 'f', decimals);
}

int DecimalsFor(double step) {
  if (!(step > 0) || !std::isfinite(step)) return 0;
  return std::clamp(static_cast<int>(std::ceil(-std::log10(step) - 1e-9)), 0, 9);
}

std::vector<Tick> RoundTicks(double low, double high, int most) {
  std::vector<Tick> ticks;
  if (!Usable(low, high)) return ticks;
  const double step = StepFor(low, high, most, RoundStep);
  for (const double value : Multiples(low, high, step)) ticks.push_back({value, PlainText(value, DecimalsFor(step))});
  return ticks;
}

std::vector<Tick> EvenTicks(double low, double high, int divisions) {
  std::vector<Tick> ticks;
  if (!Usable(low, high) || divisions < 1) return ticks;
  const double step = (high - low) / divisions;
  // Steps such as 0.25 need one more decimal than their size suggests.
  int decimals = DecimalsFor(step);
  while (decimals < 3 && std::abs(std::remainder(step * std::pow(10.0, decimals), 1.0)) > 1e-6) ++decimals;
  for (int i = 0; i <= std::min(divisions, kMostTicks); ++i) {
    const double value = i == divisions ? high : low + step * i;
    ticks.push_back({value, PlainText(value, decimals)});
  }
  return ticks;
}

std::vector<Tick> TimeTicks(double low, double high, int most) {
  std::vector<Tick> ticks;
  if (!Usable(low, high)) return ticks;
  const double step = StepFor(low, high, most, TimeStep);
  const bool clock = step > 30 || std::max(std::abs(low), std::abs(high)) > kPlainSeconds;
  for (const double value : Multiples(low, high, step)) {
    const int decimals = DecimalsFor(step);
    ticks.push_back({value, clock ? ClockText(value, decimals) : PlainText(value, decimals)});
  }
  return ticks;
}

std::vector<Tick> DayTicks(double low, double high, int most, const StripDayTime& times) {
  std::vector<Tick> ticks;
  if (!Usable(low, high)) return ticks;
  const std::vector<StripDayTime::Stretch> stretches = times.Within(low, high);
  if (stretches.empty()) return ticks;
  // One step for all stretches, for as many ticks as the whole axis has room for.
  const double day = SinceMidnight(stretches.front().offset);
  const double step = StepFor(low + day, high + day, most, TimeStep);
  for (const StripDayTime::Stretch& stretch : stretches) {
    const double offset = SinceMidnight(stretch.offset);
    for (const double value : Multiples(stretch.low + offset, stretch.high + offset, step)) {
      ticks.push_back({value - offset, OfDay(value, DecimalsFor(step))});
    }
  }
  return ticks;
}

QString DayText(double local, double resolution) {
  return OfDay(SinceMidnight(local), CursorDecimals(resolution));
}

QString TimeText(double seconds, double resolution) {
  const int decimals = CursorDecimals(resolution);
  if (std::abs(seconds) < 60) return PlainText(seconds, decimals) + QStringLiteral(" s");
  return ClockText(seconds, decimals);
}

}  // namespace zth::widgets
