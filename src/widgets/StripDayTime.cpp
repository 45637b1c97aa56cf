#include "widgets/StripDayTime.h"

#include <algorithm>
#include <cmath>

namespace zth::widgets {
namespace {

// A smaller difference is the time between two readings of the clocks, not a jump.
constexpr double kJump = 0.5;
constexpr std::size_t kMostStretches = 1000;

double LocalSeconds(const QDateTime& local) {
  return static_cast<double>(local.toMSecsSinceEpoch()) / 1000 + local.offsetFromUtc();
}

}  // namespace

void StripDayTime::Note(double x, const QDateTime& local) {
  const double offset = LocalSeconds(local) - x;
  if (Known() && std::abs(offset - starts_.back().offset) < kJump) return;
  if (starts_.size() >= kMostStretches) starts_.erase(starts_.begin(), starts_.begin() + kMostStretches / 2);
  starts_.push_back({x, offset});
}

std::vector<StripDayTime::Stretch> StripDayTime::Within(double low, double high) const {
  std::vector<Stretch> stretches;
  for (std::size_t i = 0; i < starts_.size(); ++i) {
    const double from = i == 0 ? low : std::max(low, starts_[i].x);
    const double to = i + 1 < starts_.size() ? std::min(high, starts_[i + 1].x) : high;
    if (from < to) stretches.push_back({from, to, starts_[i].offset});
  }
  return stretches;
}

double StripDayTime::LocalAt(double x) const {
  const auto later =
      std::upper_bound(starts_.begin(), starts_.end(), x, [](double at, const Start& start) { return at < start.x; });
  if (!Known()) return 0;
  return x + (later == starts_.begin() ? later : later - 1)->offset;
}

}  // namespace zth::widgets
