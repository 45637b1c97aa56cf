#include "characterise/Fits.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

namespace zth::characterise {
namespace {

constexpr std::size_t kLeastSamples = 6;
constexpr int kParameters = 5;

double Square(double value) {
  return value * value;
}

/// The best y = end + rest * exp(-(x - first x) / tau) of a stretch.
struct Stretch {
  double end = 0;
  double squares = 0;   ///< sum of the squared residuals
  double leverage = 0;  ///< variance of `end` in units of that of y
};

Stretch Solve(std::span<const Datum> data, double tau) {
  double s = 0;
  double se = 0;
  double see = 0;
  double sy = 0;
  double sey = 0;
  double syy = 0;
  const double first = data.front().x;
  const double middle = data[data.size() / 2].y;  // so that no digits are lost
  for (const Datum& datum : data) {
    const double e = std::exp(-(datum.x - first) / tau);
    const double y = datum.y - middle;
    s += 1;
    se += e;
    see += e * e;
    sy += y;
    sey += e * y;
    syy += y * y;
  }
  const double determinant = s * see - se * se;
  Stretch stretch;
  if (determinant <= 1e-12 * s * s) {
    stretch.end = middle + sy / s;
    stretch.squares = syy - sy * sy / s;
    stretch.leverage = 1 / s;
    return stretch;
  }
  const double end = (see * sy - se * sey) / determinant;
  const double rest = (s * sey - se * sy) / determinant;
  stretch.end = middle + end;
  stretch.squares = std::max(0.0, syy - end * sy - rest * sey);
  stretch.leverage = see / determinant;
  return stretch;
}

/// The minimum of a function with a single one, between two bounds.
template <typename Function>
double Minimum(double low, double high, const Function& function) {
  constexpr int kRounds = 40;
  const double share = 1 / std::numbers::phi;
  double a = high - (high - low) * share;
  double b = low + (high - low) * share;
  double fa = function(a);
  double fb = function(b);
  for (int round = 0; round < kRounds; ++round) {
    if (fa < fb) {
      high = b;
      b = a;
      fb = fa;
      a = high - (high - low) * share;
      fa = function(a);
    } else {
      low = a;
      a = b;
      fa = fb;
      b = low + (high - low) * share;
      fb = function(b);
    }
  }
  return (low + high) / 2;
}

}  // namespace

double Mean(std::span<const double> values) {
  if (values.empty()) return 0;
  return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}

double Deviation(std::span<const double> values) {
  if (values.size() < 2) return 0;
  const double mean = Mean(values);
  double sum = 0;
  for (const double value : values) sum += Square(value - mean);
  return std::sqrt(sum / static_cast<double>(values.size() - 1));
}

double Scatter(std::span<const double> values) {
  if (values.size() < 2) return 0;
  double sum = 0;
  for (std::size_t i = 1; i < values.size(); ++i) sum += Square(values[i] - values[i - 1]);
  return std::sqrt(sum / 2 / static_cast<double>(values.size() - 1));
}

double Median(std::vector<double> values) {
  if (values.empty()) return 0;
  std::ranges::sort(values);
  const std::size_t half = values.size() / 2;
  return values.size() % 2 == 1 ? values[half] : (values[half - 1] + values[half]) / 2;
}

LineFit FitLine(std::span<const Datum> data) {
  const bool weighted = !data.empty() && std::ranges::all_of(data, [](const Datum& datum) { return datum.sigma > 0; });
  const auto weight = [weighted](const Datum& datum) { return weighted ? 1 / Square(datum.sigma) : 1.0; };
  double s = 0;
  double sx = 0;
  double sy = 0;
  for (const Datum& datum : data) {
    s += weight(datum);
    sx += weight(datum) * datum.x;
    sy += weight(datum) * datum.y;
  }
  if (s <= 0) return {};
  const double x = sx / s;
  const double y = sy / s;
  double sxx = 0;
  double sxy = 0;
  for (const Datum& datum : data) {
    sxx += weight(datum) * Square(datum.x - x);
    sxy += weight(datum) * (datum.x - x) * (datum.y - y);
  }
  if (sxx <= 1e-12 * s) return {};
  const double slope = sxy / sxx;
  double squares = 0;
  for (const Datum& datum : data) squares += weight(datum) * Square(datum.y - y - slope * (datum.x - x));
  const double free = static_cast<double>(data.size()) - 2;
  double variance = free > 0 ? squares / free : 0;
  if (weighted) variance = std::max(variance, 1.0);
  return {true, {slope, std::sqrt(variance / sxx)}, {y - slope * x, std::sqrt(variance * (1 / s + Square(x) / sxx))}};
}

StepFit FitStep(std::span<const Datum> before, std::span<const Datum> after, double least, double most) {
  if (before.size() < kLeastSamples || after.size() < kLeastSamples) return {};
  const auto squares = [&](double log) {
    const double tau = std::exp(log);
    return Solve(before, tau).squares + Solve(after, tau).squares;
  };
  const double low = std::log(least);
  const double high = std::log(most);
  const double best = Minimum(low, high, squares);
  constexpr double kEdge = 0.01;
  if (best < low + kEdge || best > high - kEdge) return {};

  const double tau = std::exp(best);
  const Stretch first = Solve(before, tau);
  const Stretch second = Solve(after, tau);
  const auto count = static_cast<double>(before.size() + after.size());
  const double total = first.squares + second.squares;
  const double variance = total / (count - kParameters);
  // The curvature of the squares over the time constant tells how well it is known; the ends move with it.
  constexpr double kProbe = 0.02;
  const double curvature = (squares(best + kProbe) + squares(best - kProbe) - 2 * total) / Square(kProbe);
  if (curvature <= 0) return {};
  const double logSigma = std::sqrt(2 * variance / curvature);
  const double drift = (Solve(after, tau * std::exp(kProbe)).end - Solve(after, tau * std::exp(-kProbe)).end) / 2;
  const double afterSigma = std::hypot(std::sqrt(variance * second.leverage), drift / kProbe * logSigma);
  return {true,
          {first.end, std::sqrt(variance * first.leverage)},
          {second.end, afterSigma},
          {tau, tau * logSigma},
          std::sqrt(total / count)};
}

}  // namespace zth::characterise
