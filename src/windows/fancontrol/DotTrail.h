#pragma once

#include <vector>

/// The positions of a chart's live dots in the last minute.
namespace zth::windows {

class DotTrail {
 public:
  static constexpr double kSeconds = 60;
  /// Older dots are paler, in this many steps.
  static constexpr int kAges = 4;

  struct Dot {
    int source = 0;
    double x = 0;
    double y = 0;
    double time = 0;  ///< seconds of a monotonic clock
  };

  /// Adds the current position of a dot. A repeated position of a source is kept once, with its latest time.
  void Add(const Dot& dot);
  /// Drops dots older than kSeconds at `now`.
  void Expire(double now);
  void Clear() { dots_.clear(); }

  /// Oldest first.
  const std::vector<Dot>& Dots() const { return dots_; }
  /// 0 for the newest step, kAges - 1 for the palest.
  static int AgeOf(const Dot& dot, double now);

 private:
  std::vector<Dot> dots_;
};

}  // namespace zth::windows
