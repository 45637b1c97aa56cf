#pragma once

#include <optional>

#include "widgets/TraceHistory.h"

namespace zth::widgets {

/// Assigns an x to the samples of a time chart: seconds since the first sample. Traces fed together share one x.
class StripFeed {
 public:
  void Restart() { *this = {}; }

  /// The x of a sample at clock time `now` that is not in `history` yet.
  double XAt(double now, const TraceHistory& history) {
    if (!origin_) origin_ = now;
    const double x = now - *origin_;
    const bool sameFeed =
        instant_ && x - *instant_ < kFeedSeconds && (history.Empty() || history.Newest().x < *instant_);
    if (!sameFeed) instant_ = x;
    return *instant_;
  }

 private:
  // Samples of several traces within this time of the first belong to the same feed.
  static constexpr double kFeedSeconds = 0.005;

  std::optional<double> origin_;   ///< clock time of the first sample
  std::optional<double> instant_;  ///< x of the current feed
};

}  // namespace zth::widgets
