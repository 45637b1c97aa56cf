#pragma once

#include <optional>

#include "widgets/TraceHistory.h"

namespace zth::widgets {

/// Gives the samples of a time chart their x: seconds since the first one. The traces fed in one go share one instant.
class StripFeed {
 public:
  void Restart() { *this = {}; }

  /// Of a sample that comes at `now` by the clock and that `history` has not got yet.
  double XAt(double now, const TraceHistory& history) {
    if (!origin_) origin_ = now;
    const double x = now - *origin_;
    const bool sameFeed =
        instant_ && x - *instant_ < kFeedSeconds && (history.Empty() || history.Newest().x < *instant_);
    if (!sameFeed) instant_ = x;
    return *instant_;
  }

 private:
  // Samples of several traces that come within this time of the first belong to one feed.
  static constexpr double kFeedSeconds = 0.005;

  std::optional<double> origin_;   ///< the clock at the first sample
  std::optional<double> instant_;  ///< x of the feed that is coming in
};

}  // namespace zth::widgets
