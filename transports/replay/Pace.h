#pragma once

#include <cmath>
#include <optional>

namespace zth::replay {

/// How long each answer has to wait, so that calls follow each other as they did in the recording.
class Pace {
 public:
  /// `factor`: how much faster than recorded; 0 without any wait.
  explicit Pace(double factor) : factor_(factor) {}

  /// The wait for an answer whose call was recorded at `recorded`, asked for at `now`; both in seconds, each from a
  /// start of its own.
  ///
  /// If the two are further apart than kMost, the program does not follow the recording's time at all, for example
  /// because the user acts sooner than then. They go on from here without a wait.
  double WaitFor(double recorded, double now) {
    if (factor_ <= 0) return 0;
    if (!offset_) offset_ = now - recorded / factor_;
    const double wait = recorded / factor_ + *offset_ - now;
    if (std::abs(wait) <= kMost) return wait > 0 ? wait : 0;
    offset_ = now - recorded / factor_;
    return 0;
  }

  static constexpr double kMost = 1;

 private:
  double factor_;
  std::optional<double> offset_;  ///< of the program's time from the recording's
};

}  // namespace zth::replay
