#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <vector>

#include "widgets/Ring.h"

namespace zth::widgets {

/// The samples of one trace of a time chart, for a day at most: every sample of the recent past, summaries of the time
/// before it. A summary keeps the smallest and the largest value of its stretch, so that no spike is ever lost.
/// Appending takes constant time, the memory is bounded whatever the running time, and the cost of a picture follows
/// its width.
class TraceHistory {
 public:
  /// What falls behind the newest sample by more than this is dropped, in units of x (seconds).
  static constexpr double kKept = 24.0 * 60 * 60;

  /// The values that a trace takes within one pixel column; lo above hi where it has none.
  struct Column {
    float lo = std::numeric_limits<float>::infinity();
    float hi = -std::numeric_limits<float>::infinity();
    bool Empty() const { return !(lo <= hi); }
  };
  struct Point {
    double x = 0;
    double y = 0;
  };
  /// What a cursor reads: one sample (lo and hi are equal), or a summary of the far past. NaN for a lost value.
  struct Reading {
    double x = 0;
    double lo = 0;
    double hi = 0;
  };

  TraceHistory();

  /// Adds the newest sample. An x that is not finite is not taken; an x before the newest one counts as the newest. NaN
  /// as y is a gap: the line ends there, and is not drawn across it in any summary either.
  void Append(double x, double y);
  void Clear();

  bool Empty() const { return samples_.Empty(); }
  /// Counts the samples ever taken and the clearings: unchanged means that nothing has changed.
  std::uint64_t Revision() const { return revision_; }
  /// The newest sample; the history is not empty.
  Point Newest() const { return {samples_.Back().x, samples_.Back().y}; }

  /// Fills columns of `width` along x: out[i] covers (first + i) * width up to the next. The columns hang on the x
  /// axis, not on a window's edge, so that a sliding window does not regroup the samples. Neighbouring samples are
  /// joined, also across columns that hold none. Returns how many samples and summaries it has looked at.
  std::size_t Columns(std::int64_t first, double width, std::span<Column> out) const;

  /// The sample or summary nearest to x; none left of the oldest and right of the newest.
  std::optional<Reading> At(double x) const;

  /// Everything from x0 to x1, oldest first: all samples of the recent past, NaN for a gap; of a summary its ends, the
  /// lowest value at its begin and the highest at its end, and NaN between them when values were lost there.
  std::vector<Point> Points(double x0, double x1) const;

  /// The memory that the samples take.
  std::size_t Bytes() const;

 private:
  // How many entries of one level a summary of the next one stands for; also how many entries a column may hold before
  // the next level serves it: with any smaller limit wide summaries would bleed into neighbouring columns.
  static constexpr unsigned kFan = 4;
  // Samples kept one by one: 54 minutes at 50 ms.
  static constexpr std::size_t kSamples = 65536;
  // Summaries kept of each level: kFan columns' worth of a 4096 pixel wide chart.
  static constexpr std::size_t kSummaries = 16384;
  static constexpr std::size_t kLevels = 8;

  struct Sample {
    double x, y;
    double First() const { return x; }
    double Last() const { return x; }
  };
  /// min is NaN when no value of the stretch is a number. The ends are those of its numbers, if it has any.
  struct Summary {
    double first;
    float span;  ///< to the last one; never short of it
    float min, max;
    bool broken;  ///< it has numbers, and values were lost among them or beside them
    double First() const { return first; }
    double Last() const { return first + static_cast<double>(span); }
    /// Takes in the entry that follows.
    void Take(const Summary& entry);
  };
  static_assert(sizeof(Summary) == 24, "a day of all charts has its room");
  struct Level {
    Ring<Summary> closed{kSummaries};
    Summary open{};
    unsigned count = 0;  ///< entries of the level below that `open` holds
  };
  /// A run of entries of one level; level 0 is the samples.
  struct Run {
    std::size_t level, begin, end;
  };
  class Filler;

  static Summary SummaryOf(const Sample& sample);
  std::size_t CountWithin(std::size_t level, double x0, double x1) const;
  Run RunWithin(std::size_t level, double x0, double x1) const;
  double OldestOf(std::size_t level) const;
  bool HoldsNone(std::size_t level) const;
  std::size_t RunsFor(double x0, double x1, std::size_t limit, std::array<Run, kLevels + 1>& runs) const;

  Ring<Sample> samples_{kSamples};
  std::uint64_t revision_ = 0;
  std::array<Level, kLevels> levels_;  ///< levels_[0] is level 1
};

}  // namespace zth::widgets
