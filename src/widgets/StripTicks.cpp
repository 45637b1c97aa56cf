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
  return found != kSteps.end() ? *found : 86400 * RoundStep(least / 86400);
}

/// Minutes and seconds, or hours, minutes and seconds, with `decimals` on the seconds.
QString ClockText(double seconds, int decimals) {
  const double unit = std::pow(10.0, decimals);
  const auto all = static_cast<std::int64_t>(std::llround(std::abs(seconds) * unit));
  const auto perMinute = static_cast<std::int64_t>(60 * unit);
  const std::int64_t minutes = all / perMinute;
  const QString rest = PlainText(static_cast<double>(all % perMinute) / unit, decimals);
  const QString padded = rest.indexOf(QLatin1Char('.')) == 1 || rest.size() == 1 ? QLatin1Char('0') + rest : rest;
  const QString sign = seconds < 0 && all != 0 ? QStringLiteral("-") : QString();
  if (minutes < 60) return QStringLiteral("%1%2:%3").arg(sign).arg(minutes).arg(padded);
  return QStringLiteral("%1%2:%3:%4")
      .arg(sign)
      .arg(minutes / 60)
      .arg(minutes % 60, 2, 10, QLatin1Char('0'))
      .arg(padded);
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
  double step = RoundStep((high - low) / std::max(1, most));
  while (static_cast<int>(Multiples(low, high, step).size()) > std::max(2, most)) step = RoundStep(step * 1.5);
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
  double step = TimeStep((high - low) / std::max(1, most));
  while (static_cast<int>(Multiples(low, high, step).size()) > std::max(2, most)) step = TimeStep(step * 1.5);
  const bool clock = step > 30 || std::max(std::abs(low), std::abs(high)) > kPlainSeconds;
  for (const double value : Multiples(low, high, step)) {
    const int decimals = DecimalsFor(step);
    ticks.push_back({value, clock ? ClockText(value, decimals) : PlainText(value, decimals)});
  }
  return ticks;
}

QString TimeText(double seconds, double resolution) {
  const int decimals = std::min(DecimalsFor(std::max(resolution, 1e-4)), 4);
  if (std::abs(seconds) < 60) return PlainText(seconds, decimals) + QStringLiteral(" s");
  return ClockText(seconds, decimals);
}

}  // namespace zth::widgets
